import { expect, test } from "vitest";
import { formWords } from "../../src/model/form_words.ts";

test.each([
    ["e1-->(f1-e1)", "the fewest items of a class → its other items"],
    ["not(f1-e1)-->not(e1)", "the other items of a class → its fewest items"],
    ["(f2-e1)-->not(e1)", "the other items of a larger class → the fewest items of a class"],
    ["not(f1)-->(f2-f1)", "all items of a class → what a larger class adds"],
    ["f1-->g1", "f1-->g1"],
])("the form %s is %s", (text, words) => {
    expect(formWords(text)).toBe(words);
});
