// A small table as text: commas, semicolons or tabs, quotes as usual.

import { say } from "./words.js";

function delimiterOf(text) {
    const line = text.split(/\r?\n/, 1)[0];
    const counts = [",", "\t", ";"].map((delimiter) => [line.split(delimiter).length, delimiter]);
    return counts.reduce((best, other) => (other[0] > best[0] ? other : best))[1];
}

// { titles, rows, fault }; a row of another length is filled up or cut off.
export function readCsv(text) {
    const source = text.replace(/^\ufeff/, "");
    const delimiter = delimiterOf(source);
    const records = [];
    let record = [];
    let field = "";
    let isQuoted = false;
    let isOpen = false;  // something of a record has been read
    const endsField = (next) => next === undefined || [delimiter, "\r", "\n"].includes(next);
    const endField = () => {
        record.push(field);
        field = "";
    };
    const endRecord = () => {
        endField();
        // A blank line is a row of a table of one column, and of no other.
        const isBlank = record.length === 1 && record[0] === "" && !isOpen;
        if (!isBlank || records[0]?.length === 1) records.push(record);
        record = [];
        isOpen = false;
    };
    for (let i = 0; i < source.length; ++i) {
        const c = source[i];
        if (isQuoted) {
            if (c !== '"') field += c;
            else if (source[i + 1] === '"') field += source[++i];
            else if (endsField(source[i + 1])) isQuoted = false;
            else field += c;
        } else if (c === '"' && field === "") {
            isQuoted = true;
            isOpen = true;
        } else if (c === delimiter) {
            endField();
            isOpen = true;
        } else if (c === "\n") {
            endRecord();
        } else if (c !== "\r" || source[i + 1] !== "\n") {
            field += c;
        }
    }
    const fault = isQuoted ? say("openQuote", records.length) : null;
    if (field !== "" || isOpen) endRecord();
    const [titles = [], ...rest] = records;
    const rows = rest.map((row) => titles.map((_, index) => row[index] ?? ""));
    return { titles, rows, fault };
}
