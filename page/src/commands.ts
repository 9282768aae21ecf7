// What the toolbar and the keys can do. `enabled` answers "could it act now?", `active` "does it hold
// where the caret stands?", and `run` does it.

import { native } from "./bridge/native";
import { blockOf, setBlockKind, toggleCode, toggleList, toggleQuote } from "./edit/blocks";
import type { Editor } from "./editor";
import type { IconName } from "./ui/icons";
import type { Strings } from "./strings";

export interface Command {
    id: string;
    icon: IconName;
    label: keyof Strings & string;
    /** The first one is shown. */
    keys?: string[];
    enabled(editor: Editor): boolean;
    active?(editor: Editor): boolean;
    run(editor: Editor): void;
}

export function can(editor: Editor, command: string): boolean {
    return editor.editable && editor.frame.document.queryCommandEnabled(command);
}

/** A command of the engine that needs nothing more. */
function plain(
    id: string,
    icon: IconName,
    command: string,
    keys: string[] = [],
    toggles = false,
): Command {
    return {
        id,
        icon,
        label: id as keyof Strings & string,
        keys,
        enabled: (editor) => can(editor, command),
        active: toggles ? (editor) => editor.frame.document.queryCommandState(command) : undefined,
        run: (editor) => void editor.exec(command),
    };
}

/** The engine would look at every paragraph of the selection; the first one is enough. */
function alignment(
    id: IconName & keyof Strings,
    command: string,
    key: string,
    held: string[],
): Command {
    return {
        ...plain(id, id, command, [key]),
        active: (editor) => {
            const start = editor.selection.range()?.startContainer;
            const block = (start && blockOf(start, editor.frame.body)) ?? editor.frame.body;
            return held.includes(getComputedStyle(block).textAlign);
        },
    };
}

function block(id: string, icon: IconName, tag: string, keys: string[]): Command {
    return {
        id,
        icon,
        label: id as keyof Strings & string,
        keys,
        enabled: (editor) => can(editor, "formatBlock"),
        active: (editor) => blockKind(editor) === tag,
        run: (editor) => setBlockKind(editor, tag),
    };
}

/** The kind of the paragraph at the caret: "h1" to "h6", "pre", or "div" for plain text. */
export function blockKind(editor: Editor): string {
    return editor.selection.closest("h1,h2,h3,h4,h5,h6,pre")?.localName ?? "div";
}

const clearFormatting: Command = {
    ...plain("clear", "clear", "removeFormat", ["Ctrl+\\"]),
    run: (editor) => {
        editor.exec("removeFormat");
        // Engine quirk (Chromium 102): the style of a formatting element comes back as one of its own.
        for (let again = 0; again < 2 && stillFormatted(editor); again++)
            editor.exec("removeFormat");
        const kind = blockKind(editor);
        if (kind !== "div" && editor.selection.range()?.collapsed)
            editor.exec("formatBlock", "div");
    },
};

function stillFormatted(editor: Editor): boolean {
    const range = editor.selection.range();
    return !!range?.cloneContents().querySelector("font, span[style]");
}

export const undo = plain("undo", "undo", "undo", ["Ctrl+Z"]);
export const redo = plain("redo", "redo", "redo", ["Ctrl+Y", "Ctrl+Shift+Z"]);
export const paragraphStyles: Command[] = [
    block("paragraph", "text", "div", ["Ctrl+Alt+0"]),
    block("heading1", "text", "h1", ["Ctrl+Alt+1"]),
    block("heading2", "text", "h2", ["Ctrl+Alt+2"]),
    block("heading3", "text", "h3", ["Ctrl+Alt+3"]),
];
export const inline: Command[] = [
    plain("bold", "bold", "bold", ["Ctrl+B"], true),
    plain("italic", "italic", "italic", ["Ctrl+I"], true),
    plain("underline", "underline", "underline", ["Ctrl+U"], true),
    plain("strike", "strike", "strikeThrough", ["Ctrl+Shift+X"], true),
];
export const clear = clearFormatting;
export const lists: Command[] = [
    {
        ...plain("bulletList", "bulletList", "insertUnorderedList", ["Ctrl+Shift+8"], true),
        run: (editor) => toggleList(editor, "insertUnorderedList"),
    },
    {
        ...plain("numberList", "numberList", "insertOrderedList", ["Ctrl+Shift+7"], true),
        run: (editor) => toggleList(editor, "insertOrderedList"),
    },
    plain("outdent", "outdent", "outdent", ["Ctrl+["]),
    plain("indent", "indent", "indent", ["Ctrl+]"]),
];
export const alignments: Command[] = [
    alignment("alignLeft", "justifyLeft", "Ctrl+Shift+L", ["left", "start", "-webkit-auto"]),
    alignment("alignCenter", "justifyCenter", "Ctrl+Shift+E", ["center", "-webkit-center"]),
    alignment("alignRight", "justifyRight", "Ctrl+Shift+R", ["right", "end", "-webkit-right"]),
    alignment("alignFull", "justifyFull", "Ctrl+Shift+J", ["justify"]),
];
export const quote: Command = {
    id: "quote",
    icon: "quote",
    label: "quote",
    keys: ["Ctrl+Shift+9"],
    enabled: (editor) => can(editor, "formatBlock"),
    // Indentation is made of quotes too, but those have no border.
    active: (editor) =>
        editor.selection.closest("blockquote:not([style*='border: none'])") !== null,
    run: toggleQuote,
};
export const code: Command = {
    id: "code",
    icon: "code",
    label: "code",
    keys: ["Ctrl+E"],
    enabled: (editor) => can(editor, "formatBlock"),
    active: (editor) => editor.selection.closest("code,pre") !== null,
    run: toggleCode,
};
export const rule = plain("rule", "rule", "insertHorizontalRule");
export const attach: Command = {
    id: "attach",
    icon: "attach",
    label: "attach",
    enabled: (editor) => editor.editable,
    run: () => native.addAttachment(),
};
export const capture: Command = {
    id: "capture",
    icon: "capture",
    label: "capture",
    enabled: (editor) => editor.editable,
    run: () => native.screenCapture(false),
};

/** Commands that a key starts. The link dialog adds its own. */
export const commands: Command[] = [
    undo,
    redo,
    ...paragraphStyles,
    ...inline,
    clear,
    ...lists,
    ...alignments,
    quote,
    code,
];
