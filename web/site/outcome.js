// What a formula gives, shown.

import { element } from "./dom.js";
import { formatNumber } from "./numbers.js";
import { say } from "./words.js";

function valueNode({ value, kind }) {
    if (kind === "text") {
        return element("span", { class: "value text" }, element("q", {}, value));
    }
    const type = kind === "integer" ? element("small", {}, say("integer")) : null;
    return element("span", { class: "value" }, formatNumber(value), type);
}

export function namesText(names) {
    return names.map(({ name, kind }) => `${name} ${say(kind)}`).join(", ");
}

function problemNode({ kind, text, position }) {
    const place = position ? ` · ${say("atCharacter", position.character + 1)}` : "";
    return element(
        "span",
        { class: `problem ${kind}` },
        kind === "warning" ? element("b", {}, say("warning")) : null,
        kind === "warning" ? " " : null,
        text,
        element("small", {}, place),
    );
}

// Into an <output>.
export function showOutcome(output, found, showsNames = false) {
    const parts = [];
    if (found.isEmpty) parts.push(element("span", { class: "problem missing" }, say("empty")));
    if (found.value !== undefined) parts.push(valueNode(found));
    if (showsNames && found.names.length > 0 && found.value === undefined) {
        parts.push(element("span", { class: "names" }, namesText(found.names)));
    }
    parts.push(...found.problems.map(problemNode));
    output.replaceChildren(...parts);
}
