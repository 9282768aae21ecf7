// Work that the next screen need not wait for.

/** Runs `step` once a frame is on the screen; soon in any case, for a page that is not visible. */
export function afterPaint(step: () => void): void {
    let ran = false;
    const once = () => {
        if (!ran) step();
        ran = true;
    };
    // The second frame begins when the first has been handed on.
    requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(once)));
    setTimeout(once, 250);
}
