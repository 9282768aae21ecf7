// Puts a stored note into the frame: what fills the first screen at once, the rest in slices between
// which the engine may paint. The engine's own parser is fed piece by piece, in a document that is
// not shown, so that a piece may end anywhere; a top-level node is taken over when it is closed. The
// frame gets the nodes in portions that double: each costs the engine a look at all there are.

import { afterPaint } from "./afterpaint";
import { sanitiseStored } from "./sanitise";

/** Several screens of text. */
const firstPiece = 32 * 1024;
const laterPiece = 32 * 1024;
const sliceMilliseconds = 12;

export class Loader {
    /** Null when everything in it has been taken over. */
    private parsing: Document | null;
    private readonly waiting = document.createDocumentFragment();
    private position = 0;
    private shownUntil = 0;
    private preview: ChildNode[] = [];
    private faithful = true;

    /** `finished` is told when the whole note stands in `target`, and whether just as the text has it. */
    constructor(
        private readonly html: string,
        private readonly target: HTMLElement,
        private readonly finished: (faithful: boolean) => void,
    ) {
        const parsing = document.implementation.createHTMLDocument("");
        parsing.open();
        parsing.write("<!DOCTYPE html><body>");
        this.parsing = parsing;
    }

    get complete(): boolean {
        return this.parsing === null;
    }

    /** Shows the first piece, and the rest slice by slice. */
    start(): void {
        this.feed(firstPiece);
        if (this.position >= this.html.length) {
            this.end();
            return;
        }
        if (this.waiting.hasChildNodes()) this.show();
        else this.showUnfinished();
        afterPaint(() => this.slice());
    }

    /** Loads the rest now. */
    finish(): void {
        while (!this.complete) this.step();
    }

    /** Another note takes this one's place. */
    cancel(): void {
        this.parsing = null;
    }

    private slice(): void {
        const start = performance.now();
        while (!this.complete && performance.now() - start < sliceMilliseconds) this.step();
        if (!this.complete) setTimeout(() => this.slice());
    }

    private step(): void {
        this.feed(laterPiece);
        if (this.position >= this.html.length) this.end();
        else if (this.position > 2 * this.shownUntil) this.show();
    }

    private feed(length: number): void {
        const { parsing } = this;
        if (!parsing) return;
        parsing.write(this.html.slice(this.position, this.position + length));
        this.position += length;
        const rest = this.position < this.html.length ? parsing.body.lastChild : null;
        this.takeUntil(parsing, rest);
    }

    private end(): void {
        const { parsing } = this;
        if (!parsing) return;
        parsing.close();
        this.takeUntil(parsing, null);
        this.show();
        this.parsing = null;
        this.finished(this.faithful);
    }

    /** Takes over the closed nodes: all before `open`. */
    private takeUntil({ body }: Document, open: ChildNode | null): void {
        if (body.firstChild === open) return;
        const container = body.ownerDocument.createElement("div");
        while (body.firstChild !== open) container.append(body.firstChild!);
        if (!sanitiseStored(container)) this.faithful = false;
        this.waiting.append(...container.childNodes);
    }

    private show(): void {
        this.shownUntil = this.position;
        if (!this.waiting.hasChildNodes()) return;
        this.preview.forEach((node) => node.remove());
        this.preview = [];
        this.target.append(this.waiting);
    }

    /** A note that is one single element, or one long text, shows what there is of it. */
    private showUnfinished(): void {
        const { parsing } = this;
        const open = parsing?.body.lastChild;
        if (!parsing || !open) return;
        const container = parsing.createElement("div");
        container.append(open.cloneNode(true));
        sanitiseStored(container);
        this.preview = [...container.childNodes];
        this.target.append(...this.preview);
    }
}
