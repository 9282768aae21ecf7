// Attachment elements: an `img` with `nm_exdata`. `class` is the file's path in the store, `src` what
// is shown, and `nm_exdata` the JSON that holds the original name; its text is the element's identity.

import { native } from "../bridge/native";
import { done, parseObject, refused, Reply } from "../bridge/reply";
import type { Editor } from "../editor";
import { escapeAttribute } from "./html";

export interface NewAttachment {
    src: string;
    path: string;
    exdata: string;
}

/** Inserts at the caret, or at the end of a note that has none; can be undone. */
export function insertAttachment(editor: Editor, attachment: NewAttachment): Reply {
    if (editor.readOnly) return refused("the note is read-only");
    if (!attachment.src || !attachment.path) return refused("picpath or strData is missing");
    if (editor.pastedPictures.takes(attachment)) return done;
    editor.finishLoading();
    if (!editor.caretPlaced) editor.selection.toEnd();
    const src = escapeAttribute(attachment.src);
    const html =
        `<img class="${escapeAttribute(attachment.path)}" src="${src}"` +
        ` nm_exdata="${escapeAttribute(attachment.exdata)}" data-ke-src="${src}" nmimgsrc="${src}">`;
    if (!editor.exec("insertHTML", html)) return refused("the picture could not be inserted");
    editor.caretPlaced = true;
    editor.selection.reveal();
    return done;
}

/** Makes an `img` of a text that is not in the note yet an attachment. */
export function setAttachment(element: Element, { src, path, exdata }: NewAttachment): void {
    element.setAttribute("class", path);
    for (const name of ["src", "data-ke-src", "nmimgsrc"]) element.setAttribute(name, src);
    element.setAttribute("nm_exdata", exdata);
}

/** Gives every element with this `nm_exdata` its new file and picture. */
export function modifyAttachments(
    editor: Editor,
    exdata: string,
    path: string,
    src: string,
): Reply {
    editor.finishLoading();
    const elements = named(editor.frame.body).filter(
        (element) => element.getAttribute("nm_exdata") === exdata,
    );
    if (elements.length === 0) return refused("no such attachment");
    editor.content.willChange();
    const update = { path, src };
    editor.attachmentUpdates.set(exdata, update);
    elements.forEach((element) => applyUpdate(element, update));
    return done;
}

/**
 * Takes every element of one attachment out of the note: that of this file in the store, with this
 * original name. Undo brings them back one by one. The caret stays where it is.
 */
export function removeAttachment(editor: Editor, file: string, name: string): Reply {
    if (editor.readOnly) return refused("the note is read-only");
    editor.finishLoading();
    const elements = [...editor.frame.body.querySelectorAll<HTMLImageElement>("img[class]")].filter(
        (element) =>
            attachmentAt(element) && fileName(element) === file && nameOf(element) === name,
    );
    if (elements.length === 0) return refused("no such attachment");
    const caret = editor.selection.range()?.cloneRange();
    for (const element of elements) {
        editor.selection.select(element);
        if (!editor.exec("delete")) return refused("the attachment could not be removed");
    }
    if (caret) editor.selection.set(caret);
    return { ...done, count: elements.length };
}

export interface AttachmentUpdate {
    path: string;
    src: string;
}

function applyUpdate(element: HTMLImageElement, update: AttachmentUpdate): void {
    if (element.getAttribute("class") !== update.path) element.setAttribute("class", update.path);
    if (element.getAttribute("src") !== update.src) element.setAttribute("src", update.src);
}

/** Undo and redo bring elements back as they were; the files they name may have changed since. */
export function reapplyUpdates(editor: Editor): void {
    if (editor.attachmentUpdates.size === 0) return;
    for (const element of named(editor.frame.body)) {
        const update = editor.attachmentUpdates.get(element.getAttribute("nm_exdata")!);
        if (update) applyUpdate(element, update);
    }
}

/** Selects the first attachment whose original name contains one of `words`. */
export function selectAttachment(editor: Editor, words: string[]): Reply {
    if (words.length === 0) return refused("keyword is missing");
    editor.finishLoading();
    const element = named(editor.frame.body).find((candidate) => {
        const name = originalName(candidate);
        return words.some((word) => name.includes(word));
    });
    if (!element) return refused("no such attachment");
    editor.selection.select(element);
    element.scrollIntoView({ block: "center" });
    return done;
}

/** The original name of an attachment: Base64 of UTF-8 in its JSON; empty when there is none. */
export function originalName(element: Element): string {
    const coded = parseObject(element.getAttribute("nm_exdata") ?? "")?.["OrigName_B64"];
    if (typeof coded !== "string") return "";
    try {
        return new TextDecoder().decode(Uint8Array.from(atob(coded), (c) => c.charCodeAt(0)));
    } catch {
        return "";
    }
}

/**
 * Attachments of old notes have a path in `class` and nothing else. They get the JSON that native code
 * would give them: the last part of that path stands for the lost original name.
 */
export function nameOldAttachments(body: HTMLElement): void {
    for (const element of body.querySelectorAll("img[class]")) {
        if (element.getAttribute("nm_exdata") || !hasPath(element)) continue;
        const bytes = new TextEncoder().encode(fileName(element));
        const coded = btoa(Array.from(bytes, (byte) => String.fromCharCode(byte)).join(""));
        element.setAttribute("nm_exdata", JSON.stringify({ OrigName_B64: coded }));
    }
}

function hasPath(element: Element): boolean {
    return /[\\/]/.test(element.getAttribute("class") ?? "");
}

/** The name of an attachment's file in the store: the last part of its path. */
function fileName(element: Element): string {
    return (element.getAttribute("class") ?? "").split(/[\\/]/).pop()!;
}

/** The original name, which for an attachment of an old note is that of its file. */
function nameOf(element: Element): string {
    return element.getAttribute("nm_exdata") ? originalName(element) : fileName(element);
}

/** The path of an attachment. Old notes have slashes in it, and native code parts it at backslashes. */
function storePath(element: Element): string {
    return (element.getAttribute("class") ?? "").replaceAll("/", "\\");
}

/** The attachment that an event happened on, if any. */
export function attachmentAt(target: EventTarget | null): HTMLImageElement | null {
    const element = target as Element | null;
    if (element?.localName !== "img") return null;
    return element.hasAttribute("nm_exdata") || hasPath(element)
        ? (element as HTMLImageElement)
        : null;
}

function named(body: HTMLElement): HTMLImageElement[] {
    return [...body.querySelectorAll<HTMLImageElement>("img[nm_exdata]")];
}

/** Double click opens, a click selects, the context menu is reported. */
export function listenToAttachments(editor: Editor): void {
    editor.frame.onDocument((doc) => {
        doc.addEventListener("dblclick", (event) => {
            const element = attachmentAt(event.target);
            if (!element) return;
            event.preventDefault();
            native.openAttachment(
                storePath(element),
                element.getAttribute("nm_exdata") ?? "",
            );
        });
        doc.addEventListener("click", (event) => {
            const element = event.target as Element | null;
            if (editor.editable && element?.localName === "img") editor.selection.select(element);
        });
        doc.addEventListener("contextmenu", (event) => {
            const element = attachmentAt(event.target);
            if (!element) return;
            event.preventDefault();
            native.rightClickAttachment(
                storePath(element),
                element.getAttribute("nm_exdata") ?? "",
                editor.selection.html(),
            );
        });
        doc.addEventListener("input", (event) => {
            // A checkbox in a note tells of its change by an event without that field.
            if ((event as InputEvent).inputType?.startsWith("history")) reapplyUpdates(editor);
        });
    });
}
