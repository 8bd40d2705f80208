// What goes to the calls of the C interface and comes from them. The layouts are those of morandel/c.h
// with pointers of four bytes.

import { Frame } from "./memory.js";

export const kinds = { deduced: -1, integer: 0, number: 1, text: 2 };
export const kindNames = ["integer", "number", "text"];
const valueCount = 11;
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

// What is given for a name, for a list of rows or for all of them.
export function readColumn(column) {
    if (isText(column) || typeof column === "number") return { list: [column], isSingle: true };
    if (typeof column !== "object" || column === null) {
        throw new TypeError("a column is numbers, strings, or one of them");
    }
    return { list: column instanceof Float64Array ? column : Array.from(column), isSingle: false };
}

// The calls' results and errors, read, and what they are handed, written.
export function createExchange(exports, memory) {
    function readPosition(pointer) {
        const field = (index) => memory.view.getUint32(pointer + index * 4, true);
        const [byte, character, bytes, characters] = [0, 1, 2, 3].map(field);
        // What takes four bytes of UTF-8 is two characters of a string. No formula has it, so it is
        // met alone and once.
        const isPair = bytes === 4 && characters === 1;
        return { byte, character, bytes, characters: isPair ? 2 : characters };
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

    // Of a row, for the caller to give; what is wrong with the call is thrown.
    function takeRowError(errorRoom) {
        const error = takeError(errorRoom);
        if (error.reason === undefined || error.reason === valueCount) throw error;
        return error;
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

    function writeColumn(frame, pointer, { list, isSingle }) {
        const set = (offset, value) => memory.view.setUint32(pointer + offset, value, true);
        const isNumber = (value) => typeof value === "number";
        if (list instanceof Float64Array || list.every(isNumber)) {
            const place = frame.numbers(list);
            set(0, kinds.number);
            set(4, place);
            set(8, isSingle ? 0 : 8);
        } else {
            if (!list.every(isText)) throw new TypeError("a column has numbers or strings alone");
            const texts = frame.texts(list);
            set(0, kinds.text);
            set(12, texts.pointer);
            set(16, isSingle ? 0 : texts.offsets);
            set(20, isSingle ? 0 : 4);
            set(24, texts.size);
        }
    }

    function readResult(result, isBytes) {
        const isTextResult = exports.morandel_result_type(result) === kinds.text;
        if (!isTextResult) return exports.morandel_result_number(result);
        return readSized(exports.morandel_result_text, result, isBytes);
    }

    return {
        readPosition, readResult, readNotice, takeError, takeRowError, writeName, writeValue, writeColumn,
    };
}
