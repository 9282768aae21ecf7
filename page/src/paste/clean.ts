// The clean-up of pasted HTML: one walk over its tree that leaves what a note is made of. It works on
// a document that is not shown, and leaves safety to the sanitiser behind it.

import {
    blocks,
    divisions,
    dropped,
    isBlockNode,
    kept,
    kindOf,
    mayHave,
    standing,
    structures,
} from "./elements";
import { ListBuilder, nestInItem } from "./lists";
import { Sheet } from "./sheet";
import { Look, StyleReader } from "./styles";

const HTML = "http://www.w3.org/1999/xhtml";
const blankText = /^[\s\u00a0\u200b\ufeff]*$/;
const spacesOnly = /^[\t\n\f\r ]*$/;
const link = /^(?:https?:\/\/|mailto:|ftp:\/\/|tel:)/i;
const shownPicture = /^(?:https?:)?\/\//i;

/** No document of people is nested like this, and the engine's editing commands take seconds for it. */
const maxDepth = 100;

/** The engine's own sign for the end of a block that was copied. */
const interchangeNewline = "Apple-interchange-newline";

/** An element whose inside is being walked. */
interface Open {
    element: Element;
    look: Look;
    marker: string;
}

class Cleaner {
    private readonly styles = new StyleReader();
    private readonly sheet: Sheet;
    private readonly lists: ListBuilder;
    private readonly open: Open[] = [];
    private verbatim = 0;

    /** `pictures` have no address for now; they stay all the same. */
    constructor(
        private readonly doc: Document,
        private readonly pictures: ReadonlySet<Element>,
    ) {
        this.sheet = new Sheet(doc);
        this.lists = new ListBuilder(this.sheet);
    }

    clean(root: Element): void {
        let parent: Element = root;
        let node: ChildNode | null = root.firstChild;
        for (;;) {
            if (node === null) {
                if (parent === root) return;
                const done = this.open.pop()!;
                parent = done.element.parentElement!;
                node = done.element.nextSibling;
                this.leave(done);
                continue;
            }
            const following: ChildNode | null = node.nextSibling;
            if (node.nodeType === Node.TEXT_NODE) {
                this.text(node as Text);
                node = following;
            } else if (node.nodeType !== Node.ELEMENT_NODE) {
                node.remove();
                node = following;
            } else {
                const fate: ChildNode | Open | null = this.enter(node as Element);
                if (fate && "look" in fate) {
                    this.open.push(fate);
                    parent = fate.element;
                    node = parent.firstChild;
                } else {
                    node = fate ?? following;
                }
            }
        }
    }

    // --- Entering an element: it goes, it gives way to its inside, or it stays ---

    /** What to walk next: its inside, opened; the node that has taken its place; or what follows. */
    private enter(element: Element): Open | ChildNode | null {
        if (element.namespaceURI !== HTML) {
            if (element.localName === "svg") element.remove();
            return null; // A formula: the sanitiser knows them.
        }
        const goes = dropped.has(element.localName) || element.className === interchangeNewline;
        if (goes) return this.drop(element);
        if (this.open.length >= maxDepth) return unwrap(element);
        const look = this.lookOf(element);
        if (look.hidden) return this.drop(element);
        if (look.marker) return this.takeMarker(element);
        if (this.isSpacer(element, look)) {
            const space = this.doc.createTextNode(" ");
            element.replaceWith(space);
            return space;
        }
        const name = this.nameFor(element, look);
        if (name === "") return unwrap(element);
        const named = name === element.localName ? element : this.rename(element, name);
        const whole = named === element ? look : this.lookOf(named);
        this.setAttributes(named, whole);
        if (name === "img" && !this.isPicture(named)) return this.describe(named);
        if (isWrapper(named)) return unwrap(named);
        if (whole.verbatim || name === "pre") this.verbatim++;
        return { element: named, look: whole, marker: "" };
    }

    private drop(element: Element): null {
        element.remove();
        return null;
    }

    private lookOf(element: Element): Look {
        const own = element.getAttribute("style") ?? "";
        const classes = element.getAttribute("class");
        const style = classes ? this.sheet.styleOf(classes) + own : own;
        return this.styles.read(style, kindOf(element.localName));
    }

    /** The number or bullet that a program drew in front of an item tells what list it is. */
    private takeMarker(element: Element): null {
        for (let i = this.open.length - 1; i >= 0; i--) {
            const item = this.open[i]!;
            if (!blocks.has(item.element.localName)) continue;
            item.marker ||= element.textContent!.replace(/[\s\u00a0]+/g, "");
            if (!item.look.list)
                item.look = { ...item.look, list: { list: "", level: 1, numbering: "" } };
            break;
        }
        element.remove();
        return null;
    }

    private isSpacer(element: Element, look: Look): boolean {
        if (element.localName !== "span") return false;
        if (!look.spaces && element.getAttribute("class") !== "Apple-converted-space") return false;
        return blankText.test(element.textContent!);
    }

    /** The name under which an element stays; empty if only its inside does. */
    private nameFor(element: Element, look: Look): string {
        const name = element.localName;
        if (divisions.has(name)) return "div";
        if (!kept.has(name)) return "";
        if (name === "p") {
            if (look.outline > 0) return `h${look.outline}`;
            if (/^MsoTitle/.test(element.className)) return "h1";
        }
        // Around a whole paste such an element only says where it comes from.
        const undone =
            (look.normalWeight && /^(?:b|strong)$/.test(name)) ||
            (look.normalSlant && /^(?:i|em)$/.test(name));
        if (undone) return look.style === "" ? "" : "span";
        if (name === "a") return link.test(element.getAttribute("href")?.trim() ?? "") ? "a" : "";
        return name;
    }

    private rename(element: Element, name: string): Element {
        const renamed = this.doc.createElement(name);
        for (const attribute of ["style", "class", "align", "dir"]) {
            const value = element.getAttribute(attribute);
            if (value !== null) renamed.setAttribute(attribute, value);
        }
        while (element.firstChild) renamed.append(element.firstChild);
        element.replaceWith(renamed);
        return renamed;
    }

    private setAttributes(element: Element, look: Look): void {
        const name = element.localName;
        for (const attribute of [...element.attributes]) {
            if (!mayHave(name, attribute.name, attribute.value))
                element.removeAttributeNode(attribute);
        }
        // A cell of a heading is bold by itself.
        const style = look.style + (look.normalWeight && name === "th" ? " font-weight: normal;" : "");
        if (style) element.setAttribute("style", style.trim());
    }

    private isPicture(image: Element): boolean {
        if (Number(image.getAttribute("width") ?? 9) <= 1) return false;
        return this.pictures.has(image) || shownPicture.test(image.getAttribute("src") ?? "");
    }

    /** Its description stands for a picture that can never be shown. */
    private describe(image: Element): null {
        image.replaceWith(image.getAttribute("alt")?.trim() ?? "");
        return null;
    }

    // --- Text ---

    private text(text: Text): void {
        if (this.verbatim > 0) return;
        if (spacesOnly.test(text.data) && this.isBetweenBlocks(text)) text.remove();
        else if (/[\t\n\f\r]|  /.test(text.data))
            text.data = text.data.replace(/[\t\n\f\r ]+/g, " ");
    }

    private isBetweenBlocks(text: Text): boolean {
        const parent = text.parentElement!;
        if (structures.has(parent.localName)) return true;
        const isEdge = (node: Node | null) =>
            node ? isBlockNode(node) : parent.localName === "body" || isBlockNode(parent);
        let next = text.nextSibling;
        while (next?.nodeType === Node.COMMENT_NODE) next = next.nextSibling;
        return isEdge(text.previousSibling) || isEdge(next);
    }

    // --- Leaving an element, whose inside is clean now ---

    private leave({ element, look, marker }: Open): void {
        const name = element.localName;
        if (look.verbatim || name === "pre") this.verbatim--;
        if (standing.has(name)) this.leaveStanding(element);
        else if (blocks.has(name)) this.leaveBlock(element, look, marker);
        else this.leaveInline(element);
    }

    private leaveStanding(element: Element): void {
        const name = element.localName;
        if (name === "td" || name === "th") unwrapOnly(element);
        else if (name === "ul" || name === "ol") {
            if (element.firstChild) nestInItem(element);
            else element.remove();
        }
    }

    private leaveBlock(element: Element, look: Look, marker: string): void {
        const name = element.localName;
        if (isBlank(element)) {
            // An empty line is one that somebody typed; an empty heading or item is nothing.
            if (!element.firstChild || !/^(?:p|div)$/.test(name)) {
                if (name !== "li" && name !== "dd") element.remove();
                return;
            }
            element.replaceChildren(this.doc.createElement("br"));
        }
        if (name === "li") unwrapOnly(element);
        if (look.list && /^(?:p|div|h[1-6])$/.test(name)) {
            if (/^h/.test(name)) return; // A numbered heading is a heading.
            this.lists.add(element, look.list, marker);
        }
    }

    private leaveInline(element: Element): void {
        if (!element.firstChild) return element.remove();
        const previous = element.previousSibling;
        if (isBlank(element) && element.localName !== "a") unwrap(element);
        else if (isSameSpan(element, previous)) {
            while (element.firstChild) (previous as Element).append(element.firstChild);
            element.remove();
        }
    }
}

/** Puts the inside of an element in its place; the first node of it, if there is any. */
function unwrap(element: Element): ChildNode | null {
    const first = element.firstChild;
    while (element.firstChild) element.before(element.firstChild);
    element.remove();
    return first;
}

/** An element that says nothing: what is in it says the same without it. */
function isWrapper(element: Element): boolean {
    const name = element.localName;
    if (element.attributes.length > 0) return false;
    if (name === "span" || name === "font") return true;
    if (name !== "div") return false;
    let holdsBlocks = false;
    for (const node of element.childNodes) {
        if (node.nodeType === Node.COMMENT_NODE) continue;
        if (node.nodeType === Node.TEXT_NODE && spacesOnly.test((node as Text).data)) continue;
        if (!isBlockNode(node) && !divisions.has((node as Element).localName)) return false;
        holdsBlocks = true;
    }
    return holdsBlocks;
}

/** The only paragraph of a cell or an item. */
function unwrapOnly(element: Element): void {
    const only = element.firstElementChild;
    if (!only || element.firstChild !== only || only.attributes.length > 0) return;
    if (only.localName !== "p" && only.localName !== "div") return;
    const behind = only.nextSibling;
    if (behind && !/^[UO]L$/.test(behind.nodeName)) return;
    unwrap(only);
}

/** Nothing but white space in it, no-break spaces included. */
function isBlank(element: Element): boolean {
    for (const node of element.childNodes)
        if (node.nodeType !== Node.TEXT_NODE || !blankText.test((node as Text).data)) return false;
    return true;
}

/** Programs cut one run of text into many. */
function isSameSpan(element: Element, previous: Node | null): boolean {
    if (element.localName !== "span" || previous?.nodeName !== "SPAN") return false;
    const other = previous as Element;
    return (
        element.attributes.length === 1 &&
        other.attributes.length === 1 &&
        element.getAttribute("style") === other.getAttribute("style")
    );
}

/** Cleans the body of a parsed document in place. */
export function cleanForeign(doc: Document, pictures: ReadonlySet<Element>): void {
    new Cleaner(doc, pictures).clean(doc.body);
}
