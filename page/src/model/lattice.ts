import type { Book } from "../data/book.ts";
import { listAt, type Lists } from "../data/lists.ts";
import { tablesOf } from "./rules.ts";
import { byRest, sideItems, type SideItems } from "./side_lookup.ts";
import { cellsOf, type Table } from "./table.ts";

/** A neighbour of a class, with the items that the larger of the two has more. */
export interface Neighbour {
    readonly position: number;
    readonly count: number;
    readonly difference: readonly number[];
}

/** A class with what is around it. */
export interface Neighbourhood {
    readonly position: number;
    readonly count: number;
    readonly items: readonly number[];
    readonly essentials: readonly (readonly number[])[];
    /** Immediate supersets, the smallest counts first. */
    readonly uppers: readonly Neighbour[];
    /** Immediate subsets, the largest counts first. */
    readonly lowers: readonly Neighbour[];
    /** How many further neighbours the page leaves out. */
    readonly moreUppers: number;
    readonly moreLowers: number;
}

/**
 * The classes of a book as a lattice: closed itemsets, each linked with its immediate subsets and supersets. A
 * transaction meets a class when it holds one of its items.
 */
export class Lattice {
    readonly #book: Book;
    readonly #uppers: Lists;

    /** O(classes + links). */
    constructor(book: Book) {
        this.#book = book;
        this.#uppers = turnedRound(book.classes.lowers, book.classes.count);
    }

    /** The class that a rule comes from; nothing where the page leaves it out or a support is open. O(links). */
    classOfRule(rule: number): number | undefined {
        const { premises, conclusions } = this.#book.rules;
        const [first, second] = tablesOf(this.#book, rule);
        for (const premise of this.#bothWays(sideItems(this.#book, premises[rule]!))) {
            for (const conclusion of this.#bothWays(sideItems(this.#book, conclusions[rule]!))) {
                const count = countOfUnion(first, premise.isNegated, conclusion.isNegated);
                const isKnown = count === countOfUnion(second, premise.isNegated, conclusion.isNegated);
                const found = isKnown
                    ? this.classAround([...premise.items, ...conclusion.items], count)
                    : undefined;
                if (found !== undefined) {
                    return found;
                }
            }
        }
        return undefined;
    }

    /**
     * Other itemsets that say the same as a side: essential itemsets of its class. `count`: how many transactions meet
     * the side. Those that share an item with `apart` are left out.
     */
    wordingsOf(side: SideItems, count: number, apart: readonly number[]): number[][] {
        const met = side.isNegated ? this.#book.transactions - count : count;
        const found = this.classAround(side.items, met);
        if (found === undefined) {
            return [];
        }
        const own = side.items.join();
        return this.#essentialsOf(found).filter(
            (items) => items.join() !== own && !items.some((item) => apart.includes(item)),
        );
    }

    /** The smallest class that holds all of these items, if it has this count. O(classes + links). */
    classAround(items: readonly number[], count: number): number | undefined {
        const { counts } = this.#book.classes;
        const held = this.#holding(items);
        const found = held.indexOf(1);
        return found >= 0 && counts[found] === count ? found : undefined;
    }

    /** A class with its neighbours. */
    around(position: number): Neighbourhood {
        const { classes } = this.#book;
        const items = this.itemsOf(position);
        const uppers = [...listAt(this.#uppers, position)].map((upper) => this.#upper(items, upper));
        const lowers = [...listAt(classes.lowers, position)].map((lower) => this.#lower(items, lower));
        return {
            position,
            count: classes.counts[position]!,
            items,
            essentials: this.#essentialsOf(position),
            uppers: uppers.sort((one, other) => one.count - other.count || one.position - other.position),
            lowers: lowers.sort((one, other) => other.count - one.count || one.position - other.position),
            moreUppers: classes.moreUppers[position]!,
            moreLowers: classes.moreLowers[position]!,
        };
    }

    /** The items of a class, ascending. O(classes below it). */
    itemsOf(position: number): number[] {
        const { ownItems, lowers } = this.#book.classes;
        const items = new Set<number>();
        const seen = new Set([position]);
        for (const each of seen) {
            listAt(ownItems, each).forEach((item) => items.add(item));
            listAt(lowers, each).forEach((lower) => seen.add(lower));
        }
        return [...items].sort((one, other) => one - other);
    }

    #upper(items: readonly number[], upper: number): Neighbour {
        const held = new Set(items);
        const difference = this.itemsOf(upper).filter((item) => !held.has(item));
        return { position: upper, count: this.#book.classes.counts[upper]!, difference };
    }

    #lower(items: readonly number[], lower: number): Neighbour {
        const kept = new Set(this.itemsOf(lower));
        const difference = items.filter((item) => !kept.has(item));
        return { position: lower, count: this.#book.classes.counts[lower]!, difference };
    }

    /** For each class, 1 where it holds all of these items. Classes ascend by size, so subsets come first. */
    #holding(items: readonly number[]): Uint8Array {
        const { count, ownItems, lowers } = this.#book.classes;
        const [ownStarts, owns] = [ownItems.starts, ownItems.values];
        const [lowerStarts, lowerClasses] = [lowers.starts, lowers.values];
        const holds = new Uint8Array(count).fill(1);
        const mostBits = 31;
        for (let begin = 0; begin < items.length; begin += mostBits) {
            const part = items.slice(begin, begin + mostBits);
            const all = 2 ** part.length - 1;
            const bits = bitsOf(part, this.#book.items.count);
            const masks = new Uint32Array(count);
            for (let each = 0; each < count; ++each) {
                let mask = 0;
                for (let i = ownStarts[each]!; i < ownStarts[each + 1]!; ++i) {
                    mask |= bits[owns[i]!]!;
                }
                for (let i = lowerStarts[each]!; i < lowerStarts[each + 1]!; ++i) {
                    mask |= masks[lowerClasses[i]!]!;
                }
                masks[each] = mask;
                holds[each]! &= mask === all ? 1 : 0;
            }
        }
        return holds;
    }

    #essentialsOf(position: number): number[][] {
        const { essentialStarts, essentials } = this.#book.classes;
        const found = [];
        for (let i = essentialStarts[position]!; i < essentialStarts[position + 1]!; ++i) {
            found.push([...listAt(essentials, i)]);
        }
        return found;
    }

    /** A side by its items, and by the rest of its column. */
    #bothWays(side: SideItems): SideItems[] {
        const rest = byRest(this.#book, side);
        return rest === undefined ? [side] : [side, rest];
    }
}

/** How many transactions meet the items of one side or of the other. */
function countOfUnion(table: Table, isPremiseNegated: boolean, isConclusionNegated: boolean): number {
    const cells = cellsOf(table);
    if (isPremiseNegated) {
        return table.n - (isConclusionNegated ? cells.both : cells.onlyPremise);
    }
    return table.n - (isConclusionNegated ? cells.onlyConclusion : cells.neither);
}

function bitsOf(part: readonly number[], items: number): Uint32Array {
    const bits = new Uint32Array(items);
    part.forEach((item, bit) => (bits[item]! |= 1 << bit));
    return bits;
}

function turnedRound(lowers: Lists, classes: number): Lists {
    const starts = new Uint32Array(classes + 1);
    for (const lower of lowers.values) {
        starts[lower + 1]! += 1;
    }
    for (let each = 0; each < classes; ++each) {
        starts[each + 1]! += starts[each]!;
    }
    const values = new Uint32Array(lowers.values.length);
    const next = starts.slice();
    for (let upper = 0; upper < classes; ++upper) {
        for (const lower of listAt(lowers, upper)) {
            values[next[lower]!] = upper;
            next[lower]! += 1;
        }
    }
    return { starts, values };
}
