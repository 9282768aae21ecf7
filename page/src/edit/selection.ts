// The selection in the frame.

import { blockOf, elementOf, inlineFormats } from "./blocks";
import { EditFrame } from "./frame";

const nearStart = 200;

export class NoteSelection {
    constructor(private readonly frame: EditFrame) {}

    /** The selected range, when there is one inside the note. */
    range(): Range | null {
        const selection = this.frame.document.getSelection();
        if (!selection || selection.rangeCount === 0) return null;
        const range = selection.getRangeAt(0);
        return this.frame.body.contains(range.commonAncestorContainer) ? range : null;
    }

    set(range: Range): void {
        const selection = this.frame.document.getSelection()!;
        selection.removeAllRanges();
        selection.addRange(range);
    }

    collapseTo(node: Node, offset: number): void {
        this.frame.document.getSelection()!.collapse(node, offset);
    }

    select(node: Node): void {
        const range = this.frame.document.createRange();
        range.selectNode(node);
        this.set(range);
    }

    /** The inside of everything from `first` to `last`. */
    selectInside(first: Node, last: Node): void {
        const range = this.frame.document.createRange();
        range.setStart(first, 0);
        range.setEnd(last, last.childNodes.length);
        this.set(range);
    }

    /** To the first place of the note, if there is one near its start. */
    toStart(): void {
        const walker = this.frame.document.createTreeWalker(this.frame.body);
        // Thousands of nested, empty elements: the engine would look for a place for minutes.
        for (let steps = 0; steps < nearStart && walker.nextNode(); steps++) {
            const node = walker.currentNode;
            if (node.nodeType === Node.TEXT_NODE && node.textContent!.trim() !== "") {
                this.collapseTo(node, 0);
                return;
            }
            if (node.nodeName === "BR" || node.nodeName === "IMG") {
                const range = this.frame.document.createRange();
                range.setStartBefore(node);
                range.collapse(true);
                this.set(range);
                return;
            }
        }
    }

    toEnd(): void {
        const selection = this.frame.document.getSelection()!;
        selection.selectAllChildren(this.frame.body);
        selection.collapseToEnd();
    }

    /** The element that holds the caret, or both ends of the selection. */
    element(): Element | null {
        const range = this.range();
        return range && elementOf(range.commonAncestorContainer);
    }

    /** The nearest element around the selection that matches, inside the note. */
    closest(selector: string): HTMLElement | null {
        const found = this.element()?.closest<HTMLElement>(selector) ?? null;
        return found && found !== this.frame.body && this.frame.body.contains(found) ? found : null;
    }

    block(): HTMLElement | null {
        const element = this.element();
        return element && blockOf(element, this.frame.body);
    }

    /** The selection as HTML that keeps its formatting where it is pasted. */
    html(): string {
        const range = this.range();
        if (!range || range.collapsed) return "";
        return this.fragment(range).innerHTML;
    }

    fragment(range: Range): HTMLElement {
        let container = this.frame.document.createElement("div");
        container.append(range.cloneContents());
        // What stands around the selection and makes it what it is goes along.
        let around = elementOf(range.commonAncestorContainer);
        while (around && around !== this.frame.body) {
            const loose = container.querySelector(
                ":scope > li, :scope > tr, :scope > td, :scope > th",
            );
            const partOfTable = container.querySelector(":scope > tbody, :scope > thead");
            if (!loose && !partOfTable && !inlineFormats.has(around.localName)) {
                if (around.localName !== "pre") {
                    around = around.parentElement;
                    continue;
                }
            }
            const wrapper = around.cloneNode(false) as Element;
            wrapper.append(...container.childNodes);
            container = this.frame.document.createElement("div");
            container.append(wrapper);
            around = around.parentElement;
        }
        return container;
    }

    /** Scrolls just as far as the caret or the selection needs. */
    reveal(): void {
        const range = this.range();
        const element = range && elementOf(range.endContainer);
        if (element && element !== this.frame.body) element.scrollIntoView({ block: "nearest" });
    }
}
