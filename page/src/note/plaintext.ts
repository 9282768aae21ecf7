// The plain text of a body, by the rule in docs/plain-text.md.

const HTML = "http://www.w3.org/1999/xhtml";

/** What the name of an element means for the text. */
export const enum Kind {
    Hidden = 1,
    Break = 2,
    Block = 4,
    Cell = 8,
    Verbatim = 16,
}

const kinds = new Map<string, number>();

function are(kind: Kind, names: string): void {
    for (const name of names.split(" ")) kinds.set(name, (kinds.get(name) ?? 0) | kind);
}

are(Kind.Hidden, "script style template title head iframe noembed noframes");
are(Kind.Break, "br");
are(
    Kind.Block,
    "address article aside blockquote body caption center dd details dialog dir div dl dt " +
        "fieldset figcaption figure footer form h1 h2 h3 h4 h5 h6 header hgroup hr legend li " +
        "listing main menu nav ol optgroup option p plaintext pre search section select summary " +
        "table tbody tfoot thead tr ul xmp",
);
are(Kind.Cell, "td th");
are(Kind.Verbatim, "pre listing plaintext textarea xmp");

const blank = /^[\p{White_Space}\u200B\uFFFC]*$/u;

export function kindOf(element: Element): number {
    const kind = kinds.get(element.localName);
    if (kind === undefined) return 0;
    return element.namespaceURI === HTML ? kind : kind & Kind.Hidden;
}

class Writer {
    readonly lines: string[] = [];
    private line = "";
    private separator = "";

    endLine(): void {
        this.lines.push(this.line);
        this.line = "";
        this.separator = "";
    }

    edge(): void {
        if (this.line !== "") this.endLine();
        else this.separator = "";
    }

    cell(): void {
        if (this.line !== "") this.separator = "\t";
    }

    collapsed(text: string): void {
        let rest = /[\t\n\f\r]|  /.test(text) ? text.replace(/[\t\n\f\r ]+/g, " ") : text;
        if (rest.startsWith(" ")) {
            this.space();
            rest = rest.slice(1);
        }
        if (rest === "") return;
        const spaceBehind = rest.endsWith(" ");
        this.write(spaceBehind ? rest.slice(0, -1) : rest);
        if (spaceBehind) this.space();
    }

    verbatim(text: string): void {
        text.split(/\r\n|\n|\r/).forEach((part, index) => {
            if (index > 0) this.endLine();
            if (part !== "") this.write(part);
        });
    }

    private space(): void {
        if (this.line !== "" && this.separator === "") this.separator = " ";
    }

    private write(text: string): void {
        this.line += this.separator + text;
        this.separator = "";
    }
}

/** Reads everything in `root`, itself included. No recursion: a note is nested as deep as it likes. */
function read(root: Node, writer: Writer): void {
    let verbatimDepth = 0;
    let node: Node = root;

    const enter = (kind: number): void => {
        if (kind & Kind.Break) writer.endLine();
        if (kind & Kind.Block) writer.edge();
        if (kind & Kind.Cell) writer.cell();
        if (kind & Kind.Verbatim) verbatimDepth++;
    };
    const leave = (kind: number): void => {
        if (kind & Kind.Block) writer.edge();
        if (kind & Kind.Cell) writer.cell();
        if (kind & Kind.Verbatim) verbatimDepth--;
    };

    for (;;) {
        let down: Node | null = null;
        if (node.nodeType === Node.ELEMENT_NODE) {
            const kind = kindOf(node as Element);
            if (!(kind & Kind.Hidden)) {
                enter(kind);
                down = node.firstChild;
                if (!down) leave(kind);
            }
        } else if (node.nodeType === Node.TEXT_NODE || node.nodeType === Node.CDATA_SECTION_NODE) {
            const text = (node as CharacterData).data;
            if (verbatimDepth > 0) writer.verbatim(text);
            else writer.collapsed(text);
        }
        if (down) {
            node = down;
            continue;
        }
        while (node !== root && !node.nextSibling) {
            node = node.parentNode!;
            leave(kindOf(node as Element));
        }
        if (node === root) return;
        node = node.nextSibling!;
    }
}

/** Whether the lines of `node` have nothing to do with what stands before and behind it. */
export function standsAlone(node: Node): boolean {
    return node.nodeType === Node.ELEMENT_NODE && (kindOf(node as Element) & Kind.Block) !== 0;
}

/** The lines of neighbouring nodes that stand between blocks, joined; null where there is none. */
export function linesOf(nodes: Iterable<Node>): string | null {
    const writer = new Writer();
    for (const node of nodes) read(node, writer);
    writer.edge();
    return writer.lines.length > 0 ? writer.lines.join("\n") : null;
}

export function isBlank(text: string): boolean {
    return blank.test(text);
}

/** The plain text of `root`; the empty text when there is nothing in it to read. */
export function plainText(root: Node): string {
    const lines = linesOf([root]) ?? "";
    return isBlank(lines) ? "" : lines.replace(/^\n+|\n+$/g, "");
}

/** The characters that the limit counts: code points of the text without its line breaks. */
export function countCharacters(root: Node): number {
    return codePoints(linesOf([root]) ?? "");
}

export function codePoints(text: string): number {
    const uncounted = text.match(/[\uD800-\uDBFF](?=[\uDC00-\uDFFF])|[\r\n]/g);
    return text.length - (uncounted?.length ?? 0);
}
