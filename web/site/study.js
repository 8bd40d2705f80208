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

// The names of a formula, with what their places ask for.
export function namesOf(engine, text) {
    const formula = new engine.Formula(text, [], { allowFreeNames: true });
    const names = formula.freeNames;
    formula.free();
    return names;
}

// What a formula reads as one name, and nothing else. Some characters make the engine take what
// follows into a name, so something follows.
export function isPlainName(engine, text) {
    try {
        const names = namesOf(engine, `${text}+1`);
        return names.length === 1 && names[0].name === text;
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return false;
    }
}

// A formula for those of the names that have a value, and a list of these; the others are free.
export function prepare(engine, text, names, values) {
    const given = names.filter((name) => values.has(name));
    const list = given.map((name) => values.get(name));
    const kinds = list.map((value) => (typeof value === "number" ? "number" : "text"));
    const formula = new engine.Formula(text, new Map(given.map((name, index) => [name, kinds[index]])), {
        allowFreeNames: true,
    });
    return { formula, list };
}

// That its first free name has no value, and the number of the error that this leads to, if it does.
export function tellFreeName(engine, formula, list) {
    const told = say("noValue", formula.freeNames[0].name);
    try {
        formula.compute(list);
        return { text: told, number: null };
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return { text: `${told} (${say("error", error.number)})`, number: error.number };
    }
}

// values: a Map of names. Gives { names, value, kind, problems }, without a value where there is none.
export function study(engine, text, values) {
    const found = { names: [], problems: [] };
    if (trim(text) === "") return { ...found, isEmpty: true };
    let formula;
    try {
        found.names = namesOf(engine, text);
        let list;
        ({ formula, list } = prepare(engine, text, found.names.map(({ name }) => name), values));
        for (const warning of formula.warnings()) found.problems.push(problem("warning", warning));
        const missing = formula.freeNames[0];
        if (missing) {
            found.problems.unshift({
                kind: "missing",
                position: placeOfName(text, missing.name),
                ...tellFreeName(engine, formula, list),
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
