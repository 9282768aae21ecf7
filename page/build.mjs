// Bundles the page: node build.mjs [--out DIR] [--modules NODE_MODULES]
//
// One classic script, since modules do not load from file: addresses, and one page with its style
// inside, since the page's own policy allows no style sheet from a file.

import { mkdir, readFile, writeFile } from "node:fs/promises";
import { createRequire } from "node:module";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { parseArgs } from "node:util";

const here = dirname(fileURLToPath(import.meta.url));
const { values } = parseArgs({
    options: {
        out: { type: "string", default: join(here, "dist") },
        modules: { type: "string", default: join(here, "node_modules") },
    },
});
const out = resolve(values.out);
const modules = resolve(values.modules);

const require = createRequire(pathToFileURL(join(modules, "index.js")));
const esbuild = require("esbuild");

await mkdir(out, { recursive: true });
await esbuild.build({
    entryPoints: [join(here, "src/main.ts")],
    outfile: join(out, "editor.js"),
    bundle: true,
    format: "iife",
    target: "chrome102",
    minify: true,
    charset: "utf8",
    legalComments: "eof",
    nodePaths: [modules],
    alias: { "@tabler/icons/outline": join(modules, "@tabler/icons/icons/outline") },
    loader: { ".svg": "text", ".css": "text" },
    logLevel: "warning",
});

const page = await readFile(join(here, "src/index.html"), "utf8");
const sheets = ["src/page.css", "src/popups.css"].map((name) => readFile(join(here, name), "utf8"));
const style = await esbuild.transform((await Promise.all(sheets)).join("\n"), {
    loader: "css",
    target: "chrome102",
    minify: true,
});
await writeFile(
    join(out, "index.html"),
    page.replace("/* styles */", () => style.code.trim()),
);
