// What each kind of element is to a note that it is pasted into.

import { isPlainColour, Kind } from "./styles";

const names = (list: string) => new Set(list.split(" "));

/** Go with all that is in them: they are no text, or work only where they come from. */
export const dropped = names(
    "script style meta link base title head template xml noscript iframe frame frameset noframes noembed " +
        "object embed applet param audio video source track canvas svg map area input select option " +
        "textarea button datalist progress meter portal slot",
);

export const kept = names(
    "p div br hr span b strong i em u s strike del ins font sub sup small big mark code pre kbd " +
        "h1 h2 h3 h4 h5 h6 ul ol li dl dt dd blockquote center a img ruby rt rp " +
        "table caption colgroup col tbody thead tfoot tr td th",
);

/** Sections of a page are plain blocks in a note. */
export const divisions = names(
    "section article main header footer nav aside hgroup figure figcaption address form fieldset legend " +
        "dialog details summary search menu dir",
);

export const blocks = names(
    "p div h1 h2 h3 h4 h5 h6 ul ol li dl dt dd blockquote center pre hr table caption colgroup col " +
        "tbody thead tfoot tr td th",
);

/** Nothing but other elements stands in these. */
export const structures = names("table colgroup tbody thead tfoot tr ul ol dl");

/** Need no content to be something. */
export const standing = names("br hr img col td th tr table tbody thead tfoot colgroup ul ol");

const attributes: Record<string, Set<string>> = {
    a: names("href"),
    img: names("src alt width height"),
    table: names("border cellpadding cellspacing width align bgcolor"),
    col: names("span width"),
    colgroup: names("span width"),
    tr: names("align valign bgcolor"),
    td: names("colspan rowspan width align valign bgcolor"),
    th: names("colspan rowspan width align valign bgcolor"),
    font: names("color"),
    ol: names("start type"),
    li: names("value"),
};
const aligned = names("p div h1 h2 h3 h4 h5 h6");

/** Say what holds without them. */
const defaults = names("align=left start=1 type=1 dir=ltr");

export function mayHave(element: string, attribute: string, value: string): boolean {
    if (defaults.has(`${attribute}=${value.toLowerCase()}`)) return false;
    if (attribute === "dir" || (attribute === "align" && aligned.has(element))) return true;
    if (element === "font" && isPlainColour(value)) return false;
    return attributes[element]?.has(attribute) ?? false;
}

export function kindOf(element: string): Kind {
    if (/^h[1-6]$/.test(element)) return "heading";
    if (element === "td" || element === "th") return "cell";
    if (/^[uo]l$|^li$/.test(element)) return "list";
    if (element === "a") return "link";
    if (element === "img") return "picture";
    if (/^(?:table|t.*|col.*|caption)$/.test(element)) return "table";
    return blocks.has(element) ? "block" : "inline";
}

export const isBlockNode = (node: Node | null): boolean =>
    node?.nodeType === Node.ELEMENT_NODE && blocks.has((node as Element).localName);
