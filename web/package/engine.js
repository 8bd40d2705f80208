// Formulas over the calls of the C interface.

import { createExchange, FormulaError, isText, kindNames, kindOf, readColumn, sizes } from "./exchange.js";
import { Frame, Memory } from "./memory.js";

const allowFreeNames = 1;
const codePage936 = 2;

export const rowStatus = Object.freeze({ ok: 0, failed: 1, otherType: 2, noText: 3 });

// The value of a name in an object, of its own and not of what all objects have.
function own(values, name) {
    const value =
        values instanceof Map
            ? values.get(name)
            : Object.prototype.hasOwnProperty.call(values, name)
              ? values[name]
              : undefined;
    if (value === undefined) throw new TypeError(`no value for ${name}`);
    return value;
}

function entriesOf(values) {
    return values instanceof Map ? [...values] : Object.entries(values);
}

export function createEngine(exports) {
    const memory = new Memory(exports);
    const {
        readPosition, readResult, readNotice, takeError, takeRowError, writeName, writeValue, writeColumn,
    } = createExchange(exports, memory);
    const sharedResult = exports.morandel_result_create();

    const registry = new FinalizationRegistry((held) => {
        exports.morandel_formula_free(held.formula);
        exports.free(held.numbers);
    });

    class Formula {
        #held = { formula: 0, numbers: 0 };
        #text;
        #names;
        #freeNames;

        // names: for which values are given, in the order of the values; an array of names, or an
        // object of kinds by name. Without it, all that the formula uses.
        constructor(text, names, options = {}) {
            if (!isText(text)) throw new TypeError("a formula is a string or bytes");
            this.#text = text;
            this.#held.formula = this.#prepare(names, options.allowFreeNames);
            registry.register(this, this.#held, this.#held);
            try {
                this.#names = this.#readNames(
                    exports.morandel_formula_name_count,
                    exports.morandel_formula_name,
                );
                this.#freeNames = this.#readNames(
                    exports.morandel_formula_free_name_count,
                    exports.morandel_formula_free_name,
                );
                this.#held.numbers = memory.allocate((this.#names.length + 1) * 8);
            } catch (error) {
                this.free();
                throw error;
            }
        }

        get text() {
            return this.#text;
        }

        get names() {
            return this.#names;
        }

        get freeNames() {
            return this.#freeNames;
        }

        get #isBytes() {
            return this.#text instanceof Uint8Array;
        }

        #frame(work) {
            return Frame.with(memory, work, this.#isBytes);
        }

        #prepare(names, allowsFreeNames) {
            const flags = (allowsFreeNames ? allowFreeNames : 0) | (this.#isBytes ? codePage936 : 0);
            return this.#frame((frame) => {
                const { pointer, size } = frame.text(this.#text);
                let list = 0;
                let count = 0;
                if (names) {
                    const given = Array.isArray(names) ? Array.from(names, (n) => [n]) : entriesOf(names);
                    count = given.length;
                    list = frame.room((count + 1) * sizes.name);
                    given.forEach(([name, kind], index) =>
                        writeName(frame, list + index * sizes.name, name, kindOf(kind)),
                    );
                }
                const made = frame.room(4);
                const error = frame.room(4);
                if (
                    exports.morandel_formula_prepare(pointer, size, list, count, flags, made, error) !== 1
                ) {
                    throw takeError(error);
                }
                return memory.view.getUint32(made, true);
            });
        }

        #readNames(count, get) {
            return this.#frame((frame) => {
                const room = frame.room(sizes.name);
                const list = Array.from({ length: count(this.#formula) }, (_, index) => {
                    get(this.#formula, index, room);
                    const field = (offset) => memory.view.getInt32(room + offset, true);
                    return Object.freeze({
                        name: memory.read(field(0) >>> 0, field(4) >>> 0, this.#isBytes),
                        kind: kindNames[field(8)],
                    });
                });
                return Object.freeze(list);
            });
        }

        get #formula() {
            if (!this.#held) throw new TypeError("the formula has been let go of");
            return this.#held.formula;
        }

        // Values by name, or an array of them by place; gives a number or a string.
        compute(values = {}) {
            const list = this.#byPlace(values);
            return this.#numbers(list) ?? this.#compute(list);
        }

        // A list of its own, which does not change while it is handed over.
        #byPlace(values) {
            if (Array.isArray(values)) return Array.from(values);
            if (this.#isBytes && this.#names.length > 0) {
                throw new TypeError("values of a formula of bytes are given by place");
            }
            return this.#names.map(({ name }) => own(values, name));
        }

        #numbers(list) {
            const formula = this.#formula;
            if (list.length !== this.#names.length) return null;
            const { numbers } = this.#held;
            const { view } = memory;
            for (let i = 0; i < list.length; ++i) {
                if (typeof list[i] !== "number") return null;
                view.setFloat64(numbers + i * 8, list[i], true);
            }
            const result = numbers + list.length * 8;
            if (exports.morandel_formula_compute_numbers(formula, numbers, list.length, result) !== 1) {
                return null;
            }
            return memory.view.getFloat64(result, true);
        }

        #compute(list) {
            return this.#frame((frame) => {
                const pointer = frame.room(list.length * sizes.value);
                list.forEach((value, index) =>
                    writeValue(frame, pointer + index * sizes.value, value),
                );
                const error = frame.room(4);
                if (
                    exports.morandel_formula_compute(
                        this.#formula, pointer, list.length, sharedResult, error,
                    ) !== 1
                ) {
                    throw takeError(error);
                }
                return readResult(sharedResult, this.#isBytes);
            });
        }

        // "integer", "number" or "text", with what compute gives.
        computeWithKind(values = {}) {
            const value = this.#compute(this.#byPlace(values));
            return { value, kind: kindNames[exports.morandel_result_type(sharedResult)] };
        }

        // A number for each row: { results: Float64Array, status: Uint8Array }. A column is a
        // Float64Array, an array of numbers or of strings, or one value for all rows.
        columns(values = {}, rows = undefined) {
            return this.#withColumns(values, rows, (frame, list, count, length) => {
                const results = frame.room(length * 8);
                const status = frame.room(length);
                const error = frame.room(4);
                if (
                    exports.morandel_formula_columns(
                        this.#formula, list, count, length, results, status, error,
                    ) !== 1
                ) {
                    throw takeError(error);
                }
                return {
                    results: new Float64Array(memory.exports.memory.buffer, results, length).slice(),
                    status: memory.bytes.slice(status, status + length),
                };
            });
        }

        // A text for each row: { results: string[], status: Uint8Array }.
        textColumns(values = {}, rows = undefined) {
            return this.#withColumns(values, rows, (frame, list, count, length) => {
                const made = frame.room(4);
                const status = frame.room(length);
                const error = frame.room(4);
                if (
                    exports.morandel_formula_text_columns(
                        this.#formula, list, count, length, made, status, error,
                    ) !== 1
                ) {
                    throw takeError(error);
                }
                const texts = memory.view.getUint32(made, true);
                try {
                    const bytes = exports.morandel_texts_bytes(texts, 0) >>> 0;
                    const offsets = exports.morandel_texts_offsets(texts) >>> 0;
                    const { view } = memory;
                    const at = (row) => view.getUint32(offsets + row * 4, true);
                    const results = Array.from({ length }, (_, row) =>
                        memory.read(bytes + at(row), at(row + 1) - at(row), this.#isBytes),
                    );
                    return { results, status: memory.bytes.slice(status, status + length) };
                } finally {
                    exports.morandel_texts_free(texts);
                }
            });
        }

        // Why a row fails, or null; wants is "number" or "text", as the row was asked for.
        rowError(values, row, wants = "number", rows = undefined) {
            return this.#withColumns(values, rows, (frame, list, count, length) => {
                if (!Number.isInteger(row) || row < 0 || row >= length) throw new RangeError("no such row");
                const error = frame.room(4);
                const fails = exports.morandel_formula_row_error(
                    this.#formula, list, count, length, row, kindOf(wants), error,
                );
                return fails === 1 ? takeRowError(error) : null;
            });
        }

        #withColumns(values, rows, work) {
            const columns = this.#byPlace(values).map(readColumn);
            const lengths = columns.filter(({ isSingle }) => !isSingle).map(({ list }) => list.length);
            const length = rows ?? lengths[0] ?? 1;
            if (!Number.isSafeInteger(length) || length < 0) throw new RangeError("rows are a whole number");
            if (lengths.some((other) => other !== length)) {
                throw new RangeError("columns have one length");
            }
            return this.#frame((frame) => {
                const list = frame.room(columns.length * sizes.column);
                columns.forEach((column, index) =>
                    writeColumn(frame, list + index * sizes.column, column),
                );
                return work(frame, list, columns.length, length);
            });
        }

        // What the language accepts and a person rarely means.
        warnings() {
            return this.#list(
                exports.morandel_formula_warnings,
                exports.morandel_warnings_count,
                exports.morandel_warnings_free,
                (list, index) => readNotice(exports.morandel_warnings_get(list, index)),
            );
        }

        // What the checker finds, in its order.
        check() {
            return this.#list(
                exports.morandel_formula_check,
                exports.morandel_faults_count,
                exports.morandel_faults_free,
                (list, index) =>
                    Frame.with(memory, (frame) => {
                        const room = frame.room(sizes.fault);
                        exports.morandel_faults_get(list, index, room);
                        const field = (place) => memory.view.getInt32(room + place * 4, true);
                        return {
                            kind: field(0),
                            operand: field(1),
                            wants: field(2) < 0 ? "deduced" : kindNames[field(2)],
                            name: memory.read(field(3) >>> 0, field(4) >>> 0),
                            position: readPosition(room + 20),
                        };
                    }),
            );
        }

        #list(make, count, free, item) {
            return Frame.with(memory, (frame) => {
                const made = frame.room(4);
                const error = frame.room(4);
                if (make(this.#formula, made, error) !== 1) throw takeError(error);
                const list = memory.view.getUint32(made, true);
                try {
                    return Array.from({ length: count(list) }, (_, index) => item(list, index));
                } finally {
                    free(list);
                }
            });
        }

        // Gives its memory back now; else that happens once nobody has the formula any more.
        free() {
            if (!this.#held) return;
            registry.unregister(this.#held);
            exports.morandel_formula_free(this.#held.formula);
            exports.free(this.#held.numbers);
            this.#held = null;
        }
    }

    // What a new formula does with its names, and then it is gone.
    function once(text, names, work) {
        const formula = new Formula(text, names);
        try {
            return work(formula);
        } finally {
            formula.free();
        }
    }

    function evaluate(text, values = {}) {
        const entries = entriesOf(values);
        const names = new Map(entries.map(([n, v]) => [n, isText(v) ? "text" : "number"]));
        return once(text, names, (formula) => formula.compute(entries.map(([, value]) => value)));
    }

    function functions() {
        return Frame.with(memory, (frame) => {
            const room = frame.room(sizes.function);
            return Array.from({ length: exports.morandel_function_count() }, (_, index) => {
                exports.morandel_function_get(index, room);
                const field = (place) =>
                    memory.readTerminated(memory.view.getUint32(room + place * 4, true));
                return {
                    name: field(0),
                    kinds: field(1),
                    arguments: field(2),
                    summary: field(3),
                    example: field(4),
                };
            });
        });
    }

    function message(number, call) {
        return Frame.with(memory, (frame) => {
            const size = frame.room(4);
            const pointer = call(number, size) >>> 0;
            return pointer === 0 ? null : memory.read(pointer, memory.view.getUint32(size, true));
        });
    }

    return {
        Formula,
        FormulaError,
        rowStatus,
        evaluate,
        check: (text, names) => once(text, names, (formula) => formula.check()),
        columns: (text, values, rows) =>
            once(text, entriesOf(values).map(([name]) => name), (f) => f.columns(values, rows)),
        functions,
        message: (number) => message(number, exports.morandel_english_message),
        chineseMessage: (number) => message(number, exports.morandel_message),
        version: memory.readTerminated(exports.morandel_version()),
    };
}

// The C library's calls on files, of which none is ever made.
const noFiles = { fd_close: () => 8, fd_seek: () => 8, fd_write: () => 8 };

export const imports = { wasi_snapshot_preview1: noFiles };

export function start(instance) {
    instance.exports._initialize();
    return createEngine(instance.exports);
}
