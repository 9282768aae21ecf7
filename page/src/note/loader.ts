// Puts a stored note into the frame: what fills the first screen at once, the rest in slices between
// which the engine may paint. The engine's own parser is fed piece by piece, in a document that is
// not shown, so that a piece may end anywhere; a top-level node is taken over when it is closed. The
// frame gets the nodes in portions that double: each costs the engine a look at all there are.

import { sanitiseStored } from "./sanitise";

const firstPiece = 64 * 1024;
const laterPiece = 32 * 1024;
const sliceMilliseconds = 12;

export class Loader {
    private parsing: Document;
    private readonly waiting = document.createDocumentFragment();
    private position = 0;
    private shownUntil = 0;
    private preview: ChildNode[] = [];
    private stopped = false;
    private faithful = true;

    /** `finished` is told when the whole note stands in `target`, and whether just as the text has it. */
    constructor(
        private readonly html: string,
        private readonly target: HTMLElement,
        private readonly finished: (faithful: boolean) => void,
    ) {
        this.parsing = document.implementation.createHTMLDocument("");
        this.parsing.open();
        this.parsing.write("<!DOCTYPE html><body>");
    }

    get complete(): boolean {
        return this.stopped;
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
        while (!this.stopped) this.step();
    }

    /** Another note takes this one's place. */
    cancel(): void {
        this.release();
    }

    /** What was parsed is given back: the frame has its nodes now. */
    private release(): void {
        this.stopped = true;
        this.parsing = document.implementation.createHTMLDocument("");
    }

    private slice(): void {
        const start = performance.now();
        while (!this.stopped && performance.now() - start < sliceMilliseconds) this.step();
        if (!this.stopped) setTimeout(() => this.slice());
    }

    private step(): void {
        this.feed(laterPiece);
        if (this.position >= this.html.length) this.end();
        else if (this.position > 2 * this.shownUntil) this.show();
    }

    private feed(length: number): void {
        this.parsing.write(this.html.slice(this.position, this.position + length));
        this.position += length;
        const rest = this.position < this.html.length ? this.parsing.body.lastChild : null;
        this.takeUntil(rest);
    }

    private end(): void {
        this.parsing.close();
        this.takeUntil(null);
        this.show();
        this.release();
        this.finished(this.faithful);
    }

    /** Takes over the closed nodes: all before `open`. */
    private takeUntil(open: ChildNode | null): void {
        const body = this.parsing.body;
        if (body.firstChild === open) return;
        const container = this.parsing.createElement("div");
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
        const open = this.parsing.body.lastChild;
        if (!open) return;
        const container = this.parsing.createElement("div");
        container.append(open.cloneNode(true));
        sanitiseStored(container);
        this.preview = [...container.childNodes];
        this.target.append(...this.preview);
    }
}

/** Runs `step` once the engine has painted; soon in any case, for a page that is not visible. */
function afterPaint(step: () => void): void {
    let ran = false;
    const once = () => {
        if (!ran) step();
        ran = true;
    };
    requestAnimationFrame(() => setTimeout(once));
    setTimeout(once, 250);
}
