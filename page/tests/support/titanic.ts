import { bookOf, type Book } from "../../src/data/book.ts";
import { madeBlob, type MadeBook, type MadeSide } from "./made_book.ts";

/** Items: 0 class=1st, 1 class=2nd, 2 class=3rd, 3 class=crew, 4 sex=male, 5 sex=female, 6 age=adult, 7 age=child, */
/** 8 survived=no, 9 survived=yes. The counts are those of the 2,201 persons aboard. */
const names = [
    "class=1st",
    "class=2nd",
    "class=3rd",
    "class=crew",
    "sex=male",
    "sex=female",
    "age=adult",
    "age=child",
    "survived=no",
    "survived=yes",
];

const side = (count: number, ...items: readonly number[]): MadeSide => ({ items, count });

export const sides = {
    crewOrDead: side(1702, 3, 8),
    male: side(1731, 4),
    femaleOrChild: side(534, 5, 7),
    thirdOrSurvived: side(1239, 2, 9),
    female: side(470, 5),
    child: side(109, 7),
    third: side(706, 2),
    survived: side(711, 9),
    notCrew: { items: [3], isNegated: true, count: 1316 },
} as const;

/** Some rules of the persons aboard the Titanic, with counts that the guide to rules tells, too. */
export const titanic: MadeBook = {
    transactions: 2201,
    names,
    counts: [325, 285, 706, 885, 1731, 470, 2092, 109, 1490, 711],
    columns: [
        { name: "class", items: [0, 1, 2, 3], exclusive: true, exhaustive: true },
        { name: "sex", items: [4, 5], exclusive: true, exhaustive: true },
        { name: "age", items: [6, 7], exclusive: true, exhaustive: true },
        { name: "survived", items: [8, 9], exclusive: true, exhaustive: true },
    ],
    rules: [
        {
            premise: sides.crewOrDead,
            conclusion: sides.male,
            exceptions: 1702 - 1556,
            form: "R131",
            readings: 2,
        },
        { premise: sides.femaleOrChild, conclusion: sides.thirdOrSurvived, exceptions: 20, form: "R122" },
        {
            premise: sides.female,
            conclusion: sides.survived,
            exceptions: 470 - 344,
            form: "R111",
            wordings: 2,
        },
        { premise: sides.child, conclusion: sides.third, exceptions: 109 - 79, form: "R112" },
        { premise: sides.child, conclusion: sides.notCrew, exceptions: 0, form: "R311" },
        { premise: sides.female, conclusion: sides.thirdOrSurvived, exceptions: 470 - 450, form: "R111" },
    ],
    exclusions: [
        { first: 4, second: 9, together: 367, p: 95.5 },
        { first: 3, second: 5, together: 23, p: 84.2 },
    ],
};

/** The same, of which 440 other transactions confirm each rule, as they do the first: 88 of 97. */
export const confirmed: MadeBook = {
    ...titanic,
    rules: titanic.rules.map((rule, i) => ({
        ...rule,
        holdout: { premise: 97 + i, support: 88 - i, p: 12.3 - i },
    })),
    header: { holdout: { transactions: 440, alpha: 0.05 } },
};

/** The rules that others confirm as a page reads them. */
export function confirmedBook(): Book {
    return bookOf(madeBlob(confirmed).buffer);
}

/** These rules as a page reads them. */
export function titanicBook(changes: Partial<MadeBook> = {}): Book {
    return bookOf(madeBlob({ ...titanic, ...changes }).buffer);
}
