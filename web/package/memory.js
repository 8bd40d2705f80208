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

    allocate(size) {
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

// What one call hands over, let go of together.
export class Frame {
    constructor(memory) {
        this.memory = memory;
        this.pointers = [];
    }

    static with(memory, work) {
        const frame = new Frame(memory);
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

    // A text as UTF-8, or bytes as they are.
    text(text) {
        const bytes = text instanceof Uint8Array ? text : encoder.encode(text);
        const pointer = this.room(bytes.length);
        this.memory.bytes.set(bytes, pointer);
        return { pointer, size: bytes.length };
    }

    numbers(numbers) {
        const pointer = this.room(numbers.length * 8);
        new Float64Array(this.memory.exports.memory.buffer, pointer, numbers.length).set(numbers);
        return pointer;
    }

    // The texts one after the other, and where each begins and the last one ends.
    texts(texts) {
        const pieces = texts.map((text) => (text instanceof Uint8Array ? text : encoder.encode(text)));
        const size = pieces.reduce((sum, piece) => sum + piece.length, 0);
        const pointer = this.room(size);
        const offsets = this.room((pieces.length + 1) * 4);
        const { bytes, view } = this.memory;
        let at = 0;
        pieces.forEach((piece, index) => {
            bytes.set(piece, pointer + at);
            at += piece.length;
            view.setUint32(offsets + (index + 1) * 4, at, true);
        });
        return { pointer, offsets, size };
    }
}
