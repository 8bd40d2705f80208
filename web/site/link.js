// All that is in the playground, as the fragment of its address, which is sent to nobody.

function split(pair) {
    const equals = pair.indexOf("=");
    return equals < 0 ? [pair, ""] : [pair.slice(0, equals), pair.slice(equals + 1)];
}

// A name that has a "=" stands before its text, by itself.
function appendPair(parameters, key, name, text) {
    const isAlone = name.includes("=");
    if (isAlone) parameters.append(`${key}-name`, name);
    parameters.append(key, isAlone ? text : `${name}=${text}`);
}

export function readLink(fragment) {
    const parameters = new URLSearchParams(fragment.replace(/^#/, ""));
    if (!parameters.has("formula")) return null;
    const pairs = (key) => {
        const found = [];
        let name = null;
        for (const [other, text] of parameters) {
            if (other === `${key}-name`) name = text;
            if (other !== key) continue;
            found.push(name === null ? split(text) : [name, text]);
            name = null;
        }
        return found;
    };
    return {
        formula: parameters.get("formula") ?? "",
        values: pairs("value"),
        definitions: parameters.get("definitions") ?? "",
        csv: parameters.get("csv") ?? "",
        columns: pairs("column").map(([title, formula]) => ({ title, formula })),
        plot: parameters.get("plot") ?? "",
    };
}

export function writeLink({ formula, values, definitions, csv, columns, plot }) {
    const parameters = new URLSearchParams();
    parameters.append("formula", formula);
    for (const [name, text] of values) appendPair(parameters, "value", name, text);
    if (definitions) parameters.append("definitions", definitions);
    if (csv) parameters.append("csv", csv);
    for (const { title, formula: text } of columns) appendPair(parameters, "column", title, text);
    if (plot) parameters.append("plot", plot);
    return `#${parameters}`;
}
