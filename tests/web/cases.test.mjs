// The case files through the package, as a CommonJS and as an ES module: the same bits, the same bytes.

import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { test } from "node:test";

import { readCases, sameNumber } from "./case_file.mjs";

const require = createRequire(import.meta.url);
const common = require("../../build/web/package/index.cjs");
const modern = await import("../../build/web/package/node.js");

const mostNames = 50;
const folder = new URL("../cases/", import.meta.url);
const files = readdirSync(folder, { recursive: true }).concat(
    readdirSync(new URL("fixed/", folder)).map((name) => `fixed/${name}`),
);
const caseFiles = [...new Set(files)].filter((name) => name.endsWith(".cases"));

function outcome({ Formula, FormulaError }, formula, lets, tellsKinds) {
    const found = { refused: true };
    try {
        // Later values of a name count for nothing: a name that stands twice is the first one.
        const names = tellsKinds
            ? lets.map(({ name, value }) => [name, typeof value === "number" ? "number" : "text"])
            : lets.map(({ name }) => name);
        const prepared = new Formula(formula, tellsKinds ? new Map(names) : names, { allowFreeNames: true });
        found.refused = false;
        found.variables = prepared.freeNames;
        Object.assign(found, prepared.computeWithKind(lets.map(({ value }) => value)));
        prepared.free();
    } catch (error) {
        if (!(error instanceof FormulaError)) throw error;
        found.error = error.number;
    }
    return found;
}

function compare(found, wanted, where) {
    assert.equal(found.refused, wanted.refused, where);
    if (wanted.error !== undefined) assert.equal(found.error, wanted.error, where);
    if (wanted.kind !== undefined) assert.equal(found.kind, wanted.kind, where);
    if (wanted.text !== undefined && found.kind === "text") assert.deepEqual(found.value, wanted.text, where);
    if (wanted.number !== undefined && found.kind !== "text") {
        assert.ok(sameNumber(found.value, wanted.number, wanted.inexact), `${where}: ${found.value}`);
    }
    if (wanted.variables !== undefined) {
        assert.deepEqual(found.variables.map((v) => ({ ...v })), wanted.variables, where);
    }
}

for (const file of caseFiles) {
    test(`cases of ${file}`, () => {
        let count = 0;
        for (const block of readCases(readFileSync(new URL(file, folder), "utf8"))) {
            const lets = [];
            for (const line of block.lines) {
                const where = `${file}:${line.number}`;
                if (line.let) lets.push(line.let);
                if (!line.formula || lets.length > mostNames || line.formula.includes(0)) continue;
                for (const engine of [common, modern]) {
                    for (const tellsKinds of [false, true]) {
                        compare(outcome(engine, line.formula, lets, tellsKinds), line.wanted, where);
                    }
                }
                ++count;
            }
        }
        if (!["checker.cases", "lists.cases", "sequences.cases"].includes(file)) assert.ok(count > 0, file);
        console.log(`${file}: ${count} formulas`);
    });
}

test("what the checker finds", () => {
    let count = 0;
    for (const block of readCases(readFileSync(new URL("checker.cases", folder), "utf8"))) {
        if (block.lines.some((line) => line.let)) continue;
        for (const line of block.lines) {
            if (!line.check || !/^(ok\b|[^;]* \d\/\d)/.test(line.outcome)) continue;
            let faults;
            try {
                faults = new modern.Formula(line.check).check();
            } catch (error) {
                assert.ok(error instanceof modern.FormulaError);
                continue;  // a formula that is refused is not prepared
            }
            const told = faults.map((f) => `${f.name} ${f.kind}/${f.operand}`).join(", ") || "ok";
            const wanted = line.outcome.split(";")[0].replace(/@\d+/g, "");
            assert.equal(told, wanted, `checker.cases:${line.number}`);
            ++count;
        }
    }
    assert.ok(count > 50);
});
