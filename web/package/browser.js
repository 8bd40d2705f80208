import { imports, start } from "./engine.js";

const response = await fetch(new URL("./morandel.wasm", import.meta.url));
const { instance } = await WebAssembly.instantiate(await response.arrayBuffer(), imports);
export const {
    Formula, FormulaError, rowStatus, evaluate, check, columns, functions, message, chineseMessage, version,
} = start(instance);
