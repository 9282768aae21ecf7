// The character limit: code points of the note's text without line breaks. Input beyond it is refused
// with a message; a note that is over it when loaded stays whole.

import type { Editor } from "../editor";
import { codePoints, countCharacters } from "../note/plaintext";

const typing = new Set([
    "insertText",
    "insertReplacementText",
    "insertTranspose",
    "insertFromYank",
]);

export class Limit {
    private max = Infinity;
    /** No fewer than the note has; counting a large note at each key would cost too much. */
    private atMost = Infinity;
    private counted: { revision: number; characters: number } | null = null;

    constructor(private readonly editor: Editor) {
        editor.frame.onDocument((doc) => {
            doc.addEventListener("beforeinput", (event) => this.beforeInput(event));
            doc.addEventListener("compositionend", (event) => this.compositionEnd(event));
        });
    }

    set(max: number): void {
        this.max = max;
    }

    /** The note was changed in a way that nobody counted. */
    uncounted(): void {
        this.atMost = Infinity;
    }

    /** Whether `added` characters may take the place of the selection; says so when they may not. */
    admits(added: number): boolean {
        return this.fits(added, () => this.selectedCharacters());
    }

    /** Whether the selection may stand in the note a second time; says so when it may not. */
    admitsCopy(): boolean {
        const range = this.editor.selection.range();
        if (!range || range.collapsed) return true;
        return this.fits(countCharacters(this.editor.selection.fragment(range)), () => 0);
    }

    private fits(added: number, replaced: () => number): boolean {
        if (added === 0 || this.atMost + added <= this.max) {
            this.atMost += added;
            return true;
        }
        const characters = this.characters();
        const room = this.max - characters + replaced();
        if (added <= room) {
            this.atMost = characters + added;
            return true;
        }
        this.tell();
        return false;
    }

    private characters(): number {
        const revision = this.editor.content.currentRevision();
        if (this.counted?.revision !== revision)
            this.counted = { revision, characters: countCharacters(this.editor.frame.body) };
        return this.counted.characters;
    }

    private selectedCharacters(): number {
        const range = this.editor.selection.range();
        return !range || range.collapsed ? 0 : codePoints(range.toString());
    }

    private beforeInput(event: InputEvent): void {
        if (typing.has(event.inputType)) {
            const text = event.data ?? event.dataTransfer?.getData("text/plain") ?? "";
            if (!this.admits(codePoints(text))) event.preventDefault();
        } else if (event.inputType !== "insertCompositionText") {
            this.uncounted();
        }
    }

    /** A composition is never cut while it runs: what is too much goes when it ends. */
    private compositionEnd(event: CompositionEvent): void {
        this.uncounted();
        const excess = this.characters() - this.max;
        if (excess <= 0 || event.data === "") return;
        this.tell();
        const kept = wholeCharacters(event.data, codePoints(event.data) - excess);
        const selection = this.editor.frame.document.getSelection()!;
        const { focusNode, focusOffset } = selection;
        const units = event.data.length - kept.length;
        if (focusNode?.nodeType !== Node.TEXT_NODE || focusOffset < units) return;
        selection.setBaseAndExtent(focusNode, focusOffset - units, focusNode, focusOffset);
        this.editor.exec("delete");
    }

    private tell(): void {
        this.editor.toast(this.editor.strings.overLimit(this.max));
    }
}

/** As many characters of `text` as a person sees them as fit into `room` code points. */
function wholeCharacters(text: string, room: number): string {
    let kept = "";
    let used = 0;
    for (const { segment } of new Intl.Segmenter(undefined, { granularity: "grapheme" }).segment(
        text,
    )) {
        used += codePoints(segment);
        if (used > room) break;
        kept += segment;
    }
    return kept;
}
