// The npm package: how large it is, how soon it works, its calls, and its types.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdirSync, readFileSync, readdirSync, symlinkSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

import * as morandel from "../../build/web/package/node.js";
import { imports, start } from "../../build/web/package/engine.js";
import { scratchFolder } from "./scratch.mjs";

const { check, columns, evaluate, Formula, FormulaError, rowStatus } = morandel;
const folder = fileURLToPath(new URL("../../build/web/package", import.meta.url));

function project() {
    const scratch = scratchFolder();
    mkdirSync(join(scratch, "node_modules/@morandel"), { recursive: true });
    symlinkSync(folder, join(scratch, "node_modules/@morandel/engine"));
    return scratch;
}

// An engine with a memory of its own.
function own() {
    const bytes = readFileSync(join(folder, "morandel.wasm"));
    const instance = new WebAssembly.Instance(new WebAssembly.Module(bytes), imports);
    return { instance, engine: start(instance) };
}

test("what a browser loads is small, and works at once", (context) => {
    const size = ["morandel.wasm", "browser.js", "engine.js", "exchange.js", "memory.js"]
        .map((name) => gzipSync(readFileSync(join(folder, name)), { level: 9 }).length)
        .reduce((a, b) => a + b);
    assert.ok(size <= 250_000, `${size} bytes`);
    const bytes = readFileSync(join(folder, "morandel.wasm"));
    const times = Array.from({ length: 5 }, () => {
        const begin = performance.now();
        const engine = start(new WebAssembly.Instance(new WebAssembly.Module(bytes), imports));
        assert.equal(engine.evaluate("1+2*3"), 7);
        return performance.now() - begin;
    });
    assert.ok(Math.min(...times) < 50, `${times} ms`);
    console.log(`${size} bytes compressed; ${Math.min(...times).toFixed(1)} ms to the first result`);
});

test("evaluate, Formula, check, columns", () => {
    assert.equal(evaluate("preci(price * qty, 2)", { price: 2.675, qty: 3 }), 8.03);
    assert.equal(evaluate("strcat(a, b)", new Map([["a", "苹果"], ["b", "!"]])), "苹果!");
    const label = new Formula('strcat(name, ": ", r2s(price, 2))');
    assert.deepEqual(label.names.map((n) => ({ ...n })), [{ name: "name", kind: "text" }, { name: "price", kind: "number" }]);
    assert.equal(label.compute({ price: 12.5, name: "苹果" }), "苹果: 12.5");
    assert.equal(label.compute(["梨", 3]), "梨: 3");
    assert.deepEqual(new Formula("int(x)").computeWithKind({ x: 2.5 }), { value: 2, kind: "integer" });
    assert.deepEqual(
        check('1 + sqrt("a")').map((f) => [f.name, f.kind, f.operand, f.wants, f.position.character]),
        [["sqrt", 1, 1, "number", 4]],
    );
    const { results, status } = columns("100 / a", { a: new Float64Array([4, 0, 8]) });
    assert.deepEqual([...results], [25, 0, 12.5]);
    assert.deepEqual([...status], [rowStatus.ok, rowStatus.failed, rowStatus.ok]);
    const share = new Formula("total / count");
    assert.equal(share.rowError({ total: 100, count: [4, 0] }, 1).number, 3);
    assert.equal(share.rowError({ total: 100, count: [4, 0] }, 0), null);
    assert.deepEqual(label.textColumns({ name: ["a", "中"], price: 1 }).results, ["a: 1", "中: 1"]);
    assert.deepEqual([...new Formula("1/4").columns({}, 3).results], [0.25, 0.25, 0.25]);
    assert.deepEqual(new Formula("1,000").warnings().map((w) => w.position.character), [1]);
    assert.equal(morandel.functions().length, 34);
    assert.equal(morandel.chineseMessage(33), "缺少')'");
    assert.equal(morandel.message(6), null);
});

test("errors say what and where", () => {
    const told = (work) => {
        try {
            work();
        } catch (error) {
            assert.ok(error instanceof FormulaError, String(error));
            return [error.number, error.position?.character, error.value];
        }
        throw new Error("nothing was thrown");
    };
    assert.deepEqual(told(() => evaluate("1/(a-3)", { a: 3 })), [3, 1, -1]);
    assert.deepEqual(told(() => evaluate("(价格 + 税率")), [33, 8, -1]);
    assert.deepEqual(told(() => evaluate("a", { a: "x😀" })), [-1, 1, 0]);
    assert.deepEqual(told(() => evaluate("x".repeat(600)))[0], -1);
    assert.throws(() => new Formula("a").compute({}), TypeError);
    assert.throws(() => new Formula("a").compute({ a: {} }), TypeError);
    assert.throws(() => new Formula("a+b").columns({ a: [1, 2], b: [1] }), RangeError);
    assert.throws(() => new Formula("toString").compute({}), TypeError);
});

test("characters are those of a string, also where one is two of them", () => {
    const placeOf = (text, values) => {
        try {
            evaluate(text, values);
        } catch (error) {
            return [error.position.byte, error.position.character, error.position.bytes, error.position.characters];
        }
        throw new Error("nothing was thrown");
    };
    assert.deepEqual(placeOf("价+😀"), [4, 2, 4, 2]);
    assert.deepEqual(placeOf("价+ठ"), [4, 2, 3, 1]);
    assert.deepEqual(placeOf("a", { a: "x😀" }), [1, 1, 4, 2]);
});

test("sizes that do not fit are refused, and the engine goes on", () => {
    const { engine } = own();
    const one = new engine.Formula("a");
    const length = new engine.Formula("strlen(a)");
    const long = new Uint8Array(2 ** 26).fill(97);
    const bytes = new engine.Formula(new TextEncoder().encode("strlen(a)"), [new Uint8Array([97])]);
    const calls = [
        () => one.columns({ a: 1 }, 2 ** 29),
        () => one.columns({ a: 1 }, 2 ** 52),
        () => one.columns({ a: 1 }, "3"),
        () => one.columns({ a: 1 }, -1),
        () => one.columns({ a: 1 }, 1.5),
        () => one.columns({ a: 1 }, NaN),
        () => one.textColumns({ a: "x" }, 2 ** 32),
        () => bytes.columns([Array(64).fill(long)]),
        () => length.rowError({ a: ["x", "y"] }, 2),
        () => length.rowError({ a: ["x", "y"] }, -1),
        () => length.rowError({ a: ["x", "y"] }, 2 ** 32),
        () => length.rowError({ a: ["x", "y"] }, NaN),
        () => length.rowError({ a: ["x", "y"] }),
    ];
    for (const call of calls) {
        assert.throws(call, RangeError, String(call));
        assert.equal(engine.evaluate("1+1"), 2);
        assert.deepEqual([...one.columns({ a: [1, 2] }).results], [1, 2]);
        assert.equal(length.rowError({ a: ["x", "y"] }, 1), null);
    }
    assert.throws(() => one.rowError([], 0), engine.FormulaError);
});

test("values that change what they are given to do no harm", () => {
    const { engine } = own();
    const sum = new engine.Formula("a+b");
    const by = (get) => Object.defineProperty([1, 2], 0, { get });
    let other = new engine.Formula("a+b");
    assert.throws(() => other.compute(by(() => other.free())), TypeError);
    const growing = by(() => growing.push(...Array(100_000).fill(1.5)));
    assert.throws(() => sum.compute(growing), engine.FormulaError);
    const column = new Float64Array(1_000_000);
    assert.equal(sum.compute(by(() => sum.columns([column, 1.5]).results[7])), 3.5);
    assert.throws(() => sum.compute(new Proxy(new Uint8Array(8), {})), TypeError);
    let asked = 0;
    const long = new Proxy(new Uint8Array(1), { get: (bytes, key) => (key === "length" ? (asked++ < 1 ? 1 : 100_000) : bytes[key]) });
    assert.throws(() => new engine.Formula(new Uint8Array([97])).compute([long]));
    assert.throws(() => { sum.names = Array(100_000).fill({ name: "a" }); }, TypeError);
    assert.equal(sum.compute({ a: 1.5, b: 2 }), 3.5);
    assert.equal(engine.evaluate("1+1"), 2);
});

test("what is neither number nor text is refused", () => {
    const sum = new Formula("a+b");
    for (const values of [new Array(2), [, 1], [1, null], [1, true], [1, 2n], [1, [2]], { a: 1, b: undefined }]) {
        assert.throws(() => sum.compute(values), TypeError);
    }
    for (const column of [[1, null], [1, , 2], ["x", , "y"], ["x", 1], [[7], [8]], [true], null, true, 1n]) {
        assert.throws(() => columns("a", { a: column }), TypeError, String(column));
    }
    for (const text of [null, undefined, 1, ["1+1"], {}]) {
        assert.throws(() => new Formula(text), TypeError);
        assert.throws(() => evaluate(text), TypeError);
    }
    assert.throws(() => new Formula("a", [1]), TypeError);
    assert.deepEqual([...columns("a", { a: new Float32Array([0.5, 2]) }).results], [0.5, 2]);
    assert.deepEqual([...columns("a*2", new Map([["a", [1]]])).results], [2]);
});

test("a formula of bytes has bytes, another one strings", () => {
    const gbk = (...bytes) => Uint8Array.from(bytes, (b) => (typeof b === "string" ? b.charCodeAt(0) : b));
    const name = gbk(0xc6, 0xbb);
    const f = new Formula(gbk(..."strcat(", ...name, ...",\"!\")"));
    assert.deepEqual(f.names.map((n) => ({ ...n })), [{ name, kind: "text" }]);
    assert.deepEqual(f.compute([gbk(0xb9, 0xfb)]), gbk(0xb9, 0xfb, "!"));
    assert.deepEqual(f.compute(["ab"]), gbk("a", "b", "!"));
    assert.deepEqual(f.textColumns([[name, "x"]]).results, [gbk(...name, "!"), gbk("x", "!")]);
    assert.deepEqual(evaluate(gbk(...name, "+", "1"), new Map([[name, 2]])), 3);
    assert.throws(() => f.compute(["苹"]), TypeError);
    assert.throws(() => f.compute({ "\xc6\xbb": "x" }), /by place/);
    assert.throws(() => new Formula(gbk("a"), ["苹"]), TypeError);
    assert.throws(() => new Formula("a", [name]), TypeError);
    assert.throws(() => new Formula("a").compute({ a: name }), TypeError);
    assert.throws(() => columns("strlen(a)", { a: [name] }), TypeError);
});

test("what a call took before it failed is given back", () => {
    const { instance, engine } = own();
    const fail = () => assert.throws(() => engine.evaluate("1/(a-3", { a: 3 }), engine.FormulaError);
    for (let i = 0; i < 1000; ++i) fail();
    const size = instance.exports.memory.buffer.byteLength;
    for (let i = 0; i < 20_000; ++i) fail();
    assert.equal(instance.exports.memory.buffer.byteLength, size);
});

// Each kind of call, and what it is to give.
function calls(engine) {
    const using = (text, work) => {
        const formula = new engine.Formula(text);
        try {
            return work(formula);
        } finally {
            formula.free();
        }
    };
    const label = 'strcat(name, ": ", r2s(price * 2, 2))';
    const refused = (text) => {
        try {
            return engine.evaluate(text);
        } catch (error) {
            if (!(error instanceof engine.FormulaError)) throw error;
            return [error.number, error.position.character];
        }
    };
    const messages = () => {
        const told = [engine.message(33), engine.chineseMessage(33)];
        // Without memory there is none.
        if (told.includes(null)) throw new RangeError("no message");
        return told;
    };
    return [
        [() => engine.evaluate(label, { name: "苹果", price: 1.5 }), "苹果: 3"],
        [() => engine.evaluate("a * 2", { a: 1.5 }), 3],
        [() => refused("(1+2"), [33, 4]],
        [() => engine.check('1 + sqrt("a")').map(({ name, operand }) => [name, operand]), [["sqrt", 1]]],
        [() => [...engine.columns("a / b", { a: new Float64Array([1, 2]), b: [4, 0] }).results], [0.25, 0]],
        [() => using(label, (f) => f.textColumns({ name: ["a", "苹果"], price: 1 }).results), ["a: 2", "苹果: 2"]],
        [() => using("1/a", (f) => f.rowError({ a: [1, 0] }, 1).number), 3],
        [() => using('left("abcd", 2);2', (f) => f.warnings().length), 2],
        [() => engine.functions().length > 30, true],
        [messages, ["a ) is missing", "缺少')'"]],
    ];
}

test("whichever allocation of the package fails, all is given back and the engine goes on", () => {
    const { instance } = own();
    const held = new Set();
    let allowed = Infinity;
    const exports = {
        ...instance.exports,
        malloc(size) {
            if (--allowed < 0) return 0;
            const pointer = instance.exports.malloc(size);
            held.add(pointer);
            return pointer;
        },
        free(pointer) {
            held.delete(pointer);
            instance.exports.free(pointer);
        },
    };
    const engine = start({ exports });
    for (const [call, wanted] of calls(engine)) {
        const before = held.size;
        let failures = 0;
        for (let given; given === undefined; ) {
            allowed = failures;
            try {
                given = call();
            } catch (error) {
                assert.ok(error instanceof RangeError, String(error));
                assert.ok(++failures < 100);
            } finally {
                allowed = Infinity;
            }
            assert.equal(held.size, before, `${call}, ${failures}`);
            assert.deepEqual(given ?? call(), wanted);
        }
        assert.ok(failures > 0, String(call));
    }
});

test("memory that runs out is an error, and the engine goes on", () => {
    const { instance, engine } = own();
    const { malloc, free } = instance.exports;
    for (const [call, wanted] of calls(engine)) {
        const held = [];
        // Memory that nobody touches costs the system nothing.
        for (let size = 2 ** 30; size >= 1; ) {
            const pointer = malloc(size);
            if (pointer === 0) size /= 2;
            else held.push(pointer);
        }
        let failures = 0;
        for (let given; given === undefined; ) {
            try {
                given = call();
                assert.deepEqual(given, wanted);
            } catch (error) {
                assert.ok(error instanceof RangeError, String(error));
                ++failures;
                // The last ones are the smallest.
                free(held.pop());
            }
        }
        assert.ok(failures > 0, String(call));
        for (const pointer of held) free(pointer);
        assert.deepEqual(call(), wanted);
    }
});

test("a formula that was let go of says so", () => {
    const formula = new Formula("a");
    formula.free();
    formula.free();
    assert.throws(() => formula.compute({ a: 1 }), TypeError);
});

for (const document of ["web/package/README.md", "docs/web.md", "docs/zh/web.md"]) {
    test(`the examples of ${document}, as both kinds of module`, () => {
        const page = readFileSync(new URL(`../../${document}`, import.meta.url), "utf8");
        const [, example] = /```js\n([^]*?)```/.exec(page);
        const scratch = project();
        // "call;   // 8.03" is to give what stands behind it.
        const told = [];
        const body = example.replace(/^([a-z]\S*\(.*\S);\s+\/\/ (.+)$/gm, (_, call, value) => {
            told.push(value.replace("Float64Array ", "").replace(/, /g, ","));
            return `console.log(JSON.stringify(shown(${call})));`;
        });
        const shown = "\nfunction shown(v) { return v instanceof Float64Array ? [...v] : v; }\n";
        writeFileSync(join(scratch, "a.mjs"), body + shown);
        writeFileSync(join(scratch, "a.cjs"), body.replace(/^import (.*) from (.*);$/m, "const $1 = require($2);") + shown);
        for (const name of ["a.mjs", "a.cjs"]) {
            const lines = execFileSync(process.execPath, [name], { cwd: scratch }).toString().trim().split("\n");
            assert.equal(lines.length, 5, name);
            assert.deepEqual(lines.slice(0, 3), told.slice(0, 3), name);
            assert.match(lines[3], /^3 2 存在/, name);
        }
    });
}

test("types", () => {
    const scratch = project();
    writeFileSync(join(scratch, "a.mts"), readFileSync(new URL("types.ts", import.meta.url)));
    writeFileSync(join(scratch, "b.cts"), readFileSync(new URL("types.ts", import.meta.url)));
    execFileSync("tsc", ["--noEmit", "--strict", "--target", "es2022", "--module", "node16", "--moduleResolution", "node16", "a.mts", "b.cts"], { cwd: scratch, stdio: ["ignore", "inherit", "inherit"] });
});

test("what is exported is what the types tell, and nothing of it is missing in a browser", () => {
    const found = readFileSync(join(folder, "index.d.ts"), "utf8").matchAll(/^export (?:function|const|class) (\w+)/gm);
    const told = [...new Set([...found].map((m) => m[1]))];
    assert.deepEqual(Object.keys(morandel).sort(), told.sort());
    const [, list] = /^export const \{([^}]*)\} = start\(/m.exec(readFileSync(join(folder, "browser.js"), "utf8"));
    assert.deepEqual(list.match(/\w+/g).sort(), told);
    assert.ok(readdirSync(folder).includes("index.cjs"));
});
