import { expect, test } from "vitest";
import { TypedTerms } from "../../src/model/typed_terms.ts";

const terms = new TypedTerms(["butter", "Butter milk", "milk", "whole milk", "whole milk powder"]);

function read(text: string): string[] {
    return terms.of(text).map((term) => term.text);
}

test("words that are a name together are one term, in any letters", () => {
    expect(read("butter milk")).toEqual(['"butter milk"']);
    expect(read("-if:Butter Milk then:whole milk")).toEqual(['-if:"Butter Milk"', 'then:"whole milk"']);
});

test("words at the end that begin a name are one term", () => {
    expect(read("butter m")).toEqual(['"butter m"']);
    expect(read("butter m lift>1")).toEqual(["butter", "m", "lift>1"]);
});

test("the longest name is taken", () => {
    expect(read("whole milk powder bread")).toEqual(['"whole milk powder"', "bread"]);
    expect(read("bread whole milk butter")).toEqual(["bread", '"whole milk"', "butter"]);
});

test("words that are no name together are terms of their own", () => {
    expect(read("milk butter")).toEqual(["milk", "butter"]);
    expect(read('butter "milk"')).toEqual(["butter", '"milk"']);
    expect(new TypedTerms(["a", "b"]).of("a b").map(({ text }) => text)).toEqual(["a", "b"]);
});

test("a term is told with where it begins", () => {
    expect(terms.of(" bread  butter milk")).toEqual([
        { text: "bread", begin: 1 },
        { text: '"butter milk"', begin: 8 },
    ]);
});
