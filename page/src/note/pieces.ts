// The note in pieces, one for each node of the body, each written out once until it changes: a pull
// after an edit in a large note costs little more than joining them.

import { isBlank, linesOf, standsAlone } from "./plaintext";

interface Piece {
    /** The node's HTML as it stands inside a JSON text, without the quotes. */
    html?: string;
    /** The node's lines; null when it has none. */
    lines?: Lines | null;
}

interface Lines {
    text: string;
    /** As they stand inside a JSON text, without the quotes. */
    escaped: string;
}

export class Pieces {
    private known = new WeakMap<Node, Piece>();

    constructor(private readonly body: () => HTMLElement) {}

    forget(): void {
        this.known = new WeakMap();
    }

    /** Drops what these changes make untrue. */
    note(records: MutationRecord[]): void {
        const body = this.body();
        for (const record of records) {
            let node: Node | null = record.target;
            while (node && node.parentNode !== body) node = node.parentNode;
            if (node) this.known.delete(node);
            record.removedNodes.forEach((removed) => this.known.delete(removed));
        }
    }

    /** The body's HTML as it stands inside a JSON text, without the quotes. */
    html(): string {
        const parts: string[] = [];
        for (const node of this.body().childNodes) {
            const piece = this.piece(node);
            parts.push((piece.html ??= escaped(outerHtml(node))));
        }
        return parts.join("");
    }

    /** The plain text as it stands inside a JSON text, without the quotes. */
    text(): string {
        const found: Lines[] = [];
        const add = (lines: Lines | null) => void (lines && found.push(lines));
        let between: Node[] = [];
        const endRun = () => {
            if (between.length > 0) add(readLines(between));
            between = [];
        };
        for (const node of this.body().childNodes) {
            if (!standsAlone(node)) {
                between.push(node);
                continue;
            }
            endRun();
            const piece = this.piece(node);
            if (piece.lines === undefined) piece.lines = readLines([node]);
            add(piece.lines);
        }
        endRun();
        return joinLines(found);
    }

    private piece(node: Node): Piece {
        let piece = this.known.get(node);
        if (!piece) this.known.set(node, (piece = {}));
        return piece;
    }
}

function readLines(nodes: Node[]): Lines | null {
    const text = linesOf(nodes);
    return text === null ? null : { text, escaped: escaped(text) };
}

/** Joined, without the line breaks at either end; empty when nobody could read anything in them. */
function joinLines(found: Lines[]): string {
    if (found.every(({ text }) => isBlank(text))) return "";
    const hasText = ({ text }: Lines) => /[^\n]/.test(text);
    const first = found.findIndex(hasText);
    let last = found.length - 1;
    while (!hasText(found[last]!)) last--;
    const parts = found.slice(first, last + 1).map((lines) => lines.escaped);
    // Each end anew: a line break and a backslash with an n behind it look alike when escaped.
    const trimmedStart = found[first]!.text.replace(/^\n+/, "");
    if (first === last) return escaped(trimmedStart.replace(/\n+$/, ""));
    parts[0] = escaped(trimmedStart);
    parts[parts.length - 1] = escaped(found[last]!.text.replace(/\n+$/, ""));
    return parts.join("\\n");
}

/** Escapes that JSON has for a lone surrogate or NUL alone, or for a backslash before such letters. */
const suspect = /\\u(d[89a-f]|0000)/;
const unsound = /[\uD800-\uDBFF](?![\uDC00-\uDFFF])|(?<![\uD800-\uDBFF])[\uDC00-\uDFFF]|\0/g;

/**
 * `text` as it stands inside a JSON text, without the quotes. What no HTML text can hold and the
 * native side could not read, lone surrogates and NUL, becomes U+FFFD.
 */
export function escaped(text: string): string {
    const json = JSON.stringify(text);
    const sound = suspect.test(json) ? JSON.stringify(text.replace(unsound, "\uFFFD")) : json;
    return sound.slice(1, -1);
}

function outerHtml(node: Node): string {
    if (node.nodeType === Node.ELEMENT_NODE) return (node as Element).outerHTML;
    const box = document.createElement("div");
    box.append(node.cloneNode());
    return box.innerHTML;
}
