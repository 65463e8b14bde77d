import { expect, test } from "vitest";
import { bookOf } from "../../src/data/book.ts";
import { passing, RuleFilter, type Filter } from "../../src/model/filter.ts";
import { givenOrder } from "../../src/model/order.ts";
import { Quantities } from "../../src/model/quantities.ts";
import { madeBlob } from "../support/made_book.ts";
import { confirmedBook, titanicBook } from "../support/titanic.ts";

const titanic = titanicBook();
const filter = new RuleFilter(titanic, new Quantities(titanic));

function rules(changes: Partial<Filter>): number[] {
    const passes = filter.passes({ terms: [], formsOff: [], kindsOff: [], ...changes });
    return [...passing(givenOrder(passes.length), passes)];
}

test("without terms all rules pass", () => {
    expect(rules({})).toEqual([0, 1, 2, 3, 4, 5]);
});

test("an item is looked for on both sides, or on one", () => {
    expect(rules({ terms: ["survived=yes"] })).toEqual([1, 2, 5]);
    expect(rules({ terms: ["if:crew"] })).toEqual([0]);
    expect(rules({ terms: ["then:crew"] })).toEqual([4]);
});

test("what is denied is named, too", () => {
    expect(rules({ terms: ["crew"] })).toEqual([0, 4]);
});

test("minus leaves out, on both sides or on one", () => {
    expect(rules({ terms: ["-survived=yes"] })).toEqual([0, 3, 4]);
    expect(rules({ terms: ["-if:child"] })).toEqual([0, 2, 5]);
});

test("all terms must hold", () => {
    expect(rules({ terms: ["child", "-third", "lift>1.7"] })).toEqual([1, 3]);
});

test("a column is asked for by its name", () => {
    expect(rules({ terms: ["then:class=*"] })).toEqual([1, 3, 4, 5]);
});

test("percentages beside counts are of all transactions", () => {
    // 5 % of 2,201 are 110.05.
    expect(rules({ terms: ["support<5%"] })).toEqual([3, 4]);
    expect(rules({ terms: ["confidence>=95%"] })).toEqual([1, 4, 5]);
});

test("a percentage that is a whole number of transactions is exactly that", () => {
    // 7 % of 100 would be a little more than 7 by its share.
    const rules = [
        { premise: { items: [0], count: 10 }, conclusion: { items: [1], count: 50 }, exceptions: 3 },
    ];
    const book = bookOf(madeBlob({ transactions: 100, names: ["a", "b"], rules }).buffer);
    const of = new RuleFilter(book, new Quantities(book));
    expect(of.passes({ terms: ["support>=7%"], formsOff: [], kindsOff: [] })[0]).toBe(1);
    expect(of.passes({ terms: ["support>7%"], formsOff: [], kindsOff: [] })[0]).toBe(0);
});

test("what is equal passes where the comparison says so", () => {
    expect(rules({ terms: ["support>514"] })).toEqual([0]);
    expect(rules({ terms: ["support>=514"] })).toEqual([0, 1]);
    expect(rules({ terms: ["support=109"] })).toEqual([4]);
});

test("forms and kinds can be switched off", () => {
    expect(rules({ formsOff: ["R111", "R131"] })).toEqual([1, 3, 4]);
    expect(rules({ kindsOff: ["approximative"] })).toEqual([4]);
    expect(rules({ kindsOff: ["exact"], terms: ["child"] })).toEqual([1, 3]);
});

test("a term that asks for nothing yet leaves all rules", () => {
    expect(rules({ terms: ["then:"] })).toHaveLength(6);
});

test("an item is found by the words of a side that names the rest of a column", () => {
    const book = bookOf(
        madeBlob({
            transactions: 9,
            names: ["sex=male", "sex=female", "a"],
            columns: [{ name: "sex", items: [0, 1], exclusive: true, exhaustive: true }],
            rules: [
                {
                    // "sex=male and not a"
                    premise: { items: [1, 2], isNegated: true, count: 3 },
                    conclusion: { items: [2], count: 4 },
                    exceptions: 1,
                },
            ],
        }).buffer,
    );
    const of = new RuleFilter(book, new Quantities(book));
    const passes = (term: string) => of.passes({ terms: [term], formsOff: [], kindsOff: [] })[0];
    expect([passes("sex=male"), passes("sex=female"), passes("if:a")]).toEqual([1, 0, 1]);
});

test("rules are counted, and found, of which another reading names the items so", () => {
    const found = (changes: Partial<Filter>) => {
        const { passes, masks, others } = filter.found({ terms: [], formsOff: [], kindsOff: [], ...changes });
        return { rules: [...passing(givenOrder(passes.length), passes)], masks: [...masks], others };
    };
    // Rule 2, "sex=female => survived=yes", is read as "survived=no => sex=male", too, its third reading. That of rule
    // 1 is "class not 3rd and survived=no => sex=male and age=adult", and of rule 5 the same without the age.
    const terms = ["if:survived=no", "then:sex=male"];
    expect(found({ terms })).toMatchObject({ rules: [0], others: 3 });
    expect(found({ terms }).masks[2]).toBe(0b0100);
    expect(found({ terms, byReadings: true }).rules).toEqual([0, 1, 2, 5]);
    expect(found({ terms: ["lift>0"], byReadings: true })).toMatchObject({ others: 0 });
    expect(found({ terms: [...terms, "support<100"] })).toMatchObject({ rules: [], others: 0 });
});

test("of a rule that is not known exactly the certain end counts", () => {
    const book = bookOf(
        madeBlob({
            transactions: 10,
            names: ["a", "b"],
            rules: [
                {
                    premise: { items: [0], count: 8 },
                    conclusion: { items: [1], count: 5, spread: 2 },
                    exceptions: 4,
                    slope: 1,
                },
            ],
        }).buffer,
    );
    const of = new RuleFilter(book, new Quantities(book));
    // Its confidence is between 0.5 and 0.75.
    const passes = (term: string) => of.passes({ terms: [term], formsOff: [], kindsOff: [] })[0];
    expect(passes("confidence>=0.5")).toBe(1);
    expect(passes("confidence>0.6")).toBe(0);
    expect(passes("confidence<0.7")).toBe(0);
    expect(passes("confidence<=0.75")).toBe(1);
    expect([...of.all.kinds]).toEqual([0, 0, 1]);
});

test("a value that is not defined is in no range", () => {
    const book = bookOf(
        madeBlob({
            transactions: 10,
            names: ["a", "b"],
            rules: [
                { premise: { items: [0], count: 0 }, conclusion: { items: [1], count: 5 }, exceptions: 0 },
            ],
        }).buffer,
    );
    const of = new RuleFilter(book, new Quantities(book));
    for (const term of ["lift>0", "lift<5", "lift>=0"]) {
        expect(of.passes({ terms: [term], formsOff: [], kindsOff: [] })[0], term).toBe(0);
    }
});

test("a probability is asked for as it is shown", () => {
    // 88 of 97, and p falls by the rules: 10^-12.3, 10^-11.3, ... as the other transactions give them.
    const book = confirmedBook();
    const of = new RuleFilter(book, new Quantities(book));
    const passes = (term: string) => [...of.passes({ terms: [term], formsOff: [], kindsOff: [] })];
    expect(passes("holdout_p<1e-10")).toEqual([1, 1, 1, 0, 0, 0]);
    expect(passes("holdout_p>=1e-10")).toEqual([0, 0, 0, 1, 1, 1]);
    expect(passes("p<=1")).toEqual([1, 1, 1, 1, 1, 1]);
    expect(passes("p<0")).toEqual([0, 0, 0, 0, 0, 0]);
});

test("switches count what each would show if it alone were changed", () => {
    // Rules 0 to 5: R131, R122, R111, R112, R311, R111; rule 4 is exact, the others are approximative.
    const counts = (changes: Partial<Filter>) => {
        const { forms, kinds } = filter.found({ terms: [], formsOff: [], kindsOff: [], ...changes });
        const labels = titanic.header.forms.map(({ label }) => label);
        const present = labels.flatMap((label, i) => (forms[i]! > 0 ? [`${label}: ${forms[i]!}`] : []));
        return [present.join(), kinds.join()];
    };
    expect(counts({})).toEqual(["R111: 2,R112: 1,R122: 1,R131: 1,R311: 1", "1,5,0"]);
    expect(counts({ terms: ["child"] })).toEqual(["R112: 1,R122: 1,R311: 1", "1,2,0"]);
    // Without its form, the exact rule would not be there; the form itself would bring it back.
    expect(counts({ formsOff: ["R311", "R111"] })).toEqual([
        "R111: 2,R112: 1,R122: 1,R131: 1,R311: 1",
        "0,3,0",
    ]);
    expect(counts({ kindsOff: ["approximative"] })).toEqual(["R311: 1", "1,5,0"]);
    // Rule 2 is read as "survived=no => sex=male", too; so are rules 1 and 5 (see above).
    expect(counts({ terms: ["if:survived=no", "then:sex=male"], byReadings: true })).toEqual([
        "R111: 2,R122: 1,R131: 1",
        "0,4,0",
    ]);
});

test("a filter is loosened by what leaves a rule out, and by nothing else", () => {
    const loosened = (changes: Partial<Filter>) =>
        filter.loosenedFor(2, { terms: [], formsOff: [], kindsOff: [], ...changes });
    expect(
        loosened({ terms: ["female", "crew", "lift>9", "then:"], formsOff: ["R111", "R112"] }),
    ).toMatchObject({
        terms: ["female", "then:"],
        formsOff: ["R112"],
    });
    expect(loosened({ kindsOff: ["exact", "approximative"] }).kindsOff).toEqual(["exact"]);
    // Its readings have survived=no before "sex=male", and sex=female before survived=yes, but not both.
    const terms = ["if:survived=no", "if:sex=female"];
    expect(loosened({ terms }).terms).toEqual(["if:sex=female"]);
    expect(loosened({ terms, byReadings: true }).terms).toEqual(["if:survived=no"]);
});

test("a filter that asks for nothing lets every rule pass by every reading", () => {
    const { passes, masks, others } = filter.found({ terms: [], formsOff: [], kindsOff: [] });
    expect([[...new Set(passes)], [...new Set(masks)], others]).toEqual([[1], [15], 0]);
});

test("what is found where nothing is asked for is looked for once", () => {
    const nothing = { terms: [], formsOff: [], kindsOff: [], byReadings: true };
    expect(filter.found(nothing)).toBe(filter.all);
    expect(filter.found({ ...nothing, terms: ["child"] })).not.toBe(filter.all);
});

test("of no rules, none pass", () => {
    const book = bookOf(madeBlob({ transactions: 0, names: [], rules: [] }).buffer);
    const of = new RuleFilter(book, new Quantities(book));
    const found = of.found({ terms: ["milk", "lift>1"], formsOff: [], kindsOff: ["exact"] });
    expect([found.passes.length, found.others, ...found.kinds]).toEqual([0, 0, 0, 0, 0]);
});

test("a rule without a value is in no range of it", () => {
    const never = { items: [0], count: 0 };
    const rules = [{ premise: never, conclusion: { items: [1], count: 5 }, exceptions: 0 }];
    const book = bookOf(madeBlob({ transactions: 10, names: ["a", "b"], rules }).buffer);
    const of = new RuleFilter(book, new Quantities(book));
    const passes = (term: string) => of.passes({ terms: [term], formsOff: [], kindsOff: [] })[0];
    expect([passes("confidence>=0"), passes("confidence<=1"), passes("support=0")]).toEqual([0, 0, 1]);
});
