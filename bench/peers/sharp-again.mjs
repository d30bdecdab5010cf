// Writes the pixels of PNG files again with sharp, and prints what that takes:
//   node sharp-again.mjs FILE...
// One line of JSON: the bytes of all files as they are, with default options, and with adaptive filtering. Channels stay.
import { readFile } from "node:fs/promises";
import sharp from "sharp";

const sum = { files: 0, usual: 0, adaptive: 0 };
for (const path of process.argv.slice(2)) {
    const file = await readFile(path);
    const { data, info } = await sharp(file).raw().toBuffer({ resolveWithObject: true });
    const raw = { width: info.width, height: info.height, channels: info.channels };
    const length = async (options) => (await sharp(data, { raw }).png(options).toBuffer()).length;
    sum.files += file.length;
    sum.usual += await length({});
    sum.adaptive += await length({ adaptiveFiltering: true });
}
console.log(JSON.stringify(sum));
