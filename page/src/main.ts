// Builds the page and makes it callable.

import { channel, logError, settings } from "./bridge/native";
import { openProtocol } from "./bridge/protocol";
import { Editor } from "./editor";
import { element } from "./ui/dom";
import { Placeholder } from "./ui/placeholder";
import { closePopupsOutside } from "./ui/popup";
import { Toast } from "./ui/toast";
import { Toolbar } from "./ui/toolbar";

window.addEventListener("error", (event) => logError(event.error ?? event.message));
window.addEventListener("unhandledrejection", (event) => logError(event.reason));

document.documentElement.lang = settings.chinese ? "zh-CN" : "en";

const paper = element("main", { class: "paper" });
document.body.append(paper);
const editor = new Editor(paper);
const toolbar = new Toolbar(editor);
const placeholder = new Placeholder(editor, paper);
const toast = new Toast(document.body);
document.body.prepend(toolbar.bar);
paper.append(
    element("div", {
        class: "progress",
        role: "progressbar",
        "aria-label": editor.strings.loading,
    }),
);

editor.toast = (message) => toast.show(message);
// What was said of one note is not said of the next.
editor.frame.onDocument(() => toast.hide());
editor.focusToolbar = () => toolbar.focus();
editor.stateChanged = () => {
    toolbar.updateSoon();
    placeholder.update();
};
editor.theme.set(settings.dark);
editor.load("");
closePopupsOutside();
// The keyboard came to the page and to nothing in it: keys are meant for the note.
window.addEventListener("focus", () => {
    if (document.activeElement === document.body) editor.frame.focus();
});

openProtocol(editor);
channel.ready();
// A note can be opened without a toolbar: the library need not wait for it.
window.addEventListener("load", () => requestIdleCallback(() => toolbar.fill(), { timeout: 300 }));
