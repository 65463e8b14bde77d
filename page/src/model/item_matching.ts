import type { Items } from "../data/book.ts";
import type { Pattern } from "./search_terms.ts";

/** Which items patterns ask for: 1 for each whose name, in small letters, fits one of them. */
export function matchingItems(items: Items, patterns: readonly Pattern[]): Uint8Array {
    const matches = new Uint8Array(items.count);
    const tests = patterns.map(testOf);
    for (let item = 0; item < items.count; ++item) {
        const name = items.names[item]!.toLowerCase();
        const number = items.numbers[item]!;
        matches[item] = tests.some((test) => test(name, number)) ? 1 : 0;
    }
    return matches;
}

type NameTest = (name: string, number: number) => boolean;

function testOf(pattern: Pattern): NameTest {
    switch (pattern.kind) {
        case "number":
            return (_name, number) => number === pattern.number;
        case "part":
            return (name) => name.includes(pattern.text);
        case "whole":
            return (name) => fitsWhole(name, pattern.pieces);
    }
}

/** Whether a text begins with the first piece, ends with the last one, and has the others between in their order. */
function fitsWhole(text: string, pieces: readonly string[]): boolean {
    const first = pieces[0]!;
    const last = pieces.at(-1)!;
    const end = text.length - last.length;
    if (!text.startsWith(first) || !text.endsWith(last) || end < first.length) {
        return false;
    }
    let position = first.length;
    for (const piece of pieces.slice(1, -1)) {
        const found = text.indexOf(piece, position);
        if (found < 0 || found + piece.length > end) {
            return false;
        }
        position = found + piece.length;
    }
    return true;
}
