// What is to be told of a formula and the values of its names.

import { trim } from "./numbers.js";
import { noFunction } from "./suggestion.js";
import { cut } from "./tokens.js";
import { say, messageOf } from "./words.js";

function problem(kind, notice) {
    // What is wrong with a value has its position in that value.
    const position = notice.value >= 0 ? null : notice.position;
    return { kind, text: messageOf(notice), position, number: notice.number };
}

export function placeOfName(text, name) {
    let at = 0;
    for (const [kind, piece] of cut(text, () => false)) {
        if (kind === "name" && piece === name) return { character: at, characters: name.length };
        at += piece.length;
    }
    return null;
}

// The number of the error that names without a value lead to; null where they lead to none.
function errorNumber(engine, formula, values) {
    try {
        formula.compute(values);
        return null;
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return error.number;
    }
}

// The names of a formula, with what their places ask for.
export function namesOf(engine, text) {
    const formula = new engine.Formula(text, [], { allowFreeNames: true });
    const names = formula.freeNames;
    formula.free();
    return names;
}

// values: a Map of names. Gives { names, value, kind, problems }, without a value where there is none.
export function study(engine, text, values) {
    const found = { names: [], problems: [] };
    if (trim(text) === "") return { ...found, isEmpty: true };
    let formula;
    try {
        found.names = namesOf(engine, text);
        const given = found.names.filter(({ name }) => values.has(name)).map(({ name }) => name);
        const kinds = given.map((n) => [n, typeof values.get(n) === "number" ? "number" : "text"]);
        formula = new engine.Formula(text, new Map(kinds), { allowFreeNames: true });
        for (const warning of formula.warnings()) found.problems.push(problem("warning", warning));
        const missing = formula.freeNames[0];
        const list = given.map((name) => values.get(name));
        if (missing) {
            const number = errorNumber(engine, formula, list);
            const told = say("noValue", missing.name);
            found.problems.unshift({
                kind: "missing",
                text: number === null ? told : `${told} (${say("error", number)})`,
                position: placeOfName(text, missing.name),
                number,
            });
        } else {
            Object.assign(found, formula.computeWithKind(list));
        }
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        const told = problem("error", error);
        const other = noFunction(engine, text, told.position);
        if (other) {
            told.text = `${other.message} (${say("error", error.number)})`;
            told.position = other.position;
        }
        found.problems.unshift(told);
    } finally {
        formula?.free();
    }
    return found;
}
