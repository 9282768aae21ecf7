// The note in pieces, each written out once until it changes: a pull after an edit in a large note costs
// little more than joining them. A piece is a run of neighbouring nodes of the body.

import { isBlank, linesOf, standsAlone } from "./plaintext";

/** Nodes of a piece, more or less: small ones are many to join, large ones much to write anew. */
const usualSize = 64;

interface Piece {
    nodes: Node[];
    /** The nodes' HTML as it stands inside a JSON text, without the quotes. */
    html?: string | undefined;
    /** The nodes' lines; null when they have none. */
    lines?: Lines | null | undefined;
}

interface Lines {
    text: string;
    /** As they stand inside a JSON text, without the quotes. */
    escaped: string;
}

export class Pieces {
    private known = new WeakMap<Node, Piece>();
    /** The pieces of the body as it stands; null when it has changed since they were looked for. */
    private standing: Piece[] | null = null;

    constructor(private readonly body: () => HTMLElement) {}

    forget(): void {
        this.known = new WeakMap();
        this.standing = null;
    }

    /** Drops what these changes make untrue. */
    note(records: MutationRecord[]): void {
        this.standing = null;
        const body = this.body();
        for (const record of records) {
            let node: Node | null = record.target;
            while (node && node.parentNode !== body) node = node.parentNode;
            if (node) this.drop(node);
            record.removedNodes.forEach((removed) => this.drop(removed));
        }
    }

    /** The body's HTML, piece by piece, as it stands inside a JSON text, without the quotes. */
    html(): string[] {
        return this.all().map((piece) => {
            piece.html ??= escaped(piece.nodes.map(outerHtml).join(""));
            return piece.html;
        });
    }

    /** The parts of the plain text as they stand inside a JSON text, without the quotes. */
    text(): string[] {
        const found: Lines[] = [];
        for (const piece of this.all()) {
            if (piece.lines === undefined) piece.lines = readLines(piece.nodes);
            if (piece.lines) found.push(piece.lines);
        }
        return joinLines(found);
    }

    private drop(node: Node): void {
        const piece = this.known.get(node);
        if (piece) piece.html = piece.lines = undefined;
    }

    private all(): Piece[] {
        return (this.standing ??= this.walk());
    }

    /** Those that are still made of the same nodes, and new ones. */
    private walk(): Piece[] {
        const pieces: Piece[] = [];
        for (let node: Node | null = this.body().firstChild; node; ) {
            const old: Piece | undefined = this.known.get(node);
            const piece: Piece = old && stillStands(old, node) ? old : this.cut(node);
            pieces.push(piece);
            node = piece.nodes[piece.nodes.length - 1]!.nextSibling;
        }
        return pieces;
    }

    /** A new piece that begins with `first` and ends where an old one goes on, or else when it is large. */
    private cut(first: Node): Piece {
        const piece: Piece = { nodes: [] };
        for (let node: Node | null = first; node; node = node.nextSibling) {
            const old = this.known.get(node);
            // Lines may run on from one node to the next, but never past a block.
            const mayEnd = node !== first && standsAlone(node);
            if (mayEnd && (piece.nodes.length >= usualSize || (old && stillStands(old, node))))
                break;
            piece.nodes.push(node);
        }
        piece.nodes.forEach((node) => this.known.set(node, piece));
        return piece;
    }
}

/** Whether the nodes from `first` on are those of `piece`, and its lines end with it. */
function stillStands(piece: Piece, first: Node): boolean {
    let node: Node | null = first;
    for (const expected of piece.nodes) {
        if (node !== expected) return false;
        node = node.nextSibling;
    }
    return !node || standsAlone(node);
}

function readLines(nodes: Node[]): Lines | null {
    const found: string[] = [];
    const add = (lines: string | null) => void (lines !== null && found.push(lines));
    let between: Node[] = [];
    const endRun = () => {
        if (between.length > 0) add(linesOf(between));
        between = [];
    };
    for (const node of nodes) {
        if (standsAlone(node)) {
            endRun();
            add(linesOf([node]));
        } else {
            between.push(node);
        }
    }
    endRun();
    const text = found.join("\n");
    return found.length > 0 ? { text, escaped: escaped(text) } : null;
}

/** To be joined, without the line breaks at either end; none when nobody could read anything in them. */
function joinLines(found: Lines[]): string[] {
    if (found.every(({ text }) => isBlank(text))) return [];
    const hasText = ({ text }: Lines) => /[^\n]/.test(text);
    const first = found.findIndex(hasText);
    let last = found.length - 1;
    while (!hasText(found[last]!)) last--;
    const parts = found.slice(first, last + 1).map((lines) => lines.escaped);
    // Each end anew: a line break and a backslash with an n behind it look alike when escaped.
    const trimmedStart = found[first]!.text.replace(/^\n+/, "");
    if (first === last) return [escaped(trimmedStart.replace(/\n+$/, ""))];
    parts[0] = escaped(trimmedStart);
    parts[parts.length - 1] = escaped(found[last]!.text.replace(/\n+$/, ""));
    return parts.flatMap((part, at) => (at === 0 ? [part] : ["\\n", part]));
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

const references: Record<string, string> = {
    "&": "&amp;",
    "<": "&lt;",
    ">": "&gt;",
    "\u00A0": "&nbsp;",
};

/** As the engine writes it (HTML standard, serialising HTML fragments). */
function outerHtml(node: Node): string {
    if (node.nodeType === Node.ELEMENT_NODE) return (node as Element).outerHTML;
    if (node.nodeType === Node.TEXT_NODE)
        return (node as Text).data.replace(/[&<>\u00A0]/g, (character) => references[character]!);
    const box = document.createElement("div");
    box.append(node.cloneNode());
    return box.innerHTML;
}
