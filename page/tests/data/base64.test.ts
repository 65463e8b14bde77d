import { expect, test } from "vitest";
import { bytesByAtob, bytesOfBase64 } from "../../src/data/base64.ts";

test("all values of a byte come back", () => {
    const bytes = Uint8Array.from({ length: 256 }, (_, i) => i);
    expect([...bytesOfBase64(Buffer.from(bytes).toString("base64"))]).toEqual([...bytes]);
});

test("an engine that only knows atob reads the same", () => {
    expect([...bytesByAtob("AAH+/w==")]).toEqual([0, 1, 254, 255]);
});

test("what is no base64 is refused", () => {
    expect(() => bytesByAtob("a*b=")).toThrow();
});
