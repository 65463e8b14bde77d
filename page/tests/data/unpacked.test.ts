import { expect, test } from "vitest";
import { Unpacked } from "../../src/data/unpacked.ts";
import { blobOf, type StoredArray } from "../support/blob_writer.ts";
import { madeHeader } from "../support/made_book.ts";

const header = madeHeader({ transactions: 1, names: [], rules: [] }, { all: [], plain: 0 });

function unpacked(...arrays: StoredArray[]): Unpacked {
    return new Unpacked(blobOf(header, arrays).buffer);
}

test("a number of two bytes has its lowest byte first", () => {
    const blob = blobOf(header, [{ name: "numbers", values: [0x1234] }]);
    expect([...blob.subarray(-8)]).toEqual([0x34, 0x12, 0, 0, 0, 0, 0, 0]);
    expect([...new Unpacked(blob.buffer).array("numbers")]).toEqual([0x1234]);
});

test("arrays in planes are put together", () => {
    const values = [0x01020304, 0xf0000001, 7];
    const data = unpacked({ name: "numbers", values, isInPlanes: true });
    expect([...data.array("numbers")]).toEqual(values);
});

test("differences are summed, and wrap at the width of the type", () => {
    const values = [5, 3, 200, 0];
    expect([...unpacked({ name: "numbers", values, isDelta: true }).array("numbers")]).toEqual(values);
});

test("differences in planes are put together first", () => {
    const values = [70_000, 5, 66_000];
    const data = unpacked({ name: "numbers", values, isInPlanes: true, isDelta: true });
    expect([...data.array("numbers")]).toEqual(values);
});

test("signed numbers and fractions come back", () => {
    const data = unpacked(
        { name: "slopes", values: [-1, 0, 1], type: "i8" },
        { name: "ps", values: [0.5, -2.25], type: "f32" },
        { name: "more", values: [0.1], type: "f64" },
    );
    expect([...data.array("slopes")]).toEqual([-1, 0, 1]);
    expect([...data.array("ps")]).toEqual([0.5, -2.25]);
    expect([...data.array("more")]).toEqual([0.1]);
});

test("an array that is not listed has the usual value everywhere", () => {
    expect(unpacked().has("wordings")).toBe(false);
    expect([...unpacked().numbers("wordings", 3, 1)]).toEqual([1, 1, 1]);
    expect(unpacked().array("odd_rules")).toHaveLength(0);
});

test("an array of another length than expected is an error that names it", () => {
    const data = unpacked({ name: "premises", values: [1, 2, 3] });
    expect(() => data.numbers("premises", 4)).toThrow("premises has 3 elements where 4 are expected");
});

test("data of another format are refused", () => {
    const blob = blobOf({ ...header, format: 2 }, []);
    expect(() => new Unpacked(blob.buffer)).toThrow("format 2");
});

test.each([
    ["of two bytes", [0x0102, 0xff00, 7]],
    ["of four bytes", [0x0102_0304, 0xff00_0000, 7]],
    ["of one byte", [1, 255]],
])("numbers in planes %s are put together in 32 bits", (_, values) => {
    const numbers = unpacked({ name: "numbers", values, isInPlanes: true }).numbers("numbers", values.length);
    expect(numbers).toEqual(Uint32Array.from(values));
});

test("numbers in planes are as many as expected, too", () => {
    const data = unpacked({ name: "premises", values: [300, 2, 3], isInPlanes: true });
    expect(() => data.numbers("premises", 2)).toThrow("premises has 3 elements where 2 are expected");
});
