import { expect, test } from "vitest";
import { newId, shortened } from "../../src/view/dom.ts";

test("a long text ends with an ellipsis, and no sign of two halves is cut through", () => {
    expect(shortened("bread", 5)).toBe("bread");
    expect(shortened("butter", 5)).toBe("butt…");
    expect(shortened("abc🙂def", 5)).toBe("abc…");
    expect(shortened("abc🙂def", 6)).toBe("abc🙂…");
});

test("names of elements differ", () => {
    expect(newId("a")).not.toBe(newId("a"));
});
