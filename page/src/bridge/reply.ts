// Replies of the page: a JSON text with `result` and `errmsg`, whatever happens inside.

import { logError } from "./native";

export interface Reply {
    result: boolean;
    errmsg: string;
    /** How many; where the kind says so. */
    count?: number;
}

export const done: Reply = { result: true, errmsg: "" };

export function refused(errmsg: string): Reply {
    return { result: false, errmsg };
}

/**
 * The JSON text, in parts, of what `step` replies. What it throws becomes a refusal and a log line,
 * never an exception.
 */
export function answer(step: () => Reply | string[]): string[] {
    try {
        const reply = step();
        return Array.isArray(reply) ? reply : [JSON.stringify(reply)];
    } catch (error) {
        logError(error);
        return [JSON.stringify(refused(error instanceof Error ? error.message : String(error)))];
    }
}

/** The object that `text` holds, or null when it is no JSON object. */
export function parseObject(text: string): Record<string, unknown> | null {
    try {
        const value: unknown = JSON.parse(text);
        return typeof value === "object" && value !== null && !Array.isArray(value)
            ? (value as Record<string, unknown>)
            : null;
    } catch {
        return null;
    }
}
