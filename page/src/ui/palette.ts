// The colour palette.

import { button, element, moveFocus } from "./dom";
import { openedByKey } from "./menu";
import { Popup } from "./popup";

const columns = 8;

/** Neutral colours, then hues from strong to dark. */
export const textColors =
    "#1f2328 #57606a #8c959f #d0d7de #ffffff #7a5230 #b35900 #9a6700 " +
    "#d1242f #e8590c #e6a700 #2da44e #0d9488 #0969da #6f42c1 #c2255c " +
    "#86181d #9c3a00 #7d5d00 #116329 #115e59 #0a3069 #3e1f79 #801b45";

export const highlightColors =
    "#fff3a3 #ffe0b2 #ffd1d1 #f8d0e6 #e3d5ff #cfe4ff #c8f0ea #d3f2d0 " +
    "#ffe500 #ffb74d #ff8a80 #f48fb1 #b39ddb #90caf9 #80cbc4 #a5d6a7 " +
    "#ffffff #f3f4f6 #e5e7eb #d1d5db #9ca3af #6b7280 #374151 #111827";

export function showPalette(
    opener: HTMLElement,
    label: string,
    colors: string,
    noColor: string,
    choose: (color: string | null) => void,
): void {
    const pick = (color: string | null) => () => {
        Popup.closeAny();
        choose(color);
    };
    const swatches = colors.split(" ").map((color) => {
        const swatch = button({ class: "swatch", "aria-label": color }, [], pick(color));
        swatch.style.backgroundColor = color;
        return swatch;
    });
    const none = button({ class: "palette-none" }, [noColor], pick(null));
    const grid = element("div", { class: "palette-grid" }, ...swatches);
    const box = element(
        "div",
        { class: "palette", role: "group", "aria-label": label },
        none,
        grid,
    );
    box.addEventListener("keydown", (event) => {
        if (document.activeElement === none && event.key === "ArrowDown") swatches[0]!.focus();
        else if (
            event.key === "ArrowUp" &&
            swatches.indexOf(document.activeElement as never) < columns
        )
            none.focus();
        else moveFocus(event, swatches, columns);
    });
    Popup.show(opener, box, { focus: openedByKey(opener) ? none : null });
}
