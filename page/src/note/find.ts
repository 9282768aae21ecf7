// Finds a word in runs of text: upper and lower case told apart, inside words too, and overlapping.

import { keepsBlanks, Run } from "./textruns";

/** A stretch of text: ends inside the two text nodes. */
export interface Place {
    startContainer: Text;
    startOffset: number;
    endContainer: Text;
    endOffset: number;
}

const blanks = "\\t\\n\\f\\r ";
/** A blank as it is shown: one for all that stand between two other characters; or a fixed one. */
const shownBlank = `(?:(?<=[^${blanks}])[${blanks}]+(?=[^${blanks}])|\\u00a0)`;
const keptBlank = "[ \\u00a0]";

/** Where a match at or behind `from` begins and ends, or null. */
type Search = (text: string, from: number) => [number, number] | null;

export class Finder {
    private readonly shown: Search;
    private readonly kept: Search;

    constructor(word: string) {
        // A word without blanks is the usual one, and a plain search the quickest.
        const plain = !/[\t\n\f\r \u00a0]/.test(word);
        this.shown = plain ? literally(word) : byPattern(word, /[\t\n\f\r \u00a0]/, shownBlank);
        this.kept = plain ? this.shown : byPattern(word, /[ \u00a0]/, keptBlank);
    }

    /** The hits in a run, in the order of the text. */
    find({ block, texts, text }: Run): Place[] {
        const search = this.shown !== this.kept && keepsBlanks(block) ? this.kept : this.shown;
        const places: Place[] = [];
        let hit = search(text, 0);
        if (!hit) return places;
        const placeOf = placesIn(texts);
        // One character on, not the length of the hit: the next one may overlap it.
        for (; hit; hit = search(text, hit[0] + 1))
            places.push(placeOf(hit[0], hit[1]));
        return places;
    }
}

function literally(word: string): Search {
    return (text, from) => {
        const start = text.indexOf(word, from);
        return start < 0 ? null : [start, start + word.length];
    };
}

function byPattern(word: string, blank: RegExp, pattern: string): Search {
    const source = [...word]
        .map((c) => (blank.test(c) ? pattern : c.replace(/[\\^$.*+?()[\]{}|/-]/g, "\\$&")))
        .join("");
    const expression = new RegExp(source, "g");
    return (text, from) => {
        expression.lastIndex = from;
        const match = expression.exec(text);
        return match && [match.index, match.index + match[0].length];
    };
}

/** Turns growing offsets of the joined texts into places. */
function placesIn(texts: Text[]): (start: number, end: number) => Place {
    let first = 0; // The text that holds the start.
    let before = 0; // What stands before it.
    return (start, end) => {
        while (start >= before + texts[first]!.length) before += texts[first++]!.length;
        let last = first;
        let beforeLast = before;
        while (end > beforeLast + texts[last]!.length) beforeLast += texts[last++]!.length;
        return {
            startContainer: texts[first]!,
            startOffset: start - before,
            endContainer: texts[last]!,
            endOffset: end - beforeLast,
        };
    };
}
