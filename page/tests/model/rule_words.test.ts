import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { holdoutSentence, plainSentence, sentenceOf } from "../../src/model/rule_words.ts";
import { SideWords } from "../../src/model/side_words.ts";
import { madeBlob, type MadeRule } from "../support/made_book.ts";
import { confirmed, confirmedBook, titanicBook } from "../support/titanic.ts";

const titanic = titanicBook();

function said(rule: number) {
    const sentence = sentenceOf(titanic, new SideWords(titanic), rule);
    return [plainSentence(sentence), sentence.counts, sentence.others];
}

// As the guide to rules has them.
test("a rule with exceptions is said as the program says it", () => {
    expect(said(0)).toEqual([
        "If class=crew or survived=no, then in 91 % of cases: sex=male",
        "1,556 of 1,702, against 1,731 of all 2,201 (79 %): 1.16 times as often as in general",
        "the same association in 1 more reading",
    ]);
    expect(said(1).slice(0, 2)).toEqual([
        "If sex=female or age=child, then in 96 % of cases: class=3rd or survived=yes",
        "514 of 534, against 1,239 of all 2,201 (56 %): 1.71 times as often as in general",
    ]);
});

test("a rule without exception always holds", () => {
    expect(said(4)).toEqual([
        "If age=child, then always: class not crew",
        "in all 109 cases, against 1,316 of all 2,201 (60 %): 1.67 times as often as in general",
        "",
    ]);
});

test("other wordings are counted", () => {
    expect(said(2)[2]).toBe("the same fact in 1 more wording");
});

function saidOf(rule: Partial<MadeRule> & { x: number; y: number }): readonly string[] {
    const book = bookOf(
        madeBlob({
            transactions: 10,
            names: ["a", "b"],
            rules: [
                {
                    exceptions: 0,
                    ...rule,
                    premise: { items: [0], count: rule.x },
                    conclusion: { items: [1], count: rule.y, spread: rule.slope === undefined ? 0 : 2 },
                },
            ],
        }).buffer,
    );
    const sentence = sentenceOf(book, new SideWords(book), 0);
    return [sentence.howOften, sentence.counts];
}

test("what holds in no case, never, or just as often is said so", () => {
    expect(saidOf({ x: 0, y: 5 })[0]).toBe("of which there is no case");
    expect(saidOf({ x: 4, y: 5, exceptions: 4 })[0]).toBe("then never");
    expect(saidOf({ x: 4, y: 5, exceptions: 2 })[1]).toBe(
        "2 of 4, against 5 of all 10 (50 %): just as often as in general",
    );
    expect(saidOf({ x: 1, y: 5 })[1]).toContain("in the only case, against 5 of all 10");
});

test("what is not known is said as a range", () => {
    expect(saidOf({ x: 8, y: 5, exceptions: 4, slope: 1 })).toEqual([
        "then in 50 % to 75 % of cases",
        "4 to 6 of 8, against 5 to 7 of all 10 (50 % to 70 %): 1.00 to 1.07 times as often as in general",
    ]);
});

test("a rule is said with what other transactions say", () => {
    expect(holdoutSentence(confirmedBook(), 1)).toBe(
        "Of 440 other transactions, 98 meet the premise, and 87 of these the conclusion: 89 %, against 96 % here.",
    );
    expect(holdoutSentence(titanic, 1)).toBe("");
});

test("other transactions may have no case of a rule", () => {
    const rules = [{ ...confirmed.rules[0]!, holdout: { premise: 0, support: 0, p: 0 } }];
    const book = bookOf(madeBlob({ ...confirmed, rules }).buffer);
    expect(holdoutSentence(book, 0)).toBe("Of 440 other transactions, none meets the premise.");
});
