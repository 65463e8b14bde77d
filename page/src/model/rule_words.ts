import type { Book } from "../data/book.ts";
import type { Bounds } from "./bounds.ts";
import { boundsText, countText, measureText, percentText } from "./number_words.ts";
import { countOf, measureOf, tablesOf } from "./rules.ts";
import type { SideWords } from "./side_words.ts";
import { ratio } from "./table.ts";

/** A rule in words: "If A, then in 73 % of cases: B", and the counts behind it. */
export interface RuleSentence {
    readonly premise: string;
    readonly howOften: string;
    readonly conclusion: string;
    readonly counts: string;
    /** What else says the same; empty where nothing does. */
    readonly others: string;
}

const mostItemsNamed = 12;

/** Says a rule as the program says it in words. */
export function sentenceOf(book: Book, words: SideWords, rule: number): RuleSentence {
    const { premises, conclusions } = book.rules;
    return {
        premise: words.text(premises[rule]!, mostItemsNamed),
        howOften: howOften(measureOf(book, rule, "confidence")),
        conclusion: words.text(conclusions[rule]!, mostItemsNamed),
        counts: `${cases(book, rule)}, against ${inGeneral(book, rule)}${comparison(measureOf(book, rule, "lift"))}`,
        others: others(book, rule),
    };
}

/** The sentence in one line. */
export function plainSentence(sentence: RuleSentence): string {
    return `If ${sentence.premise}, ${sentence.howOften}: ${sentence.conclusion}`;
}

function howOften(confidence: Bounds): string {
    if (Number.isNaN(confidence.low)) {
        return "of which there is no case";
    }
    if (confidence.low === 1) {
        return "then always";
    }
    if (confidence.high === 0) {
        return "then never";
    }
    return `then in ${boundsText(confidence, percentText)} of cases`;
}

function cases(book: Book, rule: number): string {
    const premise = countOf(book, rule, "x");
    const hasNoException = tablesOf(book, rule).every((table) => table.a === table.x);
    if (!hasNoException) {
        return `${boundsText(countOf(book, rule, "a"), countText)} of ${boundsText(premise, countText)}`;
    }
    return premise.high === 1 ? "in the only case" : `in all ${boundsText(premise, countText)} cases`;
}

function inGeneral(book: Book, rule: number): string {
    const all = countText(book.transactions);
    const conclusion = countOf(book, rule, "y");
    if (conclusion.low === book.transactions) {
        return `all ${all}`;
    }
    const share = boundsText(measureOf(book, rule, "prevalence"), percentText);
    return `${boundsText(conclusion, countText)} of all ${all} (${share})`;
}

/** How much more often the conclusion holds where the premise does. */
function comparison({ low, high }: Bounds): string {
    const tooLittleToSay = 0.005;
    if (Number.isNaN(low)) {
        return "";
    }
    if (Math.abs(low - 1) >= tooLittleToSay || Math.abs(high - 1) >= tooLittleToSay) {
        return `: ${boundsText({ low, high }, measureText)} times as often as in general`;
    }
    if (low === 1 && high === 1) {
        return ": just as often as in general";
    }
    if (low >= 1) {
        return ": hardly more often than in general";
    }
    return high <= 1 ? ": hardly less often than in general" : ": about as often as in general";
}

/** What other transactions say of a rule; empty where none were asked. */
export function holdoutSentence(book: Book, rule: number): string {
    const { holdout } = book.rules;
    if (holdout === undefined) {
        return "";
    }
    const others = `Of ${countText(book.header.holdout?.transactions ?? 0)} other transactions`;
    const premise = holdout.premises[rule]!;
    const support = holdout.supports[rule]!;
    if (premise === 0) {
        return `${others}, none meets the premise.`;
    }
    const here = boundsText(measureOf(book, rule, "confidence"), percentText);
    const there = percentText(ratio(support, premise));
    const met = `${countText(premise)} meet the premise, and ${countText(support)} of these the conclusion`;
    return `${others}, ${met}: ${there}, against ${here} here.`;
}

function others(book: Book, rule: number): string {
    const wordings = book.rules.wordings[rule]! - 1;
    const readings = book.rules.readings[rule]! - 1;
    return [
        wordings > 0 ? `the same fact in ${more(wordings, "wording")}` : "",
        readings > 0 ? `the same association in ${more(readings, "reading")}` : "",
    ]
        .filter((text) => text !== "")
        .join("; ");
}

function more(number: number, noun: string): string {
    return `${countText(number)} more ${noun}${number === 1 ? "" : "s"}`;
}
