// The editor as its parts see it: the frame, the note in it, and the ways to change it.

import { native, settings } from "./bridge/native";
import { listenToClipboard } from "./edit/clipboard";
import { Draft } from "./edit/draft";
import { EditFrame } from "./edit/frame";
import { listenToKeys } from "./edit/keys";
import { Limit } from "./edit/limit";
import { listenToLinks } from "./edit/links";
import { NoteSelection } from "./edit/selection";
import { AttachmentUpdate, listenToAttachments } from "./note/attachments";
import { Content } from "./note/content";
import { Highlights } from "./note/highlight";
import { Loader } from "./note/loader";
import { PastedPictures } from "./paste/pictures";
import { chinese, english, Strings } from "./strings";
import { Theme } from "./ui/theme";

/** From this length of text on, what is off the screen is not laid out. */
const largeNote = 200 * 1024;

/** Commands whose result is an inline style instead of an element. */
const styled = new Set(["foreColor", "hiliteColor", "fontSize"]);

export class Editor {
    readonly strings: Strings = settings.chinese ? chinese : english;
    readonly frame: EditFrame;
    readonly selection: NoteSelection;
    readonly content: Content;
    readonly limit: Limit;
    readonly theme: Theme;
    readonly draft: Draft;
    readonly highlights: Highlights;
    readonly pastedPictures = new PastedPictures(this);
    /** The newest file and picture of attachments that changed while this note was open. */
    readonly attachmentUpdates = new Map<string, AttachmentUpdate>();

    /** Texts that the page has taken from the library: what it sends of the note tells which it is of. */
    texts = 0;
    readOnly = false;
    /** Whether the user, or the library for the user, has put a caret into this note. */
    caretPlaced = false;

    /** Set by the user interface. */
    toast: (message: string) => void = () => undefined;
    focusToolbar: () => void = () => undefined;
    stateChanged: () => void = () => undefined;

    private loader: Loader | null = null;

    /** Shows nothing until the first `load`. */
    constructor(parent: HTMLElement) {
        this.frame = new EditFrame(parent, this.strings);
        this.selection = new NoteSelection(this.frame);
        this.content = new Content(this.frame);
        this.limit = new Limit(this);
        this.theme = new Theme(this.frame);
        this.draft = new Draft(this);
        this.highlights = new Highlights(this);
        this.content.onChange(() => this.stateChanged());
        listenToKeys(this);
        listenToClipboard(this);
        listenToLinks(this);
        listenToAttachments(this);
        this.frame.onDocument((doc) => this.listen(doc));
    }

    get loading(): boolean {
        return this.loader !== null && !this.loader.complete;
    }

    get editable(): boolean {
        return !this.readOnly && this.loader?.complete === true;
    }

    /** Shows a note's HTML; a large one is complete a while later. */
    load(html: string): void {
        try {
            this.start(html);
        } catch (error) {
            // Whoever sees an empty page must not take it for the note.
            this.applyMode();
            native.messageBox(this.strings.cannotShow);
            throw error;
        }
    }

    setReadOnly(readOnly: boolean): void {
        this.readOnly = readOnly;
        document.documentElement.classList.toggle("read-only", readOnly);
        this.applyMode();
    }

    finishLoading(): void {
        if (this.loading) this.loader!.finish();
    }

    /** Runs one of the engine's editing commands, which its undo history knows. */
    exec(command: string, value?: string): boolean {
        this.content.willChange();
        if (command !== "delete") this.limit.uncounted();
        if (command === "insertHTML") this.frame.layOutForInsertion();
        const doc = this.frame.document;
        doc.execCommand("styleWithCSS", false, String(styled.has(command)));
        const done = doc.execCommand(command, false, value);
        this.stateChanged();
        return done;
    }

    /** Forgets undo and redo; the text stays as it is. */
    clearUndo(): void {
        // A note that is still loading takes no input, so there is nothing to forget yet.
        if (this.loading) return;
        const doc = this.frame.document;
        if (!doc.queryCommandEnabled("undo") && !doc.queryCommandEnabled("redo")) return;
        this.content.currentRevision();
        this.frame.replaceBody();
        this.content.watch();
        this.selection.toStart();
        this.caretPlaced = false;
        this.stateChanged();
    }

    focusNote(): void {
        this.frame.focus();
        if (this.readOnly) return;
        if (!this.selection.range()) this.selection.toStart();
        this.caretPlaced = true;
    }

    private start(html: string): void {
        this.loader?.cancel();
        this.loader = null;
        this.draft.forget();
        this.pastedPictures.forget();
        this.attachmentUpdates.clear();
        this.caretPlaced = false;
        this.content.load(html);
        this.limit.uncounted();
        this.frame.reset(html.length > largeNote);
        this.loader = new Loader(html, this.frame.body, (faithful) => this.loaded(faithful));
        this.loader.start();
        this.applyMode();
    }

    private loaded(faithful: boolean): void {
        const body = this.frame.body;
        // A caret needs a paragraph to stand in. Nobody sees it in the text of an untouched note.
        if (!body.hasChildNodes()) body.append(emptyParagraph(this.frame.document));
        this.content.watch(faithful);
        this.selection.toStart();
        this.applyMode();
    }

    private applyMode(): void {
        this.frame.setEditable(this.editable);
        document.documentElement.classList.toggle("loading", this.loading);
        this.stateChanged();
    }

    private listen(doc: Document): void {
        doc.addEventListener("beforeinput", () => this.content.willChange());
        doc.addEventListener("compositionstart", () => this.content.willChange());
        doc.addEventListener("selectionchange", () => this.stateChanged());
        for (const touch of ["pointerdown", "keydown", "compositionstart"])
            doc.addEventListener(touch, () => (this.caretPlaced = true));
    }
}

function emptyParagraph(doc: Document): HTMLElement {
    const paragraph = doc.createElement("div");
    paragraph.append(doc.createElement("br"));
    return paragraph;
}
