import { readFileSync } from "node:fs";

import { imports, start } from "./engine.js";

const bytes = readFileSync(new URL("./morandel.wasm", import.meta.url));
const instance = new WebAssembly.Instance(new WebAssembly.Module(bytes), imports);
export const {
    Formula, FormulaError, rowStatus, evaluate, check, columns, functions, message, chineseMessage, version,
} = start(instance);
