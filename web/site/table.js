// Computed columns of a table, by the types that their formulas ask for.

import { formatNumber, readNumber, trim } from "./numbers.js";
import { isPlainName, namesOf } from "./study.js";
import { messageOf, say } from "./words.js";

const reserved = new Set(["pi", "exp", "like", "equal", "and", "or"]);

// A title as a formula names it: "_" for what no name has, and its place where it is empty.
function nameOfTitle(engine, taken, title, place) {
    const isOfNames = (c) => /[A-Za-z0-9]/.test(c) || (c > "\u007f" && isPlainName(engine, c));
    const name = Array.from(trim(title), (c) => (isOfNames(c) ? c : "_")).join("");
    if (name === "") return `c${place}`;
    return /^\d/.test(name) || taken.has(name.toLowerCase()) ? `_${name}` : name;
}

function ownColumns(columns) {
    return columns.filter(({ isComputed }) => !isComputed);
}

// The column of that title, else of that name: { column, fault }, neither where there is none. A
// computed one hides others, the last one first.
function find(columns, wanted) {
    const parts = ["title", "name"];
    for (const part of parts) {
        const column = columns.findLast((c) => c.isComputed && c[part] === wanted);
        if (column) return { column };
    }
    for (const part of parts) {
        const [column, other] = columns.filter((c) => c[part] === wanted);
        const told = (c) => [columns.indexOf(c) + 1, c.title];
        if (other) return { fault: say("twoColumns", wanted, ...told(column), ...told(other)) };
        if (column) return { column };
    }
    return {};
}

// The fields of a column as numbers, and what is wrong with those that are none.
function numbersOf(column, faults) {
    return Float64Array.from(column.cells, (cell, row) => {
        if (cell.fault) {
            faults[row] ??= cell.fault;
            return 0;
        }
        const number = cell.number ?? readNumber(trim(cell.text));
        if (number !== null) return number;
        const why = trim(cell.text) === "" ? say("emptyField") : say("notANumber", cell.text);
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
    const valuesOf = (row) => values.map((column) => column[row]);
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
        return { text: "", fault: messageOf(formula.rowError(valuesOf(row), 0, wants, 1)) };
    });
}

function computeColumn(engine, columns, title, text, rows) {
    const failed = (fault) => ({ cells: Array.from({ length: rows }, () => ({ text: "", fault })), fault });
    if (trim(text) === "") return failed(say("empty"));
    const { fault } = find(ownColumns(columns), title);
    if (fault) return failed(fault);
    let formula;
    try {
        const names = namesOf(engine, text);
        const sources = names.map(({ name }) => ({ fault: say("noColumn", name), ...find(columns, name) }));
        const missing = sources.find(({ column }) => !column);
        if (missing) return failed(missing.fault);
        formula = new engine.Formula(
            text,
            new Map(names.map(({ name, kind }) => [name, kind === "text" ? "text" : "number"])),
        );
        const faults = [];
        const values = sources.map(({ column }, index) =>
            names[index].kind === "text" ? textsOf(column, faults) : numbersOf(column, faults),
        );
        return { cells: computeCells(formula, values, rows, faults) };
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return { ...failed(messageOf(error)), problem: error };
    } finally {
        formula?.free();
    }
}

// A computed column stands in the place of the one that its title finds, below the title there.
export function shownColumns(columns) {
    const own = ownColumns(columns);
    const shown = own.map((column) => ({ title: column.title, column }));
    for (const column of columns.filter(({ isComputed }) => isComputed)) {
        const { column: replaced } = find(own, column.title);
        const place = replaced ? own.indexOf(replaced) : shown.findIndex(({ title }) => title === column.title);
        if (place >= 0) shown[place].column = column;
        else shown.push({ title: column.title, column });
    }
    return shown.map(({ title, column }) => ({ ...column, title }));
}

// additions: { title, formula }. Gives all columns, in order: { title, cells, isComputed, fault }.
export function computeTable(engine, { titles, rows }, additions) {
    const taken = new Set([...reserved, ...engine.functions().map(({ name }) => name)]);
    const columns = titles.map((title, index) => ({
        title,
        name: nameOfTitle(engine, taken, title, index + 1),
        cells: rows.map((row) => ({ text: row[index] })),
    }));
    for (const { title, formula } of additions) {
        const made = computeColumn(engine, columns, title, formula, rows.length);
        columns.push({ title, name: nameOfTitle(engine, taken, title, columns.length + 1), isComputed: true, ...made });
    }
    return columns;
}
