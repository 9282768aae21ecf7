// A table as a reader sees it: rows and columns of squares, of which a cell may hold several. Rows and
// columns come and go by squares, so that a cell that spans others stays in its place.

type Cell = HTMLTableCellElement;

export class TableGrid {
    private readonly rows: HTMLTableRowElement[];
    /** The cell in each square; none where a row is shorter than others. */
    private readonly squares: (Cell | undefined)[][];

    constructor(table: HTMLTableElement) {
        this.rows = Array.from(table.rows);
        this.squares = this.rows.map(() => []);
        this.rows.forEach((row, top) => {
            for (const cell of row.cells) this.enter(cell, row, top);
        });
    }

    /** The cell in a square, or in the nearest one before it in that row. */
    at(row: number, column: number): Cell | undefined {
        const squares = this.squares[row] ?? [];
        return squares[Math.min(column, squares.length - 1)];
    }

    /** The squares that a cell holds: `bottom` and `right` are behind the last ones. */
    areaOf(cell: Cell): { top: number; left: number; bottom: number; right: number } {
        const top = this.rows.indexOf(cell.parentElement as HTMLTableRowElement);
        const left = this.squares[top]!.indexOf(cell);
        let bottom = top + 1;
        while (this.squares[bottom]?.[left] === cell) bottom++;
        return { top, left, bottom, right: this.squares[top]!.lastIndexOf(cell) + 1 };
    }

    /** A row of empty cells before row `line`, or behind the last one, that looks like row `like`. */
    insertRow(line: number, like: number): void {
        const fresh = this.rows[like]!.cloneNode(false) as HTMLTableRowElement;
        for (const cell of new Set(this.squares[line - 1]))
            if (cell && !this.squares[line]?.includes(cell)) endHere(cell, this.areaOf(cell));
        const across = new Set<Cell>();
        this.squares[like]!.forEach((model, column) => {
            const above = this.squares[line - 1]?.[column];
            if (above && above === this.squares[line]?.[column]) across.add(above);
            else if (model) fresh.append(emptyCopy(model));
        });
        for (const cell of across) resize(cell, "rowSpan", 1);
        if (line > like) this.rows[line - 1]!.after(fresh);
        else this.rows[line]!.before(fresh);
    }

    /** A column of empty cells before column `line`, or behind the last one, that looks like `like`. */
    insertColumn(line: number, like: number): void {
        const across = new Set<Cell>();
        this.rows.forEach((row, index) => {
            const squares = this.squares[index]!;
            const before = squares[line - 1];
            const model = this.at(index, like);
            if (before && before === squares[line]) across.add(before);
            else if (model) row.insertBefore(emptyCopy(model), this.ownCellFrom(index, line));
        });
        for (const cell of across) resize(cell, "colSpan", 1);
    }

    /** Cells that go on below stay, one row shorter. */
    deleteRow(index: number): void {
        const below = this.squares[index + 1];
        for (const cell of new Set(this.squares[index])) {
            if (!cell) continue;
            const column = this.squares[index]!.indexOf(cell);
            if (cell.parentElement === this.rows[index] && below?.[column] === cell)
                this.rows[index + 1]!.insertBefore(cell, this.ownCellFrom(index + 1, column + 1));
            resize(cell, "rowSpan", -1);
        }
        this.rows[index]!.remove();
    }

    /** Cells that go on beside stay, one column narrower. */
    deleteColumn(column: number): void {
        for (const cell of new Set(this.squares.map((row) => row[column]))) {
            if (!cell) continue;
            if (cell.colSpan > 1) resize(cell, "colSpan", -1);
            else cell.remove();
        }
    }

    /** The engine lays cells out so: each in the first free square, and never beyond its row group. */
    private enter(cell: Cell, row: HTMLTableRowElement, top: number): void {
        let left = 0;
        while (this.squares[top]![left]) left++;
        const end = cell.rowSpan === 0 ? this.rows.length : top + cell.rowSpan;
        for (let at = top; at < end && this.rows[at]?.parentElement === row.parentElement; at++)
            for (let column = left; column < left + cell.colSpan; column++)
                this.squares[at]![column] ??= cell;
    }

    /** The first cell that begins in this row, in column `from` or behind it. */
    private ownCellFrom(row: number, from: number): Cell | null {
        const own = Array.from(this.rows[row]!.cells);
        return own.find((cell) => this.squares[row]!.indexOf(cell) >= from) ?? null;
    }
}

function emptyCopy(model: Cell): Cell {
    const cell = model.cloneNode(false) as Cell;
    cell.innerHTML = "<br>";
    cell.removeAttribute("rowspan");
    cell.removeAttribute("colspan");
    return cell;
}

/** A span may be told longer than its row group is: a row that is added there would fall under it. */
function endHere(cell: Cell, area: { top: number; bottom: number }): void {
    const rows = area.bottom - area.top;
    if (cell.rowSpan === rows) return;
    if (rows > 1) cell.rowSpan = rows;
    else cell.removeAttribute("rowspan");
}

/** A row span of 0 reaches to the end of the row group, however many rows there are. */
function resize(cell: Cell, span: "rowSpan" | "colSpan", by: number): void {
    const size = cell[span] + by;
    if (cell[span] === 0 || size < 1) return;
    if (size > 1) cell[span] = size;
    else cell.removeAttribute(span);
}
