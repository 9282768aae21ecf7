// The hits of a search word, painted over the note. Nothing of the note changes: a brush paints
// from outside. The hits of a painting have numbers, by which the library takes them away again.
//
// Only the hits near the screen are given to the brush: the engine goes through all painted ranges
// after each change of the note, and lays out what it would not have to otherwise.

import type { Editor } from "../editor";
import { HitOverlay } from "../ui/hitoverlay";
import { HitRanges } from "../ui/hitranges";
import { afterPaint } from "./afterpaint";
import { Finder, Place } from "./find";
import { scrollTo } from "./scroll";
import { blockAround, blocksIn, eachRun, Run } from "./textruns";
import { Visibility } from "./visibility";

/** What paints. It knows a hit by its object. */
export interface Brush {
    show(hits: Hit[]): void;
    hide(hits: Hit[]): void;
    /** Hides all; the brush is not used again. */
    close(): void;
}

export interface Hit {
    painting: Painting;
    place: Place;
    removed: boolean;
}

/** The hits of one search. */
interface Painting {
    finder: Finder;
    /** By their numbers. */
    hits: Hit[];
    /** How many of them are not removed. */
    left: number;
}

/** The note as it was at a revision. */
interface Reading {
    body: HTMLElement;
    revision: number;
    runs: Run[];
    visibility: Visibility;
}

/** More of them tell nobody anything, and are too much for the engine. */
const mostHits = 1 << 20;
/** So far beyond the edges of the screen hits are painted. */
const vicinity = "50%";

export class Highlights {
    private readonly paintings = new Map<number, Painting>();
    /** The hits of each block that has any. */
    private readonly blocks = new Map<Element, Hit[]>();
    private readonly near = new Set<Element>();
    private readonly edits = new MutationObserver((records) => this.edited(records));
    private brush: Brush | null = null;
    private screen: IntersectionObserver | null = null;
    private read: Reading | null = null;

    constructor(private readonly editor: Editor) {
        editor.frame.onDocument(() => {
            this.clear();
            this.read = null;
        });
    }

    /** Paints the hits of `word` and scrolls to the first one. Returns how many there are. */
    paint(id: number, word: string): number {
        this.editor.finishLoading();
        const { runs, visibility } = this.readNote();
        const painting: Painting = { finder: new Finder(word), hits: [], left: 0 };
        for (const run of runs) {
            const found = visibility.shown(painting.finder.find(run));
            if (found.length > 0) this.add(painting, run.block, found);
            if (painting.hits.length >= mostHits) break;
        }
        painting.left = painting.hits.length;
        if (painting.left === 0) return 0;
        this.paintings.set(id, painting);
        scrollTo(this.editor.frame.document, painting.hits[0]!.place);
        this.watch();
        return painting.left;
    }

    /** Takes `count` hits of a painting away, from number `first` on. */
    remove(id: number, first: number, count: number): void {
        const painting = this.paintings.get(id);
        if (!painting) return;
        if (first === 0 && count >= painting.hits.length) {
            painting.left = 0; // The usual case, and no look at each of thousands.
        } else {
            for (const hit of painting.hits.slice(first, first + count)) {
                if (!hit.removed) painting.left--;
                hit.removed = true;
            }
        }
        if (painting.left === 0) this.paintings.delete(id);
        if (this.paintings.size === 0) return this.clear();
        for (const [block, hits] of [...this.blocks]) {
            const kept = hits.filter((hit) => !hit.removed && hit.painting.left > 0);
            if (kept.length < hits.length) this.set(block, kept);
        }
    }

    /** The note, read once until it changes: whoever searches does so again. */
    private readNote(): Reading {
        const { document, body } = this.editor.frame;
        const revision = this.editor.content.currentRevision();
        if (this.read?.body !== body || this.read.revision !== revision) {
            const runs: Run[] = [];
            eachRun(body, true, (run) => runs.push(run));
            this.read = { body, revision, runs, visibility: Visibility.ofWholeNote(document) };
        }
        return this.read;
    }

    private add(painting: Painting, block: Element, places: Place[]): void {
        const hits = this.blocks.get(block) ?? [];
        this.blocks.set(block, hits);
        for (const place of places.slice(0, mostHits - painting.hits.length)) {
            const hit = { painting, place, removed: false };
            painting.hits.push(hit);
            hits.push(hit);
        }
    }

    private clear(): void {
        const { screen } = this;
        // Letting go of thousands of blocks takes a while, and the library is waiting.
        if (screen) setTimeout(() => screen.disconnect());
        this.edits.disconnect();
        this.brush?.close();
        this.screen = this.brush = null;
        this.paintings.clear();
        this.blocks.clear();
        this.near.clear();
    }

    private watch(): void {
        const { frame } = this.editor;
        const doc = frame.document;
        this.brush ??= HitRanges.open(doc.defaultView!) ?? new HitOverlay(frame);
        this.edits.observe(doc, { subtree: true, childList: true, characterData: true });
        const screen = (this.screen ??= new IntersectionObserver(
            (entries, from) => from === this.screen && entries.forEach((entry) => this.seen(entry)),
            { root: doc, rootMargin: vicinity },
        ));
        this.showOnScreen(doc.defaultView!.innerHeight);
        // Thousands of blocks are reported at once: not before what is on the screen is painted.
        afterPaint(() => {
            if (screen === this.screen)
                for (const block of this.blocks.keys()) this.observe(block);
        });
    }

    private observe(block: Element): void {
        // Without a box of its own it is nowhere.
        const style = block.getAttribute("style");
        if (style?.includes("contents") && getComputedStyle(block).display === "contents")
            this.approach(block);
        else this.screen!.observe(block);
    }

    /** Shows the hits from the first one to the end of the screen, in time for the next frame. */
    private showOnScreen(height: number): void {
        this.near.forEach((block) => this.approach(block));
        for (const block of this.blocks.keys()) {
            const { top, bottom } = block.getBoundingClientRect();
            if (top > height) return;
            if (bottom >= 0) this.approach(block);
        }
    }

    private seen({ target, isIntersecting }: IntersectionObserverEntry): void {
        if (isIntersecting) this.approach(target);
        else if (this.near.delete(target)) this.brush!.hide(this.blocks.get(target) ?? []);
    }

    private approach(block: Element): void {
        const hits = this.blocks.get(block);
        if (!hits) return;
        this.near.add(block);
        this.brush!.show(hits);
    }

    private set(block: Element, hits: Hit[]): void {
        const near = this.near.has(block);
        if (near) this.brush!.hide(this.blocks.get(block) ?? []);
        if (hits.length === 0) {
            this.blocks.delete(block);
            this.near.delete(block);
            this.screen!.unobserve(block);
        } else {
            this.blocks.set(block, hits);
            if (near) this.brush!.show(hits);
            else this.observe(block);
        }
    }

    /** Hits do not follow what the user types: in blocks that changed they are found again. */
    private edited(records: MutationRecord[]): void {
        const changed = new Set<Element>();
        for (const { target, addedNodes } of records) {
            const around = blockAround(target);
            if (around) changed.add(around);
            for (const node of addedNodes)
                if (node.nodeType === Node.ELEMENT_NODE && node.isConnected)
                    for (const block of blocksIn(node as Element)) changed.add(block);
        }
        this.read = null;
        const { document, body } = this.editor.frame;
        if (records.some(({ removedNodes }) => removedNodes.length > 0))
            for (const block of [...this.blocks.keys()])
                if (!block.isConnected) this.set(block, []);
        const visibility = new Visibility(document);
        for (const block of changed) if (body.contains(block)) this.findAgain(block, visibility);
    }

    private findAgain(block: Element, visibility: Visibility): void {
        const before = this.blocks.get(block) ?? [];
        const hits: Hit[] = [];
        for (const painting of this.paintings.values()) {
            const known = before.filter((hit) => hit.painting === painting).values();
            eachRun(block, false, (run) => {
                for (const place of visibility.shown(painting.finder.find(run))) {
                    const hit: Hit | undefined = known.next().value;
                    if (hit) hits.push(Object.assign(hit, { place }));
                    // What has come in by the edit has no number, and goes with the last that has one.
                    else if (painting.left === painting.hits.length)
                        hits.push({ painting, place, removed: false });
                }
            });
        }
        if (before.length > 0 || hits.length > 0) this.set(block, hits);
    }
}
