// The site in a browser, from the file system: what the manual says is what its fields compute.
// MORANDEL_SITE is its folder, MORANDEL_COMMAND the command built for this system.

import assert from "node:assert/strict";
import { execFileSync, spawnSync } from "node:child_process";
import { readFileSync, readdirSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { pathToFileURL } from "node:url";

import { Browser, keys } from "./browser.mjs";
import { readExpectation, sameNumber } from "./case_file.mjs";
import { scratchFolder } from "./scratch.mjs";

const folder = process.env.MORANDEL_SITE;
const command = process.env.MORANDEL_COMMAND;
const site = pathToFileURL(`${folder}/`).href;
const pages = ["en", "zh"].flatMap((language) =>
    readdirSync(join(folder, language)).map((name) => `${language}/${name}`),
);

let browser;
before(async () => {
    browser = await Browser.start();
    await browser.size(1200, 900);
});
after(() => browser.close());

const words = {
    en: { integer: "integer", number: "number", text: "text", error: "error", none: "no faults" },
    zh: { integer: "整数", number: "数值", text: "字符串", error: "错误", none: "没有错误" },
};

const readRows = `return [...document.querySelectorAll(".live [data-wanted]")].map((row) => {
    const text = (selector) => row.querySelector("output " + selector)?.textContent;
    const small = text(".value small") ?? "";
    const value = text(".value");
    return {
        kind: row.dataset.row,
        wanted: row.dataset.wanted,
        formula: row.querySelector("textarea").value,
        told: row.querySelector("output").textContent,
        value: value?.slice(0, value.length - small.length),
        isText: row.querySelector("output .value.text") !== null,
        small,
        names: text(".names"),
        problem: text(".problem.error") ?? text(".problem.missing"),
    };
});`;

// As formulas show a number.
const readNumber = (text) => (text === "inf" ? Infinity : text === "-inf" ? -Infinity : Number(text));
const decoder = new TextDecoder("gbk");

function compare(row, language) {
    const say = words[language];
    const where = `${row.formula} --> ${row.wanted}, but: ${row.told}`;
    if (row.kind === "check") {
        const wanted = row.wanted.split(";")[0].replace(/@\d+/g, "");
        assert.equal(row.told, wanted === "ok" ? say.none : wanted, where);
        return;
    }
    if (row.wanted.startsWith("printed ")) {
        assert.equal(row.value, row.wanted.slice("printed ".length), where);
        return;
    }
    const wanted = readExpectation(row.wanted);
    if (wanted.variables) {
        const names = wanted.variables.map(({ name, kind }) => `${decoder.decode(name)} ${say[kind]}`);
        assert.equal(row.names, names.join(", "), where);
    }
    if (wanted.error !== undefined) {
        assert.ok(row.problem.includes(`(${say.error} ${wanted.error})`), where);
    } else if (wanted.refused) {
        assert.ok(row.problem && !/\((error|错误) /.test(row.problem), where);
    }
    if (wanted.text) {
        assert.ok(row.isText, where);
        assert.equal(row.value, decoder.decode(wanted.text), where);
    }
    if (wanted.number !== undefined) {
        assert.ok(!row.isText && sameNumber(readNumber(row.value), wanted.number, wanted.inexact), where);
        assert.equal(row.small, wanted.kind === "integer" ? say.integer : "", where);
    }
}

for (const page of pages) {
    test(`${page} gives what it says`, async () => {
        await browser.open(site + page);
        assert.deepEqual(await browser.complaints(), []);
        const rows = await browser.run(readRows);
        for (const row of rows) compare(row, page.slice(0, 2));
        const least = { language: 80, gallery: 30, tutorial: 5, variables: 8 };
        const name = page.slice(3).replace(".html", "");
        assert.ok(rows.length >= (least[name] ?? 0), `${rows.length} formulas`);
        // No file is asked for that is not there, and nothing from anywhere else.
        const sources = await browser.run("return performance.getEntriesByType('resource').map((e) => e.name)");
        for (const source of sources) assert.ok(source.startsWith(site), source);
    });
}

test("sessions on files, opened in the playground, print what they say", async () => {
    let count = 0;
    for (const page of pages) {
        await browser.open(site + page);
        const links = await browser.run(
            "return [...document.querySelectorAll('a[data-wanted]')].map((a) => [a.href, a.dataset.wanted])",
        );
        for (const [address, wanted] of links) {
            await browser.open(address);
            const isTable = address.includes("csv=");
            const lines = await browser.run(
                isTable
                    ? `return [...document.querySelectorAll("#rows tr")].map((row) => [...row.children].slice(1)
                        .map((cell) => cell.textContent).map((t) => (/[",]/.test(t) ? '"' + t + '"' : t)).join(","))`
                    : `return [...document.querySelectorAll("#variables tr")].map((row) =>
                        row.querySelector("th").textContent + " = " + row.lastChild.textContent)`,
            );
            assert.equal(lines.join("\n"), wanted, page);
            ++count;
        }
    }
    assert.ok(count >= 6, `${count} sessions`);
});

test("links between pages lead somewhere", async () => {
    for (const page of pages) {
        await browser.open(site + page);
        const links = await browser.run("return [...document.links].map((link) => link.href)");
        for (const link of links) {
            if (!link.startsWith("file:")) continue;
            const target = link.slice(site.length).split(/[?#]/)[0];
            assert.ok(pages.includes(target), `${page}: ${link}`);
        }
    }
});

test("a page's formula follows what is typed, and shows what is wrong", async () => {
    await browser.open(`${site}en/language.html`);
    const field = ".live [data-row=formula]";
    await browser.type(`${field} textarea`, "2 * (3 + 4)");
    await browser.until(`return document.querySelector("${field} output").textContent === "14"`);
    await browser.type(`${field} textarea`, "2 * (3 +");
    await browser.until(`return document.querySelector("${field} output").textContent.includes("error 31")`);
    const mark = await browser.run(`return document.querySelector("${field} .wrong") !== null`);
    assert.ok(mark);
    assert.equal(await browser.run(`return document.querySelector("${field} textarea").ariaInvalid`), "true");
    // A value that is given changes the formulas below it.
    await browser.run(`[...document.querySelectorAll(".given")]
        .find((node) => node.querySelector("label").textContent === "Rate").id = "rate"`);
    await browser.type("#rate input", "3");
    await browser.until(`return document.body.textContent.includes("9.42477796076938")`);
});

const texts = (selector) =>
    `return [...document.querySelectorAll(${JSON.stringify(selector)})].map((node) => node.textContent)`;

async function typeInto(selector, text) {
    await browser.run(
        `const node = document.querySelector(arguments[0]);
         node.value = arguments[1];
         node.dispatchEvent(new Event("input", { bubbles: true }));`,
        selector,
        text,
    );
}

async function settled(script, wanted) {
    await browser.until(`${script.replace("return", "const found =")}; return JSON.stringify(found) === arguments[0]`, JSON.stringify(wanted)).catch(async (error) => {
        assert.deepEqual(await browser.run(script), wanted, error.message);
    });
}

function run(...args) {
    return execFileSync(command, args, { cwd: scratchFolder() }).toString();
}

for (const language of ["en", "zh"]) {
    test(`the playground computes as the command does (${language})`, async () => {
        await browser.open(`${site}${language}/index.html`);
        assert.deepEqual(await browser.complaints(), []);
        const state = await browser.run(`return {
            formula: document.querySelector("#formula textarea").value,
            values: [...document.querySelectorAll("#names li")].map((row) =>
                row.querySelector("label").textContent + "=" + row.querySelector("input").value),
            definitions: document.querySelector("#definitions").value,
            csv: document.querySelector("#csv").value,
            columns: [...document.querySelectorAll(".addition")].map((node) =>
                node.querySelector("input").value + " = " + node.querySelector("textarea").value),
        }`);
        assert.deepEqual(await browser.run(texts("#result .value")), [run(state.formula, ...state.values).trim()]);

        const scratch = scratchFolder();
        writeFileSync(join(scratch, "a.calc"), state.definitions);
        const lines = run("calc", join(scratch, "a.calc")).trim().split("\n");
        const shown = await browser.run(`return [...document.querySelectorAll("#variables tr")].map((row) =>
            row.querySelector("th").textContent + " = " + row.lastChild.textContent)`);
        assert.deepEqual(shown, lines);

        writeFileSync(join(scratch, "a.csv"), state.csv);
        const additions = state.columns.flatMap((column) => ["--add", column]);
        const table = run("each", join(scratch, "a.csv"), ...additions).trim().split("\n");
        const rows = await browser.run(`return [...document.querySelectorAll("#rows tr")].map((row) =>
            [...row.children].slice(1).map((cell) => cell.textContent).join(","))`);
        assert.deepEqual(rows, table);
        const bars = await browser.run("return document.querySelectorAll('#plot .bars rect').length");
        assert.equal(bars, rows.length - 1);
    });
}

test("names come with their types and fields as one types", async () => {
    await browser.open(`${site}en/index.html`);
    await browser.type("#formula textarea", "strsub(s, n, 2) like t");
    await settled(texts("#names label"), ["s", "n", "t"]);
    assert.deepEqual(await browser.run(texts("#names small")), ["text", "integer", "text"]);
    assert.match(await browser.run("return document.querySelector('#result').textContent"), /s has no value/);
    await browser.type("#names li:nth-child(1) input", "pears");
    await browser.type("#names li:nth-child(2) input", "2");
    await browser.type("#names li:nth-child(3) input", "e");
    await settled(texts("#result .value"), ["1"]);
    // A formula that is not whole yet keeps the fields and their values.
    await browser.click("#formula textarea");
    await browser.press(keys.end, " ", "+");
    await browser.until("return document.querySelector('#result .error')");
    assert.equal(await browser.run("return document.querySelector('#names input').value"), "pears");
    await browser.type("#formula textarea", "2 * srqt(16)");
    await browser.until("return document.querySelector('#result').textContent.startsWith('srqt is not a function; did you mean sqrt?')");
    assert.deepEqual(await browser.run(texts("#formula .wrong")), ["srqt"]);
    await browser.type("#formula textarea", "1,000 * 3");
    await browser.until("return document.querySelector('#result .warning')");
});

test("variables: a cycle, faults of lines, a chain of a thousand", async () => {
    await browser.open(`${site}en/index.html`);
    await typeInto("#definitions", "a := b\nb := a\nc := 1 +\nd = x\ne 1\na = 2\nf := a");
    await settled(texts("#variables tr th"), ["a", "b", "c", "d", "line 5", "line 6", "f"]);
    const shown = await browser.run(texts("#variables tr td:last-child"));
    assert.equal(shown[0], "a depends on itself: a → b → a");
    assert.match(shown[2], /\(error 30\)|\(error 31\)/);
    assert.match(shown[3], /expected a number/);
    assert.match(shown[4], /expected name = value/);
    assert.equal(shown[5], "a is defined already");
    assert.equal(shown[6], shown[0]);
    const chain = Array.from({ length: 1000 }, (_, i) => (i === 999 ? "n999 = 1" : `n${i} := n${i + 1} + 1`));
    await typeInto("#definitions", chain.join("\n"));
    await browser.until("return document.querySelector('#variables td:last-child')?.textContent === '1000'");
});

test("tables: fields that are no numbers, quotes, and many rows", async () => {
    await browser.open(`${site}en/index.html`);
    await typeInto("#csv", 'item,qty\nA,2\n"B, ""x""",n/a\nC,\n');
    await typeInto(".addition .title", "twice");
    await typeInto(".addition textarea", "qty * 2");
    await settled(texts("#rows tbody tr td:nth-child(4)"), ["4", "twice: qty".slice(7) + ": 'n/a' is not a number", "qty: the field is empty"]);
    assert.deepEqual(await browser.run(texts("#rows tbody tr td:nth-child(2)")), ["A", 'B, "x"', "C"]);
    const rows = Array.from({ length: 5000 }, (_, i) => `r${i},${i}`);
    await typeInto("#csv", `item,qty\n${rows.join("\n")}`);
    await browser.until("return document.querySelector('#row-count').textContent === '200 of 5000 rows are shown.'");
    await browser.run(`const choice = document.querySelector("#plotted");
        choice.value = "twice";
        choice.dispatchEvent(new Event("change"));`);
    assert.ok(await browser.run("return document.querySelector('#plot polyline') !== null"));
});

// The playground with what a link gives it.
async function openWith(...pairs) {
    await browser.open(`${site}en/index.html#${new URLSearchParams([["formula", ""], ...pairs])}`);
}

function commandOf(name, content, ...args) {
    const file = join(scratchFolder(), name);
    writeFileSync(file, content);
    const { status, stdout, stderr } = spawnSync(command, [name.split(".")[1], file, ...args], { encoding: "utf8" });
    return { isWell: status === 0, lines: stdout.trimEnd().split("\n"), told: stderr };
}

const complaintsOf = (selector) => `return [...document.querySelectorAll(${JSON.stringify(`${selector} *`)})]
    .flatMap((node) => [...node.attributes]).filter(({ value }) => /NaN|Infinity|undefined/.test(value))
    .map(({ name, value }) => name + "=" + value)`;

test("variables: numbers and blanks are the command's", async () => {
    const definitions = [
        "a = 1e999", "b = -1e999", "c = 90071992547409936", "d = 9007199254740993", "e = 99999999999999984",
        "f = -36028797018963970", "g = 123456789012345.678", "h := a", " i\t=\f1e-999 \v", "j = 1e17", "k = 1e-5 # x",
        "\u3000l = 2", "m := c * 10 + \u3000l", 'n = "x\u3000"', 'o := strcat(n, "\u3000")', "p := sqrt(d)",
    ].join("\n");
    await openWith(["definitions", definitions]);
    const shown = await browser.run(`return [...document.querySelectorAll("#variables tr")].map((row) =>
        row.querySelector("th").textContent + " = " + row.lastChild.textContent)`);
    assert.deepEqual(shown, commandOf("a.calc", definitions).lines);
    for (const name of ["中國", "單", "a😀"]) {
        await openWith(["definitions", `${name} = 1`]);
        assert.deepEqual(await browser.run(texts("#variables .problem")), [`no name to define: '${name}'`]);
        assert.ok(!commandOf("a.calc", `${name} = 1`).isWell);
    }
    for (const line of ["a = 1\u3000", "a = 1\v# x", "a =\u00a01", "a = 1\u2003", "\u3000"]) {
        await openWith(["definitions", line]);
        const [fault] = await browser.run(texts("#variables .problem"));
        assert.ok(fault && commandOf("a.calc", line).told.includes(fault), `${line}: ${fault}`);
    }
    for (const text of ["1\u3000", "\u30001", "1e999", "-1e999", "90071992547409936"]) {
        await browser.open(`${site}en/index.html#${new URLSearchParams([["formula", "a"], ["value", `a=${text}`]])}`);
        assert.deepEqual(await browser.run(texts("#result .value")), [run("a", `a=${text}`).slice(0, -1)]);
    }
});

test("variables: a name without a value leads to the error that it leads to in a formula", async () => {
    const formulas = { "a + nothing": 0, "sqrt(nothing)": 1, "mod(a, nothing)": 76, 'strcat(nothing, "a")': 52 };
    const lines = Object.keys(formulas).map((formula, index) => `b${index} := ${formula}`);
    await openWith(["definitions", ["a = 2", ...lines].join("\n")]);
    const wanted = Object.values(formulas).map((number) => `nothing has no value (error ${number})`);
    assert.deepEqual(await browser.run(texts("#variables .problem")), wanted);
});

test("variables: a graph has a place for each name of a cycle", async () => {
    await browser.open(`${site}en/index.html`);
    for (const count of [1, 2, 3, 40]) {
        const names = Array.from({ length: count }, (_, i) => `n${i} := n${(i + 1) % count}`);
        await typeInto("#definitions", [...names, "last := n0 + 1"].join("\n"));
        await settled("return document.querySelectorAll('#graph g.failed').length", count + 1);
        assert.deepEqual(await browser.run(complaintsOf("#graph")), []);
    }
});

test("tables: columns are found and replaced as the command does", async () => {
    const tables = [
        ["p,q\n1,2\n", "p=p + 1", "p=p * 10", "z=p", "z=q"],
        ["a b,c\n1,2\n", "a_b=7", "d=a_b"],
        ["a_b,k\n1,2\n", "a b=7", "d=a_b"],
        ["a,b,\n1,2,3\n", "d=c3", "c3=1", "e=c3"],
        ["a,,c2\n1,2,3\n", "d=c2"],
        ["a\n1\n\n2\n\n", "n=strlen(a)"],
        ["a,b\n1,2\n\n3,4\n", "n=a + b"],
        [" x\u3000,left\n1,90071992547409936\n", "y=x\u3000", "z=_left * 1"],
        ["a b,a-b\n1,2\n", "x=a_b"],
        ["a b,a-b\n1,2\n", "a_b=1"],
        ["x,y,x\n1,2,3\n", "z=x"],
        ["v\n1\u3000\n", "z=v"],
        ["area m²,a😀c\n3,1\n", "y=area_m_ * 2 + a_c"],
        ["國家,价\n1,2\n", "x=_家 * 价"],
    ];
    for (const [csv, ...additions] of tables) {
        await openWith(["csv", csv], ...additions.map((text) => ["column", text]));
        const wanted = commandOf("a.each", csv, ...additions.flatMap((text) => ["--add", text.replace("=", " = ")]));
        if (wanted.isWell) {
            const rows = await browser.run(`return [...document.querySelectorAll("#rows tr")].map((row) =>
                [...row.children].slice(1).map((cell) => cell.textContent).join(","))`);
            assert.deepEqual(rows, wanted.lines);
        } else {
            const [fault] = await browser.run(texts(".addition .problem"));
            assert.ok(fault && wanted.told.includes(fault.replace("1 rows fail: ", "")), `${fault}: ${wanted.told}`);
        }
    }
    await openWith(["csv", 'a,b\n"x"y",2\n'], ["column", "n=strlen(a)"]);
    assert.deepEqual(await browser.run(texts("#rows td")), ['x"y', "2", "3"]);
});

test("tables: a row that fails is asked why by itself", async () => {
    await openWith(["csv", "t\n1"], ["column", "x=1 / (strlen(t) - strlen(t))"]);
    // What is handed to the engine, not how long that takes.
    await browser.run(`globalThis.encoded = 0;
        for (const name of ["encode", "encodeInto"]) {
            const call = TextEncoder.prototype[name];
            TextEncoder.prototype[name] = function (text, ...rest) {
                globalThis.encoded += text.length;
                return call.call(this, text, ...rest);
            };
        }`);
    await typeInto("#csv", `t\n${"some text\n".repeat(2000)}`);
    await browser.until("return document.querySelector('.addition .problem')?.textContent.startsWith('2000 rows fail: division by zero')");
    const encoded = await browser.run("return globalThis.encoded");
    assert.ok(encoded < 2000 * 100, `${encoded} characters`);
});

test("plots: ranges that are narrow, far off, huge and tiny", async () => {
    const columns = [
        Array.from({ length: 60 }, (_, i) => String(1700000000000 + (i % 4))),
        Array.from({ length: 60 }, (_, i) => String(0.1 * (i % 4))),
        Array.from({ length: 60 }, () => "12"),
        ["1.7e308", "-1.7e308"],
        Array.from({ length: 60 }, (_, i) => (i % 2 ? "1.7e308" : "-1.7e308")),
        ["5e-324", "1e-323"],
        Array.from({ length: 60 }, (_, i) => (i % 2 ? "5e-324" : "1e-323")),
        ["1000.0000000000001", "-3"],
        ["0"],
    ];
    for (const column of columns) {
        await openWith(["csv", `v\n${column.join("\n")}`], ["plot", "v"]);
        assert.deepEqual(await browser.run(complaintsOf("#plot")), [], column[0]);
        const { labels, heights } = await browser.run(`return {
            labels: [...document.querySelectorAll("#plot .tick text")].map((node) => node.textContent),
            heights: [...document.querySelectorAll("#plot polyline")].flatMap(({ points }) => [...points].map(({ y }) => y))
                .concat([...document.querySelectorAll("#plot rect")].flatMap((bar) =>
                    [bar.y.baseVal.value, bar.y.baseVal.value + bar.height.baseVal.value])),
        }`);
        assert.ok(new Set(labels).size === labels.length && labels.length > 0, `${column[0]}: ${labels}`);
        assert.ok(heights.length >= column.length && heights.every((y) => y >= 12 && y <= 213), `${column[0]}: ${heights}`);
    }
});

test("a name without a value is marked where it stands", async () => {
    const places = [
        ["price2 + price", "price2=1", 10],
        ['strcat("qty = ", r2s(qty, 0))', "x=1", 22],
        ["Price + price", "Price=1", 9],
        ["a\u3000+ a", "a\u3000=1", 5],
    ];
    for (const [formula, value, character] of places) {
        await browser.open(`${site}en/index.html#${new URLSearchParams({ formula, value })}`);
        assert.deepEqual(await browser.run(texts("#result .missing small")), [` · character ${character}`]);
    }
    await browser.open(`${site}en/index.html#${new URLSearchParams({ formula: "1\t+ 2" })}`);
    assert.equal((await browser.run(texts("#formula .ignored"))).join(""), "\t+ 2 ");
});

test("a check of the manual tells that a formula is refused", async () => {
    await browser.open(`${site}en/variables.html`);
    const rows = await browser.run(
        `const rows = document.querySelectorAll("[data-row=check]");
        rows[0].querySelector("textarea").value = "1 + (";
        rows[1].querySelector("textarea").value = "1 + 1";
        rows[0].querySelector("textarea").dispatchEvent(new Event("input"));
        rows[0].id = "refused";
        rows[1].id = "below";
        return rows[0].parentNode === rows[1].parentNode`,
    );
    assert.ok(rows);
    await browser.until("return /\\(error 3[01]\\)/.test(document.querySelector('#refused output').textContent)");
    await settled(texts("#below output"), ["no faults"]);
    assert.deepEqual(await browser.complaints(), []);
});

test("large pastes leave the page at work", async () => {
    await openWith(["csv", "a\n1"]);
    await typeInto("#formula textarea", `${"1+".repeat(100000)}1`);
    await browser.until("return document.querySelector('#result .error')");
    assert.ok((await browser.run(texts("#formula .mirror span"))).length < 100);
    await typeInto("#formula textarea", "1+1");
    await settled(texts("#result .value"), ["2"]);
    // To lay out so large tables takes long, and nothing of it is looked at here.
    await browser.run("for (const table of document.querySelectorAll('table')) table.style.display = 'none'");
    await typeInto("#definitions", "x\n".repeat(130000));
    await browser.until("return document.querySelectorAll('#variables tr').length === 130000");
    await typeInto("#definitions", "x = 1");
    await settled(texts("#variables th"), ["x"]);
    await typeInto("#csv", `${"t,".repeat(130000)}t`);
    await browser.until("return document.querySelectorAll('#rows th').length === 130002");
    assert.deepEqual(await browser.complaints(), []);
});

test("lines that are pasted become one, and the caret stays behind them", async () => {
    await browser.open(`${site}en/index.html`);
    const found = await browser.run(`const area = document.querySelector("#formula textarea");
        area.value = "1+\\n\\n\\n2 + 3";
        area.setSelectionRange(6, 6);
        area.dispatchEvent(new Event("input"));
        return [area.value, area.selectionStart, area.selectionEnd]`);
    assert.deepEqual(found, ["1+ 2 + 3", 4, 4]);
});

test("all that the pages can say, some page says", () => {
    const folder = new URL("../../web/site/", import.meta.url);
    const read = (name) => readFileSync(new URL(name, folder), "utf8");
    const source = readdirSync(folder).filter((name) => name.endsWith(".js")).map(read).join("\n");
    const kinds = ["number", "integer", "text"];
    for (const [, key] of read("words.js").matchAll(/^ {4}(\w+): \[/gm)) {
        assert.ok(kinds.includes(key) || source.includes(`say("${key}"`), key);
    }
});

const hostile = [
    '<img src=x onerror="globalThis.struck = 1">',
    "</script><script>globalThis.struck = 1</script>",
    '"><svg onload="globalThis.struck = 1">',
    "javascript:globalThis.struck=1",
];

test("hostile formulas, names, values, cells and links stay text", async () => {
    for (const text of hostile) {
        const parameters = new URLSearchParams({
            formula: `strcat(x, "${text.replace(/"/g, "'")}")`,
            value: `x=${text}`,
            definitions: `a = 1\n${text}\nb := "${text.replace(/"/g, "'")}"`,
            csv: `${text.replace(/[",]/g, "")},n\n"${text.replace(/"/g, '""')}",1`,
            column: `${text}="${text.replace(/"/g, "'")}"`,
        });
        await browser.open(`${site}en/index.html#${parameters}`);
        const found = await browser.run(`return {
            struck: globalThis.struck,
            elements: document.querySelectorAll("main img, main script, main svg[onload], [onerror]").length,
            text: document.querySelector("main").textContent,
            values: [...document.querySelectorAll("textarea, input")].map((node) => node.value).join("\\n"),
            result: document.querySelector("#result .value")?.textContent,
            cell: document.querySelector("#rows tbody td")?.textContent,
        }`);
        assert.equal(found.struck, null);
        assert.equal(found.elements, 0);
        assert.equal(found.result, text + text.replace(/"/g, "'"));
        assert.equal(found.cell, text);
        assert.ok(found.values.includes(text));
        assert.deepEqual(await browser.complaints(), []);
    }
});

test("the link holds everything, also in the other language", async () => {
    await browser.open(`${site}en/index.html`);
    await browser.type("#formula textarea", 'strcat(p, "& =#+%苹果")');
    await settled(texts("#names label"), ["p"]);
    await browser.type("#names input", "x=1&y");
    await typeInto("#definitions", "a = 7");
    await typeInto("#csv", "m,n\n1,2");
    await settled(texts("#result .value"), ["x=1&y& =#+%苹果"]);
    await browser.click("#copy-link");
    const link = await browser.until("return location.hash.includes('a+%3D+7') && location.href");
    const read = `return [...document.querySelectorAll("#playground textarea, #playground input, #result .value")]
        .map((node) => node.value ?? node.textContent)`;
    const state = await browser.run(read);
    await browser.open(link);
    assert.deepEqual(await browser.run(read), state);
    await browser.run("document.querySelector('.switch').click()");
    await browser.until("return location.href.includes('/zh/') && document.documentElement.dataset.engine");
    assert.deepEqual(await browser.run(read), state);
    assert.equal(await browser.run("return document.documentElement.lang"), "zh-CN");
});

test("names and titles with = stay whole in the link, and old links stay what they were", async () => {
    const read = `return [...document.querySelectorAll("#playground textarea, #playground input, #result .value")]
        .map((node) => node.value ?? node.textContent)`;
    await openWith(["csv", "m,x\n1,2"], ["column", "n=m"]);
    await typeInto("#formula textarea", "a=b");
    await settled(texts("#names label"), ["a=b"]);
    await typeInto("#names input", "5%=");
    await browser.click("#add-column");
    await typeInto(".addition:last-child .title", "a=b%3D");
    await typeInto(".addition:last-child textarea", "x");
    await settled(texts("#rows th:last-child"), ["a=b%3D"]);
    await browser.click("#copy-link");
    const state = await browser.run(read);
    assert.ok(["5%=", "a=b%3D", "x", "n", "m"].every((text) => state.includes(text)), String(state));
    await browser.open(await browser.run("return location.href"));
    assert.deepEqual(await browser.run(read), state);

    await browser.open(`${site}en/index.html#formula=p+%2B+q&value=p%3D1%3D2&value=q%3D%253D&csv=m%0A1&column=t%253D%2525%3Dm+%3D+1&column=%3Dm`);
    const old = await browser.run(read);
    for (const text of ["1=2", "%3D", "t%3D%25", "m = 1", "", "m"]) assert.ok(old.includes(text), `${text}: ${old}`);
});

test("the keyboard reaches everything, and everything has a name", async () => {
    await browser.open(`${site}en/index.html`);
    await browser.press(keys.tab);
    assert.equal(await browser.run("return document.activeElement.className"), "skip");
    await browser.press(keys.enter);
    assert.equal(await browser.run("return document.activeElement.tagName + location.hash"), "MAIN");
    await browser.press(keys.tab);
    assert.equal(await browser.run("return document.activeElement.parentElement.parentElement.id"), "formula");
    await browser.run("document.activeElement.blur(); document.querySelector('.skip').focus()");
    const reached = new Set();
    for (let i = 0; i < 60; ++i) {
        await browser.press(keys.tab);
        reached.add(await browser.run("return document.activeElement.id || document.activeElement.className || document.activeElement.tagName"));
    }
    for (const name of ["switch", "definitions", "csv", "add-column", "plotted", "copy-link", "TEXTAREA", "SUMMARY"]) {
        assert.ok(reached.has(name), `${name} is not among ${[...reached]}`);
    }
    for (const page of ["en/index.html", "zh/index.html", "en/language.html", "zh/gallery.html"]) {
        await browser.open(site + page);
        const { nodes } = await browser.command("Accessibility.getFullAXTree", {});
        const roles = new Set(["textbox", "button", "link", "combobox", "image"]);
        for (const node of nodes) {
            if (node.ignored || !roles.has(node.role?.value)) continue;
            assert.ok(node.name?.value, `${page}: a ${node.role.value} without a name`);
        }
    }
    // What is typed with the keyboard alone is computed.
    await browser.open(`${site}en/index.html`);
    await browser.run("document.querySelector('#formula textarea').select()");
    await browser.press(..."6*7", keys.enter);
    await settled(texts("#result .value"), ["42"]);
});

test("no page is wider than a phone", async () => {
    for (const width of [320, 390]) {
        await browser.size(width, 800, true);
        for (const page of pages) {
            await browser.open(site + page);
            const wide = await browser.run("return document.documentElement.scrollWidth");
            assert.ok(wide <= width, `${page} is ${wide} wide on ${width}`);
        }
    }
    await browser.size(1200, 900);
});

test("the first page chooses a language", async () => {
    await browser.run("location.href = arguments[0]", `${site}index.html`);
    await browser.until("return location.href.endsWith('/en/index.html') && document.documentElement.dataset.engine");
});
