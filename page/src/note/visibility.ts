// Whether text is shown: neither "display: none" nor "visibility: hidden" in its element or in any
// around it. The engine answers by computed styles, which costs a layout wherever there was none
// yet; so it is asked only where names and attributes leave a doubt.

import type { Place } from "./find";
import { plainElements } from "./harmless";

const doubtful = [
    `:not(${[...plainElements].join()})`,
    "[hidden]",
    ...["display", "visibility", "all", "\\\\"].map((word) => `[style*="${word}" i]`),
].join();

/** Its answers hold for a note as it stands now. */
export class Visibility {
    private readonly known = new Map<Element, boolean>();
    private readonly sheets: boolean;

    constructor(
        private readonly doc: Document,
        private readonly hidesNothing = false,
    ) {
        this.sheets = doc.styleSheets.length > 1; // One is the page's own.
    }

    /** For many questions: a look at the whole note may answer them all. */
    static ofWholeNote(doc: Document): Visibility {
        return new Visibility(doc, doc.body.querySelector(doubtful) === null);
    }

    /** Those of `places` that are shown: where the element is that holds all of it. */
    shown(places: Place[]): Place[] {
        if (this.hidesNothing) return places;
        return places.filter(({ startContainer, endContainer }) => {
            const element = elementAround(startContainer, endContainer);
            return element !== null && this.shows(element);
        });
    }

    /** Kept: an element that makes itself visible inside a hidden one still counts as hidden. */
    private shows(element: Element): boolean {
        const path: Element[] = [];
        let shown: boolean | undefined;
        for (let at: Element | null = element; at; at = at.parentElement) {
            shown = this.known.get(at);
            if (shown !== undefined) break;
            path.push(at);
        }
        shown ??= true;
        for (const each of path.reverse()) {
            shown = shown && this.showsItself(each);
            this.known.set(each, shown);
        }
        return shown;
    }

    private showsItself(element: Element): boolean {
        if (!this.sheets && !element.matches(doubtful)) return true;
        const { display, visibility } = this.doc.defaultView!.getComputedStyle(element);
        return display !== "none" && visibility !== "hidden";
    }
}

function elementAround(start: Node, end: Node): Element | null {
    let around = start.parentElement;
    if (start !== end) while (around && !around.contains(end)) around = around.parentElement;
    return around;
}
