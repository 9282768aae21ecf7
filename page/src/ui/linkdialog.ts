// The link dialog under its button, and the bubble over a link that the caret stands in.

import { completeAddress, openLink, outsideAddress, removeLink, setLink } from "../edit/links";
import type { Editor } from "../editor";
import { button, element } from "./dom";
import { icon, IconName } from "./icons";
import { placeUnder, Popup } from "./popup";
import { addTooltip } from "./tooltip";

export function showLinkDialog(editor: Editor, opener: HTMLElement): void {
    const { strings, selection } = editor;
    const range = selection.range()?.cloneRange() ?? null;
    const existing = selection.closest("a[href]");
    const input = element("input", {
        type: "text",
        class: "link-input",
        "aria-label": strings.linkAddress,
        placeholder: "https://",
        spellcheck: "false",
    });
    input.value = existing?.getAttribute("href") ?? "";
    const problem = element("div", { class: "link-problem", role: "alert" });

    const apply = () => {
        const address = completeAddress(input.value);
        if (!address) {
            problem.textContent = strings.linkInvalid;
            input.setAttribute("aria-invalid", "true");
            return;
        }
        Popup.closeAny();
        editor.focusNote();
        if (range) selection.set(range);
        setLink(editor, address);
    };
    const box = element(
        "div",
        { class: "link-dialog", role: "dialog", "aria-label": strings.link },
        element("label", { class: "link-label" }, strings.linkAddress, input),
        problem,
        element(
            "div",
            { class: "link-actions" },
            element("span", { class: "link-hint" }, strings.linkHint),
            button({ class: "primary", tabindex: "0" }, [strings.linkApply], apply),
        ),
    );
    input.addEventListener("keydown", (event) => {
        if (event.key === "Enter" && !event.isComposing) apply();
        // Tab goes to the button here; elsewhere it closes what is open.
        if (event.key === "Tab") event.stopPropagation();
    });
    input.addEventListener("input", () => (problem.textContent = ""));
    Popup.show(opener, box, { focus: input });
    input.select();
}

/** A small bar under the link at the caret: its address, open, edit, remove. */
export class LinkBubble {
    private readonly box: HTMLElement;
    private readonly address: HTMLElement;
    private link: Element | null = null;

    constructor(
        private readonly editor: Editor,
        edit: () => void,
    ) {
        const { strings } = editor;
        this.address = element("span", { class: "bubble-address" });
        this.box = element(
            "div",
            { class: "link-bubble", role: "group", "aria-label": strings.link },
            this.address,
            bubbleButton("open", strings.linkOpen, () => this.link && openLink(this.link)),
            bubbleButton("edit", strings.linkEdit, edit),
            bubbleButton("unlink", strings.linkRemove, () => removeLink(editor)),
        );
        editor.frame.onDocument((doc) =>
            doc.addEventListener("scroll", () => this.update(), { passive: true }),
        );
    }

    update(): void {
        const { editor } = this;
        const link =
            editor.editable && editor.frame.document.hasFocus()
                ? editor.selection.closest("a[href]")
                : null;
        this.link = link;
        if (!link) {
            this.box.remove();
            return;
        }
        const href = link.getAttribute("href") ?? "";
        this.address.textContent = href;
        this.box.classList.toggle("closed-link", outsideAddress(href) === null);
        if (!this.box.isConnected) document.body.append(this.box);
        const frame = editor.frame.element.getBoundingClientRect();
        const anchor = link.getBoundingClientRect();
        placeUnder(
            this.box,
            new DOMRect(
                frame.left + anchor.left,
                frame.top + anchor.top,
                anchor.width,
                anchor.height,
            ),
        );
    }
}

function bubbleButton(name: IconName, label: string, click: () => void): HTMLButtonElement {
    const made = button({ class: "bubble-button", "aria-label": label }, [icon(name)], click);
    addTooltip(made, label);
    return made;
}
