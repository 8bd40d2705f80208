// The playground's table: a CSV, computed columns, and a plot of one.

import { readCsv } from "./csv.js";
import { byId, debounced, element, newId, showIn } from "./dom.js";
import { FormulaField } from "./formula_field.js";
import { readNumber, readValue, trim } from "./numbers.js";
import { drawPlot } from "./plot.js";
import { computeTable, shownColumns } from "./table.js";
import { say } from "./words.js";

const mostRowsShown = 200;

function isNumberCell({ isComputed }, { text, number }) {
    return number !== undefined || (!isComputed && readNumber(trim(text)) !== null);
}

function kindsOf({ isComputed }, isNumber) {
    return [isNumber ? "number" : "", isComputed ? "computed" : ""].join(" ").trim() || null;
}

export class TablePart {
    constructor(engine, isFunction, state, onChange) {
        Object.assign(this, { engine, isFunction, onChange });
        this.area = byId("csv");
        this.area.value = state.csv;
        this.area.addEventListener("input", debounced(() => this.update()));
        this.additions = [];
        for (const { title, formula } of state.columns) this.add(title, formula);
        byId("add-column").addEventListener("click", () => {
            this.add("", "").title.focus();
            this.update();
        });
        this.plotted = state.plot;
        this.choice = byId("plotted");
        this.choice.addEventListener("change", () => {
            this.plotted = this.choice.value;
            this.showPlot();
            this.onChange();
        });
    }

    add(titleText, text) {
        const place = this.additions.length + 1;
        const update = () => this.update();
        const output = element("output", { id: newId() });
        const title = element("input", { value: titleText, "aria-label": say("title", place), spellcheck: "false", class: "title" });
        title.addEventListener("input", debounced(update));
        const field = new FormulaField(this.engine, {
            text,
            label: say("columnFormula", place),
            describedBy: output.id,
            onChange: update,
            isFunction: this.isFunction,
        });
        const remove = element("button", { type: "button", class: "quiet", "aria-label": say("remove", place) }, "×");
        const node = element("div", { class: "addition" }, title, element("span", { class: "equals" }, "="), field.node, remove, output);
        const addition = { title, field, output, node };
        remove.addEventListener("click", () => {
            this.additions = this.additions.filter((other) => other !== addition);
            node.remove();
            byId("add-column").focus();
            this.update();
        });
        this.additions.push(addition);
        byId("additions").append(node);
        return addition;
    }

    update() {
        const table = readCsv(this.area.value);
        const wanted = this.additions.map(({ title, field }, index) => ({
            title: trim(title.value) || `c${table.titles.length + index + 1}`,
            formula: field.text,
        }));
        this.rows = table.rows.length;
        this.columns = computeTable(this.engine, table, wanted);
        this.additions.forEach((addition, index) => {
            const column = this.columns[table.titles.length + index];
            const faults = column.cells.filter(({ fault }) => fault);
            const notes = [];
            if (column.fault) notes.push(column.fault);
            else if (faults.length > 0) notes.push(`${say("failedRows", faults.length)}: ${faults[0].fault}`);
            addition.output.replaceChildren(
                ...notes.map((note) => element("span", { class: "problem error" }, note)),
            );
            addition.field.mark(column.problem ? [{ kind: "error", position: column.problem.position }] : []);
        });
        this.shown = shownColumns(this.columns);
        this.showRows(table.fault);
        this.showChoice();
        this.showPlot();
        this.onChange();
    }

    showRows(fault) {
        const cell = (column, row) => {
            const { text, fault: why } = column.cells[row];
            return why
                ? element("td", { class: "failed", title: why }, element("span", { class: "sr" }, why))
                : element("td", { class: kindsOf(column, isNumberCell(column, column.cells[row])) }, text);
        };
        const shown = Math.min(this.rows, mostRowsShown);
        const isNumber = (column) => this.rows > 0 && isNumberCell(column, column.cells[0]);
        const head = element(
            "tr",
            {},
            element("th", { scope: "col", class: "place" }, element("span", { class: "sr" }, say("row"))),
            this.shown.map((column) =>
                element("th", { scope: "col", class: kindsOf(column, isNumber(column)) }, column.title),
            ),
        );
        const rows = Array.from({ length: shown }, (_, row) =>
            element(
                "tr",
                {},
                element("th", { scope: "row", class: "place" }, String(row + 1)),
                this.shown.map((column) => cell(column, row)),
            ),
        );
        byId("rows").replaceChildren(element("thead", {}, head), element("tbody", {}, rows));
        const count = shown < this.rows ? say("rowsShown", shown, this.rows) : say("rows", this.rows);
        byId("row-count").replaceChildren(fault ? element("span", { class: "problem error" }, fault) : count);
    }

    showChoice() {
        const titles = this.shown.map(({ title }) => title);
        if (!titles.includes(this.plotted)) {
            this.plotted = this.shown.findLast((c) => c.isComputed && !c.fault)?.title ?? titles[0] ?? "";
        }
        showIn(
            this.choice,
            titles.map((title) => element("option", { value: title, selected: title === this.plotted }, title)),
        );
    }

    showPlot() {
        const column = this.shown.find(({ title }) => title === this.plotted);
        const points = (column?.cells ?? [])
            .map(({ text, number, fault }, row) => {
                const value = number ?? (trim(text) === "" ? "" : readValue(text));
                return [row, fault ? "" : value];
            })
            .filter(([, value]) => typeof value === "number");
        const plot = drawPlot(this.plotted, points, this.rows);
        byId("plot").replaceChildren(plot ?? element("p", { class: "hint" }, say("nothingToPlot")));
    }

    get state() {
        return {
            csv: this.area.value,
            columns: this.additions.map(({ title, field }) => ({ title: title.value, formula: field.text })),
            plot: this.plotted,
        };
    }
}
