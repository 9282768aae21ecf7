// Something that opens under a button: a menu, a palette, the link dialog. One is open at a time. A
// press anywhere else, Escape and Tab close it; Escape gives the focus back to the button.

import { element } from "./dom";
import { hideTooltip } from "./tooltip";

export class Popup {
    private static open: Popup | null = null;

    private readonly box: HTMLElement;
    private opener: HTMLElement | null = null;
    private closed: (() => void) | null = null;

    static closeAny(): void {
        Popup.open?.close();
    }

    static isOpenFor(opener: HTMLElement): boolean {
        return Popup.open?.opener === opener;
    }

    private constructor() {
        this.box = element("div", { class: "popup" });
    }

    /** Shows `content` under `opener`; `firstFocus` takes the focus, if given. */
    static show(
        opener: HTMLElement,
        content: HTMLElement,
        options: { focus?: HTMLElement | null; closed?: () => void } = {},
    ): Popup {
        Popup.closeAny();
        hideTooltip();
        const popup = new Popup();
        popup.opener = opener;
        popup.closed = options.closed ?? null;
        popup.box.append(content);
        popup.box.addEventListener("keydown", (event) => popup.key(event));
        document.body.append(popup.box);
        placeUnder(popup.box, opener.getBoundingClientRect());
        opener.setAttribute("aria-expanded", "true");
        Popup.open = popup;
        options.focus?.focus();
        return popup;
    }

    close(): void {
        if (Popup.open !== this) return;
        Popup.open = null;
        this.opener?.setAttribute("aria-expanded", "false");
        this.box.remove();
        this.closed?.();
    }

    private key(event: KeyboardEvent): void {
        if (event.key !== "Escape" && event.key !== "Tab") return;
        event.preventDefault();
        event.stopPropagation();
        const opener = this.opener;
        this.close();
        opener?.focus();
    }
}

/** Puts `box` under `anchor`, and into the window. */
export function placeUnder(box: HTMLElement, anchor: DOMRect): void {
    const margin = 6;
    const left = Math.min(anchor.left, window.innerWidth - box.offsetWidth - margin);
    box.style.left = `${Math.max(margin, left)}px`;
    const below = anchor.bottom + 4;
    const fits = below + box.offsetHeight <= window.innerHeight - margin;
    const above = anchor.top - box.offsetHeight - 4;
    box.style.top = `${fits || above < margin ? below : above}px`;
    box.style.maxHeight = `${window.innerHeight - parseFloat(box.style.top) - margin}px`;
}

/** Presses outside close what is open; the note's frame tells of its own. */
export function closePopupsOutside(): void {
    document.addEventListener("mousedown", (event) => {
        const inside = (event.target as Element).closest(".popup, [aria-expanded='true']");
        if (!inside) Popup.closeAny();
    });
    window.addEventListener("resize", () => Popup.closeAny());
}
