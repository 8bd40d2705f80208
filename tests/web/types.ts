import { check, columns, evaluate, Formula, FormulaError, rowStatus, version } from "@morandel/engine";

const total: number | string = evaluate("a + b", { a: 1, b: "x" });
const formula = new Formula("a + b", { a: "number", b: "deduced" }, { allowFreeNames: true });
const names: string[] = formula.names.map(({ name, kind }) => `${name} ${kind}`);
const { results, status } = columns("a * 2", { a: new Float64Array(3) });
const first: number = results[0] + status[0] + rowStatus.failed;
const texts: string[] = formula.textColumns({ a: ["x"], b: 2 }).results;
const bytes = new Formula(new Uint8Array([97]));
const byteNames: Uint8Array[] = bytes.names.map(({ name }) => name);
const byteResult: number | Uint8Array = bytes.compute([new Uint8Array([98])]);
const byteTexts: Uint8Array[] = bytes.textColumns([["x"]]).results;
const single: number | Uint8Array = evaluate(new Uint8Array([49]));
const wide: Float64Array = columns("a", new Map([["a", new Float32Array(2)]])).results;
const faults: number[] = check("1", ["a"]).map((fault) => fault.position.character);

try {
    formula.compute([1, 2]);
} catch (error) {
    if (error instanceof FormulaError) console.log(error.number, error.position?.character, error.chinese);
}

// @ts-expect-error: a value is a number or a text
formula.compute({ a: {} });
// @ts-expect-error: there is no such kind
new Formula("a", { a: "date" });

// @ts-expect-error: names cannot change
formula.names = [];

console.log(byteNames, byteResult, byteTexts, single, wide);
console.log(total, names, first, texts, faults, version);
