// Icons as SVG texts, from the icon package; the build bundles just these.

import undo from "@tabler/icons/outline/arrow-back-up.svg";
import redo from "@tabler/icons/outline/arrow-forward-up.svg";
import text from "@tabler/icons/outline/typography.svg";
import bold from "@tabler/icons/outline/bold.svg";
import italic from "@tabler/icons/outline/italic.svg";
import underline from "@tabler/icons/outline/underline.svg";
import strike from "@tabler/icons/outline/strikethrough.svg";
import textColor from "@tabler/icons/outline/letter-a.svg";
import background from "@tabler/icons/outline/highlight.svg";
import clear from "@tabler/icons/outline/clear-formatting.svg";
import bulletList from "@tabler/icons/outline/list.svg";
import numberList from "@tabler/icons/outline/list-numbers.svg";
import outdent from "@tabler/icons/outline/indent-decrease.svg";
import indent from "@tabler/icons/outline/indent-increase.svg";
import alignLeft from "@tabler/icons/outline/align-left.svg";
import alignCenter from "@tabler/icons/outline/align-center.svg";
import alignRight from "@tabler/icons/outline/align-right.svg";
import alignFull from "@tabler/icons/outline/align-justified.svg";
import quote from "@tabler/icons/outline/blockquote.svg";
import code from "@tabler/icons/outline/code.svg";
import link from "@tabler/icons/outline/link.svg";
import unlink from "@tabler/icons/outline/unlink.svg";
import open from "@tabler/icons/outline/external-link.svg";
import edit from "@tabler/icons/outline/pencil.svg";
import table from "@tabler/icons/outline/table.svg";
import rowAbove from "@tabler/icons/outline/row-insert-top.svg";
import rowBelow from "@tabler/icons/outline/row-insert-bottom.svg";
import columnLeft from "@tabler/icons/outline/column-insert-left.svg";
import columnRight from "@tabler/icons/outline/column-insert-right.svg";
import deleteRow from "@tabler/icons/outline/row-remove.svg";
import deleteColumn from "@tabler/icons/outline/column-remove.svg";
import deleteTable from "@tabler/icons/outline/trash.svg";
import rule from "@tabler/icons/outline/separator.svg";
import attach from "@tabler/icons/outline/paperclip.svg";
import capture from "@tabler/icons/outline/screenshot.svg";
import hide from "@tabler/icons/outline/eye-off.svg";
import chevron from "@tabler/icons/outline/chevron-down.svg";
import check from "@tabler/icons/outline/check.svg";

const icons = {
    undo,
    redo,
    text,
    bold,
    italic,
    underline,
    strike,
    textColor,
    background,
    clear,
    bulletList,
    numberList,
    outdent,
    indent,
    alignLeft,
    alignCenter,
    alignRight,
    alignFull,
    quote,
    code,
    link,
    unlink,
    open,
    edit,
    table,
    rowAbove,
    rowBelow,
    columnLeft,
    columnRight,
    deleteRow,
    deleteColumn,
    deleteTable,
    rule,
    attach,
    capture,
    hide,
    chevron,
    check,
};

export type IconName = keyof typeof icons;

/** A fresh copy of an icon, hidden from screen readers: the control that holds it has a label. */
export function icon(name: IconName): SVGElement {
    const parsed = new DOMParser().parseFromString(icons[name], "image/svg+xml");
    const svg = document.importNode(parsed.documentElement, true) as unknown as SVGElement;
    svg.setAttribute("class", "icon");
    svg.setAttribute("aria-hidden", "true");
    return svg;
}
