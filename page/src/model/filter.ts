import type { Book } from "../data/book.ts";
import type { Lists } from "../data/lists.ts";
import { matchingItems } from "./item_matching.ts";
import { namedItems } from "./named_items.ts";
import type { Quantities } from "./quantities.ts";
import { kindOf, kinds, kindsOfRules, type Kind } from "./rules.ts";
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
    /** How many rules of each form would be shown if it alone were switched on or off, and how many of each kind. */
    readonly forms: Uint32Array;
    readonly kinds: Uint32Array;
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
    #cellsOfRules: Uint16Array | undefined;
    #all: Found | undefined;

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

    /** What a filter finds that asks for nothing: all rules. Looked for once. */
    get all(): Found {
        return (this.#all ??= this.#look({ terms: [], formsOff: [], kindsOff: [] }));
    }

    /** The rules that pass. */
    passes(filter: Filter): Passes {
        return this.found(filter).passes;
    }

    /** The rules that pass, and by which of their readings. One reading must name all items that are asked for. */
    found(filter: Filter): Found {
        const { terms, formsOff, kindsOff } = filter;
        return terms.length + formsOff.length + kindsOff.length === 0 ? this.all : this.#look(filter);
    }

    #look({ terms, formsOff, kindsOff, byReadings = false }: Filter): Found {
        const read = terms.map((text) => ({ text, term: this.term(text) }));
        const masks = this.#masksOfTerms(read);
        const asksForItems = read.some(({ term }) => asksForItem(term));
        const takesAny = byReadings && asksForItems;
        const cells = this.#cells;
        const isOn = this.#cellsOn(formsOff, kindsOff);
        const counts = new Uint32Array(isOn.length);
        const passes = new Uint8Array(masks.length);
        let others = 0;
        for (let rule = 0; rule < masks.length; ++rule) {
            const cell = cells[rule]!;
            const asShown = masks[rule]! & 1;
            const inAny = masks[rule]! === 0 ? 0 : 1;
            const fits = takesAny ? inAny : asShown;
            counts[cell]! += fits;
            passes[rule] = fits & isOn[cell]!;
            others += isOn[cell]! & (inAny ^ asShown);
        }
        return {
            passes,
            masks,
            others: asksForItems ? others : 0,
            ...this.#facets(counts, formsOff, kindsOff),
        };
    }

    #masksOfTerms(read: readonly { readonly text: string; readonly term: Term | undefined }[]): Uint8Array {
        const all = read.flatMap(({ text, term }) =>
            term === undefined ? [] : [this.#masksOfTerm(text, term)],
        );
        if (all.length < 2) {
            return all[0] ?? new Uint8Array(this.#book.rules.count).fill(allReadings);
        }
        const masks = all[0]!.slice();
        for (const others of all.slice(1)) {
            keepBoth(masks, others);
        }
        return masks;
    }

    /** The form and the kind of each rule as one number; rules without forms have one form. */
    get #cells(): Uint16Array {
        if (this.#cellsOfRules === undefined) {
            const { count, forms } = this.#book.rules;
            this.#cellsOfRules = new Uint16Array(kindsOfRules(this.#book));
            for (let rule = 0; forms !== undefined && rule < count; ++rule) {
                this.#cellsOfRules[rule]! += kinds.length * forms[rule]!;
            }
        }
        return this.#cellsOfRules;
    }

    /** Of each such number, whether neither its form nor its kind is switched off. */
    #cellsOn(formsOff: readonly string[], kindsOff: readonly Kind[]): Uint8Array {
        const forms = this.#book.rules.forms === undefined ? [undefined] : this.#book.header.forms;
        return Uint8Array.from(
            forms.flatMap((form) =>
                kinds.map((kind) =>
                    (form !== undefined && formsOff.includes(form.label)) || kindsOff.includes(kind) ? 0 : 1,
                ),
            ),
        );
    }

    /** How many rules of each form there would be with the kinds that are on, and the other way round. */
    #facets(counts: Uint32Array, formsOff: readonly string[], kindsOff: readonly Kind[]) {
        const ofForms = new Uint32Array(this.#book.header.forms.length);
        const ofKinds = new Uint32Array(kinds.length);
        const ofAnyKind = this.#cellsOn(formsOff, []);
        const ofAnyForm = this.#cellsOn([], kindsOff);
        counts.forEach((count, cell) => {
            ofForms[Math.trunc(cell / kinds.length)]! += count * ofAnyForm[cell]!;
            ofKinds[cell % kinds.length]! += count * ofAnyKind[cell]!;
        });
        return { forms: ofForms, kinds: ofKinds };
    }

    /** The filter without what leaves a rule out: of terms that do so only together, the later ones. */
    loosenedFor(rule: number, filter: Filter): Filter {
        const asksForItems = filter.terms.some((text) => asksForItem(this.term(text)));
        const readings = filter.byReadings === true && asksForItems ? allReadings : 1;
        let mask = readings;
        const terms = filter.terms.filter((text) => {
            const term = this.term(text);
            const rest = term === undefined ? mask : mask & this.#masksOfTerm(text, term)[rule]!;
            mask = rest === 0 ? mask : rest;
            return rest !== 0;
        });
        const { forms } = this.#book.rules;
        const form = forms === undefined ? undefined : this.#book.header.forms[forms[rule]!]?.label;
        const kind = kindOf(this.#book, rule);
        return {
            ...filter,
            terms,
            formsOff: filter.formsOff.filter((each) => each !== form),
            kindsOff: filter.kindsOff.filter((each) => each !== kind),
        };
    }

    /** How a text is read; nothing where it asks for nothing. */
    term(text: string): Term | undefined {
        return this.problem(text) === undefined ? termOf(text, this.#names) : undefined;
    }

    /** What is wrong with a text that begins as a comparison does; such a text asks for nothing. */
    problem(text: string): string | undefined {
        return problemOf(text, this.#names);
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
}

const allReadings = 15;

/** Whether a term asks for rules that name an item, for which it may matter how they are read. */
function asksForItem(term: Term | undefined): boolean {
    return term?.kind === "items" && !term.isExcluded;
}

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
