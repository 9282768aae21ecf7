// The note in pieces, one for each node of the body, each written out once until it changes: a pull
// after an edit in a large note costs little more than joining them.

import { finishText, linesOf, standsAlone } from "./plaintext";

interface Piece {
    /** The node's HTML as it stands inside a JSON text, without the quotes. */
    html?: string;
    /** The node's lines, joined; null when it has none. */
    lines?: string | null;
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

    text(): string {
        const lines: string[] = [];
        const add = (found: string | null) => void (found !== null && lines.push(found));
        let between: Node[] = [];
        const endRun = () => {
            if (between.length > 0) add(linesOf(between));
            between = [];
        };
        for (const node of this.body().childNodes) {
            if (!standsAlone(node)) {
                between.push(node);
                continue;
            }
            endRun();
            const piece = this.piece(node);
            if (piece.lines === undefined) piece.lines = linesOf([node]);
            add(piece.lines);
        }
        endRun();
        return finishText(lines.join("\n"));
    }

    private piece(node: Node): Piece {
        let piece = this.known.get(node);
        if (!piece) this.known.set(node, (piece = {}));
        return piece;
    }
}

/** `text` as it stands inside a JSON text, without the quotes. */
export function escaped(text: string): string {
    return JSON.stringify(text).slice(1, -1);
}

function outerHtml(node: Node): string {
    if (node.nodeType === Node.ELEMENT_NODE) return (node as Element).outerHTML;
    const box = document.createElement("div");
    box.append(node.cloneNode());
    return box.innerHTML;
}
