// From the HTML on the clipboard to what goes into the note.

import { sanitiseForeign } from "../note/sanitise";
import { joinBoxedLists } from "./boxedlists";
import { cleanForeign } from "./clean";
import { Picture, takePictures } from "./pictures";
import { withoutSheets } from "./sheet";

export interface Pasted {
    /** In a document that is not shown. */
    body: HTMLElement;
    /** Those in `body` that have to come in through the library first. */
    pictures: Picture[];
}

/** What this editor has copied passes as it stands, but for what may stand in no note. */
export function readPasted(html: string, own: boolean): Pasted {
    const doc = new DOMParser().parseFromString(withoutSheets(html), "text/html");
    const pictures = takePictures(doc);
    if (!own && !doc.querySelector("img[nm_exdata]")) {
        joinBoxedLists(doc);
        cleanForeign(doc, new Set(pictures.map((picture) => picture.element)));
    }
    return { body: sanitiseForeign(doc.body), pictures };
}
