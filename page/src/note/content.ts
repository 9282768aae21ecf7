// The note's text as native code sees it. A note that was loaded and left alone, or changed and undone,
// comes back as it was stored, byte for byte; only an edit is serialised.

import { EditFrame } from "../edit/frame";
import { nameOldAttachments } from "./attachments";
import { escaped, Pieces } from "./pieces";
import { plainText } from "./plaintext";

/** What the engine, or this page, leaves in a note without anything in it. */
const bare = new Set(["", "<br>", "<div><br></div>"]);
const longestBare = 20;

function lengthOf(parts: string[]): number {
    return parts.reduce((length, part) => length + part.length, 0);
}

/** No part at all where there is nothing in the note. */
function emptied(parts: string[]): string[] {
    return lengthOf(parts) <= longestBare && bare.has(parts.join("")) ? [] : parts;
}

function equal(some: string[], others: string[]): boolean {
    return lengthOf(some) === lengthOf(others) && some.join("") === others.join("");
}

export class Content {
    private stored = "";
    private revision = 0;
    /** Whether the frame's nodes are just what the stored text says. */
    private faithful = false;
    /** The note's HTML as it was loaded, taken before the first change; escaped for JSON. */
    private baseline: string | null = null;
    private answered: { revision: number; parts: string[] } | null = null;
    private readonly pieces: Pieces;
    private readonly observer: MutationObserver;
    private readonly listeners: (() => void)[] = [];

    constructor(private readonly frame: EditFrame) {
        this.pieces = new Pieces(() => frame.body);
        this.observer = new MutationObserver((records) => this.note(records));
    }

    /** `listener` runs after each change of the note, some time after the change. */
    onChange(listener: () => void): void {
        this.listeners.push(listener);
    }

    /** Another note was given to the page; its text stands in `stored` until an edit. */
    load(html: string): void {
        this.observer.disconnect();
        this.pieces.forget();
        this.stored = html;
        this.revision = 0;
        this.faithful = false;
        this.baseline = null;
        this.answered = null;
    }

    /** The note stands in the frame, `faithful` to the stored text or not: changes count. */
    watch(faithful = this.faithful): void {
        this.faithful = faithful;
        this.observer.disconnect();
        this.observer.observe(this.frame.body, {
            subtree: true,
            childList: true,
            attributes: true,
            characterData: true,
        });
    }

    /** Changes so far; equal numbers mean an unchanged note. */
    currentRevision(): number {
        this.note(this.observer.takeRecords());
        return this.revision;
    }

    /** To be called before anything changes the note. */
    willChange(): void {
        if (this.baseline !== null || this.currentRevision() > 0) return;
        nameOldAttachments(this.frame.body);
        // No change of the user's, so none that counts; but what was written out may lack the names.
        this.pieces.note(this.observer.takeRecords());
        this.baseline = this.pieces.html().join("");
    }

    /** Whether there is nothing in the note at all, not even a picture. */
    isBare(): boolean {
        const { childNodes, firstChild } = this.frame.body;
        if (childNodes.length > 1 || (firstChild?.childNodes.length ?? 0) > 1) return false;
        this.currentRevision();
        return emptied(this.pieces.html()).length === 0;
    }

    /** The note's HTML as it stands inside a JSON text, without the quotes. */
    escapedHtml(): string {
        this.currentRevision();
        return this.htmlParts().join("");
    }

    /**
     * The reply to a pull, a JSON text in parts. An unchanged note costs no more than handing them over,
     * and an edit what it takes to write a few of them anew: joined, a large note would take its time
     * in each reply, and the collector's soon after.
     */
    reply(): string[] {
        const revision = this.currentRevision();
        if (this.answered?.revision !== revision) {
            const parts = [
                '{"result":true,"errmsg":"","ehtml":"',
                ...this.htmlParts(),
                '","etext":"',
                ...this.textParts(),
                '"}',
            ];
            this.answered = { revision, parts };
        }
        return this.answered.parts;
    }

    /** The parts of the note's HTML as they stand inside a JSON text, without the quotes. */
    private htmlParts(): string[] {
        if (this.revision > 0) {
            const parts = emptied(this.pieces.html());
            if (this.baseline === null || !equal(parts, emptied([this.baseline]))) return parts;
        }
        return [escaped(this.stored)];
    }

    /** The parts of the plain text, likewise. */
    private textParts(): string[] {
        if (this.revision > 0 || this.faithful) return this.pieces.text();
        // As the engine reads the stored text, where nothing of it is loaded or run.
        return [escaped(plainText(new DOMParser().parseFromString(this.stored, "text/html").body))];
    }

    private note(records: MutationRecord[]): void {
        const body = this.frame.body;
        const changes = records.filter(
            (record) => record.type !== "attributes" || record.target !== body,
        );
        if (changes.length === 0) return;
        this.pieces.note(changes);
        this.revision++;
        this.listeners.forEach((listener) => listener());
    }
}
