// A hint in an empty note. It stands over the frame, so that the note knows nothing of it.

import type { Editor } from "../editor";
import { isEmpty } from "../edit/blocks";
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
        const body = this.editor.frame.body;
        const bare =
            this.editor.editable &&
            body.childNodes.length === 1 &&
            body.firstElementChild?.localName === "div" &&
            body.firstElementChild.children.length <= 1 &&
            isEmpty(body.firstElementChild);
        this.hint.classList.toggle("shown", bare);
    }
}
