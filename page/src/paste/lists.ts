// Lists. Word processors paste the items of a list as paragraphs that tell their level and carry
// their number as text; here these become real lists.

import type { Sheet } from "./sheet";
import type { ListPlace } from "./styles";

interface OpenList extends ListPlace {
    element: Element;
    lastItem: Element;
}

interface Numbering {
    name: "ul" | "ol";
    type: string;
    start: number;
}

const types: Record<string, string> = {
    "alpha-lower": "a",
    "alpha-upper": "A",
    "roman-lower": "i",
    "roman-upper": "I",
};

const romanDigits: Record<string, number> = { i: 1, v: 5, x: 10, l: 50, c: 100, d: 500, m: 1000 };

function roman(text: string): number {
    const digits = [...text.toLowerCase()].map((digit) => romanDigits[digit] ?? 0);
    return digits.reduce(
        (sum, digit, i) => sum + (digit < (digits[i + 1] ?? 0) ? -digit : digit),
        0,
    );
}

/** What kind of list a number or bullet in front of an item belongs to. */
function numberingOf(marker: string, format: string): Numbering {
    // Of "1.2.3" the last part counts.
    const label = /([\p{L}\p{N}]+)[^\p{L}\p{N}]*$/u.exec(marker.slice(0, 40))?.[1] ?? "";
    const told = types[format];
    const bare = label === marker && !/^\d+$/.test(label);
    if (format === "bullet" || label === "" || (bare && !told))
        return { name: "ul", type: "", start: 1 };
    if (/^\d+$/.test(label)) return { name: "ol", type: "", start: Number(label.slice(0, 9)) };
    const isRoman = told ? /[iI]/.test(told) : /^(?:[ivx]{2,}|i)$/i.test(label);
    if (isRoman)
        return { name: "ol", type: label === label.toUpperCase() ? "I" : "i", start: roman(label) };
    if (/^[a-z]$/i.test(label)) {
        const upper = label === label.toUpperCase();
        const start = label.toLowerCase().charCodeAt(0) - 96;
        return { name: "ol", type: upper ? "A" : "a", start };
    }
    return { name: "ol", type: told ?? "", start: 1 };
}

/** Puts paragraphs that are items into lists, one after the other in the order of the document. */
export class ListBuilder {
    private root: Element | null = null;
    private open: OpenList[] = [];

    constructor(private readonly sheet: Sheet) {}

    /** Replaces `paragraph`, the item, by its place in a list. */
    add(paragraph: Element, place: ListPlace, marker: string): void {
        if (!this.root || paragraph.previousSibling !== this.root) this.open = [];
        while (this.open.length > 0 && !this.belongs(place)) this.open.pop();
        const item = paragraph.ownerDocument.createElement("li");
        const top = this.open.at(-1);
        if (top?.level === place.level) {
            top.element.append(item);
            top.lastItem = item;
            paragraph.remove();
        } else {
            this.start(paragraph, item, place, marker);
        }
        const style = paragraph.getAttribute("style");
        if (style) item.setAttribute("style", style);
        while (paragraph.firstChild) item.append(paragraph.firstChild);
    }

    /** Whether an item can stand in, or under, the innermost open list. */
    private belongs(place: ListPlace): boolean {
        const top = this.open.at(-1)!;
        if (place.level !== top.level) return place.level > top.level;
        // Below the first level programs number with several names what is one list.
        return place.level > 1 || place.numbering === top.numbering;
    }

    private start(paragraph: Element, item: Element, place: ListPlace, marker: string): void {
        const format = this.sheet.formatOf(place.list, place.level);
        const numbering = numberingOf(marker, format);
        const element = paragraph.ownerDocument.createElement(numbering.name);
        if (numbering.type) element.setAttribute("type", numbering.type);
        if (numbering.start > 1) element.setAttribute("start", String(numbering.start));
        element.append(item);
        const around = this.open.at(-1);
        if (around) {
            around.lastItem.append(element);
            paragraph.remove();
        } else {
            paragraph.replaceWith(element);
            this.root = element;
        }
        this.open.push({ ...place, element, lastItem: item });
    }
}

/** A list that stands directly in a list belongs to the item before it. */
export function nestInItem(list: Element): void {
    const item = list.previousElementSibling;
    if (item?.localName === "li" && /^[ou]l$/.test(list.parentElement!.localName))
        item.append(list);
}
