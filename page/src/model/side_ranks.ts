import { isNegated, type Book, type Sides } from "../data/book.ts";

/** Gives the page time between two pieces of work. */
export type Pause = () => Promise<void>;

/**
 * The rank of each side among all: by the names of its items, one after the other, then plain before negated. Sides
 * with the same items and sign do not come twice. O(sides log sides), piece by piece.
 */
export async function sideRanks(book: Book, pause: Pause): Promise<Uint32Array> {
    const { sides } = book;
    const names = ranksOfNames(book.items.names);
    const sorted = await sortedInPieces(
        sides.count,
        (one, other) => compared(sides, names, one, other),
        pause,
    );
    const ranks = new Uint32Array(sides.count);
    sorted.forEach((side, rank) => {
        ranks[side] = rank;
    });
    return ranks;
}

/** Numbers within names are ordered as numbers. */
function ranksOfNames(names: readonly string[]): Uint32Array {
    const { compare } = new Intl.Collator("en", { numeric: true });
    const sorted = names.map((_, item) => item).sort((one, other) => compare(names[one]!, names[other]!));
    const ranks = new Uint32Array(names.length);
    sorted.forEach((item, rank) => {
        ranks[item] = rank;
    });
    return ranks;
}

function compared(sides: Sides, names: Uint32Array, one: number, other: number): number {
    const { starts, values } = sides.items;
    const endOfOne = starts[one + 1]!;
    const endOfOther = starts[other + 1]!;
    let i = starts[one]!;
    let j = starts[other]!;
    while (i < endOfOne && j < endOfOther) {
        const difference = names[values[i]!]! - names[values[j]!]!;
        if (difference !== 0) {
            return difference;
        }
        ++i;
        ++j;
    }
    const difference = endOfOne - i - (endOfOther - j);
    return difference !== 0 ? difference : Number(isNegated(sides, one)) - Number(isNegated(sides, other));
}

type Compare = (one: number, other: number) => number;

/** 0 to count - 1, sorted: short runs first, then merged, with pauses in between. */
async function sortedInPieces(count: number, compare: Compare, pause: Pause): Promise<Uint32Array> {
    const runLength = 16_384;
    let from: Uint32Array = Uint32Array.from({ length: count }, (_, i) => i);
    for (let begin = 0; begin < count; begin += runLength) {
        from.subarray(begin, begin + runLength).sort(compare);
        await pause();
    }
    let to: Uint32Array = new Uint32Array(count);
    for (let length = runLength; length < count; length *= 2) {
        for (let begin = 0; begin < count; begin += 2 * length) {
            await merge(
                from,
                to,
                [begin, Math.min(begin + length, count), Math.min(begin + 2 * length, count)],
                {
                    compare,
                    pause,
                },
            );
        }
        [from, to] = [to, from];
    }
    return from;
}

/** Merges two neighbouring runs: from `begin` up to `middle`, and from there up to `end`. */
async function merge(
    from: Uint32Array,
    to: Uint32Array,
    [begin, middle, end]: readonly [number, number, number],
    { compare, pause }: { compare: Compare; pause: Pause },
): Promise<void> {
    const piece = 65_536;
    let i = begin;
    let j = middle;
    for (let k = begin; k < end; ++k) {
        const takesFirst = j >= end || (i < middle && compare(from[i]!, from[j]!) <= 0);
        to[k] = takesFirst ? from[i++]! : from[j++]!;
        if ((k - begin) % piece === piece - 1) {
            await pause();
        }
    }
}
