// Paints hits where the engine cannot do it by itself: boxes over the frame, outside the note's
// document, each with its piece of the text in it. They are drawn anew when the note may have moved
// under them.

import type { EditFrame } from "../edit/frame";
import type { Brush, Hit } from "../note/highlight";
import { element } from "./dom";

/** A piece of a hit on one line. */
interface Piece {
    text: string;
    box: DOMRect;
}

/** What the look of text hangs on, beside its font. */
const inherited = [
    "letter-spacing",
    "word-spacing",
    "text-transform",
    "font-kerning",
    "font-feature-settings",
    "direction",
    "writing-mode",
    "tab-size",
];

export class HitOverlay implements Brush {
    private readonly layer = element("div", { class: "hits", "aria-hidden": "true" });
    private readonly shown = new Set<Hit>();
    private readonly doc: Document;
    private readonly listening = new AbortController();
    private readonly size = new ResizeObserver(() => this.drawSoon());
    private waiting = false;

    constructor(frame: EditFrame) {
        this.doc = frame.document;
        frame.element.after(this.layer);
        const { signal } = this.listening;
        const draw = () => this.drawSoon();
        // Captured: boxes in the note that scroll, and pictures that arrive, tell nobody else.
        for (const moving of ["scroll", "load", "error", "input"])
            this.doc.addEventListener(moving, draw, { capture: true, signal });
        this.doc.defaultView!.addEventListener("resize", draw, { signal });
        this.size.observe(this.doc.body);
    }

    show(hits: Hit[]): void {
        for (const hit of hits) this.shown.add(hit);
        this.drawSoon();
    }

    hide(hits: Hit[]): void {
        for (const hit of hits) this.shown.delete(hit);
        this.drawSoon();
    }

    close(): void {
        this.listening.abort();
        this.size.disconnect();
        this.shown.clear();
        this.layer.remove();
    }

    private drawSoon(): void {
        if (this.waiting) return;
        this.waiting = true;
        requestAnimationFrame(() => {
            this.waiting = false;
            this.draw();
        });
    }

    private draw(): void {
        const { clientWidth, clientHeight } = this.doc.documentElement;
        this.layer.style.width = `${clientWidth}px`;
        this.layer.style.height = `${clientHeight}px`;
        const screen = new DOMRect(0, 0, clientWidth, clientHeight);
        const boxes: HTMLElement[] = [];
        for (const hit of this.shown) {
            try {
                boxes.push(...boxesOf(hit, screen));
            } catch {
                // One that cannot be painted is missing; the others are not.
            }
        }
        this.layer.replaceChildren(...boxes);
    }
}

function boxesOf(hit: Hit, screen: DOMRect): HTMLElement[] {
    const boxes: HTMLElement[] = [];
    for (const text of textsOf(hit)) {
        const parent = text.node.parentElement!;
        for (const piece of piecesOf(text.node, text.start, text.end)) {
            const clip = overlap(piece.box, clipAround(parent, screen));
            if (clip) boxes.push(boxOf(piece, clip, parent));
        }
    }
    return boxes;
}

interface Stretch {
    node: Text;
    start: number;
    end: number;
}

function textsOf({ place }: Hit): Stretch[] {
    const { startContainer, startOffset, endContainer, endOffset } = place;
    if (!startContainer.isConnected || !endContainer.isConnected) return [];
    if (startContainer === endContainer)
        return [{ node: startContainer, start: startOffset, end: endOffset }];
    const stretches: Stretch[] = [];
    const doc = startContainer.ownerDocument;
    const walker = doc.createTreeWalker(doc.body, NodeFilter.SHOW_TEXT);
    walker.currentNode = startContainer;
    for (let node = startContainer; ; node = walker.nextNode() as Text) {
        const start = node === startContainer ? startOffset : 0;
        const end = node === endContainer ? endOffset : node.length;
        stretches.push({ node, start, end });
        if (node === endContainer) return stretches;
    }
}

/** The lines that a stretch of text runs over. */
function piecesOf(node: Text, start: number, end: number): Piece[] {
    const range = node.ownerDocument.createRange();
    const boxOf = (from: number, to: number): DOMRect | undefined => {
        range.setStart(node, Math.min(from, node.length));
        range.setEnd(node, Math.min(to, node.length));
        return range.getClientRects()[0];
    };
    const lines = new Map<number, { from: number; to: number }>();
    for (let at = start; at < end; at++) {
        const box = boxOf(at, at + 1);
        if (!box || box.width === 0) continue;
        const line = lines.get(box.top);
        if (line) line.to = at + 1;
        else lines.set(box.top, { from: at, to: at + 1 });
    }
    const pieces: Piece[] = [];
    for (const { from, to } of lines.values()) {
        const box = boxOf(from, to);
        if (box) pieces.push({ text: node.data.slice(from, to), box });
    }
    return pieces;
}

/** What of the screen the boxes around `element` leave for it. */
function clipAround(element: Element, screen: DOMRect): DOMRect {
    let clip = screen;
    const { body } = element.ownerDocument;
    for (let at: Element | null = element; at && at !== body; at = at.parentElement) {
        const style = getComputedStyle(at);
        if (style.display === "inline" || style.overflow === "visible") continue;
        clip = overlap(clip, at.getBoundingClientRect()) ?? new DOMRect();
    }
    return clip;
}

function overlap(a: DOMRect, b: DOMRect): DOMRect | null {
    const left = Math.max(a.left, b.left);
    const top = Math.max(a.top, b.top);
    const width = Math.min(a.right, b.right) - left;
    const height = Math.min(a.bottom, b.bottom) - top;
    return width > 0 && height > 0 ? new DOMRect(left, top, width, height) : null;
}

function boxOf({ text, box }: Piece, clip: DOMRect, parent: Element): HTMLElement {
    const made = element("span", { class: "hit" });
    const look = getComputedStyle(parent);
    const keepsBlanks = look.whiteSpace.startsWith("pre") || look.whiteSpace === "break-spaces";
    made.textContent = keepsBlanks ? text : text.replace(/[\t\n\f\r ]+/g, " ");
    made.style.font = look.font;
    for (const name of inherited) made.style.setProperty(name, look.getPropertyValue(name));
    // Whole pixels: between two pieces side by side the paper would shine through.
    const left = Math.floor(box.left);
    Object.assign(made.style, {
        left: `${left}px`,
        paddingLeft: `${box.left - left}px`,
        top: `${box.top}px`,
        width: `${Math.ceil(box.right) - left}px`,
        height: `${box.height}px`,
        lineHeight: `${box.height}px`,
    });
    const inset = [clip.top - box.top, box.right - clip.right, box.bottom - clip.bottom]
        .concat(clip.left - box.left)
        .map((length) => `${length}px`);
    made.style.clipPath = `inset(${inset.join(" ")})`;
    return made;
}
