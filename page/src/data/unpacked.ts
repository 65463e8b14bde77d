import { knownFormat, type ArrayHeader, type Header } from "./header.ts";

/** Any array of a blob. */
export type NumericArray = Uint8Array | Uint16Array | Uint32Array | Int8Array | Float32Array | Float64Array;

const arrayTypes = {
    u8: Uint8Array,
    u16: Uint16Array,
    u32: Uint32Array,
    i8: Int8Array,
    f32: Float32Array,
    f64: Float64Array,
} as const;

const alignment = 8;
const bytesOfLength = 4;

/** The data of a page, unpacked: the header, and arrays that are decoded when they are asked for. */
export class Unpacked {
    readonly header: Header;
    readonly #buffer: ArrayBuffer;
    readonly #begin: number;
    readonly #arrays: ReadonlyMap<string, ArrayHeader>;

    /** Throws where the bytes are no data of a page, or those of another version. */
    constructor(buffer: ArrayBuffer) {
        const length = new DataView(buffer).getUint32(0, true);
        const json = new TextDecoder().decode(new Uint8Array(buffer, bytesOfLength, length));
        this.header = JSON.parse(json) as Header;
        if (this.header.format !== knownFormat) {
            throw new Error(`format ${String(this.header.format)} of the data is not known here`);
        }
        this.#buffer = buffer;
        this.#begin = Math.ceil((bytesOfLength + length) / alignment) * alignment;
        this.#arrays = new Map(this.header.arrays.map((array) => [array.name, array]));
    }

    /** Whether the data have an array of this name. */
    has(name: string): boolean {
        return this.#arrays.has(name);
    }

    /** An array as it is stored; an empty one where it is not listed. */
    array(name: string): NumericArray {
        const header = this.#arrays.get(name);
        return header === undefined ? new Uint8Array(0) : decoded(header, this.#buffer, this.#begin);
    }

    /**
     * An array of unsigned numbers, all of `missing` where it is not listed. Always of 32 bits, so that loops meet
     * one type of array.
     */
    numbers(name: string, length: number, missing = 0): Uint32Array<ArrayBuffer> {
        const header = this.#arrays.get(name);
        if (header === undefined) {
            return new Uint32Array(length).fill(missing);
        }
        if (header.length !== length) {
            throw new Error(`${name} has ${header.length} elements where ${length} are expected`);
        }
        if (header.layout === "planes" && header.delta !== true && header.type.startsWith("u")) {
            return numbersFromPlanes(bytesOf(header, this.#buffer, this.#begin), length);
        }
        const array = this.array(name);
        return array instanceof Uint32Array && array.buffer instanceof ArrayBuffer
            ? (array as Uint32Array<ArrayBuffer>)
            : new Uint32Array(array);
    }
}

function decoded(header: ArrayHeader, buffer: ArrayBuffer, begin: number): NumericArray {
    const array =
        header.layout === "planes"
            ? fromPlanes(header, bytesOf(header, buffer, begin))
            : new arrayTypes[header.type](buffer, begin + header.offset, header.length);
    return header.delta === true ? summed(array) : array;
}

function bytesOf({ type, length, offset }: ArrayHeader, buffer: ArrayBuffer, begin: number): Uint8Array {
    return new Uint8Array(buffer, begin + offset, length * arrayTypes[type].BYTES_PER_ELEMENT);
}

/** First the lowest bytes of all elements, then all second bytes, and so on. */
function fromPlanes(header: ArrayHeader, bytes: Uint8Array): NumericArray {
    const { length } = header;
    const array = new arrayTypes[header.type](length);
    const width = array.BYTES_PER_ELEMENT;
    const together = new Uint8Array(array.buffer);
    for (let plane = 0; plane < width; ++plane) {
        const begin = plane * length;
        for (let i = 0; i < length; ++i) {
            together[i * width + plane] = bytes[begin + i]!;
        }
    }
    return array;
}

/** The same for unsigned numbers, at once in 32 bits: most of what a page holds is stored so. */
function numbersFromPlanes(bytes: Uint8Array, length: number): Uint32Array<ArrayBuffer> {
    const numbers = new Uint32Array(bytes.subarray(0, length));
    const second = bytes.subarray(length, 2 * length);
    const third = bytes.subarray(2 * length, 3 * length);
    const fourth = bytes.subarray(3 * length);
    if (second.length === 0) {
        return numbers;
    }
    if (third.length === 0) {
        for (let i = 0; i < length; ++i) {
            numbers[i] = numbers[i]! | (second[i]! << 8);
        }
        return numbers;
    }
    for (let i = 0; i < length; ++i) {
        numbers[i] = numbers[i]! | (second[i]! << 8) | (third[i]! << 16) | (fourth[i]! << 24);
    }
    return numbers;
}

/** The running sums; they wrap at the width of the type, as the differences did. */
function summed(differences: NumericArray): NumericArray {
    const sums = differences.slice();
    for (let i = 1; i < sums.length; ++i) {
        sums[i] = sums[i]! + sums[i - 1]!;
    }
    return sums;
}
