// Texts to numbers and numbers to texts: the same bits and bytes as the command built for this system.
// usage: numerals.mjs MORANDEL [rows]

import { execFileSync } from "node:child_process";
import { createRequire } from "node:module";

const require = createRequire(import.meta.url);
const { Formula } = require("../../build/web/package/index.cjs");

const [command, rowCount = "50000"] = process.argv.slice(2);
const rows = Number(rowCount);

let state = 99n;
function below(count) {
    state = (state * 6364136223846793005n + 1442695040888963407n) & 0xffffffffffffffffn;
    return Number((state >> 33n) % BigInt(count));
}
const pick = (list) => list[below(list.length)];
const digits = (count, set = "0123456789") => Array.from({ length: count }, () => pick(set)).join("");

const double = new Float64Array(1);
const words = new Uint32Array(double.buffer);
function anyDouble() {
    do {
        words[0] = below(2 ** 31) * 2 + below(2);
        words[1] = below(2 ** 31) * 2 + below(2);
    } while (!Number.isFinite(double[0]));
    return double[0];
}

// Half way between two doubles, or next to it.
function halfWay() {
    const first = Math.abs(anyDouble());
    const bits = new BigUint64Array(Float64Array.of(first).buffer);
    const exponent = Number(bits[0] >> 52n);
    const mantissa = (bits[0] & ((1n << 52n) - 1n)) | (exponent > 0 ? 1n << 52n : 0n);
    const power = Math.max(exponent, 1) - 1075 - 1;
    const whole = mantissa * 2n + 1n;
    if (power >= 0) return String(whole << BigInt(power));
    const exact = String(whole * 5n ** BigInt(-power));
    return `${exact}${pick(["", "0000001", "9"])}e${power - 0}`.replace(/e.*/, "") + `e-${-power}`;
}

const kinds = [
    () => digits(1 + below(40)),
    () => `${digits(below(25))}.${digits(below(25))}`,
    () => `${pick(["", "-", "+", " ", "--"])}${digits(1 + below(20))}.${digits(below(20))}e${pick(["", "-", "+"])}${below(400)}`,
    () => `0x${digits(1 + below(20), "0123456789abcdefABCDEF")}.${digits(below(20), "0123456789abcdef")}p${pick(["", "-"])}${below(1200)}`,
    () => `${pick(["inf", "-Infinity", "nan", "NAN(12)", "in", "1e", "1e+", ".", "-.5", "0x", "0x.", "1..2", "infinit"])}`,
    () => `${digits(1)}.${digits(16)}e-3${below(30)}`,
    () => `${digits(300 + below(60))}${pick(["", ".5", "e-300", "e99999999999999999999"])}`,
    () => String(anyDouble()),
    halfWay,
];
const texts = Array.from({ length: rows }, (_, row) => kinds[row % kinds.length]());
const numbers = Float64Array.from({ length: rows }, (_, row) =>
    row % 2 === 0 ? anyDouble() : (below(2 ** 31) / 2 ** below(60)) * (below(2) * 2 - 1),
);

const formulas = ["s2r(t)", "r2s(x, 15)", "r2s(x)", "r2s(x, 3)", "preci(x, 7)", "int(x)", "deci(x)", "x + 0"];
const output = execFileSync(
    command,
    ["each", "-", "--quiet", "--on-error", "empty", ...formulas.flatMap((f, i) => ["--add", `y${i} = ${f}`]),
        "--select", formulas.map((_, i) => `y${i}`).join(",")],
    {
        input: `t,x\n${texts.map((text, row) => `${text},${numbers[row]}`).join("\n")}\n`,
        maxBuffer: 1 << 30,
        stdio: ["pipe", "pipe", "ignore"],
    },
).toString();
const found = output.trimEnd().split("\n").slice(1).map((line) => line.split(","));

const number = (field) => (field === "inf" ? Infinity : field === "-inf" ? -Infinity : Number(field === "nan" ? NaN : field));
let failures = 0;
formulas.forEach((text, index) => {
    const formula = new Formula(text);
    const columns = formula.names.map(({ name }) => (name === "t" ? texts : numbers));
    const isText = text.startsWith("r2s");
    const { results, status } = isText ? formula.textColumns(columns) : formula.columns(columns);
    let others = 0;
    for (let row = 0; row < rows; ++row) {
        const field = found[row][index];
        const same = status[row] !== 0 ? field === "" : isText ? results[row] === field : Object.is(results[row], number(field)) || (field === "nan" && Number.isNaN(results[row]));
        if (!same && ++others <= 3) console.log(`${text}: ${texts[row]}, ${numbers[row]}: ${results[row]} for ${field} (${status[row]})`);
    }
    console.log(`${text}: ${others} of ${rows} differ`);
    failures += others;
});
process.exitCode = failures > 0 ? 1 : 0;
