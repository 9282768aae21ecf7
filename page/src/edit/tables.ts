// Tables. The engine has no commands for rows and columns: a changed copy takes the table's place by
// `insertHTML`, which makes each of them one step of undo.

import type { Editor } from "../editor";
import { TableGrid } from "./tablegrid";

const cellStyle = 'style="border: 1px solid #c4c9d1; padding: 6px 10px; vertical-align: top;"';

export function insertTable(editor: Editor, rows: number, columns: number): void {
    const row = `<tr>${`<td ${cellStyle}><br></td>`.repeat(columns)}</tr>`;
    const before = new Set(editor.frame.document.querySelectorAll("table"));
    editor.exec(
        "insertHTML",
        '<table style="border-collapse: collapse; width: 100%; table-layout: fixed;"><tbody>' +
            `${row.repeat(rows)}</tbody></table><div><br></div>`,
    );
    const table = [...editor.frame.document.querySelectorAll("table")].find((t) => !before.has(t));
    if (table) caretInto(editor, table.rows[0]?.cells[0]);
}

/** Changes a table at the squares of a cell, and gives the square for the caret. */
type Change = (grid: TableGrid, area: ReturnType<TableGrid["areaOf"]>) => [number, number];

export type TableChange =
    "rowAbove" | "rowBelow" | "columnLeft" | "columnRight" | "deleteRow" | "deleteColumn";

const changes: Record<TableChange, Change> = {
    rowAbove: (grid, { top, left }) => {
        grid.insertRow(top, top);
        return [top, left];
    },
    rowBelow: (grid, { left, bottom }) => {
        grid.insertRow(bottom, bottom - 1);
        return [bottom, left];
    },
    columnLeft: (grid, { top, left }) => {
        grid.insertColumn(left, left);
        return [top, left];
    },
    columnRight: (grid, { top, right }) => {
        grid.insertColumn(right, right - 1);
        return [top, right];
    },
    deleteRow: (grid, { top, left }) => {
        grid.deleteRow(top);
        return [top, left];
    },
    deleteColumn: (grid, { top, left }) => {
        grid.deleteColumn(left);
        return [top, left];
    },
};

/** The cell in a square, or else any: nothing is left of the table when there is none. */
function cellAt(table: HTMLTableElement, row: number, column: number): HTMLTableCellElement | null {
    const last = table.rows.length - 1;
    return new TableGrid(table).at(Math.min(row, last), column) ?? table.querySelector("td,th");
}

function place(editor: Editor): { table: HTMLTableElement; row: number; column: number } | null {
    const cell = editor.selection.closest("td,th") as HTMLTableCellElement | null;
    const row = cell?.closest("tr");
    const table = row?.closest("table");
    return cell && row && table
        ? { table, row: Array.from(table.rows).indexOf(row), column: cell.cellIndex }
        : null;
}

export function inTable(editor: Editor): boolean {
    return place(editor) !== null;
}

export function changeTable(editor: Editor, change: TableChange): void {
    const at = place(editor);
    if (!at) return;
    const copy = at.table.cloneNode(true) as HTMLTableElement;
    const grid = new TableGrid(copy);
    const area = grid.areaOf(copy.rows[at.row]!.cells[at.column]!);
    const caret = cellAt(copy, ...changes[change](grid, area));
    if (!caret) {
        deleteTable(editor);
        return;
    }
    const row = Array.from(copy.rows).indexOf(caret.parentElement as HTMLTableRowElement);
    const doc = editor.frame.document;
    const index = Array.from(doc.querySelectorAll("table")).indexOf(at.table);
    editor.selection.select(at.table);
    editor.exec("insertHTML", copy.outerHTML);
    caretInto(editor, doc.querySelectorAll("table")[index]?.rows[row]?.cells[caret.cellIndex]);
}

export function deleteTable(editor: Editor): void {
    const at = place(editor);
    if (!at) return;
    editor.selection.select(at.table);
    editor.exec("delete");
}

/** Tab goes to the next cell, behind the last one to a new row; false when in no table. */
export function moveToCell(editor: Editor, back: boolean): boolean {
    const at = place(editor);
    if (!at) return false;
    const cells = Array.from(at.table.rows).flatMap((row) => Array.from(row.cells));
    const next = cells.indexOf(at.table.rows[at.row]!.cells[at.column]!) + (back ? -1 : 1);
    if (next >= cells.length) {
        changeTable(editor, "rowBelow");
        const here = place(editor);
        if (here) caretInto(editor, here.table.rows[here.row]?.cells[0]);
    } else if (next >= 0) {
        caretInto(editor, cells[next]);
    }
    return true;
}

function caretInto(editor: Editor, cell: HTMLTableCellElement | undefined): void {
    if (!cell) return;
    const last = cell.lastChild;
    if (last && last.nodeName !== "BR") {
        editor.selection.selectInside(cell, cell);
        editor.frame.document.getSelection()!.collapseToEnd();
    } else {
        editor.selection.collapseTo(cell, 0);
    }
    editor.selection.reveal();
}
