// Scrolls a stretch of the note's text to the top of the view.

import type { Place } from "./find";

/** Room above it and beside it. */
const margin = 12;

export function scrollTo(doc: Document, place: Place): void {
    const range = doc.createRange();
    range.setStart(place.startContainer, place.startOffset);
    range.setEnd(place.endContainer, place.endOffset);
    if (range.getClientRects().length === 0) return; // There is nothing of it to be seen.
    const root = doc.scrollingElement ?? doc.documentElement;
    for (let at = place.startContainer.parentElement; at; at = at.parentElement) {
        if (at.scrollHeight <= at.clientHeight && at.scrollWidth <= at.clientWidth) continue;
        const text = range.getBoundingClientRect();
        const box = at === root ? new DOMRect() : at.getBoundingClientRect();
        at.scrollTop += text.top - box.top - margin;
        if (text.left < box.left || text.right > box.left + at.clientWidth)
            at.scrollLeft += text.left - box.left - margin;
    }
}
