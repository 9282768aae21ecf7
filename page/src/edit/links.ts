// Links lead outside only through the library, and only to the web or to a mail; nothing navigates.

import { native } from "../bridge/native";
import type { Editor } from "../editor";

/** The address as the library may open it, or null. */
export function outsideAddress(href: string): string | null {
    return /^(?:https?:\/\/[^\s]|mailto:[^\s])/i.test(href) ? href : null;
}

/** What a person typed as an address: a missing scheme is added. */
export function completeAddress(typed: string): string | null {
    const text = typed.trim();
    if (outsideAddress(text)) return text;
    if (/^[^\s@/:]+@[^\s@/:]+\.[^\s@/:]+$/.test(text)) return `mailto:${text}`;
    if (/^[a-z][a-z0-9+.-]*:(?!\d)/i.test(text)) return null;
    return /^[^\s/?#]+\.[^\s]+$|^localhost\b/i.test(text) ? `https://${text}` : null;
}

/** The link that an event happened on. One in a drawing may have its address as `xlink:href`. */
export function linkAt(target: EventTarget | null): Element | null {
    const element = target as Element | null;
    return element?.closest?.("a[*|href],area[href]") ?? null;
}

export function openLink(link: Element): void {
    const href = link.getAttribute("href") ?? link.getAttribute("xlink:href");
    const address = outsideAddress((href ?? "").trim());
    if (address) native.openHyperLink(address);
}

export function listenToLinks(editor: Editor): void {
    editor.frame.onDocument((doc) => {
        const follow = (event: MouseEvent) => {
            const link = linkAt(event.target);
            if (!link) return;
            event.preventDefault();
            // While editing a plain click places the caret; the bubble offers to open the link.
            if (!editor.editable || event.ctrlKey) openLink(link);
        };
        doc.addEventListener("click", follow);
        doc.addEventListener("auxclick", follow);
        doc.addEventListener("submit", (event) => event.preventDefault());
    });
}

/** Links the selection, or inserts the address itself where nothing is selected. */
export function setLink(editor: Editor, address: string): void {
    const existing = editor.selection.closest("a[href]");
    if (existing) editor.selection.selectInside(existing, existing);
    const range = editor.selection.range();
    if (range?.collapsed && !editor.limit.admits(Array.from(address).length)) return;
    editor.exec("createLink", address);
    if (!existing) editor.frame.document.getSelection()?.collapseToEnd();
}

export function removeLink(editor: Editor): void {
    const existing = editor.selection.closest("a[href]");
    if (existing) editor.selection.selectInside(existing, existing);
    editor.exec("unlink");
}
