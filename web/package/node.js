import { readFileSync } from "node:fs";

import { imports, start } from "./engine.js";

const bytes = readFileSync(new URL("./morandel.wasm", import.meta.url));
const engine = start(new WebAssembly.Instance(new WebAssembly.Module(bytes), imports));

export const Formula = engine.Formula;
export const FormulaError = engine.FormulaError;
export const rowStatus = engine.rowStatus;
export const evaluate = engine.evaluate;
export const check = engine.check;
export const columns = engine.columns;
export const functions = engine.functions;
export const message = engine.message;
export const chineseMessage = engine.chineseMessage;
export const version = engine.version;
