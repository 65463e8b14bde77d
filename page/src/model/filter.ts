import type { Book } from "../data/book.ts";
import type { Lists } from "../data/lists.ts";
import { matchingItems } from "./item_matching.ts";
import { namedItems } from "./named_items.ts";
import type { Quantities } from "./quantities.ts";
import { kindOf, kinds, type Kind } from "./rules.ts";
import { amountOf, termOf, type ItemTerm, type Limit, type RangeTerm, type Term } from "./search_terms.ts";
import { TypedTerms, type TypedTerm } from "./typed_terms.ts";

/** What rules are asked for: all terms must hold, and neither form nor kind may be switched off. */
export interface Filter {
    readonly terms: readonly string[];
    readonly formsOff: readonly string[];
    readonly kindsOff: readonly Kind[];
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
    readonly #kept = new Map<string, Passes>();
    readonly #typed: TypedTerms;
    #named: Lists | undefined;
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
    passes({ terms, formsOff, kindsOff }: Filter): Passes {
        const passes = new Uint8Array(this.#book.rules.count).fill(1);
        for (const text of terms) {
            const term = this.term(text);
            if (term !== undefined) {
                keepBoth(passes, this.#passesOfTerm(text, term));
            }
        }
        this.#leaveOutForms(passes, formsOff);
        this.#leaveOutKinds(passes, kindsOff);
        return passes;
    }

    /** How a text is read; nothing where it asks for nothing. */
    term(text: string): Term | undefined {
        return termOf(text, this.#names);
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

    #passesOfTerm(text: string, term: Term): Passes {
        const most = 12;
        let passes = this.#kept.get(text);
        if (passes === undefined) {
            passes = term.kind === "items" ? this.#naming(term) : this.#within(term);
            const [oldest] = this.#kept.keys();
            if (this.#kept.size >= most && oldest !== undefined) {
                this.#kept.delete(oldest);
            }
            this.#kept.set(text, passes);
        }
        return passes;
    }

    #naming({ patterns, place, isExcluded }: ItemTerm): Passes {
        const sides = this.#sidesNaming(matchingItems(this.#book.items, patterns));
        const { premises, conclusions, count } = this.#book.rules;
        const passes = new Uint8Array(count);
        const wanted = isExcluded ? 0 : 1;
        const inPremise = place === "then" ? 0 : 1;
        const inConclusion = place === "if" ? 0 : 1;
        for (let rule = 0; rule < count; ++rule) {
            const isNamed =
                (sides[premises[rule]!]! & inPremise) | (sides[conclusions[rule]!]! & inConclusion);
            passes[rule] = isNamed === wanted ? 1 : 0;
        }
        return passes;
    }

    #sidesNaming(items: Uint8Array): Uint8Array {
        this.#named ??= namedItems(this.#book);
        const { starts, values } = this.#named;
        const sides = new Uint8Array(this.#book.sides.count);
        for (let side = 0; side < sides.length; ++side) {
            const end = starts[side + 1]!;
            for (let i = starts[side]!; i < end; ++i) {
                if (items[values[i]!] === 1) {
                    sides[side] = 1;
                    break;
                }
            }
        }
        return sides;
    }

    /** Of a rule that is bounded, the end that is certain counts: the whole range must lie within the one asked for. */
    #within({ quantity, from, to }: RangeTerm): Passes {
        const { low, high } = this.#quantities.column(quantity);
        const least = this.#value(quantity, from);
        const most = this.#value(quantity, to);
        const passes = new Uint8Array(low.length);
        for (let rule = 0; rule < passes.length; ++rule) {
            const isAbove =
                least === undefined || (from?.isIncluded ? low[rule]! >= least : low[rule]! > least);
            const isBelow = most === undefined || (to?.isIncluded ? high[rule]! <= most : high[rule]! < most);
            passes[rule] = isAbove && isBelow ? 1 : 0;
        }
        return passes;
    }

    #value(quantity: string, limit: Limit | undefined): number | undefined {
        const { isCount } = this.#quantities.get(quantity);
        return limit === undefined ? undefined : amountOf(limit, isCount, this.#book.transactions);
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

function keepBoth(passes: Passes, others: Passes): void {
    for (let rule = 0; rule < passes.length; ++rule) {
        passes[rule]! &= others[rule]!;
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
