// What stays of a pasted element's style: what a reader sees and means. Measures of the page that it
// comes from, fonts, and what is the note's own default go, and so do the words of office programs;
// some of these tell what an element is, and that is read here too.

/** Elements differ in what may stay. */
export type Kind = "inline" | "block" | "heading" | "list" | "table" | "cell" | "picture" | "link";

/** A paragraph that an office program draws as an item of a list: "mso-list:l1 level2 lfo3". */
export interface ListPlace {
    list: string;
    level: number;
    numbering: string;
}

/** What a style says. */
export interface Look {
    /** What stays, as the text of a style attribute. */
    style: string;
    /** Takes back the weight or slant that the element's name stands for. */
    normalWeight: boolean;
    normalSlant: boolean;
    hidden: boolean;
    /** The number or bullet in front of an item, drawn by the program. */
    marker: boolean;
    /** White space that stands for a tab or for repeated spaces. */
    spaces: boolean;
    /** 1 to 6 for a paragraph that is a heading in the program's outline, else 0. */
    outline: number;
    list: ListPlace | null;
    /** White space counts. */
    verbatim: boolean;
}

type Keep = (value: string, kind: Kind) => string | null;

const black = /^(?:windowtext|auto|inherit|initial|currentcolor|black|#000(?:000)?|rgba?\(0, ?0, ?0(?:, ?1)?\))$/;
const clear =
    /^(?:transparent|none|inherit|initial|auto|window|white|#fff(?:fff)?|rgb\(255, ?255, ?255\)|rgba\(.*, ?0\))$/;
const oneColour = /^(?:#[0-9a-f]{3,8}|(?:rgb|hsl)a?\([\d., %/deg]+\)|[a-z]+)$/;
const length = /^(\d*\.?\d+)(px|pt|in|cm|mm|pc)$/;
const pixels: Record<string, number> = { px: 1, pt: 4 / 3, in: 96, cm: 37.8, mm: 3.78, pc: 16 };

const isBox = (kind: Kind) => kind === "table" || kind === "cell";
const isBlock = (kind: Kind) => kind === "block" || kind === "heading" || kind === "cell";

function inPixels(value: string): number | null {
    const found = length.exec(value);
    return found && Number(found[1]) * pixels[found[2]!]!;
}

/** Text that is black by somebody's program is text in the note's own colour. */
export const isPlainColour = (value: string) => black.test(value.toLowerCase());

const colour: Keep = (value) => (oneColour.test(value) && !black.test(value) ? value : null);
const background: Keep = (value) => (oneColour.test(value) && !clear.test(value) ? value : null);

const decoration: Keep = (value) => value.match(/underline|line-through/g)?.join(" ") ?? null;

/** About as large as text is anyway: nobody chose it. */
const fontSize: Keep = (value, kind) => {
    const size = inPixels(value);
    return size === null || kind === "heading" || (size > 11.5 && size < 17.5) || size > 200
        ? null
        : value;
};

const border: Keep = (value, kind) =>
    isBox(kind) && !/none|initial|inherit|hidden|^0|-moz-|currentcolor|^medium$/.test(value)
        ? value
        : null;

/** A line of a box in one: without a style it draws nothing. */
const line: Keep = (value, kind) =>
    /solid|dashed|dotted|double|groove|ridge|inset|outset/.test(value) ? border(value, kind) : null;

const size: Keep = (value, kind) =>
    (isBox(kind) || kind === "picture") && (inPixels(value) ?? 0) > 1 ? value : null;

const indent: Keep = (value, kind) => {
    const space = inPixels(value) ?? 0;
    return kind === "block" && space > 1 && space < 400 ? value : null;
};

const kept = new Map<string, Keep>([
    ["color", colour],
    ["background", background],
    ["background-color", background],
    ["font-weight", (value) => (/^(?:bold|bolder|[6-9]00)$/.test(value) ? value : null)],
    ["font-style", (value) => (/^(?:italic|oblique)$/.test(value) ? "italic" : null)],
    ["font-family", (value) => (/mono|courier|consolas|menlo/.test(value) ? value : null)],
    ["font-size", fontSize],
    ["text-decoration", decoration],
    ["text-decoration-line", decoration],
    [
        "text-align",
        (value, kind) => (isBlock(kind) && /^(?:center|right|justify)$/.test(value) ? value : null),
    ],
    [
        "vertical-align",
        (value, kind) =>
            (kind === "inline" && /^(?:super|sub)$/.test(value)) ||
            (kind === "cell" && value === "top")
                ? value
                : null,
    ],
    ["margin-left", indent],
    ["width", size],
    ["height", (value, kind) => (kind === "picture" ? size(value, kind) : null)],
    ["list-style-type", (value, kind) => (kind === "list" && /^[a-z-]+$/.test(value) ? value : null)],
    ["border-collapse", (value, kind) => (kind === "table" ? value : null)],
    ["white-space", (value, kind) => (kind === "block" && value === "pre" ? value : null)],
    ["direction", (value) => (value === "rtl" ? value : null)],
]);
for (const side of ["", "-top", "-right", "-bottom", "-left"])
    for (const part of ["", "-width", "-style", "-color"])
        kept.set(`border${side}${part}`, part === "" ? line : border);

/** The declarations of a style text in their order. Strings and brackets may hold semicolons. */
export function* declarations(style: string): Generator<[name: string, value: string]> {
    let start = 0;
    let quote = "";
    let depth = 0;
    for (let at = 0; at <= style.length; at++) {
        const c = style[at];
        if (c === undefined || (c === ";" && quote === "" && depth <= 0)) {
            const text = style.slice(start, at);
            const colon = text.indexOf(":");
            if (colon > 0)
                yield [text.slice(0, colon).trim().toLowerCase(), text.slice(colon + 1).trim()];
            start = at + 1;
        } else if (quote !== "") {
            if (c === quote) quote = "";
        } else if (c === '"' || c === "'") quote = c;
        else if (c === "(") depth++;
        else if (c === ")") depth--;
    }
}

function readList(value: string): ListPlace | null {
    const level = /level(\d+)/.exec(value);
    const list = /(?:^|\s)(l\d+)/.exec(value)?.[1];
    if (!level || !list) return null;
    const numbering = /lfo\d+/.exec(value)?.[0] ?? list;
    // Programs have nine; a text may claim any.
    return { list, numbering, level: Math.min(Math.max(Number(level[1]), 1), 9) };
}

function readWord(look: Look, name: string, value: string): void {
    if (name === "mso-list") {
        if (value === "ignore") look.marker = true;
        else look.list = readList(value);
    } else if (name === "mso-outline-level") look.outline = Number(/^[1-6]$/.exec(value)?.[0] ?? 0);
    else if (name === "mso-spacerun" || name === "mso-tab-count") look.spaces = true;
    else if (name === "mso-hide") look.hidden ||= value === "all";
    else if (name === "mso-special-format") look.marker ||= /bullet/.test(value);
}

function read(style: string, kind: Kind): Look {
    const look: Look = {
        style: "",
        normalWeight: false,
        normalSlant: false,
        hidden: false,
        marker: false,
        spaces: false,
        outline: 0,
        list: null,
        verbatim: false,
    };
    const stays = new Map<string, string>();
    for (const [name, written] of declarations(style)) {
        const value = written.replace(/\s*!important$/i, "").toLowerCase();
        if (name.startsWith("mso-")) {
            readWord(look, name, value);
            continue;
        }
        if (name === "display") look.hidden = value === "none";
        if (name === "font-weight") look.normalWeight = /^(?:normal|[1-5]00)$/.test(value);
        if (name === "font-style") look.normalSlant = value === "normal";
        const keep = kept.get(name);
        if (!keep || kind === "link") continue;
        const property = name === "background" ? "background-color" : name;
        const result = /url|[\\<>@{}]/.test(value) ? null : keep(value, kind);
        if (result !== null) stays.set(property, result);
        else stays.delete(property);
    }
    // A list indents its items by itself.
    if (look.list) stays.delete("margin-left");
    look.verbatim = stays.has("white-space");
    look.style = [...stays].map(([name, value]) => `${name}: ${value}`).join("; ");
    if (look.style !== "") look.style += ";";
    return look;
}

/** Reads styles. A document says the same few thousands of times: each is read once. */
export class StyleReader {
    private readonly known = new Map<string, Look>();

    read(style: string, kind: Kind): Look {
        const key = `${kind} ${style}`;
        let look = this.known.get(key);
        if (!look) {
            look = read(style, kind);
            this.known.set(key, look);
        }
        return look;
    }
}
