/**
 * Forms in words, by what is on both sides: a closed itemset f1, which is a class, a larger one f2, and the fewest
 * items e1 that say the same as f1.
 */
const words: Readonly<Record<string, string>> = {
    "e1-->f1-e1": "the fewest items of a class → its other items",
    "f1-e1-->e1": "the other items of a class → its fewest items",
    "e1-->f2-e1": "the fewest items of a class → the other items of a larger class",
    "f2-e1-->e1": "the other items of a larger class → the fewest items of a class",
    "f1-->f2-f1": "all items of a class → what a larger class adds",
    "f2-f1-->f1": "what a larger class adds → all items of the smaller class",
};

/** A form in words, whichever of its sides are denied; its own text where there are none. */
export function formWords(text: string): string {
    return words[text.replace(/not\(([^()]*)\)|\(([^()]*)\)/gu, "$1$2")] ?? text;
}
