// What goes to the calls of the C interface and comes from them. The layouts are those of morandel/c.h
// with pointers of four bytes.

import { Frame } from "./memory.js";

export const kinds = { deduced: -1, integer: 0, number: 1, text: 2 };
export const kindNames = ["integer", "number", "text"];
const noMemory = 14;

export const sizes = { name: 12, value: 24, position: 16, fault: 36, column: 28, function: 20 };

export class FormulaError extends Error {
    constructor(notice) {
        let text = notice.english;
        if (notice.number >= 0) text += ` (error ${notice.number})`;
        if (notice.position) text += `, at character ${notice.position.character + 1}`;
        super(text);
        this.name = "FormulaError";
        Object.assign(this, notice);
    }
}

export function isText(value) {
    return typeof value === "string" || value instanceof Uint8Array;
}

export function kindOf(kind) {
    if (kind === undefined) return kinds.deduced;
    if (!Object.prototype.hasOwnProperty.call(kinds, kind)) throw new TypeError(`no kind: ${kind}`);
    return kinds[kind];
}

// The calls' results and errors, read, and what they are handed, written.
export function createExchange(exports, memory) {
    function readPosition(pointer) {
        const field = (index) => memory.view.getUint32(pointer + index * 4, true);
        return { byte: field(0), character: field(1), bytes: field(2), characters: field(3) };
    }

    function readSized(call, handle, isBytes) {
        return Frame.with(memory, (frame) => {
            const size = frame.room(4);
            const pointer = call(handle, size);
            return memory.read(pointer, memory.view.getUint32(size, true), isBytes);
        });
    }

    function readNotice(error) {
        const position = Frame.with(memory, (frame) => {
            const room = frame.room(sizes.position);
            return exports.morandel_error_position(error, room) === 1 ? readPosition(room) : null;
        });
        return {
            number: exports.morandel_error_number(error),
            reason: exports.morandel_error_reason(error),
            english: readSized(exports.morandel_error_english, error),
            chinese: readSized(exports.morandel_error_message, error),
            position,
            value: exports.morandel_error_value(error),
        };
    }

    // Takes the error that a call left; the caller throws it.
    function takeError(errorRoom) {
        const error = memory.view.getUint32(errorRoom, true);
        const notice = readNotice(error);
        exports.morandel_error_free(error);
        return notice.reason === noMemory ? new RangeError("out of memory") : new FormulaError(notice);
    }

    function writeName(frame, pointer, name, kind) {
        const text = frame.text(name);
        memory.view.setUint32(pointer, text.pointer, true);
        memory.view.setUint32(pointer + 4, text.size, true);
        memory.view.setInt32(pointer + 8, kind, true);
    }

    function writeValue(frame, pointer, value) {
        if (isText(value)) {
            const text = frame.text(value);
            memory.view.setInt32(pointer, kinds.text, true);
            memory.view.setUint32(pointer + 16, text.pointer, true);
            memory.view.setUint32(pointer + 20, text.size, true);
        } else {
            if (typeof value !== "number") throw new TypeError("a value is a number or a string");
            memory.view.setInt32(pointer, kinds.number, true);
            memory.view.setFloat64(pointer + 8, value, true);
        }
    }

    function writeColumn(frame, pointer, column) {
        const set = (offset, value) => memory.view.setUint32(pointer + offset, value, true);
        const single = isText(column) || typeof column === "number";
        const list = single ? [column] : column;
        const hasTexts = !(list instanceof Float64Array) && list.some(isText);
        if (!hasTexts) {
            const numbers = list instanceof Float64Array ? list : Float64Array.from(list);
            const place = frame.numbers(numbers);
            set(0, kinds.number);
            set(4, place);
            set(8, single ? 0 : 8);
        } else {
            if (!list.every(isText)) throw new TypeError("a column has numbers or strings, not both");
            const texts = frame.texts(list);
            set(0, kinds.text);
            set(12, texts.pointer);
            set(16, single ? 0 : texts.offsets);
            set(20, single ? 0 : 4);
            set(24, texts.size);
        }
    }

    function readResult(result, isBytes) {
        const isTextResult = exports.morandel_result_type(result) === kinds.text;
        if (!isTextResult) return exports.morandel_result_number(result);
        return readSized(exports.morandel_result_text, result, isBytes);
    }

    return { readPosition, readResult, readNotice, takeError, writeName, writeValue, writeColumn };
}
