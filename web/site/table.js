// Computed columns of a table, by the types that their formulas ask for.

import { formatNumber, readNumber } from "./numbers.js";
import { namesOf } from "./study.js";
import { messageOf, say } from "./words.js";

const reserved = new Set(["pi", "exp", "like", "equal", "and", "or"]);

// A title as a formula names it: "_" for what no name has.
export function nameOfTitle(engine, title) {
    const name = title.trim().replace(/[^A-Za-z0-9\u0080-\uffff]/g, "_");
    const isFunction = engine.functions().some((f) => f.name === name.toLowerCase());
    return /^\d/.test(name) || isFunction || reserved.has(name.toLowerCase()) ? `_${name}` : name;
}

function find(columns, name) {
    const last = (matches) =>
        columns.findLast((c) => c.isComputed && matches(c)) ?? columns.find(matches);
    return last((column) => column.title === name) ?? last((column) => column.name === name);
}

// The fields of a column as numbers, and what is wrong with those that are none.
function numbersOf(column, faults) {
    return Float64Array.from(column.cells, (cell, row) => {
        if (cell.fault) {
            faults[row] ??= cell.fault;
            return 0;
        }
        const number = cell.number ?? readNumber(cell.text.trim());
        if (number !== null) return number;
        const why = cell.text.trim() === "" ? say("emptyField") : say("notANumber", cell.text);
        faults[row] ??= `${column.title}: ${why}`;
        return 0;
    });
}

function textsOf(column, faults) {
    return column.cells.map((cell, row) => {
        if (cell.fault) faults[row] ??= cell.fault;
        return cell.text;
    });
}

function computeCells(formula, values, rows, faults) {
    const asNumbers = formula.columns(values, rows);
    const hasTexts = asNumbers.status.some((status) => status === 2);
    const asTexts = hasTexts ? formula.textColumns(values, rows) : null;
    return Array.from({ length: rows }, (_, row) => {
        if (faults[row]) return { text: "", fault: faults[row] };
        if (asNumbers.status[row] === 0) {
            const number = asNumbers.results[row];
            return { text: formatNumber(number), number };
        }
        if (asTexts && asTexts.status[row] === 0) return { text: asTexts.results[row] };
        const wants = asNumbers.status[row] === 2 ? "text" : "number";
        return { text: "", fault: messageOf(formula.rowError(values, row, wants, rows)) };
    });
}

function computeColumn(engine, columns, title, text, rows) {
    const failed = (fault) => ({ cells: Array.from({ length: rows }, () => ({ text: "", fault })), fault });
    if (text.trim() === "") return failed(say("empty"));
    let formula;
    try {
        const names = namesOf(engine, text);
        const sources = names.map(({ name }) => find(columns, name));
        const missing = sources.findIndex((source) => !source);
        if (missing >= 0) return failed(say("noColumn", names[missing].name));
        formula = new engine.Formula(
            text,
            new Map(names.map(({ name, kind }) => [name, kind === "text" ? "text" : "number"])),
        );
        const faults = [];
        const values = sources.map((source, index) =>
            names[index].kind === "text" ? textsOf(source, faults) : numbersOf(source, faults),
        );
        return { cells: computeCells(formula, values, rows, faults) };
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return { ...failed(messageOf(error)), problem: error };
    } finally {
        formula?.free();
    }
}

// A computed column stands in the place of one of the same title.
export function shownColumns(columns) {
    const computed = columns.filter(({ isComputed }) => isComputed);
    const shown = columns
        .filter(({ isComputed }) => !isComputed)
        .map((column) => computed.findLast(({ title }) => title === column.title) ?? column);
    return [...shown, ...computed.filter((column) => !shown.includes(column))];
}

// additions: { title, formula }. Gives all columns, in order: { title, cells, isComputed, fault }.
export function computeTable(engine, { titles, rows }, additions) {
    const columns = titles.map((title, index) => ({
        title,
        name: nameOfTitle(engine, title),
        cells: rows.map((row) => ({ text: row[index] })),
    }));
    for (const { title, formula } of additions) {
        const made = computeColumn(engine, columns, title, formula, rows.length);
        columns.push({ title, name: nameOfTitle(engine, title), isComputed: true, ...made });
    }
    return columns;
}
