// Numbers and values as the command reads and writes them.

const blanks = " \t\r\n\v\f";

// Without what the command takes for blanks: of Unicode's others none.
export function trim(text) {
    let begin = 0;
    let end = text.length;
    while (begin < end && blanks.includes(text[begin])) ++begin;
    while (begin < end && blanks.includes(text[end - 1])) --end;
    return text.slice(begin, end);
}

function withoutExponent(text) {
    const [mantissa, exponent] = text.split("e");
    const [whole, decimals = ""] = mantissa.split(".");
    const digits = whole + decimals;
    const point = whole.length + Number(exponent);
    if (point <= 0) return `0.${"0".repeat(-point)}${digits}`;
    if (point >= digits.length) return digits + "0".repeat(point - digits.length);
    return `${digits.slice(0, point)}.${digits.slice(point)}`;
}

export function formatNumber(number) {
    if (Number.isNaN(number)) return "nan";
    if (!Number.isFinite(number)) return number < 0 ? "-inf" : "inf";
    const sign = number < 0 || Object.is(number, -0) ? "-" : "";
    const size = Math.abs(number);
    if (size === 0) return `${sign}0`;
    // Written out, an integer has all its digits.
    if (size < 1e17 && Number.isInteger(size)) return `${sign}${BigInt(size)}`;
    const shortest = size.toExponential();
    if (size >= 1e-5 && size < 1e17) return sign + withoutExponent(shortest);
    return sign + shortest.replace(/e([-+])(\d)$/, "e$10$2");
}

// null where the text is no number.
export function readNumber(text) {
    if (!/^[-+]?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?$/.test(text)) return null;
    return Number(text);
}

const isQuoted = (text) => text.length >= 2 && text.startsWith('"') && text.endsWith('"');

// What reads as a number is one; anything else is a text, its quotes taken off.
export function readValue(text) {
    const trimmed = trim(text);
    const number = readNumber(trimmed);
    if (number !== null) return number;
    return isQuoted(trimmed) ? trimmed.slice(1, -1) : text;
}

// undefined where it is neither a number nor a text in quotes.
export function readGivenValue(text) {
    const isText = isQuoted(text) && text.indexOf('"', 1) === text.length - 1;
    return isText || readNumber(text) !== null ? readValue(text) : undefined;
}

export function showValue(value) {
    return typeof value === "number" ? formatNumber(value) : `"${value}"`;
}
