// The draft: the note's text, sent beside the protocol while the user edits, so that a page that dies
// takes no more than the last second of typing with it.

import { channel } from "../bridge/native";
import type { Editor } from "../editor";

const shortestPause = 1000;

export class Draft {
    private timer: ReturnType<typeof setTimeout> | null = null;
    private pause = shortestPause;
    private sent: string | null = null;

    constructor(private readonly editor: Editor) {
        editor.content.onChange(() => this.schedule());
    }

    /** Another note was loaded: what was typed into the last one is of no account now. */
    forget(): void {
        if (this.timer !== null) clearTimeout(this.timer);
        this.timer = null;
        this.sent = null;
    }

    private schedule(): void {
        if (this.timer !== null || this.editor.readOnly) return;
        this.timer = setTimeout(() => this.send(), this.pause);
    }

    private send(): void {
        this.timer = null;
        if (this.editor.readOnly) return;
        const start = performance.now();
        const html = this.editor.content.escapedHtml();
        if (html !== this.sent) {
            this.sent = html;
            channel.draft(this.editor.texts, html);
        }
        // Writing out a huge note takes a while: typing must keep most of the time.
        this.pause = Math.max(shortestPause, 4 * (performance.now() - start));
    }
}
