// Reads the case files: formulas and what they must show, a line each. docs/testing.md has the
// format. Texts are bytes of code page 936.

const pairs = new Map();
const decoder = new TextDecoder("gbk");
for (let lead = 0xfe; lead >= 0x81; --lead) {
    for (let second = 0xfe; second >= 0x40; --second) {
        pairs.set(decoder.decode(Uint8Array.of(lead, second)), [lead, second]);
    }
}

function encode(text) {
    return [...text].flatMap((character) => {
        if (character.codePointAt(0) < 0x80) return [character.codePointAt(0)];
        if (!pairs.has(character)) throw new Error(`not in code page 936: ${character}`);
        return pairs.get(character);
    });
}

// {XX} is a byte, {XX*n} are n of them.
export function toBytes(text) {
    const pieces = text.split(/\{([0-9A-Fa-f]{2})(?:\*(\d+))?\}/);
    const bytes = [];
    for (let i = 0; i < pieces.length; i += 3) {
        bytes.push(...encode(pieces[i]));
        if (i + 1 < pieces.length) {
            const byte = parseInt(pieces[i + 1], 16);
            for (let n = Number(pieces[i + 2] ?? 1); n > 0; --n) bytes.push(byte);
        }
    }
    return Uint8Array.from(bytes);
}

function readNumber(text) {
    const [, sign, hexadecimal, rest] = /^(-?)(0x)?(.*)$/.exec(text);
    let value = Number(rest);
    if (rest === "inf") value = Infinity;
    if (rest === "nan") return NaN;
    if (hexadecimal) {
        const [, whole, decimals = "", exponent = "0"] = /^([0-9a-f]*)(?:\.([0-9a-f]*))?(?:p([-+]?\d+))?$/i.exec(rest);
        // In two steps, so that neither factor is out of range.
        const power = Number(exponent) - 4 * decimals.length;
        const half = Math.trunc(power / 2);
        value = parseInt(whole + decimals, 16) * 2 ** half * 2 ** (power - half);
    }
    if (Number.isNaN(value)) throw new Error(`no number: ${text}`);
    return sign ? -value : value;
}

const isQuoted = (text) => text.length >= 2 && text.startsWith('"') && text.endsWith('"');

function unwrap(text) {
    return text.startsWith("«") && text.endsWith("»") ? text.slice(1, -1) : text;
}

const kinds = { integer: "integer", number: "number", string: "text" };

function readVariables(list) {
    if (list.trim() === "") return [];
    return list.split(",").map((item) => {
        const [, name, kind] = /^(.*) (\w+)$/.exec(item.trim());
        return { name: toBytes(name), kind: kinds[kind] };
    });
}

function readItem(item, wanted) {
    const [, word, rest] = /^(\S*)\s*(.*)$/.exec(item);
    if (isQuoted(item)) {
        wanted.text = toBytes(item.slice(1, -1));
        wanted.kind ??= "text";
    } else if (word === "error") {
        wanted.error = Number(rest);
    } else if (word === "refused") {
        wanted.refused = true;
        if (rest) wanted.error = Number(rest);
    } else if (word === "silent") {
        wanted.refused = true;
    } else if (word === "status") {
        // Of the grammar check, which a prepared formula does not tell.
    } else if (word === "variables") {
        wanted.variables = readVariables(rest);
    } else if (word in kinds) {
        wanted.kind = kinds[word];
        if (rest) wanted.number = readNumber(rest);
    } else if (word === "about") {
        wanted.inexact = true;
        wanted.number = readNumber(rest);
        wanted.kind = "number";
    } else {
        wanted.number = readNumber(item);
        wanted.kind ??= "number";
    }
}

// Semicolons stand between items, outside of quotes.
export function readExpectation(text) {
    const wanted = { refused: false };
    let isQuote = false;
    let begin = 0;
    for (let i = 0; i <= text.length; ++i) {
        if (text[i] === '"') isQuote = !isQuote;
        if (i < text.length && (text[i] !== ";" || isQuote)) continue;
        readItem(text.slice(begin, i).trim(), wanted);
        begin = i + 1;
    }
    return wanted;
}

// Blocks of lines, each a let, a formula or a check.
export function readCases(text) {
    const blocks = [];
    text.split("\n").forEach((raw, index) => {
        const line = raw.trim();
        if (line === "" || line.startsWith("#")) return;
        if (line.startsWith("[") && line.endsWith("]")) {
            const name = line.slice(1, -1);
            const isOther = name.endsWith(", in sequence") || name.endsWith(", a list");
            blocks.push({ name, isOther, lines: [] });
            return;
        }
        if (blocks.length === 0) blocks.push({ name: "cases", isOther: false, lines: [] });
        const block = blocks[blocks.length - 1];
        if (block.isOther) return;
        const number = index + 1;
        const arrow = line.lastIndexOf(" --> ");
        if (line.startsWith("let ")) {
            const [, name, value] = /^let (.*?) = (.*)$/.exec(line);
            block.lines.push({
                number,
                let: {
                    name: toBytes(name.trim()),
                    value: isQuoted(value) ? toBytes(value.slice(1, -1)) : readNumber(value),
                },
            });
        } else if (/^(check|reset)\b ?/.test(line) && (line.startsWith("check ") || line === "reset")) {
            if (line === "reset") return;
            block.lines.push({
                number,
                check: toBytes(unwrap(line.slice(6, arrow).trim())),
                outcome: line.slice(arrow + 5).trim(),
            });
        } else {
            block.lines.push({
                number,
                formula: toBytes(unwrap(line.slice(0, arrow).trim())),
                wanted: readExpectation(line.slice(arrow + 5)),
            });
        }
    });
    return blocks;
}

const bits = new BigInt64Array(1);
const double = new Float64Array(bits.buffer);

export function sameNumber(a, b, inexact) {
    if (Object.is(a, b)) return true;
    if (!inexact || Number.isNaN(a) || Number.isNaN(b) || Math.sign(a) !== Math.sign(b)) return false;
    double[0] = a;
    const first = bits[0];
    double[0] = b;
    const apart = first - bits[0];
    return apart <= 4n && apart >= -4n;
}
