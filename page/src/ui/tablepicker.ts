// The size of a new table, by pointing or by arrow keys.

import { element } from "./dom";
import { openedByKey } from "./menu";
import { Popup } from "./popup";

const most = 8;

export function showTablePicker(
    opener: HTMLElement,
    label: string,
    describe: (rows: number, columns: number) => string,
    choose: (rows: number, columns: number) => void,
): void {
    let rows = 2;
    let columns = 3;
    const grid = element("div", { class: "table-grid", "aria-hidden": "true" });
    const size = element("div", { class: "table-size", role: "status", "aria-live": "polite" });
    const box = element(
        "div",
        { class: "table-picker", role: "application", "aria-label": label, tabindex: "-1" },
        grid,
        size,
    );
    const cells = Array.from({ length: most * most }, (_, index) => {
        const cell = element("span", { class: "table-cell" });
        cell.dataset["row"] = String(Math.floor(index / most) + 1);
        cell.dataset["column"] = String((index % most) + 1);
        return cell;
    });
    grid.append(...cells);

    const mark = (newRows: number, newColumns: number) => {
        rows = Math.max(1, Math.min(most, newRows));
        columns = Math.max(1, Math.min(most, newColumns));
        cells.forEach((cell) => {
            const inside =
                Number(cell.dataset["row"]) <= rows && Number(cell.dataset["column"]) <= columns;
            cell.classList.toggle("chosen", inside);
        });
        size.textContent = describe(rows, columns);
    };
    const insert = () => {
        Popup.closeAny();
        choose(rows, columns);
    };
    const pointed = (event: Event) => {
        const { row, column } = (event.target as HTMLElement).dataset;
        if (row && column) mark(Number(row), Number(column));
    };

    box.addEventListener("mousedown", (event) => event.preventDefault());
    grid.addEventListener("pointerover", pointed);
    grid.addEventListener("click", (event) => {
        pointed(event);
        insert();
    });
    box.addEventListener("keydown", (event) => {
        const steps: Record<string, [number, number]> = {
            ArrowRight: [0, 1],
            ArrowLeft: [0, -1],
            ArrowDown: [1, 0],
            ArrowUp: [-1, 0],
        };
        const step = steps[event.key];
        if (step) mark(rows + step[0], columns + step[1]);
        else if (event.key === "Enter" || event.key === " ") insert();
        else return;
        event.preventDefault();
    });
    mark(rows, columns);
    Popup.show(opener, box, { focus: openedByKey(opener) ? box : null });
}
