// Shortcuts as texts, "Ctrl+Shift+8": what a tooltip shows is what a key event is held against.

/** Key codes of keys whose character depends on Shift and on the layout. */
const codes: Record<string, number> = { "[": 219, "]": 221, "\\": 220 };

export function matches(event: KeyboardEvent, shortcut: string): boolean {
    const parts = shortcut.split("+");
    const key = parts.pop()!;
    return (
        event.ctrlKey === parts.includes("Ctrl") &&
        event.shiftKey === parts.includes("Shift") &&
        event.altKey === parts.includes("Alt") &&
        !event.metaKey &&
        (event.key.toUpperCase() === key || event.keyCode === (codes[key] ?? key.charCodeAt(0)))
    );
}

/** The same shortcut as `aria-keyshortcuts` wants it. */
export function ariaShortcut(shortcut: string): string {
    return shortcut.replace(/Ctrl/g, "Control");
}
