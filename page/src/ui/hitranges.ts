// Paints hits by the CSS Custom Highlight API: the engine draws ranges in the colours of the rule
// "::highlight(search-hit)" in note.css.

import type { Brush, Hit } from "../note/highlight";

const name = "search-hit";

/** What the type library of the compiler leaves out. */
interface RangeSet {
    add(range: AbstractRange): void;
    delete(range: AbstractRange): void;
}
interface Registry {
    set(name: string, ranges: RangeSet): void;
    delete(name: string): void;
}
interface HighlightView {
    CSS?: { highlights?: Registry };
    Highlight: new () => RangeSet;
}

export class HitRanges implements Brush {
    private readonly painted: RangeSet;
    private readonly ranges = new Map<Hit, StaticRange>();

    /** Null where the engine has no such thing. */
    static open(view: Window & typeof globalThis): HitRanges | null {
        const registry = (view as unknown as HighlightView).CSS?.highlights;
        return registry ? new HitRanges(view, registry) : null;
    }

    private constructor(
        private readonly view: Window & typeof globalThis,
        private readonly registry: Registry,
    ) {
        this.painted = new (view as unknown as HighlightView).Highlight();
        registry.set(name, this.painted);
    }

    show(hits: Hit[]): void {
        for (const hit of hits) {
            if (this.ranges.has(hit)) continue;
            try {
                // Live ranges would slow down every edit.
                const range = new this.view.StaticRange(hit.place);
                this.painted.add(range);
                this.ranges.set(hit, range);
            } catch {
                // One that cannot be painted is missing; the others are not.
            }
        }
    }

    hide(hits: Hit[]): void {
        for (const hit of hits) {
            const range = this.ranges.get(hit);
            if (range) this.painted.delete(range);
            this.ranges.delete(hit);
        }
    }

    close(): void {
        this.registry.delete(name);
    }
}
