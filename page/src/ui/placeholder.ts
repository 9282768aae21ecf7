// A hint in an empty note. It stands over the frame, so that the note knows nothing of it.

import type { Editor } from "../editor";
import { element } from "./dom";

export class Placeholder {
    private readonly hint: HTMLElement;

    constructor(
        private readonly editor: Editor,
        parent: HTMLElement,
    ) {
        this.hint = element(
            "div",
            { class: "placeholder", "aria-hidden": "true" },
            editor.strings.placeholder,
        );
        parent.append(this.hint);
    }

    update(): void {
        const bare = this.editor.editable && this.editor.content.isBare();
        this.hint.classList.toggle("shown", bare);
    }
}
