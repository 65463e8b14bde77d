import { deflateRawSync } from "node:zlib";
import { expect, test } from "vitest";
import { canInflate, inflated } from "../../src/data/inflate.ts";

test("raw deflate is unpacked", async () => {
    expect(canInflate()).toBe(true);
    const packed = new Uint8Array(deflateRawSync(Buffer.from("milk milk milk")));
    expect(new TextDecoder().decode(await inflated(packed))).toBe("milk milk milk");
});

test("damaged data are refused", async () => {
    await expect(inflated(Uint8Array.of(0xff, 0xff, 0xff))).rejects.toThrow();
});

test("an engine without streams that unpack says that it cannot", () => {
    const known = globalThis.DecompressionStream;
    Reflect.deleteProperty(globalThis, "DecompressionStream");
    expect(canInflate()).toBe(false);
    globalThis.DecompressionStream = known;
});
