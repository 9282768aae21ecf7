// Blocks and inline formats of a note, and the change of a block's kind.

import type { Editor } from "../editor";

export const inlineFormats = new Set(
    "a b strong i em u s strike del code font span sub sup mark small big kbd".split(" "),
);

const blockSelector =
    "p,div,h1,h2,h3,h4,h5,h6,pre,blockquote,li,td,th,dd,dt,address,center,section,article";

/** More than a part of one paragraph. */
const notInline = `${blockSelector},ul,ol,dl,table,hr`;

/** What inline code may hold beside text. */
const keptInCode = new Set(["br", "img"]);

/** Blocks of plain paragraphs, which may turn into each other. */
const paragraphs = new Set(["p", "div", "h1", "h2", "h3", "h4", "h5", "h6"]);

export function elementOf(node: Node): Element | null {
    return node.nodeType === Node.ELEMENT_NODE ? (node as Element) : node.parentElement;
}

export function blockOf(node: Node, body: HTMLElement): HTMLElement | null {
    const block = elementOf(node)?.closest<HTMLElement>(blockSelector) ?? null;
    return block && block !== body && body.contains(block) ? block : null;
}

export function isEmpty(block: Element): boolean {
    return block.textContent!.replace(/\u200B/g, "") === "" && !block.querySelector("img,hr,table");
}

/**
 * The neighbouring plain paragraphs that the selection touches; null when it touches anything else,
 * a list or a table say.
 */
function selectedParagraphs(editor: Editor): HTMLElement[] | null {
    const range = editor.selection.range();
    if (!range) return null;
    const first = blockOf(range.startContainer, editor.frame.body);
    const last = blockOf(range.endContainer, editor.frame.body);
    if (!first || !last || first.parentNode !== last.parentNode) return null;
    const found: HTMLElement[] = [];
    for (let node: Node | null = first; node; node = node.nextSibling) {
        const element = node as HTMLElement;
        if (node.nodeType === Node.ELEMENT_NODE) {
            if (!paragraphs.has(element.localName) || element.querySelector(blockSelector))
                return null;
            found.push(element);
        } else if (node.textContent!.trim() !== "") {
            return null;
        }
        if (node === last) return found;
    }
    return null;
}

/** Makes the selected paragraphs blocks of the kind `tag`, in one step of undo. */
export function setBlockKind(editor: Editor, tag: string): void {
    const selected = selectedParagraphs(editor);
    // The engine's own command joins several paragraphs to one.
    if (!selected || selected.length < 2 || !paragraphs.has(tag)) {
        editor.exec("formatBlock", tag);
        return;
    }
    const html = selected.map((block) => `<${tag}>${block.innerHTML}</${tag}>`).join("");
    editor.selection.selectInside(selected[0]!, selected[selected.length - 1]!);
    editor.exec("insertHTML", html);
}

/** Turns the selected paragraphs into a list, or a list back into paragraphs. */
export function toggleList(editor: Editor, command: string): void {
    const selected = selectedParagraphs(editor);
    // Engine quirk (Chromium 102): its command leaves the list inside the `p`, which no parser
    // accepts, so that the note would come back with stray empty paragraphs.
    const inList = editor.selection.closest("li") !== null;
    if (inList || !selected?.some((block) => block.localName === "p")) {
        editor.exec(command);
        return;
    }
    const tag = command === "insertOrderedList" ? "ol" : "ul";
    const items = selected.map((block) => `<li>${block.innerHTML}</li>`).join("");
    editor.selection.selectInside(selected[0]!, selected[selected.length - 1]!);
    editor.exec("insertHTML", `<${tag}>${items}</${tag}>`);
}

/** A quote becomes plain paragraphs again, anything else a quote. */
export function toggleQuote(editor: Editor): void {
    const quote = editor.selection.closest("blockquote");
    if (!quote) setBlockKind(editor, "blockquote");
    else if (quote.querySelector(blockSelector)) editor.exec("outdent");
    else editor.exec("formatBlock", "div");
}

/** Part of one paragraph becomes inline code, whole paragraphs a code block, and back. */
export function toggleCode(editor: Editor): void {
    const code = editor.selection.closest("code");
    if (code) {
        editor.selection.selectInside(code, code);
        editor.exec("removeFormat");
        return;
    }
    if (editor.selection.closest("pre")) {
        editor.exec("formatBlock", "div");
        return;
    }
    const range = editor.selection.range();
    const oneBlock = range && blockOf(range.startContainer, editor.frame.body);
    const inside =
        oneBlock === (range && blockOf(range.endContainer, editor.frame.body)) ||
        range?.startContainer === range?.endContainer;
    const part = range && !range.collapsed && inside ? range.cloneContents() : null;
    if (!part || part.querySelector(notInline)) {
        editor.exec("formatBlock", "pre");
        return;
    }
    for (const element of part.querySelectorAll("*"))
        if (!keptInCode.has(element.localName)) element.replaceWith(...element.childNodes);
    const holder = editor.frame.document.createElement("code");
    holder.append(part);
    editor.exec("insertHTML", holder.outerHTML);
}
