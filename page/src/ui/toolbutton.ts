// What the toolbar is made of: buttons and groups of them.

import type { Command } from "../commands";
import { ariaShortcut } from "../edit/shortcut";
import type { Editor } from "../editor";
import { button, element } from "./dom";
import { icon, IconName } from "./icons";
import { addTooltip } from "./tooltip";

export function group(...controls: HTMLElement[]): HTMLElement {
    return element("div", { class: "group", role: "presentation" }, ...controls);
}

export function toolButton(
    name: IconName,
    label: string,
    shortcut: string | undefined,
    click: () => void,
): HTMLButtonElement {
    const made = button({ class: "tool", "aria-label": label }, [icon(name)], click);
    if (shortcut) made.setAttribute("aria-keyshortcuts", ariaShortcut(shortcut));
    addTooltip(made, label, shortcut);
    return made;
}

// aria-disabled, not disabled: a button stays reachable by the arrow keys and keeps its tooltip.
export function setEnabled(made: HTMLButtonElement, enabled: boolean): void {
    made.setAttribute("aria-disabled", String(!enabled));
}

export function isActive(editor: Editor, command: Command): boolean {
    return command.active?.(editor) ?? false;
}
