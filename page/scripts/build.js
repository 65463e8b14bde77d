/** Builds dist/page.html: the whole program in one file, with marks for the title and the data of a page. */
import { createHash } from "node:crypto";
import { mkdir, readFile, writeFile } from "node:fs/promises";
import path from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "vite";

const root = path.resolve(fileURLToPath(import.meta.url), "../..");

/**
 * @typedef {{ name: string, version: string, text: string }} Licence
 */

/**
 * The bundle: one script, one style sheet, and the files that went into the script.
 * @returns {Promise<{ script: string, style: string, sources: string[] }>}
 */
async function bundle() {
    const result = await build({
        root,
        configFile: false,
        logLevel: "warn",
        build: {
            write: false,
            target: "es2022",
            cssCodeSplit: false,
            modulePreload: false,
            rolldownOptions: { input: path.join(root, "src/main.ts") },
        },
    });
    const { output } = /** @type {import("vite").Rolldown.RolldownOutput} */ (result);
    const script = output.find((file) => file.type === "chunk");
    const style = output.find((file) => file.type === "asset" && file.fileName.endsWith(".css"));
    if (output.length !== 2 || script?.type !== "chunk" || style?.type !== "asset") {
        throw new Error(
            `one script and one style sheet expected: ${output.map((file) => file.fileName).join()}`,
        );
    }
    return {
        script: script.code.trim(),
        style: String(style.source).trim(),
        sources: Object.keys(script.modules),
    };
}

/**
 * What a file of JSON says.
 * @template Value
 * @param {string} file
 * @returns {Promise<Value>}
 */
async function jsonOf(file) {
    /** @type {unknown} */
    const value = JSON.parse(await readFile(file, "utf8"));
    return /** @type {Value} */ (value);
}

/**
 * The licences of the packages that files come from.
 * @param {string[]} sources
 * @returns {Promise<Licence[]>}
 */
async function licencesOf(sources) {
    const folders = sources.map((source) => /^(.*\/node_modules\/(?:@[^/]+\/)?[^/]+)\//.exec(source)?.[1]);
    const packages = [...new Set(folders.filter((folder) => folder !== undefined))].sort();
    return Promise.all(
        packages.map(async (folder) => {
            /** @type {{ name: string, version: string }} */
            const { name, version } = await jsonOf(path.join(folder, "package.json"));
            const text = await readFile(path.join(folder, "LICENSE"), "utf8");
            return { name, version, text: text.trim() };
        }),
    );
}

/**
 * A source of a content security policy that allows exactly this text.
 * @param {string} text
 */
function hashOf(text) {
    return `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
}

/**
 * A value as a script can hold it: no sign in it could end the script.
 * @param {unknown} value
 */
function literal(value) {
    return JSON.stringify(value)
        .replace(/</g, "\\u003c")
        .replace(/\u2028/g, "\\u2028")
        .replace(/\u2029/g, "\\u2029");
}

/**
 * The page with its marks.
 * @returns {Promise<string>}
 */
async function page() {
    const { script: program, style, sources } = await bundle();
    const licences = literal(await licencesOf(sources));
    const script = `const licencesOfLibraries=${licences};${program}`;
    if (/<\/script|<!--/i.test(script) || /<\/style/i.test(style)) {
        throw new Error("the program would end its own element");
    }
    if (/%KORV_(?:TITLE|DATA)%/.test(script + style)) {
        throw new Error("the program has a mark of the page");
    }
    const policy = [
        "default-src 'none'",
        `script-src ${hashOf(script)}`,
        `style-src ${hashOf(style)}`,
        "base-uri 'none'",
        "form-action 'none'",
    ].join("; ");
    const template = await readFile(path.join(root, "index.html"), "utf8");
    checkMarks(template);
    return template
        .replace("%POLICY%", () => policy)
        .replace("%STYLE%", () => style)
        .replace("%SCRIPT%", () => script);
}

/**
 * Throws unless the template has each mark once, alone in its element: the policy allows these bytes and no others.
 * @param {string} template
 */
function checkMarks(template) {
    const places = [
        'content="%POLICY%"',
        "<title>%KORV_TITLE%</title>",
        "<style>%STYLE%</style>",
        '<script type="text/plain" id="korv-data">%KORV_DATA%</script>',
        '<script type="module">%SCRIPT%</script>',
    ];
    for (const place of places) {
        if (template.split(place).length !== 2) {
            throw new Error(`index.html: found no single ${place}`);
        }
    }
}

const output = path.resolve(root, process.argv[2] ?? "dist/page.html");
const text = await page();
await mkdir(path.dirname(output), { recursive: true });
await writeFile(output, text);
console.log(`${path.relative(process.cwd(), output)}: ${Buffer.byteLength(text).toLocaleString("en")} bytes`);
