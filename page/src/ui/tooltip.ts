// The tooltip of a control: its label and its shortcut, on hovering and on keyboard focus.

import { element } from "./dom";

const delay = 450;

const tip = element("div", { class: "tooltip", role: "tooltip" });
let timer: ReturnType<typeof setTimeout> | undefined;

export function hideTooltip(): void {
    clearTimeout(timer);
    tip.classList.remove("shown");
}

function show(control: HTMLElement, label: string, shortcut: string): void {
    if (control.getAttribute("aria-expanded") === "true") return;
    tip.replaceChildren(label);
    if (shortcut) tip.append(element("kbd", {}, shortcut));
    if (!tip.isConnected) document.body.append(tip);
    const anchor = control.getBoundingClientRect();
    const width = tip.offsetWidth;
    const left = anchor.left + anchor.width / 2 - width / 2;
    tip.style.left = `${Math.max(6, Math.min(left, window.innerWidth - width - 6))}px`;
    tip.style.top = `${anchor.bottom + 7}px`;
    tip.classList.add("shown");
}

export function addTooltip(control: HTMLElement, label: string, shortcut = ""): void {
    const later = () => {
        clearTimeout(timer);
        timer = setTimeout(() => show(control, label, shortcut), delay);
    };
    control.addEventListener("pointerenter", later);
    control.addEventListener("pointerleave", hideTooltip);
    control.addEventListener("pointerdown", hideTooltip);
    control.addEventListener("focus", () => {
        if (control.matches(":focus-visible")) later();
    });
    control.addEventListener("blur", hideTooltip);
}
