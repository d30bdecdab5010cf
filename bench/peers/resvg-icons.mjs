// Writes a plan's icons of an SVG document with resvg:
//   node resvg-icons.mjs SOURCE.svg PLAN.json FOLDER
// Each distinct size is drawn and compressed once, and copied for the other files.
import { Resvg } from "@resvg/resvg-js";
import { copyFile, mkdir, readFile, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";

const [source, plan, folder] = process.argv.slice(2);
const document = await readFile(source);
const written = new Map();
for (const icon of JSON.parse(await readFile(plan, "utf8"))) {
    const file = join(folder, icon.file);
    await mkdir(dirname(file), { recursive: true });
    const same = written.get(icon.side);
    if (same !== undefined) {
        await copyFile(same, file);
        continue;
    }
    await writeFile(file, new Resvg(document, { fitTo: { mode: "width", value: icon.side } }).render().asPng());
    written.set(icon.side, file);
}
