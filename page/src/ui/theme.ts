// Light or dark, as the host's palette is.

import { EditFrame } from "../edit/frame";

export class Theme {
    constructor(private readonly frame: EditFrame) {}

    set(dark: boolean): void {
        document.documentElement.classList.toggle("dark", dark);
        this.frame.setDark(dark);
    }
}
