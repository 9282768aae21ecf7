// The toolbar. Its buttons are built from the command table; the arrow keys move among them, as the
// toolbar pattern of WAI-ARIA has it, and their state follows the caret.

import * as commands from "../commands";
import { can, Command } from "../commands";
import { matches } from "../edit/shortcut";
import { changeTable, deleteTable, insertTable, inTable, TableChange } from "../edit/tables";
import type { Editor } from "../editor";
import { native } from "../bridge/native";
import { element, moveFocus } from "./dom";
import { icon, IconName } from "./icons";
import { LinkBubble, showLinkDialog } from "./linkdialog";
import { MenuItem, showMenu } from "./menu";
import { highlightColors, showPalette, textColors } from "./palette";
import { Popup } from "./popup";
import { showTablePicker } from "./tablepicker";
import { group, isActive, setEnabled, toolButton } from "./toolbutton";

/** The engine's seven sizes, as pixels of a text whose normal size is 16. */
const fontSizes = [10, 13, 16, 18, 24, 32, 48];
const normalSize = 3;

/** What there is to bring up to date when the caret or the note has changed. */
interface Control {
    button: HTMLButtonElement;
    update(): void;
}

export class Toolbar {
    readonly bar: HTMLElement;
    private readonly controls: Control[] = [];
    private readonly linkButton: HTMLButtonElement;
    private readonly bubble: LinkBubble;
    private scheduled = false;

    /** The bar alone; `fill` brings the buttons. */
    constructor(private readonly editor: Editor) {
        const { strings } = editor;
        this.bar = element("div", {
            class: "toolbar",
            role: "toolbar",
            "aria-label": strings.toolbar,
        });
        this.linkButton = this.opening("link", strings.link, "Ctrl+K", () => this.editLink());
        this.bubble = new LinkBubble(editor, () => this.editLink());
        this.listen();
    }

    fill(): void {
        this.bar.append(
            group(this.command(commands.undo), this.command(commands.redo)),
            group(this.paragraphStyle(), this.fontSize()),
            group(
                ...commands.inline.map((each) => this.command(each)),
                this.color("textColor", "foreColor", textColors),
                this.color("background", "hiliteColor", highlightColors),
                this.command(commands.clear),
            ),
            group(...commands.lists.map((each) => this.command(each)), this.alignment()),
            group(
                this.command(commands.quote),
                this.command(commands.code),
                this.linkButton,
                this.table(),
                this.command(commands.rule),
            ),
            group(this.command(commands.attach), ...this.capture()),
        );
        this.setTabStop(this.buttons()[0]!);
        this.update();
    }

    focus(): void {
        this.buttons()
            .find((each) => each.tabIndex === 0)
            ?.focus();
    }

    /** In the order in which they are seen. */
    private buttons(): HTMLButtonElement[] {
        return [...this.bar.querySelectorAll("button")];
    }

    /** Brings every button up to date, once however often it is asked for in a frame. */
    updateSoon(): void {
        if (this.scheduled) return;
        this.scheduled = true;
        const run = () => {
            if (!this.scheduled) return;
            this.scheduled = false;
            this.update();
        };
        requestAnimationFrame(run);
        // A page that is not visible gets no frames.
        setTimeout(run, 200);
    }

    private update(): void {
        if (!this.editor.editable) Popup.closeAny();
        this.controls.forEach((control) => control.update());
        this.bubble.update();
    }

    private listen(): void {
        this.bar.addEventListener("keydown", (event) => {
            if (event.key === "Escape") this.editor.focusNote();
            else if (
                event.key === "ArrowDown" &&
                document.activeElement?.hasAttribute("aria-haspopup")
            )
                (document.activeElement as HTMLElement).click();
            else moveFocus(event, this.buttons());
        });
        this.bar.addEventListener("focusin", (event) =>
            this.setTabStop(event.target as HTMLElement),
        );
        this.editor.frame.onDocument((doc) => {
            doc.addEventListener("mousedown", () => Popup.closeAny());
            doc.addEventListener("keydown", (event) => {
                if (!this.editor.editable || !matches(event, "Ctrl+K")) return;
                event.preventDefault();
                this.editLink();
            });
        });
    }

    private setTabStop(focused: HTMLElement): void {
        for (const each of this.buttons()) each.tabIndex = each === focused ? 0 : -1;
    }

    private editLink(): void {
        if (can(this.editor, "createLink")) showLinkDialog(this.editor, this.linkButton);
    }

    /** A button that runs `run` in the note. */
    private command(command: Command): HTMLButtonElement {
        const { editor } = this;
        const label = editor.strings[command.label] as string;
        const made = toolButton(command.icon, label, command.keys?.[0], () => {
            if (command.enabled(editor)) command.run(editor);
        });
        this.controls.push({
            button: made,
            update: () => {
                setEnabled(made, command.enabled(editor));
                if (command.active)
                    made.setAttribute("aria-pressed", String(isActive(editor, command)));
            },
        });
        return made;
    }

    /** A button that opens something under itself. */
    private opening(
        name: IconName,
        label: string,
        shortcut: string | undefined,
        open: (opener: HTMLButtonElement) => void,
        enabled: () => boolean = () => can(this.editor, "formatBlock"),
        update: (made: HTMLButtonElement) => void = () => undefined,
    ): HTMLButtonElement {
        const made: HTMLButtonElement = toolButton(name, label, shortcut, () => {
            if (Popup.isOpenFor(made)) Popup.closeAny();
            else if (enabled()) open(made);
        });
        made.setAttribute("aria-haspopup", "true");
        made.setAttribute("aria-expanded", "false");
        this.controls.push({
            button: made,
            update: () => {
                setEnabled(made, enabled());
                update(made);
            },
        });
        return made;
    }

    private paragraphStyle(): HTMLButtonElement {
        const { editor } = this;
        const { strings } = editor;
        const looks = [
            "",
            "font-size:19px;font-weight:700",
            "font-size:17px;font-weight:650",
            "font-weight:650",
        ];
        const current = element("span", { class: "select-text" });
        const made = this.opening(
            "chevron",
            strings.paragraphStyle,
            undefined,
            (opener) =>
                showMenu(
                    opener,
                    strings.paragraphStyle,
                    commands.paragraphStyles.map((style, index) => ({
                        label: strings[style.label] as string,
                        look: looks[index],
                        shortcut: style.keys?.[0],
                        checked: isActive(editor, style),
                        run: () => this.inNote(() => style.run(editor)),
                    })),
                ),
            undefined,
            () => {
                const held = commands.paragraphStyles.find((style) => isActive(editor, style));
                current.textContent = strings[held?.label ?? "paragraph"] as string;
            },
        );
        made.classList.add("select", "select-style");
        made.prepend(current);
        return made;
    }

    private fontSize(): HTMLButtonElement {
        const { editor } = this;
        const current = element("span", { class: "select-text" });
        const size = () => {
            const value = Number(editor.frame.document.queryCommandValue("fontSize"));
            return fontSizes[value - 1] ? value : normalSize;
        };
        const made = this.opening(
            "chevron",
            editor.strings.fontSize,
            undefined,
            (opener) =>
                showMenu(
                    opener,
                    editor.strings.fontSize,
                    fontSizes.map((pixels, index) => ({
                        label: String(pixels),
                        checked: size() === index + 1,
                        run: () => this.inNote(() => editor.exec("fontSize", String(index + 1))),
                    })),
                ),
            () => can(editor, "fontSize"),
            () => {
                const element = editor.selection.element() ?? editor.frame.body;
                current.textContent = String(
                    Math.round(parseFloat(getComputedStyle(element).fontSize)),
                );
            },
        );
        made.classList.add("select", "select-size");
        made.prepend(current);
        return made;
    }

    private color(
        name: "textColor" | "background",
        command: "foreColor" | "hiliteColor",
        colors: string,
    ): HTMLButtonElement {
        const { editor } = this;
        const label = editor.strings[name];
        // Given the colour that holds around it, the engine takes a text's own colour away.
        const none = () => {
            if (command === "hiliteColor") return "transparent";
            return getComputedStyle(editor.selection.block() ?? editor.frame.body).color;
        };
        const made = this.opening(
            name,
            label,
            undefined,
            (opener) =>
                showPalette(opener, label, colors, editor.strings.noColor, (color) =>
                    this.inNote(() => {
                        bar.style.backgroundColor = color ?? "";
                        editor.exec(command, color ?? none());
                    }),
                ),
            () => can(editor, command),
        );
        const bar = element("span", { class: "color-bar" });
        made.classList.add("color");
        made.append(bar);
        return made;
    }

    private alignment(): HTMLButtonElement {
        const { editor } = this;
        const held = () => commands.alignments.find((each) => isActive(editor, each));
        const made = this.opening(
            "alignLeft",
            editor.strings.align,
            undefined,
            (opener) =>
                showMenu(
                    opener,
                    editor.strings.align,
                    commands.alignments.map((each) => ({
                        ...this.item(each),
                        checked: held() === each,
                    })),
                ),
            () => can(editor, "justifyLeft"),
            () => made.querySelector("svg")!.replaceWith(icon(held()?.icon ?? "alignLeft")),
        );
        return made;
    }

    private table(): HTMLButtonElement {
        const { editor } = this;
        const { strings } = editor;
        const change = (name: TableChange, separated = false): MenuItem => ({
            label: strings[name],
            icon: name,
            separated,
            run: () => this.inNote(() => changeTable(editor, name)),
        });
        return this.opening(
            "table",
            strings.table,
            undefined,
            (opener) => {
                if (!inTable(editor)) {
                    showTablePicker(
                        opener,
                        strings.tableInsert,
                        strings.tableSize,
                        (rows, columns) => this.inNote(() => insertTable(editor, rows, columns)),
                    );
                    return;
                }
                showMenu(opener, strings.table, [
                    change("rowAbove"),
                    change("rowBelow"),
                    change("columnLeft"),
                    change("columnRight"),
                    change("deleteRow", true),
                    change("deleteColumn"),
                    {
                        label: strings.deleteTable,
                        icon: "deleteTable",
                        run: () => this.inNote(() => deleteTable(editor)),
                    },
                ]);
            },
            () => can(editor, "insertHTML"),
        );
    }

    private capture(): HTMLButtonElement[] {
        const { editor } = this;
        const { strings } = editor;
        const main = this.command(commands.capture);
        main.classList.add("split-main");
        const choices = this.opening(
            "chevron",
            strings.captureOptions,
            undefined,
            (opener) =>
                showMenu(opener, strings.captureOptions, [
                    {
                        label: strings.captureHere,
                        icon: "capture",
                        run: () => native.screenCapture(false),
                    },
                    {
                        label: strings.captureHidden,
                        icon: "hide",
                        run: () => native.screenCapture(true),
                    },
                ]),
            () => editor.editable,
        );
        choices.classList.add("split-more");
        return [main, choices];
    }

    private item(command: Command): MenuItem {
        return {
            label: this.editor.strings[command.label] as string,
            icon: command.icon,
            shortcut: command.keys?.[0],
            enabled: command.enabled(this.editor),
            run: () => this.inNote(() => command.run(this.editor)),
        };
    }

    /** Runs `step` with the focus back in the note, where the user goes on writing. */
    private inNote(step: () => void): void {
        this.editor.focusNote();
        step();
    }
}
