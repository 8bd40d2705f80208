// The engine's memory, as JavaScript writes to it and reads from it.

const encoder = new TextEncoder();
const decoder = new TextDecoder();

export class Memory {
    constructor(exports) {
        this.exports = exports;
    }

    // Views anew each time: growing memory takes the old ones' buffer away.
    get view() {
        return new DataView(this.exports.memory.buffer);
    }

    get bytes() {
        return new Uint8Array(this.exports.memory.buffer);
    }

    // The engine counts in 32 bits, so what is more would be allocated as less.
    allocate(size) {
        if (!(size < 2 ** 32)) throw new RangeError("out of memory");
        const pointer = this.exports.malloc(Math.max(size, 1)) >>> 0;
        if (pointer === 0) throw new RangeError("out of memory");
        return pointer;
    }

    read(pointer, size, isBytes) {
        const bytes = this.bytes.subarray(pointer, pointer + size);
        return isBytes ? bytes.slice() : decoder.decode(bytes);
    }

    // A text that ends with a NUL.
    readTerminated(pointer) {
        return this.read(pointer, this.bytes.indexOf(0, pointer) - pointer, false);
    }
}

// What one call hands over, let go of together; of a formula of bytes its texts are bytes too.
export class Frame {
    constructor(memory, isBytes) {
        this.memory = memory;
        this.isBytes = isBytes;
        this.pointers = [];
    }

    static with(memory, work, isBytes = false) {
        const frame = new Frame(memory, isBytes);
        try {
            return work(frame);
        } finally {
            for (const pointer of frame.pointers) memory.exports.free(pointer);
        }
    }

    // Zeros.
    room(size) {
        const pointer = this.memory.allocate(size);
        this.pointers.push(pointer);
        this.memory.bytes.fill(0, pointer, pointer + size);
        return pointer;
    }

    // A text as UTF-8, or bytes as they are; ASCII is the same as both.
    #encode(text) {
        if (text instanceof Uint8Array && this.isBytes) return text;
        if (typeof text !== "string") {
            throw new TypeError(this.isBytes ? "a text is bytes" : "a text is a string");
        }
        const bytes = encoder.encode(text);
        if (this.isBytes && bytes.length !== text.length) throw new TypeError("a text is bytes");
        return bytes;
    }

    text(text) {
        const bytes = this.#encode(text);
        const size = bytes.length;
        const pointer = this.room(size);
        this.memory.bytes.subarray(pointer, pointer + size).set(bytes);
        return { pointer, size };
    }

    numbers(numbers) {
        const size = numbers.length;
        const pointer = this.room(size * 8);
        new Float64Array(this.memory.exports.memory.buffer, pointer, size).set(numbers);
        return pointer;
    }

    // The texts one after the other, and where each begins and the last one ends.
    texts(texts) {
        const pieces = texts.map((text) => this.#encode(text));
        const size = pieces.reduce((sum, piece) => sum + piece.length, 0);
        const pointer = this.room(size);
        const offsets = this.room((pieces.length + 1) * 4);
        const { view } = this.memory;
        const bytes = this.memory.bytes.subarray(pointer, pointer + size);
        let at = 0;
        pieces.forEach((piece, index) => {
            bytes.set(piece, at);
            at += piece.length;
            view.setUint32(offsets + (index + 1) * 4, at, true);
        });
        return { pointer, offsets, size };
    }
}
