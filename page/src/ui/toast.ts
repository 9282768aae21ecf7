// A message that is seen and read out, and never stands in the way.

import { element } from "./dom";

const shownFor = 3500;

export class Toast {
    private readonly box: HTMLElement;
    private timer: ReturnType<typeof setTimeout> | undefined;

    constructor(parent: HTMLElement) {
        this.box = element("div", { class: "toast", role: "status", "aria-live": "polite" });
        parent.append(this.box);
    }

    show(message: string): void {
        this.hide();
        this.box.textContent = message;
        this.box.classList.add("shown");
        this.timer = setTimeout(() => this.hide(), shownFor);
    }

    hide(): void {
        clearTimeout(this.timer);
        this.box.classList.remove("shown");
    }
}
