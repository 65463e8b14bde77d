import { blobOf } from "./blob_writer.ts";
import { madeHeader } from "./made_book.ts";

/** Numbers that look random and are the same each time: a linear congruential generator. */
export function randomNumbers(seed: number): (below: number) => number {
    let state = seed >>> 0;
    return (below) => {
        state = (Math.imul(state, 1_664_525) + 1_013_904_223) >>> 0;
        return Math.floor((state / 2 ** 32) * below);
    };
}

const transactions = 1_000_000;
const numberOfItems = 200;
const itemsOfLargest = 3;

/** Sides of one to three items, each once, plain ones first, in their order, with counts that could be true. */
function largeSides(count: number): { items: number[]; isNegated: boolean; count: number }[] {
    const random = randomNumbers(7);
    const keys = new Set<string>();
    while (keys.size < count) {
        const items = new Set<number>();
        const size = 1 + random(itemsOfLargest);
        while (items.size < size) {
            // Some items are in far more sides than others.
            items.add(Math.floor((random(1_000) / 1_000) ** 2 * numberOfItems));
        }
        const sign = random(4) === 0 ? "!" : "";
        keys.add(sign + [...items].sort((one, other) => one - other).join());
    }
    return [...keys]
        .map((key) => ({
            items: key.replace("!", "").split(",").map(Number),
            isNegated: key.startsWith("!"),
            count: 10_000 + random(500_000),
        }))
        .sort((one, other) => {
            const bySign = Number(one.isNegated) - Number(other.isNegated);
            return bySign !== 0 ? bySign : compared(one.items, other.items);
        });
}

function compared(one: readonly number[], other: readonly number[]): number {
    const at = one.findIndex((item, i) => item !== other[i]);
    return at < 0 ? one.length - other.length : (one[at] ?? -1) - (other[at] ?? -1);
}

/** The unpacked data of a page with so many rules. */
export function largeBlob(rules: number): Uint8Array<ArrayBuffer> {
    const random = randomNumbers(11);
    const sides = largeSides(Math.min(150_000, Math.max(60, Math.floor(rules / 3))));
    const premises = new Uint32Array(rules);
    const conclusions = new Uint32Array(rules);
    const exceptions = new Uint32Array(rules);
    const wordings = new Uint8Array(rules);
    const forms = new Uint8Array(rules);
    for (let rule = 0; rule < rules; ++rule) {
        premises[rule] = random(sides.length);
        conclusions[rule] = random(sides.length);
        const x = sides[premises[rule]!]!.count;
        const y = sides[conclusions[rule]!]!.count;
        const most = Math.min(x, transactions - y);
        const least = Math.max(0, x - y);
        exceptions[rule] = least + Math.floor((random(1_000) / 1_000) ** 2 * (most - least));
        wordings[rule] = 1 + Math.floor((random(1_000) / 1_000) ** 8 * 30);
        forms[rule] = random(24);
    }
    const names = Array.from({ length: numberOfItems }, (_, item) => `item ${item + 1}`);
    const plain = sides.filter((side) => !side.isNegated).length;
    return blobOf(madeHeader({ transactions, names, rules: { length: rules } }, { all: sides, plain }), [
        { name: "item_numbers", values: names.map((_, item) => item + 1), isDelta: true },
        { name: "item_counts", values: names.map((_, item) => 500_000 - 2_000 * item), isInPlanes: true },
        { name: "side_sizes", values: sides.map((side) => side.items.length) },
        { name: "side_items", values: sides.flatMap((side) => side.items) },
        { name: "side_counts", values: sides.map((side) => side.count), isInPlanes: true },
        { name: "premises", values: premises, isInPlanes: true },
        { name: "conclusions", values: conclusions, isInPlanes: true },
        { name: "exceptions", values: exceptions, isInPlanes: true },
        { name: "wordings", values: wordings },
        { name: "forms", values: forms },
    ]);
}
