// A word processor that runs in a browser puts each item of a list into a list of its own, in a box
// of its own. Here such neighbours become one list again, deeper levels under the item before them.

const box = "div.ListContainerWrapper";

interface OpenList {
    list: Element;
    level: number;
    id: string | null;
}

function listIn(element: Element | null): Element | null {
    const first = element?.matches(box) ? element.firstElementChild : null;
    return first?.matches("ul, ol") ? first : null;
}

function place(list: Element): OpenList {
    const item = list.firstElementChild;
    const level = Number(item?.getAttribute("data-aria-level") ?? 1);
    return { list, level, id: item?.getAttribute("data-listid") ?? null };
}

function continues(open: OpenList, next: OpenList): boolean {
    const sameKind = open.list.localName === next.list.localName;
    return sameKind && open.level === next.level && open.id === next.id;
}

export function joinBoxedLists(doc: Document): void {
    let open: OpenList[] = [];
    for (const element of doc.querySelectorAll(box)) {
        const list = listIn(element);
        if (!list) continue;
        const next = place(list);
        // Joined boxes are gone, so what stands before is the box of the first of them.
        if (!listIn(element.previousElementSibling)) open = [];
        while (open.length > 0 && open.at(-1)!.level > next.level) open.pop();
        const around = open.at(-1);
        if (around && continues(around, next)) {
            while (list.firstChild) around.list.append(list.firstChild);
            element.remove();
        } else if (around?.list.lastElementChild && around.level < next.level) {
            around.list.lastElementChild.append(list);
            element.remove();
            open.push(next);
        } else {
            open = [next];
        }
    }
}
