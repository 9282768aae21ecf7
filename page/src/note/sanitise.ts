// What may stand in the editing frame. The frame runs no script and reaches no network anyway; this
// keeps such things out of the note that is written back as well.

import DOMPurify, { Config } from "dompurify";
import { isHarmless } from "./harmless";

/** Attributes of attachment elements and of old notes that the sanitiser does not know. */
const extraAttributes = [
    "nm_exdata",
    "nmimgsrc",
    "target",
    "hspace",
    "vspace",
    "frame",
    "rules",
    "bordercolor",
];

/**
 * Addresses: the usual schemes, `file:`, a drive letter, and anything relative, backslashes included.
 * `data:` is added by the sanitiser for pictures alone.
 */
const addresses =
    /^(?:(?:https?|ftp|mailto|tel|file|cid):|[a-z]:[\\/]|[^a-z]|[a-z+.-]+(?:[^a-z+.\-:]|$))/i;

const common: Config = {
    ADD_ATTR: extraAttributes,
    ADD_URI_SAFE_ATTR: ["nm_exdata", "nmimgsrc"],
    ALLOWED_URI_REGEXP: addresses,
};

const stored: Config = {
    ...common,
    // A stored note keeps its comments, and attribute values that look like markup.
    ADD_TAGS: ["#comment", "listing", "xmp"],
    FORBID_CONTENTS: ["script", "iframe", "noembed", "noframes", "template", "title"],
    SAFE_FOR_XML: false,
    IN_PLACE: true,
};

const foreign: Config = {
    ...common,
    // Another document's style sheet would restyle the whole note.
    FORBID_TAGS: ["style", "noembed", "form", "input", "button", "textarea", "select", "dialog"],
    FORBID_ATTR: ["id", "name"],
    IN_PLACE: true,
};

/**
 * Sanitises a stored note's nodes where they stand, in a document that is not shown; false when that
 * may have changed something.
 */
export function sanitiseStored(container: HTMLElement): boolean {
    if (isHarmless(container)) return true;
    DOMPurify.sanitize(container, stored as Config & { IN_PLACE: true });
    return false;
}

/** Sanitises pasted or dropped nodes where they stand, in a document that is not shown. */
export function sanitiseForeign(body: HTMLElement): HTMLElement {
    if (!isHarmless(body)) DOMPurify.sanitize(body, foreign as Config & { IN_PLACE: true });
    return body;
}
