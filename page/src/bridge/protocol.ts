// The table of every method that native code calls, and of every kind of the private channel.

import { Editor } from "../editor";
import {
    insertAttachment,
    modifyAttachments,
    removeAttachment,
    selectAttachment,
} from "../note/attachments";
import { answer, done, parseObject, refused, Reply } from "./reply";

/** Parts are those of a JSON text. */
type Method = (editor: Editor, argument: string) => Reply | string[];

const methods: Record<string, Method> = {
    SetEditorMode: (editor, argument) => {
        const readonly = parseObject(argument)?.["readonly"];
        if (typeof readonly !== "boolean") return refused("readonly is missing");
        editor.setReadOnly(readonly);
        return done;
    },

    SetEditorMaxChars: (editor, argument) => {
        const size = parseObject(argument)?.["size"];
        if (typeof size !== "number" || !(size >= 0)) return refused("size is missing");
        editor.limit.set(size);
        return done;
    },

    /** The argument is the note's HTML itself, not JSON. */
    SetEditorContent: (editor, html) => {
        editor.load(html);
        // Not one that threw: the library counts what was accepted.
        editor.texts++;
        return done;
    },

    GetEditorContent: (editor) => editor.content.reply(),

    ClearEditorCache: (editor) => {
        editor.clearUndo();
        return done;
    },

    AddPicToEditor: (editor, argument) => {
        const fields = parseObject(argument);
        if (!fields) return refused("the argument is no JSON object");
        return insertAttachment(editor, {
            src: text(fields["picpath"]),
            path: text(fields["strData"]),
            exdata: text(fields["exdata"]),
        });
    },

    SelectedAttach: (editor, argument) => selectAttachment(editor, keywords(argument)),

    ModifyAttachAtrr: (editor, argument) => {
        const fields = parseObject(argument);
        const exdata = fields?.["nm_exdata"];
        if (!fields || exdata === undefined) return refused("nm_exdata is missing");
        const wanted = typeof exdata === "string" ? exdata : JSON.stringify(exdata);
        return modifyAttachments(
            editor,
            wanted,
            text(fields["ClassValue"]),
            text(fields["SrcValue"]),
        );
    },
};

const privateKinds: Record<string, Method> = {
    colorScheme: (editor, argument) => {
        editor.theme.set(parseObject(argument)?.["dark"] === true);
        return done;
    },
    pictures: (editor, argument) => {
        const { paste, digests } = parseObject(argument) ?? {};
        if (!Array.isArray(digests)) return refused("digests is missing");
        editor.pastedPictures.known(Number(paste), digests.map(text));
        return done;
    },
    picturesDone: (editor, argument) => {
        editor.pastedPictures.done(Number(parseObject(argument)?.["paste"]));
        return done;
    },
    focus: (editor) => {
        editor.focusNote();
        return done;
    },

    removeAttachment: (editor, argument) => {
        const fields = parseObject(argument);
        const file = text(fields?.["file"]);
        if (!file) return refused("file is missing");
        return removeAttachment(editor, file, text(fields?.["name"]));
    },

    highlight: (editor, argument) => {
        const fields = parseObject(argument);
        const painting = fields?.["painting"];
        const keyword = text(fields?.["keyword"]);
        if (typeof painting !== "number" || !keyword)
            return refused("painting or keyword is missing");
        return { ...done, count: editor.highlights.paint(painting, keyword) };
    },

    unhighlight: (editor, argument) => {
        const segments = parseObject(argument)?.["segments"];
        if (!Array.isArray(segments)) return refused("segments is missing");
        for (const [painting, first, count] of segments)
            editor.highlights.remove(Number(painting), Number(first), Number(count));
        return done;
    },
};

function text(value: unknown): string {
    return typeof value === "string" ? value : "";
}

/**
 * The words that a "SelectedAttach" argument may mean. Native code puts the keyword between the
 * quotes without escaping it, so a quote or a backslash makes the text something else than meant.
 */
function keywords(argument: string): string[] {
    const words = [
        parseObject(argument)?.["keyword"],
        /^\{"keyword":"(.*)"\}$/s.exec(argument)?.[1],
    ];
    return words.filter((word): word is string => typeof word === "string" && word !== "");
}

function entry(editor: Editor, table: Record<string, Method>) {
    const inParts = (name: unknown, argument: unknown): string[] =>
        answer(() => {
            const method = Object.hasOwn(table, String(name)) ? table[String(name)] : undefined;
            if (!method) return refused(`unknown method: ${String(name)}`);
            return method(editor, typeof argument === "string" ? argument : "");
        });
    const whole = (name: unknown, argument: unknown) => inParts(name, argument).join("");
    return Object.assign(whole, { inParts });
}

/** Makes the page callable. From here on native code may ask anything. */
export function openProtocol(editor: Editor): void {
    window.jsProcessor = entry(editor, methods);
    window.nomarPagePrivate = entry(editor, privateKinds);
}
