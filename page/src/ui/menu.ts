// A menu of commands or choices under a toolbar button.

import { button, element, moveFocus } from "./dom";
import { icon, IconName } from "./icons";
import { Popup } from "./popup";

export interface MenuItem {
    label: string;
    icon?: IconName;
    shortcut?: string;
    /** Present for a choice of which one holds. */
    checked?: boolean;
    enabled?: boolean;
    separated?: boolean;
    /** Shows the choice as it will look. */
    look?: string;
    run(): void;
}

export function showMenu(opener: HTMLElement, label: string, items: MenuItem[]): void {
    const list = element("div", { class: "menu", role: "menu", "aria-label": label });
    const buttons = items.map((item) => menuButton(item));
    items.forEach((item, index) => {
        if (item.separated) list.append(element("div", { class: "menu-line", role: "separator" }));
        list.append(buttons[index]!);
    });
    list.addEventListener("keydown", (event) => moveFocus(event, buttons));
    const current = buttons[items.findIndex((item) => item.checked)] ?? buttons[0];
    Popup.show(opener, list, { focus: openedByKey(opener) ? current : null });
}

/** Only a keyboard user needs the focus in the menu; a mouse user keeps the caret in the note. */
export function openedByKey(opener: HTMLElement): boolean {
    return document.activeElement === opener;
}

function menuButton(item: MenuItem): HTMLButtonElement {
    const choice = item.checked !== undefined;
    const mark = choice
        ? item.checked
            ? [icon("check")]
            : []
        : item.icon
          ? [icon(item.icon)]
          : [];
    const text = element("span", { class: "menu-text" }, item.label);
    if (item.look) text.style.cssText = item.look;
    const made = button(
        { class: "menu-item", role: choice ? "menuitemradio" : "menuitem" },
        [element("span", { class: "menu-mark" }, ...mark), text],
        () => {
            if (item.enabled === false) return;
            Popup.closeAny();
            item.run();
        },
    );
    if (choice) made.setAttribute("aria-checked", String(item.checked));
    if (item.enabled === false) made.setAttribute("aria-disabled", "true");
    if (item.shortcut) made.append(element("kbd", {}, item.shortcut));
    return made;
}
