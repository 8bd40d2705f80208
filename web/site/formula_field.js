// A field for a formula, with colours and marks behind its text.

import { debounced, element, showIn } from "./dom.js";
import { cut, withMarks } from "./tokens.js";

// More bytes than this no formula has; a colour for each piece would only cost time.
const longestPainted = 512;

export class FormulaField {
    // onChange is called a moment after somebody has typed.
    constructor(engine, { text, label, describedBy, onChange, isFunction }) {
        this.isFunction = isFunction;
        this.mirror = element("div", { class: "mirror", "aria-hidden": "true" });
        this.area = element("textarea", {
            rows: 1,
            spellcheck: "false",
            autocomplete: "off",
            autocapitalize: "off",
            autocorrect: "off",
            "aria-label": label,
            "aria-describedby": describedBy,
        });
        this.area.value = text;
        this.node = element("div", { class: "field" }, this.mirror, this.area);
        this.marks = [];
        const later = debounced(onChange);
        this.area.addEventListener("input", () => {
            // A formula is one line, however it came here.
            if (/[\r\n]/.test(this.area.value)) {
                const inOneLine = (lines) => lines.replace(/[\r\n]+/g, " ");
                const caret = inOneLine(this.area.value.slice(0, this.area.selectionStart)).length;
                this.area.value = inOneLine(this.area.value);
                this.area.setSelectionRange(caret, caret);
            }
            this.marks = [];
            this.paint();
            later();
        });
        this.area.addEventListener("keydown", (event) => {
            if (event.key !== "Enter" || event.isComposing) return;
            event.preventDefault();
            onChange();
        });
        this.paint();
    }

    get text() {
        return this.area.value;
    }

    set text(text) {
        this.area.value = text;
        this.marks = [];
        this.paint();
    }

    // Marks what the problems are about.
    mark(problems) {
        this.marks = problems
            .filter(({ position }) => position)
            .map(({ kind, position }) => {
                const begin = Math.min(position.character, this.text.length);
                return [begin, begin + Math.max(position.characters, 1), kind === "error" ? "wrong" : "noted"];
            });
        const isWrong = problems.some(({ kind }) => kind === "error");
        this.area.setAttribute("aria-invalid", String(isWrong));
        this.paint();
    }

    paint() {
        // One blank more: a mark at the end, and the height of an empty line.
        const text = `${this.text} `;
        const pieces = this.text.length > longestPainted ? [["", text]] : cut(text, this.isFunction);
        showIn(
            this.mirror,
            withMarks(pieces, this.marks).map(([kind, piece, mark]) =>
                kind || mark ? element("span", { class: `${kind} ${mark}`.trim() }, piece) : piece,
            ),
        );
    }
}
