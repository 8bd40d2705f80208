// Runs a program of WebAssembly that reads and writes the files it is told, as a native one would.
// usage: node wasi.mjs PROGRAM ARGUMENTS...
import { readFileSync } from "node:fs";
import { WASI } from "node:wasi";

const [program, ...args] = process.argv.slice(2);
const wasi = new WASI({ version: "preview1", args: [program, ...args], preopens: { ".": "." }, returnOnExit: true });
const { instance } = await WebAssembly.instantiate(readFileSync(program), wasi.getImportObject());
process.exitCode = wasi.start(instance);
