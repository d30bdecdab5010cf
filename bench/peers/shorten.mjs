// Compresses PNG files more densely, without loss, and prints what that takes:
//   node shorten.mjs oxipng|napi FILE...
// oxipng is @jsquash/oxipng at level 4, which gets equal files once; napi is the lossless pass of @napi-rs/image with its
// default options. One line of JSON: the bytes of all files, and seconds of processor time. Nothing is written.
import { losslessCompressPng } from "@napi-rs/image";
import optimise, { init } from "@jsquash/oxipng/optimise.js";
import { readFile } from "node:fs/promises";
import { createRequire } from "node:module";

const [way, ...paths] = process.argv.slice(2);
if (way === "oxipng") {
    const module = createRequire(import.meta.url).resolve("@jsquash/oxipng/codec/pkg/squoosh_oxipng_bg.wasm");
    await init(await WebAssembly.compile(await readFile(module)));
}
const lengths = new Map(); // of files that oxipng had before
const ways = {
    oxipng: async (file) => {
        const key = file.toString("latin1");
        if (!lengths.has(key)) lengths.set(key, (await optimise(new Uint8Array(file).buffer, { level: 4 })).byteLength);
        return lengths.get(key);
    },
    napi: async (file) => (await losslessCompressPng(file)).length,
};
let bytes = 0;
const start = process.cpuUsage();
for (const path of paths) bytes += await ways[way](await readFile(path));
const { user, system } = process.cpuUsage(start);
console.log(JSON.stringify({ bytes, cpu: (user + system) / 1e6 }));
