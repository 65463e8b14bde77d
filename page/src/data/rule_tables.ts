/** The counts of rules, in transactions: how many meet the premise (x), the conclusion (y), and both (a). */
export interface Counts {
    readonly x: Uint32Array;
    readonly y: Uint32Array;
    readonly a: Uint32Array;
}

/**
 * The two tables of each rule: the ends of what is not known. Each count moves from the first to the second in steps
 * of 1. Where every count of every rule is known, `second` is `first` itself.
 */
export interface Tables {
    readonly first: Counts;
    readonly second: Counts;
}

/** What is needed of sides: their counts, and how far these are open. */
interface SideCounts {
    readonly counts: Uint32Array;
    readonly spreads: Uint32Array;
}

/** Rules whose counts the sides do not tell, with six counts each: x, y, a of both tables. */
interface OddRules {
    readonly rules: Uint32Array;
    readonly counts: Uint32Array;
}

/** Puts the tables of all rules together from the counts of their sides and from their exceptions. O(rules). */
export function tablesOfRules(
    premises: Uint32Array,
    conclusions: Uint32Array,
    exceptions: Uint32Array,
    slopes: Int8Array,
    sides: SideCounts,
    odd: OddRules,
): Tables {
    const isOpen = odd.rules.length > 0 || sides.spreads.some((spread) => spread > 0);
    const first = noCounts(premises.length);
    const second = isOpen ? noCounts(premises.length) : first;
    for (let rule = 0; rule < premises.length; ++rule) {
        const premise = premises[rule]!;
        const conclusion = conclusions[rule]!;
        const x = sides.counts[premise]!;
        const y = sides.counts[conclusion]!;
        const a = x - exceptions[rule]!;
        first.x[rule] = x;
        first.y[rule] = y;
        first.a[rule] = a;
        if (isOpen) {
            const ofPremise = sides.spreads[premise]!;
            const ofConclusion = sides.spreads[conclusion]!;
            second.x[rule] = x + ofPremise;
            second.y[rule] = y + ofConclusion;
            second.a[rule] = a + slopes[rule]! * Math.max(ofPremise, ofConclusion);
        }
    }
    setOddCounts(odd, first, 0);
    setOddCounts(odd, second, 3);
    return { first, second };
}

function setOddCounts(odd: OddRules, counts: Counts, begin: number): void {
    odd.rules.forEach((rule, position) => {
        const from = 6 * position + begin;
        counts.x[rule] = odd.counts[from]!;
        counts.y[rule] = odd.counts[from + 1]!;
        counts.a[rule] = odd.counts[from + 2]!;
    });
}

function noCounts(rules: number): Counts {
    return { x: new Uint32Array(rules), y: new Uint32Array(rules), a: new Uint32Array(rules) };
}
