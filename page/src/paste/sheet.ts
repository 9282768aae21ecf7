// The style sheets of a pasted document, as far as they mean something: what its classes look like
// (spreadsheets write colours and borders nowhere else) and how its lists are numbered.

import { declarations } from "./styles";

/** Of each class these alone are taken over; the rest is page layout. */
const meaningful =
    /^(?:color|background(?:-color)?|font-(?:weight|style|size)|text-(?:align|decoration)|vertical-align|border.*|mso-list)$/;

/** What links look like is the note's matter. */
const linkClass = /Hyperlink/;

/** What a sheet's element is called while the document is taken apart. */
const sheetElement = "noembed";

/**
 * `html` with its style sheets under another name, whose inside is raw text just the same: the engine
 * would parse a sheet even in a document that is not shown, and a hostile one takes it seconds.
 */
export function withoutSheets(html: string): string {
    return html.replace(/<(\/?)style(?=[\s/>])/gi, `<$1${sheetElement}`);
}

export class Sheet {
    private readonly classes = new Map<string, string>();
    private readonly formats = new Map<string, string>();

    constructor(doc: Document) {
        for (const style of doc.querySelectorAll(sheetElement)) this.read(style.textContent ?? "");
    }

    /** The declarations of all classes in a `class` attribute. */
    styleOf(classNames: string): string {
        if (this.classes.size === 0) return "";
        let style = "";
        for (const name of classNames.split(/\s+/)) style += this.classes.get(name) ?? "";
        return style;
    }

    /** The number format of a level of a list, "bullet" or "alpha-lower" say; empty if not told. */
    formatOf(list: string, level: number): string {
        return this.formats.get(`${list}:level${level}`) ?? "";
    }

    private read(sheet: string): void {
        const css = sheet.replace(/\/\*[^]*?(?:\*\/|$)|<!--|-->/g, "");
        let at = 0;
        for (;;) {
            const open = css.indexOf("{", at);
            if (open < 0) return;
            const selector = css.slice(at, open).trim();
            const nested = /^@(?:media|supports|layer)/.test(selector);
            const close = nested ? endOfBlock(css, open) : css.indexOf("}", open);
            if (close < 0) return;
            if (!nested) this.rule(selector, css.slice(open + 1, close));
            at = close + 1;
        }
    }

    private rule(selector: string, body: string): void {
        const level = /^@list\s+(l\d+:level\d+)/.exec(selector)?.[1];
        if (level) {
            this.formats.set(level, /mso-level-number-format:\s*([\w-]+)/.exec(body)?.[1] ?? "");
            return;
        }
        const names = selector
            .split(",")
            .map((each) => /^\s*\w*\.([\w-]+)\s*$/.exec(each)?.[1])
            .filter((name): name is string => name !== undefined && !linkClass.test(name));
        if (names.length === 0) return;
        let style = "";
        for (const [name, value] of declarations(body))
            if (meaningful.test(name)) style += `${name}:${value};`;
        for (const name of names) this.classes.set(name, (this.classes.get(name) ?? "") + style);
    }
}

function endOfBlock(css: string, open: number): number {
    let depth = 0;
    for (let at = open; at < css.length; at++) {
        if (css[at] === "{") depth++;
        else if (css[at] === "}" && --depth === 0) return at;
    }
    return -1;
}
