// What the library injects before this script runs. A page opened by itself, in a benchmark say,
// has none of it: then calls go nowhere and the settings are the defaults.

declare global {
    interface Window {
        CppProcessor?: (method: string, json: string, extra: string) => void;
        nomarPrivate?: {
            post(kind: string, text: string): void;
            settings?: { language?: string; dark?: boolean };
        };
        jsProcessor?: (method: unknown, argument: unknown) => string;
        nomarPagePrivate?: (kind: unknown, text: unknown) => string;
    }
}

function call(method: string, argument: object, extra = ""): void {
    // The native side refuses any other number of arguments than three.
    window.CppProcessor?.(method, JSON.stringify(argument), extra);
}

/** Calls of the page protocol, page to library. None gives a value. */
export const native = {
    openAttachment: (path: string, exdata: string) => call("DbClickAttachment", { path }, exdata),
    addAttachment: () => call("AddAttachment", {}),
    openHyperLink: (url: string) => call("OpenHyperLink", { url }),
    messageBox: (msg: string) => call("NmMessageBox", { msg }),
    rightClickAttachment: (classValue: string, exdataValue: string, rangeHtml: string) =>
        call("OnRightClickAttach", {
            current_attach: { class_value: classValue, exdata_value: exdataValue },
            range_html: rangeHtml,
        }),
    writeLog: (type: "info" | "error", msg: string) => call("WriteEditorLog", { type, msg }),
    screenCapture: (hideMainWnd: boolean) => call("SreenCapture", { hideMainWnd }),
};

/** The private channel beside the protocol, page to library. */
export const channel = {
    ready: () => window.nomarPrivate?.post("ready", ""),
    /** `html` is escaped for JSON already. */
    draft: (load: number, html: string) =>
        window.nomarPrivate?.post("draft", `{"load":${load},"html":"${html}"}`),
    copied: () => window.nomarPrivate?.post("copied", ""),
    connected: () => window.nomarPrivate !== undefined,
    pictures: (load: number, paste: number, sources: string[]) =>
        window.nomarPrivate?.post("pictures", JSON.stringify({ load, paste, sources })),
};

export const settings = {
    chinese: (window.nomarPrivate?.settings?.language ?? navigator.language)
        .toLowerCase()
        .startsWith("zh"),
    dark: window.nomarPrivate?.settings?.dark ?? false,
};

export function logError(error: unknown): void {
    const text = error instanceof Error ? (error.stack ?? error.message) : String(error);
    native.writeLog("error", text);
}
