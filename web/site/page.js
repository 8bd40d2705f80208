// The pages of the manual: each formula is a field, with its result below it.

import { debounced, element, newId } from "./dom.js";
import { FormulaField } from "./formula_field.js";
import { readValue } from "./numbers.js";
import { showOutcome } from "./outcome.js";
import { study } from "./study.js";
import { messageOf, say } from "./words.js";

function valueField(name, text, onChange) {
    const id = newId();
    const input = element("input", { id, value: text, spellcheck: "false", autocomplete: "off" });
    input.addEventListener("input", debounced(onChange));
    const label = element("label", { for: id }, name);
    return { input, node: element("div", { class: "given" }, label, element("span", {}, "="), input) };
}

// What the checker finds, in the words of the manual.
function checkOutcome(engine, text) {
    let formula;
    try {
        formula = new engine.Formula(text);
        const faults = formula.check();
        const told = faults.map((f) => `${f.name} ${f.kind}/${f.operand}`).join(", ");
        const marks = faults.map(({ position }) => ({ kind: "warning", position }));
        return { told: told || say("noFaults"), isWell: faults.length === 0, marks };
    } catch (error) {
        if (!(error instanceof engine.FormulaError)) throw error;
        return { told: messageOf(error), isWell: false, marks: [{ kind: "error", position: error.position }] };
    } finally {
        formula?.free();
    }
}

function makeLive(engine, isFunction, block) {
    const rows = [];
    let formulas = 0;
    const update = () => {
        const values = new Map();
        for (const row of rows) row(values);
    };
    for (const source of block.querySelectorAll("[data-row]")) {
        const text = source.querySelector("code").textContent;
        if (source.dataset.row === "given") {
            const { name } = source.dataset;
            const { input, node } = valueField(name, text, update);
            source.replaceChildren(node);
            // A name that is given twice is the first one.
            rows.push((values) => values.has(name) || values.set(name, readValue(input.value)));
            continue;
        }
        const output = element("output", { id: newId() });
        const field = new FormulaField(engine, {
            text,
            label: say("formulaFor", ++formulas),
            describedBy: output.id,
            onChange: update,
            isFunction,
        });
        source.replaceChildren(field.node, output);
        if (source.dataset.row === "check") {
            rows.push(() => {
                const { told, isWell, marks } = checkOutcome(engine, field.text);
                output.replaceChildren(
                    element("span", { class: isWell ? "names" : "problem warning" }, told),
                );
                field.mark(marks);
            });
        } else {
            rows.push((values) => {
                const found = study(engine, field.text, values);
                showOutcome(output, found, true);
                field.mark(found.problems);
            });
        }
    }
    update();
    block.classList.add("ready");
}

export function enlivenPage(engine) {
    const functions = new Set(engine.functions().map(({ name }) => name));
    for (const block of document.querySelectorAll(".live")) {
        makeLive(engine, (name) => functions.has(name), block);
    }
}
