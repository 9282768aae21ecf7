// Small helpers to build elements.

type Attributes = Record<string, string>;

export function element<K extends keyof HTMLElementTagNameMap>(
    name: K,
    attributes: Attributes = {},
    ...children: (Node | string)[]
): HTMLElementTagNameMap[K] {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
    made.append(...children);
    return made;
}

/** A button that leaves the focus, and so the selection, in the note when it is pressed. */
export function button(
    attributes: Attributes,
    children: (Node | string)[],
    click: () => void,
): HTMLButtonElement {
    const made = element("button", { type: "button", tabindex: "-1", ...attributes }, ...children);
    made.addEventListener("mousedown", (event) => event.preventDefault());
    made.addEventListener("click", click);
    return made;
}

/** Moves the focus among `items` by arrow keys, Home and End; true when the key was one of them. */
export function moveFocus(event: KeyboardEvent, items: HTMLElement[], columns = 1): boolean {
    const at = items.indexOf(document.activeElement as HTMLElement);
    const last = items.length - 1;
    const steps: Record<string, number> = {
        ArrowRight: at + 1,
        ArrowLeft: at - 1,
        ArrowDown: at + columns,
        ArrowUp: at - columns,
        Home: 0,
        End: last,
    };
    const next = steps[event.key];
    if (next === undefined || items.length === 0) return false;
    event.preventDefault();
    if (columns > 1 && (next < 0 || next > last)) return true;
    items[(next + items.length) % items.length]!.focus();
    return true;
}
