// Tables. The engine has no commands for rows and columns: a changed copy takes the table's place by
// `insertHTML`, which makes each of them one step of undo.

import type { Editor } from "../editor";

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

type Change = (table: HTMLTableElement, row: number, column: number) => [number, number] | null;

export type TableChange =
    "rowAbove" | "rowBelow" | "columnLeft" | "columnRight" | "deleteRow" | "deleteColumn";

const changes: Record<TableChange, Change> = {
    rowAbove: (table, row, column) => {
        insertRow(table, row, row);
        return [row, column];
    },
    rowBelow: (table, row, column) => {
        insertRow(table, row, row + 1);
        return [row + 1, column];
    },
    columnLeft: (table, row, column) => {
        insertColumn(table, column, "before");
        return [row, column];
    },
    columnRight: (table, row, column) => {
        insertColumn(table, column, "after");
        return [row, column + 1];
    },
    deleteRow: (table, row, column) => {
        table.rows[row]!.remove();
        return table.rows.length > 0 ? [Math.min(row, table.rows.length - 1), column] : null;
    },
    deleteColumn: (table, row, column) => {
        for (const each of table.rows) each.cells[column]?.remove();
        const width = Math.max(...Array.from(table.rows, (each) => each.cells.length));
        return width > 0 ? [row, Math.min(column, width - 1)] : null;
    },
};

/** A new row like the one at `like`, with empty cells, which becomes the row at `index`. */
function insertRow(table: HTMLTableElement, like: number, index: number): void {
    const model = table.rows[like]!;
    const fresh = model.cloneNode(true) as HTMLTableRowElement;
    for (const cell of fresh.cells) empty(cell);
    if (index > like) model.after(fresh);
    else model.before(fresh);
}

function insertColumn(table: HTMLTableElement, column: number, side: "before" | "after"): void {
    for (const row of table.rows) {
        const model = row.cells[Math.min(column, row.cells.length - 1)];
        if (!model) continue;
        const fresh = model.cloneNode(true) as HTMLTableCellElement;
        empty(fresh);
        model[side](fresh);
    }
}

function empty(cell: HTMLTableCellElement): void {
    cell.innerHTML = "<br>";
    cell.removeAttribute("rowspan");
    cell.removeAttribute("colspan");
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
    const caret = changes[change](copy, at.row, at.column);
    if (!caret) {
        deleteTable(editor);
        return;
    }
    const doc = editor.frame.document;
    const index = Array.from(doc.querySelectorAll("table")).indexOf(at.table);
    editor.selection.select(at.table);
    editor.exec("insertHTML", copy.outerHTML);
    caretInto(editor, doc.querySelectorAll("table")[index]?.rows[caret[0]]?.cells[caret[1]]);
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
