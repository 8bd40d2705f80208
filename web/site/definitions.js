// "name = value" and "name := formula", a line each, computed as `morandel calc` does: whatever the
// order.

import { readGivenValue, trim } from "./numbers.js";
import { isPlainName, namesOf, prepare, tellFreeName } from "./study.js";
import { messageOf, say } from "./words.js";

const mostValues = 50;

// Up to a "#" that begins a line or follows a blank, and does not stand in a text.
function withoutComment(line) {
    let isQuoted = false;
    for (let i = 0; i < line.length; ++i) {
        if (line[i] === '"') isQuoted = !isQuoted;
        if (line[i] === "#" && !isQuoted && (i === 0 || /[ \t]/.test(line[i - 1]))) return line.slice(0, i);
    }
    return line;
}

function readLine(engine, text, line, names) {
    const equals = text.indexOf("=");
    if (equals < 0) return { line, fault: say("expectedDefinition") };
    const isComputed = text[equals - 1] === ":";
    const name = trim(text.slice(0, equals - (isComputed ? 1 : 0)));
    const content = trim(text.slice(equals + 1));
    if (!isPlainName(engine, name)) return { line, fault: say("noName", name) };
    if (names.has(name)) return { line, fault: say("definedAlready", name) };
    names.add(name);
    if (!isComputed) {
        const value = readGivenValue(content);
        if (value === undefined) return { line, name, needs: [], fault: say("expectedValue") };
        return { line, name, content, needs: [], outcome: { value } };
    }
    try {
        const needs = namesOf(engine, content).map((need) => need.name);
        return { line, name, content, needs, formula: content };
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return { line, name, content, needs: [], formula: content, fault: messageOf(error) };
    }
}

export function readDefinitions(engine, text) {
    const names = new Set();
    return text
        .replace(/^\ufeff/, "")
        .split(/\r?\n/)
        .map((line, index) => [trim(withoutComment(line)), index + 1])
        .filter(([line]) => line !== "")
        .map(([line, number]) => readLine(engine, line, number, names));
}

function compute(engine, definition, byName) {
    const values = new Map();
    for (const need of definition.needs) {
        const other = byName.get(need);
        if (!other) continue;
        // What uses a name that fails, fails with its outcome.
        if (other.outcome.fault) return other.outcome;
        values.set(need, other.outcome.value);
    }
    if (values.size > mostValues) return { fault: say("tooManyNames", values.size) };
    let formula;
    try {
        let list;
        ({ formula, list } = prepare(engine, definition.formula, definition.needs, values));
        if (formula.freeNames.length > 0) return { fault: tellFreeName(engine, formula, list).text };
        return { value: formula.compute(list) };
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return { fault: messageOf(error) };
    } finally {
        formula?.free();
    }
}

function cycle(path, again) {
    const names = path.slice(path.indexOf(again)).map(({ name }) => name);
    return { fault: say("dependsOnItself", again.name, [...names, again.name].join(" → ")) };
}

// Settles what a name needs before the name, without recursion: chains may be long.
export function calculate(engine, definitions) {
    const byName = new Map();
    for (const definition of definitions) {
        if (definition.fault) definition.outcome = { fault: definition.fault };
        if (definition.name && !byName.has(definition.name)) byName.set(definition.name, definition);
    }
    const entered = new Set();
    for (const first of byName.values()) {
        const path = [first];
        while (path.length > 0) {
            const definition = path[path.length - 1];
            entered.add(definition);
            const need = definition.outcome
                ? undefined
                : definition.needs.map((name) => byName.get(name)).find((other) => other && !other.outcome);
            if (!need) {
                definition.outcome ??= compute(engine, definition, byName);
                path.pop();
            } else if (entered.has(need)) {
                definition.outcome = cycle(path, need);
            } else {
                path.push(need);
            }
        }
    }
    return byName;
}
