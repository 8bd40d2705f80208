// All that is in the playground, as the fragment of its address, which is sent to nobody.

export function readLink(fragment) {
    const parameters = new URLSearchParams(fragment.replace(/^#/, ""));
    if (!parameters.has("formula")) return null;
    const pairs = (name) => parameters.getAll(name).map((pair) => {
        const equals = pair.indexOf("=");
        return equals < 0 ? [pair, ""] : [pair.slice(0, equals), pair.slice(equals + 1)];
    });
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
    for (const [name, text] of values) parameters.append("value", `${name}=${text}`);
    if (definitions) parameters.append("definitions", definitions);
    if (csv) parameters.append("csv", csv);
    for (const { title, formula: text } of columns) parameters.append("column", `${title}=${text}`);
    if (plot) parameters.append("plot", plot);
    return `#${parameters}`;
}
