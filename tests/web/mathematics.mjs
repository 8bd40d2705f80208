// How often the engine gives other bits than the command built for this system, function by function:
// never, or in so few of a thousand values as is told here.
// usage: mathematics.mjs MORANDEL [rows]

import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";

const require = createRequire(import.meta.url);
const { Formula } = require("../../build/web/package/index.cjs");

const [command, rowCount = "100000"] = process.argv.slice(2);
const rows = Number(rowCount);

// Formulas of x, the range of x, and how many of a thousand values may differ.
const cases = [
    ["sin(x)", -720, 720, 3],
    ["cos(x)", -720, 720, 3],
    ["tan(x)", -720, 720, 4],
    ["ctan(x)", -720, 720, 5],
    ["sin(x)", -1e9, 1e9, 3],
    ["arcsin(x)", -1, 1, 3],
    ["arccos(x)", -1, 1, 2],
    ["arctan(x)", -50, 50, 1],
    ["arcctan(x)", -50, 50, 1],
    ["sqrt(x)", 0, 1e9, 0],
    ["ln(x)", 0, 1e6, 1],
    ["log(x)", 0, 1e6, 1],
    ["2.71828182845904^x", -700, 700, 2],
    ["1.0123^x", -5000, 5000, 2],
    ["x^3", -1e6, 1e6, 2],
    ["x^0.3333", 0, 1e6, 2],
    ["x^-7", 0.001, 1000, 2],
    ["mod(x, 7.3)", -1e6, 1e6, 0],
    ["preci(x, 3)", -1e6, 1e6, 0],
    ["s2r(r2s(x, 9))", -1e6, 1e6, 0],
];

let state = 12345n;
function random() {
    state = (state * 6364136223846793005n + 1442695040888963407n) & 0xffffffffffffffffn;
    return Number(state >> 11n) / 2 ** 53;
}

const inputs = cases.map(([, low, high]) =>
    Float64Array.from({ length: rows }, () => low + (high - low) * random()),
);
const head = cases.map((_, index) => `x${index}`).join(",");
const lines = Array.from({ length: rows }, (_, row) => inputs.map((column) => column[row]).join(","));
const additions = cases.flatMap(([formula], index) => [
    "--add",
    `y${index} = ${formula.replace(/\bx\b/g, `x${index}`)}`,
]);
const select = cases.map((_, index) => `y${index}`).join(",");
const output = execFileSync(command, ["each", "-", "--quiet", "--on-error", "empty", ...additions, "--select", select], {
    input: `${head}\n${lines.join("\n")}\n`,
    maxBuffer: 1 << 30,
    stdio: ["pipe", "pipe", "ignore"],
}).toString();
const found = output.trim().split("\n").slice(1).map((line) => line.split(",").map((field) => (field === "" ? 0 : Number(field))));

const bits = new BigInt64Array(1);
const number = new Float64Array(bits.buffer);
function ordered(value) {
    number[0] = value;
    return bits[0] < 0n ? -(bits[0] & 0x7fffffffffffffffn) : bits[0];
}

console.log(`${rows} values each\n| formula | x | other bits | most places apart |\n|---|---|---|---|`);
let failed = false;
cases.forEach(([formula, low, high, allowed], index) => {
    const { results } = new Formula(formula, ["x"]).columns([inputs[index]]);
    let others = 0;
    let most = 0n;
    results.forEach((result, row) => {
        if (Object.is(result, found[row][index])) return;
        ++others;
        const apart = ordered(result) - ordered(found[row][index]);
        most = apart > most ? apart : -apart > most ? -apart : most;
    });
    failed ||= others > (allowed * rows) / 1000;
    console.log(`| ${formula} | ${low} to ${high} | ${others} | ${most} |`);
});
console.log(failed ? "more than allowed" : "within what is allowed");
process.exitCode = failed ? 1 : 0;
