// Writes a plan's icons with sharp, as its users do:
//   node sharp-icons.mjs SOURCE PLAN.json FOLDER [once] [first] [halves] [each] [adaptive] [threads]
// The source is decoded once to raw pixels; then one resize (Lanczos 3, the default) and one PNG (default options) for
// each icon, one after the other on one thread.
//   once     makes each distinct size once, and copies it for the other files
//   first    reduces the source to the largest size of the plan before all other reductions
//   halves   halves the source while that leaves enough, and reduces each icon from the smallest copy that suffices
//   adaptive compresses with libpng's choice of a filter for each row
//   each     opens the source's file again for each icon, so sharp may decode a JPEG at a part of its size
//   threads  makes all icons at the same time, with as many threads as sharp takes by itself
import { copyFile, mkdir, readFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import sharp from "sharp";

const [source, plan, folder, ...ways] = process.argv.slice(2);
const icons = JSON.parse(await readFile(plan, "utf8")).map((icon) => ({ ...icon, file: join(folder, icon.file) }));
const largest = Math.max(...icons.map((icon) => icon.side));
if (!ways.includes("threads")) sharp.concurrency(1);
// No operation is done twice, so a cache would not help.
sharp.cache(false);

let open = () => sharp(source);
const copies = [];
if (!ways.includes("each")) {
    const picture = sharp(source);
    const reduced = ways.includes("first") ? picture.resize(largest, largest, { fit: "fill" }) : picture;
    const { data, info } = await reduced.raw().toBuffer({ resolveWithObject: true });
    const raw = { width: info.width, height: info.height, channels: info.channels };
    copies.push({ data, raw });
    const enough = (side) => copies.findLast((copy) => Math.min(copy.raw.width, copy.raw.height) >= side) ?? copies[0];
    open = (side) => {
        const copy = ways.includes("halves") ? enough(side) : copies[0];
        return sharp(copy.data, { raw: copy.raw });
    };
}
const smallest = Math.min(...icons.map((icon) => icon.side));
while (ways.includes("halves") && copies.at(-1).raw.width / 2 >= smallest) {
    const last = copies.at(-1);
    const half = sharp(last.data, { raw: last.raw }).resize(last.raw.width >> 1, last.raw.height >> 1, { fit: "fill" });
    const { data, info } = await half.raw().toBuffer({ resolveWithObject: true });
    copies.push({ data, raw: { width: info.width, height: info.height, channels: info.channels } });
}

for (const path of new Set(icons.map((icon) => dirname(icon.file)))) await mkdir(path, { recursive: true });
const options = ways.includes("adaptive") ? { adaptiveFiltering: true } : {};
const write = ({ file, side }) => open(side).resize(side, side, { fit: "fill" }).png(options).toFile(file);
if (ways.includes("threads")) {
    await Promise.all(icons.map(write));
} else {
    const written = new Map();
    for (const icon of icons) {
        const same = ways.includes("once") ? written.get(icon.side) : undefined;
        await (same === undefined ? write(icon) : copyFile(same, icon.file));
        written.set(icon.side, icon.file);
    }
}
