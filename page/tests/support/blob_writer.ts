import { deflateRawSync } from "node:zlib";
import type { ArrayHeader, Header } from "../../src/data/header.ts";

/** An array of a page's data as it is to be stored. */
export interface StoredArray {
    readonly name: string;
    readonly values: ArrayLike<number>;
    readonly type?: ArrayHeader["type"];
    readonly isInPlanes?: boolean;
    readonly isDelta?: boolean;
}

const writers = {
    u8: {
        width: 1,
        put: (view: DataView, at: number, value: number) => {
            view.setUint8(at, value);
        },
    },
    u16: {
        width: 2,
        put: (view: DataView, at: number, value: number) => {
            view.setUint16(at, value, true);
        },
    },
    u32: {
        width: 4,
        put: (view: DataView, at: number, value: number) => {
            view.setUint32(at, value, true);
        },
    },
    i8: {
        width: 1,
        put: (view: DataView, at: number, value: number) => {
            view.setInt8(at, value);
        },
    },
    f32: {
        width: 4,
        put: (view: DataView, at: number, value: number) => {
            view.setFloat32(at, value, true);
        },
    },
    f64: {
        width: 8,
        put: (view: DataView, at: number, value: number) => {
            view.setFloat64(at, value, true);
        },
    },
} as const;

/** The unpacked data of a page, byte by byte as the format says, without any code of the page. */
export function blobOf(
    header: Omit<Header, "arrays">,
    arrays: readonly StoredArray[],
): Uint8Array<ArrayBuffer> {
    const headers: ArrayHeader[] = [];
    const pieces: Uint8Array[] = [];
    let offset = 0;
    for (const array of arrays) {
        const { header: stored, bytes } = storedArray(array, offset);
        headers.push(stored);
        const padded = new Uint8Array(Math.ceil(bytes.length / 8) * 8);
        padded.set(bytes);
        pieces.push(padded);
        offset += padded.length;
    }
    const json = new TextEncoder().encode(JSON.stringify({ ...header, arrays: headers }));
    const begin = Math.ceil((4 + json.length) / 8) * 8;
    const blob = new Uint8Array(begin + offset);
    new DataView(blob.buffer).setUint32(0, json.length, true);
    blob.set(json, 4);
    let position = begin;
    for (const piece of pieces) {
        blob.set(piece, position);
        position += piece.length;
    }
    return blob;
}

/** The blob as it stands in a page. */
export function packed(blob: Uint8Array): string {
    return deflateRawSync(blob, { level: 6 }).toString("base64");
}

function storedArray(array: StoredArray, offset: number): { header: ArrayHeader; bytes: Uint8Array } {
    const type = array.type ?? narrowest(array.values);
    const { width, put } = writers[type];
    const { length } = array.values;
    const bytes = new Uint8Array(length * width);
    const view = new DataView(bytes.buffer);
    let last = 0;
    for (let i = 0; i < length; ++i) {
        const value = array.values[i]!;
        put(view, i * width, array.isDelta === true ? value - last : value);
        last = value;
    }
    const header: ArrayHeader = {
        name: array.name,
        type,
        length,
        offset,
        ...(array.isInPlanes === true && width > 1 ? { layout: "planes" as const } : {}),
        ...(array.isDelta === true ? { delta: true } : {}),
    };
    return { header, bytes: header.layout === "planes" ? inPlanes(bytes, width) : bytes };
}

function narrowest(values: ArrayLike<number>): "u8" | "u16" | "u32" {
    let most = 0;
    for (let i = 0; i < values.length; ++i) {
        most = Math.max(most, values[i]!);
    }
    return most < 2 ** 8 ? "u8" : most < 2 ** 16 ? "u16" : "u32";
}

function inPlanes(bytes: Uint8Array, width: number): Uint8Array {
    const length = bytes.length / width;
    const planes = new Uint8Array(bytes.length);
    for (let i = 0; i < bytes.length; ++i) {
        planes[(i % width) * length + Math.floor(i / width)] = bytes[i]!;
    }
    return planes;
}
