// Keys in the note: the shortcuts of the command table, and what Tab, Enter and Backspace do where the
// engine's own behaviour is not what a person expects.

import type { Editor } from "../editor";
import { commands } from "../commands";
import { blockOf, isEmpty } from "./blocks";
import { moveToCell } from "./tables";
import { matches } from "./shortcut";

function tab(editor: Editor, back: boolean): void {
    if (moveToCell(editor, back)) return;
    if (editor.selection.closest("li")) editor.exec(back ? "outdent" : "indent");
    else if (back) editor.exec("outdent");
    else if (editor.limit.admits(1)) editor.exec("insertText", "\t");
}

/** Enter in code begins a new line of it; on an empty last line it leaves the code, or the quote. */
function enter(editor: Editor): boolean {
    const range = editor.selection.range();
    if (!range?.collapsed) return false;
    const pre = editor.selection.closest("pre");
    if (pre) {
        const lastLineEmpty = /\n\n$/.test(pre.textContent!) || isEmpty(pre);
        if (lastLineEmpty && atEdge(range, pre, false)) {
            leaveCode(editor, pre);
        } else {
            editor.exec("insertLineBreak");
        }
        return true;
    }
    const quote = editor.selection.closest("blockquote");
    const block = quote && blockOf(range.startContainer, editor.frame.body);
    if (!quote || !block || !isEmpty(block)) return false;
    if (block === quote) editor.exec("formatBlock", "div");
    else editor.exec("outdent");
    return true;
}

function leaveCode(editor: Editor, pre: HTMLElement): void {
    if (isEmpty(pre)) {
        editor.exec("formatBlock", "div");
        return;
    }
    editor.exec("delete");
    editor.exec("insertParagraph");
    editor.exec("formatBlock", "div");
    // Engine quirk (Chromium 102): the caret has gone back into the code.
    const behind = pre.nextElementSibling;
    if (behind) editor.selection.collapseTo(behind, 0);
}

/** Backspace at the start of a heading, a quote or code makes it a plain paragraph first. */
function backspace(editor: Editor): boolean {
    const range = editor.selection.range();
    const block = editor.selection.closest("h1,h2,h3,h4,h5,h6,pre,blockquote");
    if (!range?.collapsed || !block || !atEdge(range, block, true)) return false;
    if (block.localName === "blockquote" && block.querySelector("div,p,ul,ol,table"))
        editor.exec("outdent");
    else editor.exec("formatBlock", "div");
    return true;
}

function atEdge(caret: Range, block: HTMLElement, start: boolean): boolean {
    const rest = caret.cloneRange();
    if (start) rest.setStart(block, 0);
    else rest.setEnd(block, block.childNodes.length);
    const between = rest.cloneContents();
    return !/[^\u200B\n]/.test(between.textContent!) && !between.querySelector("img,hr,table");
}

function handle(editor: Editor, event: KeyboardEvent): boolean {
    if (event.isComposing || event.keyCode === 229) return false;
    if (event.altKey && event.key === "F10") {
        editor.focusToolbar();
        return true;
    }
    if (!editor.editable) return false;
    const command = commands.find((candidate) =>
        candidate.keys?.some((shortcut) => matches(event, shortcut)),
    );
    if (command) {
        if (command.enabled(editor)) command.run(editor);
        return true;
    }
    if (event.ctrlKey || event.altKey || event.metaKey) return false;
    if (event.key === "Tab") {
        tab(editor, event.shiftKey);
        return true;
    }
    if (event.key === "Enter" && !event.shiftKey) return enter(editor);
    if (event.key === "Backspace") return backspace(editor);
    return false;
}

export function listenToKeys(editor: Editor): void {
    editor.frame.onDocument((doc) => {
        doc.addEventListener("keydown", (event) => {
            if (handle(editor, event)) event.preventDefault();
        });
    });
}
