// Bundles the page: node build.mjs [--out DIR] [--modules NODE_MODULES]
//
// One classic script, since modules do not load from file: addresses, and one page with its style
// inside, since the page's own policy allows no style sheet from a file. Beside them lie the licence
// notices of the packages that are in the bundle.

import { mkdir, readFile, readdir, writeFile } from "node:fs/promises";
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
const bundle = await esbuild.build({
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
    metafile: true,
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

const bundled = new Set(
    Object.keys(bundle.metafile.inputs)
        .map((path) => /.*node_modules\/((?:@[^/]+\/)?[^/]+)/.exec(path)?.[1])
        .filter(Boolean),
);
await writeFile(
    join(out, "notices.txt"),
    (await Promise.all([...bundled].sort().map(notice))).join(`\n${"=".repeat(78)}\n\n`),
);

async function notice(name) {
    const folder = join(modules, name);
    const files = (await readdir(folder)).filter((file) => /^licen[cs]e/i.test(file)).sort();
    if (files.length === 0) throw new Error(`${name} comes without a licence`);
    const { version, license } = JSON.parse(await readFile(join(folder, "package.json"), "utf8"));
    const texts = await Promise.all(files.map((file) => readFile(join(folder, file), "utf8")));
    return [`${name} ${version}, ${license}\n`, ...texts].join("\n");
}
