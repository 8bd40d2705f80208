// The playground: a formula, variables that depend on each other, and a table.

import { byId, debounced, element, newId, showIn } from "./dom.js";
import { calculate, readDefinitions } from "./definitions.js";
import { FormulaField } from "./formula_field.js";
import { drawGraph } from "./graph.js";
import { readLink, writeLink } from "./link.js";
import { readValue, showValue, trim } from "./numbers.js";
import { showOutcome } from "./outcome.js";
import { namesOf, study } from "./study.js";
import { TablePart } from "./table_part.js";
import { say } from "./words.js";

class FormulaPart {
    constructor(engine, isFunction, state, onChange) {
        this.engine = engine;
        this.onChange = onChange;
        this.texts = new Map(state.values);
        this.output = byId("result");
        this.table = byId("names");
        this.fields = new Map();
        this.field = new FormulaField(engine, {
            text: state.formula,
            label: say("formula"),
            describedBy: "result",
            onChange: () => this.update(),
            isFunction,
        });
        byId("formula").replaceChildren(this.field.node);
    }

    update() {
        const names = this.knownNames(this.field.text);
        if (names) this.showNames(names);
        const values = new Map();
        for (const [name, { input }] of this.fields) {
            if (trim(input.value) !== "") values.set(name, readValue(input.value));
        }
        const found = study(this.engine, this.field.text, values);
        showOutcome(this.output, found);
        this.field.mark(found.problems);
        this.onChange();
    }

    // null where the formula is refused: then the fields stay for the next letter.
    knownNames(text) {
        try {
            return namesOf(this.engine, text);
        } catch (error) {
            if (!(error instanceof this.engine.FormulaError)) throw error;
            return trim(text) === "" ? [] : null;
        }
    }

    showNames(names) {
        const old = this.fields;
        this.fields = new Map(names.map(({ name, kind }) => [name, this.row(old.get(name), name, kind)]));
        const rows = [...this.fields.values()].map(({ node }) => node);
        if (rows.length !== this.table.children.length || rows.some((row, i) => row !== this.table.children[i])) {
            showIn(this.table, rows);
        }
        byId("no-names").hidden = rows.length > 0;
    }

    row(known, name, kind) {
        if (known) {
            known.type.textContent = say(kind);
            return known;
        }
        const id = newId();
        const input = element("input", { id, value: this.texts.get(name) ?? "", spellcheck: "false", autocomplete: "off" });
        const later = debounced(() => this.update());
        input.addEventListener("input", () => {
            this.texts.set(name, input.value);
            later();
        });
        const type = element("small", {}, say(kind));
        const node = element("li", {}, element("label", { for: id }, name), type, input);
        return { input, type, node };
    }

    get state() {
        const values = [...this.fields].map(([name, { input }]) => [name, input.value]);
        return { formula: this.field.text, values: values.filter(([, text]) => text !== "") };
    }
}

class VariablesPart {
    constructor(engine, state, onChange) {
        this.engine = engine;
        this.onChange = onChange;
        this.area = byId("definitions");
        this.area.value = state.definitions;
        this.area.addEventListener("input", debounced(() => this.update()));
    }

    update() {
        const definitions = readDefinitions(this.engine, this.area.value);
        const byName = calculate(this.engine, definitions);
        const rows = definitions.map((definition) => {
            const { outcome, line, content = "" } = definition;
            const value = outcome.fault
                ? element("span", { class: "problem error" }, outcome.fault)
                : element(
                      "span",
                      { class: typeof outcome.value === "string" ? "value text" : "value" },
                      showValue(outcome.value),
                  );
            return element(
                "tr",
                {},
                element("th", { scope: "row" }, definition.name ?? say("line", line)),
                element("td", {}, definition.formula || outcome.fault ? element("code", {}, content) : say("given")),
                element("td", {}, value),
            );
        });
        showIn(byId("variables"), rows);
        byId("variables-table").hidden = rows.length === 0;
        const graph = drawGraph(
            [...byName.values()].map(({ name, needs, formula, outcome }) => ({
                name,
                needs: needs.filter((need) => byName.has(need)),
                shown: outcome.fault ? "✕" : showValue(outcome.value),
                class: outcome.fault ? "failed" : formula ? "computed" : "given",
            })),
        );
        byId("graph").replaceChildren(graph ?? element("p", { class: "hint" }, say("noGraph")));
        this.onChange();
    }

    get state() {
        return { definitions: this.area.value };
    }
}

function startState() {
    return readLink(location.hash) ?? readLink(byId("playground").dataset.start);
}

export function startPlayground(engine) {
    const functions = new Set(engine.functions().map(({ name }) => name));
    const isFunction = (name) => functions.has(name);
    let parts = [];
    let isReady = false;
    const stateOf = () => Object.assign({}, ...parts.map((part) => part.state));
    let isOwn = readLink(location.hash) !== null;  // not what the page begins with
    const remember = debounced(() => history.replaceState(null, "", writeLink(stateOf())), 300);
    const onChange = () => {
        if (!isReady) return;
        isOwn = true;
        remember();
    };
    // The other language takes along what is here.
    for (const link of document.querySelectorAll("[data-keeps-state]")) {
        link.addEventListener("click", () => {
            if (isOwn) link.hash = writeLink(stateOf());
        });
    }

    const open = (state) => {
        byId("additions").replaceChildren();
        parts = [
            new FormulaPart(engine, isFunction, state, onChange),
            new VariablesPart(engine, state, onChange),
            new TablePart(engine, isFunction, state, onChange),
        ];
        for (const part of parts) part.update();
        isReady = true;
    };
    open(startState());
    // Somebody else's link, opened in the same window.
    addEventListener("hashchange", () => readLink(location.hash) && location.reload());
    // The fragment is taken, so this link goes where it leads without it.
    document.querySelector(".skip").addEventListener("click", (event) => {
        event.preventDefault();
        document.querySelector("main").focus();
    });

    byId("copy-link").addEventListener("click", async () => {
        const link = writeLink(stateOf());
        history.replaceState(null, "", link);
        try {
            await navigator.clipboard.writeText(location.href);
            byId("copied").textContent = say("linkCopied");
        } catch {
            byId("copied").textContent = say("linkInBar");
        }
    });
    byId("playground").classList.add("ready");
}
