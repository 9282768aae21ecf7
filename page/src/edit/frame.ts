// The frame in which the note lives. Sandboxed without scripts: nothing in a note ever runs, while
// this page, which has the same origin, listens and edits from outside.

import noteStyle from "../note.css";
import type { Strings } from "../strings";

const restoreMs = 1000;

type DocumentListener = (doc: Document) => void;

export class EditFrame {
    readonly element: HTMLIFrameElement;
    private readonly listeners: DocumentListener[] = [];
    private editable = false;
    private dark = false;
    private large = false;
    private restoring: number | undefined;

    constructor(
        parent: HTMLElement,
        private readonly strings: Strings,
    ) {
        this.element = document.createElement("iframe");
        this.element.className = "ke-edit-iframe";
        this.element.setAttribute("sandbox", "allow-same-origin");
        this.element.title = strings.note;
        parent.append(this.element);
    }

    get document(): Document {
        return this.element.contentDocument!;
    }

    get body(): HTMLElement {
        return this.document.body;
    }

    /** `listener` adds its event listeners to each document that the frame shows. */
    onDocument(listener: DocumentListener): void {
        this.listeners.push(listener);
    }

    /** A fresh, empty document: no note, no selection, no undo history. */
    reset(large: boolean): void {
        const doc = this.document;
        doc.open();
        doc.write("<!DOCTYPE html><html><head></head><body></body></html>");
        doc.close();
        const style = doc.createElement("style");
        style.textContent = noteStyle;
        const { missingPicture, remotePicture } = this.strings;
        doc.documentElement.style.setProperty("--missing", JSON.stringify(missingPicture));
        doc.documentElement.style.setProperty("--remote", JSON.stringify(remotePicture));
        doc.head.append(style);
        this.large = large;
        clearTimeout(this.restoring);
        doc.documentElement.classList.toggle("large", large);
        doc.execCommand("defaultParagraphSeparator", false, "div");
        this.applyMode();
        this.applyScheme();
        this.listeners.forEach((listener) => listener(doc));
    }

    /**
     * Chromium: an insertion of markup among blocks that are not laid out takes five times as long
     * and splits the paragraph that it goes into. So a large note is laid out whole for it, and for
     * those that follow at once.
     */
    layOutForInsertion(): void {
        if (!this.large) return;
        const { classList } = this.document.documentElement;
        classList.remove("large");
        clearTimeout(this.restoring);
        this.restoring = window.setTimeout(() => classList.add("large"), restoreMs);
    }

    /** The engine keeps its undo history for an editable root: a new one has none. */
    replaceBody(): void {
        const old = this.body;
        const fresh = this.document.createElement("body");
        fresh.append(...old.childNodes);
        old.replaceWith(fresh);
        this.applyMode();
    }

    setEditable(editable: boolean): void {
        this.editable = editable;
        this.applyMode();
    }

    setDark(dark: boolean): void {
        this.dark = dark;
        this.applyScheme();
    }

    focus(): void {
        this.element.focus();
        this.body.focus();
    }

    private applyMode(): void {
        this.body.setAttribute("contenteditable", String(this.editable));
        this.body.setAttribute("spellcheck", "false");
    }

    private applyScheme(): void {
        this.document.documentElement.classList.toggle("dark", this.dark);
    }
}
