// The note's text in runs: the text nodes of a block that nothing parts. Inline elements do not
// part a text, but the border of a block does, a line break and a picture.

import { Kind, kindOf } from "./plaintext";

export interface Run {
    /** The nearest block around the texts. */
    block: Element;
    texts: Text[];
    /** All of them joined. */
    text: string;
}

/** They stand in the text as things of their own, whatever is in them. */
const objects = new Set(
    (
        "br img audio video canvas object embed applet iframe input textarea select meter " +
        "progress svg math"
    ).split(" "),
);

function isBlock(element: Element): boolean {
    return (kindOf(element) & (Kind.Block | Kind.Cell)) !== 0;
}

/** The nearest block that holds `node`, or is it; null outside the body. */
export function blockAround(node: Node): Element | null {
    for (let at: Node | null = node; at; at = at.parentNode)
        if (at.nodeType === Node.ELEMENT_NODE && isBlock(at as Element)) return at as Element;
    return null;
}

/** All blocks in `root`, itself included. */
export function blocksIn(root: Element): Element[] {
    return [root, ...root.getElementsByTagName("*")].filter(isBlock);
}

/**
 * Tells each run in `root`, which is a block, in the order of the text; with `nested` also those of
 * the blocks in it. No recursion: a note is nested as deep as it likes.
 */
export function eachRun(root: Element, nested: boolean, tell: (run: Run) => void): void {
    const around: Element[] = [];
    let block = root;
    let texts: Text[] = [];
    const endRun = (): void => {
        if (texts.length === 0) return;
        const text = texts.length === 1 ? texts[0]!.data : texts.map(({ data }) => data).join("");
        tell({ block, texts, text });
        texts = [];
    };
    for (let node: Node | null = root.firstChild; node; ) {
        let inside: Node | null = null;
        if (node.nodeType === Node.TEXT_NODE) {
            texts.push(node as Text);
        } else if (node.nodeType === Node.ELEMENT_NODE) {
            const element = node as Element;
            const isObject = objects.has(element.localName);
            const entersBlock = !isObject && isBlock(element);
            if (isObject || entersBlock) endRun();
            if (!isObject && !(entersBlock && !nested) && !(kindOf(element) & Kind.Hidden))
                inside = element.firstChild;
            if (entersBlock && inside) {
                around.push(block);
                block = element;
            }
        }
        let next: Node | null = inside ?? node.nextSibling;
        while (!next) {
            node = node.parentNode!;
            if (node === block) endRun();
            if (node === root) return;
            if (node === block) block = around.pop()!;
            next = node.nextSibling;
        }
        node = next;
    }
}

/** Whether the texts of `block` keep their blanks and line ends. */
export function keepsBlanks(block: Element): boolean {
    for (let at: Element | null = block; at; at = at.parentElement)
        if (kindOf(at) & Kind.Verbatim) return true;
    return false;
}
