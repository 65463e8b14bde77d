import type { Book } from "../data/book.ts";
import type { Lists } from "../data/lists.ts";
import { matchingItems } from "./item_matching.ts";
import { namedItems } from "./named_items.ts";
import type { Quantities } from "./quantities.ts";
import { kindOf, kinds, type Kind } from "./rules.ts";
import {
    amountOf,
    problemOf,
    termOf,
    type ItemTerm,
    type Limit,
    type RangeTerm,
    type Term,
} from "./search_terms.ts";
import { keptOf } from "./shown_units.ts";
import { TypedTerms, type TypedTerm } from "./typed_terms.ts";

/** What rules are asked for: all terms must hold, and neither form nor kind may be switched off. */
export interface Filter {
    readonly terms: readonly string[];
    readonly formsOff: readonly string[];
    readonly kindsOff: readonly Kind[];
    /** Whether items may also be named by another reading of a rule than the one that the table shows. */
    readonly byReadings?: boolean;
}

/** What a filter leaves. */
export interface Found {
    readonly passes: Passes;
    /** A bit for each reading, in the order of `readingsOf`: whether it names the items as the terms ask. */
    readonly masks: Uint8Array;
    /** How many rules only another reading lets pass; they do where `byReadings` says so. None without item terms. */
    readonly others: number;
}

/** One byte for each rule: 1 where it passes. */
export type Passes = Uint8Array;

/**
 * Says which rules of a book pass a filter. What a term gives is kept for some terms, so that only the one that is
 * being typed is looked for. A term costs one pass over the rules.
 */
export class RuleFilter {
    readonly #book: Book;
    readonly #quantities: Quantities;
    readonly #names: readonly string[];
    /** A bit for each reading. */
    readonly #kept = new Map<string, Uint8Array>();
    readonly #typed: TypedTerms;
    #named: Lists | undefined;
    #denied: Lists | undefined;
    #kinds: Uint8Array | undefined;

    constructor(book: Book, quantities: Quantities) {
        this.#book = book;
        this.#quantities = quantities;
        this.#names = quantities.all.map((quantity) => quantity.name);
        this.#typed = new TypedTerms(book.items.names);
    }

    /** The terms of what is typed; words that are a name of an item together are one. */
    typed(text: string): TypedTerm[] {
        return this.#typed.of(text);
    }

    /** Their texts alone. */
    termsOf(text: string): string[] {
        return this.typed(text).map((term) => term.text);
    }

    /** The rules that pass. */
    passes(filter: Filter): Passes {
        return this.found(filter).passes;
    }

    /** The rules that pass, and by which of their readings. One reading must name all items that are asked for. */
    found({ terms, formsOff, kindsOff, byReadings = false }: Filter): Found {
        const masks = new Uint8Array(this.#book.rules.count).fill(allReadings);
        let asksForItems = false;
        for (const text of terms) {
            const term = this.term(text);
            if (term !== undefined) {
                keepBoth(masks, this.#masksOfTerm(text, term));
                asksForItems ||= term.kind === "items" && !term.isExcluded;
            }
        }
        const passes = new Uint8Array(masks.length).fill(1);
        this.#leaveOutForms(passes, formsOff);
        this.#leaveOutKinds(passes, kindsOff);
        let others = 0;
        for (let rule = 0; rule < masks.length; ++rule) {
            const asShown = masks[rule]! & 1;
            const inAny = masks[rule]! === 0 ? 0 : 1;
            others += passes[rule]! & (inAny ^ asShown);
            passes[rule]! &= byReadings && asksForItems ? inAny : asShown;
        }
        return { passes, masks, others: asksForItems ? others : 0 };
    }

    /** How a text is read; nothing where it asks for nothing. */
    term(text: string): Term | undefined {
        return this.problem(text) === undefined ? termOf(text, this.#names) : undefined;
    }

    /** What is wrong with a text that begins as a comparison does; such a text asks for nothing. */
    problem(text: string): string | undefined {
        return problemOf(text, this.#names);
    }

    /** The kind of each rule, as its position among all kinds. */
    get kinds(): Uint8Array {
        if (this.#kinds === undefined) {
            const all = new Uint8Array(this.#book.rules.count);
            for (let rule = 0; rule < all.length; ++rule) {
                all[rule] = kinds.indexOf(kindOf(this.#book, rule));
            }
            this.#kinds = all;
        }
        return this.#kinds;
    }

    #masksOfTerm(text: string, term: Term): Uint8Array {
        const most = 12;
        let masks = this.#kept.get(text);
        if (masks === undefined) {
            masks = term.kind === "items" ? this.#naming(term) : this.#within(term);
            const [oldest] = this.#kept.keys();
            if (this.#kept.size >= most && oldest !== undefined) {
                this.#kept.delete(oldest);
            }
            this.#kept.set(text, masks);
        }
        return masks;
    }

    #naming(term: ItemTerm): Uint8Array {
        const sides = this.#sidesNaming(matchingItems(this.#book.items, term.patterns));
        const { premises, conclusions, count } = this.#book.rules;
        const maskOf = masksOfSides(term);
        const masks = new Uint8Array(count);
        for (let rule = 0; rule < count; ++rule) {
            masks[rule] = maskOf[sides[premises[rule]!]! | (sides[conclusions[rule]!]! << 2)]!;
        }
        return masks;
    }

    /** Of each side, whether its words name one of the items (1), and whether those of its contrary do (2). */
    #sidesNaming(items: Uint8Array): Uint8Array {
        this.#named ??= namedItems(this.#book);
        this.#denied ??= namedItems(this.#book, true);
        const sides = new Uint8Array(this.#book.sides.count);
        if (this.#named === this.#denied) {
            markNaming(sides, this.#named, items, 3);
        } else {
            markNaming(sides, this.#named, items, 1);
            markNaming(sides, this.#denied, items, 2);
        }
        return sides;
    }

    /** Of a rule that is bounded, the end that is certain counts: the whole range must lie within the one asked for. */
    #within({ quantity, from, to }: RangeTerm): Uint8Array {
        const { low, high } = this.#quantities.column(quantity);
        const least = this.#value(quantity, from);
        const most = this.#value(quantity, to);
        const masks = new Uint8Array(low.length);
        for (let rule = 0; rule < masks.length; ++rule) {
            const isAbove =
                least === undefined || (from?.isIncluded ? low[rule]! >= least : low[rule]! > least);
            const isBelow = most === undefined || (to?.isIncluded ? high[rule]! <= most : high[rule]! < most);
            masks[rule] = isAbove && isBelow ? allReadings : 0;
        }
        return masks;
    }

    #value(quantity: string, limit: Limit | undefined): number | undefined {
        const unit = this.#quantities.get(quantity);
        return limit === undefined
            ? undefined
            : keptOf(unit, amountOf(limit, unit.isCount, this.#book.transactions));
    }

    #leaveOutForms(passes: Passes, off: readonly string[]): void {
        const { forms } = this.#book.rules;
        if (off.length === 0 || forms === undefined) {
            return;
        }
        const isOn = Uint8Array.from(this.#book.header.forms, (form) => (off.includes(form.label) ? 0 : 1));
        for (let rule = 0; rule < passes.length; ++rule) {
            passes[rule]! &= isOn[forms[rule]!]!;
        }
    }

    #leaveOutKinds(passes: Passes, off: readonly Kind[]): void {
        if (off.length === 0) {
            return;
        }
        const isOn = Uint8Array.from(kinds, (kind) => (off.includes(kind) ? 0 : 1));
        const all = this.kinds;
        for (let rule = 0; rule < passes.length; ++rule) {
            passes[rule]! &= isOn[all[rule]!]!;
        }
    }
}

const allReadings = 15;

/** Which readings hold for each of the 16 ways in which a premise and a conclusion, or their contraries, name items. */
function masksOfSides({ place, isExcluded }: ItemTerm): Uint8Array {
    return Uint8Array.from({ length: 16 }, (_, naming) => {
        const [premise, noPremise, conclusion, noConclusion] = [0, 1, 2, 3].map((bit) => (naming >> bit) & 1);
        const readings = [
            [premise, conclusion],
            [conclusion, premise],
            [noConclusion, noPremise],
            [noPremise, noConclusion],
        ];
        return readings.reduce((mask, [from, to], reading) => {
            const isNamed = (place !== "then" && from === 1) || (place !== "if" && to === 1);
            return isNamed === isExcluded ? mask : mask | (1 << reading);
        }, 0);
    });
}

/** Sets a bit of each side that has one of the items. */
function markNaming(sides: Uint8Array, { starts, values }: Lists, items: Uint8Array, bit: number): void {
    for (let side = 0; side < sides.length; ++side) {
        const end = starts[side + 1]!;
        for (let i = starts[side]!; i < end; ++i) {
            if (items[values[i]!] === 1) {
                sides[side]! |= bit;
                break;
            }
        }
    }
}

function keepBoth(masks: Uint8Array, others: Uint8Array): void {
    for (let rule = 0; rule < masks.length; ++rule) {
        masks[rule]! &= others[rule]!;
    }
}

/** The rules that pass, in an order of all rules. */
export function passing(order: Uint32Array, passes: Passes): Uint32Array {
    const rules = new Uint32Array(order.length);
    let count = 0;
    for (let i = 0; i < order.length; ++i) {
        const rule = order[i]!;
        rules[count] = rule;
        count += passes[rule]!;
    }
    return rules.subarray(0, count);
}
