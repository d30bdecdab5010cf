// Writes a plan's icons with Skia's canvas:
//   node skia-icons.mjs SOURCE PLAN.json FOLDER
// The source is decoded once. Each distinct size is drawn from it and compressed once, and copied for the other files.
import { createCanvas, loadImage } from "@napi-rs/canvas";
import { copyFile, mkdir, readFile, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";

const [source, plan, folder] = process.argv.slice(2);
const picture = await loadImage(source);
const written = new Map();
for (const icon of JSON.parse(await readFile(plan, "utf8"))) {
    const file = join(folder, icon.file);
    await mkdir(dirname(file), { recursive: true });
    const same = written.get(icon.side);
    if (same !== undefined) {
        await copyFile(same, file);
        continue;
    }
    const canvas = createCanvas(icon.side, icon.side);
    const context = canvas.getContext("2d");
    context.imageSmoothingQuality = "high";
    context.drawImage(picture, 0, 0, icon.side, icon.side);
    await writeFile(file, await canvas.encode("png"));
    written.set(icon.side, file);
}
