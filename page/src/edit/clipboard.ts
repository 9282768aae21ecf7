// Copy, cut, paste and drop. What comes from outside is sanitised; files are the library's business.

import { channel } from "../bridge/native";
import type { Editor } from "../editor";
import { escapeText } from "../note/html";
import { codePoints, countCharacters, plainText } from "../note/plaintext";
import { readPasted } from "../paste/foreign";

/** Stands beside what a note's own copy puts up: HTML that needs no clean-up. */
const ownMark = "application/x-nomar-note";

/**
 * From so many on, what is pasted goes in as one block: the engine's command takes a time that grows
 * with the square of the nodes side by side, half a minute for a megabyte.
 */
const manyNodes = 200;

/**
 * Inserts `html` at the selection, cleaned, or refuses it whole when it is over the limit. With
 * pictures that have to be fetched first it goes in when they are there, where the caret was then.
 */
function insertForeign(editor: Editor, html: string, own: boolean): void {
    const { body, pictures } = readPasted(html, own);
    if (!editor.limit.admits(countCharacters(body))) return;
    const place = editor.selection.range()?.cloneRange();
    let waited = false;
    editor.pastedPictures.bringIn(body, pictures, (complete) => {
        if (waited) {
            if (place && editor.frame.body.contains(place.startContainer))
                editor.selection.set(place);
            if (!editor.limit.admits(countCharacters(complete))) return;
        }
        const html = complete.innerHTML;
        const many = complete.childNodes.length > manyNodes;
        editor.exec("insertHTML", many ? `<div>${html}</div>` : html);
        if (waited) editor.selection.reveal();
    });
    waited = true;
}

function insertPlain(editor: Editor, text: string): void {
    if (!editor.limit.admits(codePoints(text))) return;
    // The engine would begin another block of code at each line.
    if (editor.selection.closest("pre") && /[\r\n]/.test(text))
        editor.exec("insertHTML", escapeText(text.replace(/\r\n?/g, "\n")));
    else editor.exec("insertText", text);
}

function insertData(editor: Editor, data: DataTransfer): void {
    const html = data.getData("text/html");
    const text = data.getData("text/plain");
    // Code stays code: no foreign markup between its lines.
    if (html && !editor.selection.closest("pre,code"))
        insertForeign(editor, html, data.types.includes(ownMark));
    else if (text) insertPlain(editor, text);
    editor.selection.reveal();
}

function copy(editor: Editor, event: ClipboardEvent): boolean {
    const range = editor.selection.range();
    if (!range || range.collapsed || !event.clipboardData) return false;
    const fragment = editor.selection.fragment(range);
    event.preventDefault();
    event.clipboardData.setData("text/html", fragment.innerHTML);
    event.clipboardData.setData(ownMark, "1");
    const text = plainText(fragment);
    if (text) event.clipboardData.setData("text/plain", text);
    // The data reaches the clipboard when this event is over.
    setTimeout(() => channel.copied());
    return true;
}

function caretAt(doc: Document, event: DragEvent): Range | null {
    return doc.caretRangeFromPoint(event.clientX, event.clientY);
}

export function listenToClipboard(editor: Editor): void {
    editor.frame.onDocument((doc) => {
        let ownDrag = false;
        doc.addEventListener("copy", (event) => void copy(editor, event));
        doc.addEventListener("cut", (event) => {
            if (!editor.editable) event.preventDefault();
            else if (copy(editor, event)) editor.exec("delete");
        });
        doc.addEventListener("paste", (event) => {
            event.preventDefault();
            if (editor.editable && event.clipboardData) insertData(editor, event.clipboardData);
        });
        doc.addEventListener("dragstart", () => (ownDrag = true));
        doc.addEventListener("dragend", () => (ownDrag = false));
        doc.addEventListener("drop", (event) => {
            const own = ownDrag;
            // What is moved leaves its place, and its "dragend" may reach nobody: the next drop would
            // pass for one's own, and go in unseen.
            ownDrag = false;
            // A piece of the note that is dragged inside it: the engine moves it, or with Ctrl copies
            // it, in one undo step.
            if (own && editor.editable) {
                if (event.ctrlKey && !editor.limit.admitsCopy()) event.preventDefault();
                else editor.content.willChange();
                return;
            }
            event.preventDefault();
            if (!editor.editable || !event.dataTransfer) return;
            const caret = caretAt(doc, event);
            if (caret) editor.selection.set(caret);
            insertData(editor, event.dataTransfer);
        });
    });
}
