// Pictures in pasted HTML that are in the HTML itself or in a file. They become attachments, by the
// library, before the text goes into the note: one paste is one step of undo.
//
// The library answers a request with the digest of each picture that it can read, adds them as it
// adds any file, and says when it has done. An attachment that comes in between and has such a digest
// in its name is put into the waiting text, and not at the caret.

import { channel } from "../bridge/native";
import type { Editor } from "../editor";
import { NewAttachment, setAttachment } from "../note/attachments";

export interface Picture {
    element: Element;
    source: string;
}

interface Waiting {
    number: number;
    body: HTMLElement;
    pictures: Picture[];
    /** Sources in the order of the request, and their digests when they are known. */
    sources: string[];
    digests: string[];
    finish: (body: HTMLElement) => void;
}

const ours = /^\s*(?:data:image\/|file:)/i;

/** Takes the addresses of all such pictures from their elements. */
export function takePictures(doc: Document): Picture[] {
    const pictures: Picture[] = [];
    for (const drawn of doc.querySelectorAll("v\\:imagedata[src]")) {
        const image = doc.createElement("img");
        image.setAttribute("src", drawn.getAttribute("src")!);
        drawn.before(image);
    }
    for (const element of doc.querySelectorAll("img[src]")) {
        const source = element.getAttribute("src")!.trim();
        if (!ours.test(source) || element.hasAttribute("nm_exdata")) continue;
        element.removeAttribute("src");
        pictures.push({ element, source });
    }
    return pictures;
}

export class PastedPictures {
    private count = 0;
    private waiting: Waiting | null = null;

    constructor(private readonly editor: Editor) {}

    /** Calls `finish` with `body` as soon as its pictures are attachments or gone. */
    bringIn(body: HTMLElement, pictures: Picture[], finish: (body: HTMLElement) => void): void {
        if (pictures.length === 0 || !channel.connected()) {
            pictures.forEach((picture) => dismiss(picture.element));
            finish(body);
            return;
        }
        this.end();
        const sources = [...new Set(pictures.map((picture) => picture.source))];
        this.waiting = { number: ++this.count, body, pictures, sources, digests: [], finish };
        channel.pictures(this.editor.texts, this.count, sources);
    }

    /** The note that was pasted into is gone. */
    forget(): void {
        this.waiting = null;
    }

    /** The library has read the pictures of a request: their digests, empty where there is none. */
    known(number: number, digests: string[]): void {
        if (this.waiting?.number === number) this.waiting.digests = digests;
    }

    /** The library has added what may enter. */
    done(number: number): void {
        if (this.waiting?.number === number) this.end();
    }

    /** Whether an attachment belongs to the waiting text, which has it then. */
    takes(attachment: NewAttachment): boolean {
        const waiting = this.waiting;
        if (!waiting) return false;
        const at = waiting.digests.findIndex((digest) => digest && attachment.src.includes(digest));
        if (at < 0) return false;
        // Several sources may be the same picture.
        const digest = waiting.digests[at]!;
        const sources = new Set(
            waiting.sources.filter((_, index) => waiting.digests[index] === digest),
        );
        for (const { element, source } of waiting.pictures)
            if (sources.has(source)) setAttachment(element, attachment);
        return true;
    }

    private end(): void {
        const waiting = this.waiting;
        this.waiting = null;
        if (!waiting) return;
        for (const { element } of waiting.pictures)
            if (!element.hasAttribute("nm_exdata")) dismiss(element);
        if (this.editor.editable) waiting.finish(waiting.body);
    }
}

/** A picture that did not come in leaves its description, or nothing. */
function dismiss(element: Element): void {
    const paragraph = element.parentElement;
    element.replaceWith(element.getAttribute("alt")?.trim() ?? "");
    paragraph?.normalize();
    if (paragraph && /^(?:p|div)$/.test(paragraph.localName) && !paragraph.hasChildNodes())
        paragraph.remove();
}
