import { listAt } from "../data/lists.ts";
import { relatedRules, type Related } from "../model/dominance.ts";
import { formWords } from "../model/form_words.ts";
import { boundsText, countText, measureText, percentText } from "../model/number_words.ts";
import { otherReading, readingsOf, type Reading } from "../model/readings.ts";
import { holdoutSentence, sentenceOf } from "../model/rule_words.ts";
import { kindOf, measureOf, tablesOf } from "../model/rules.ts";
import { itemText } from "../model/search_terms.ts";
import { sideItems, type SideItems } from "../model/side_lookup.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h, newId, refill, setAttributes, shortened, unbroken, type Child } from "./dom.ts";
import { HiddenNote } from "./hidden_note.ts";
import { LatticeWalk } from "./lattice_walk.ts";
import { mosaicOf } from "./mosaic.ts";

const kindWords = {
    exact: "No exception",
    approximative: "With exceptions",
    bounded: "Not known exactly",
};
const mostOfAList = 5;
const mostLetters = 400;

/** Everything about one rule. */
export class RulePanel implements Component {
    readonly root = h("aside", {
        class: "panel",
        "aria-label": "The chosen rule",
        tabindex: -1,
        hidden: true,
    });
    readonly #context: Context;
    readonly #walk: LatticeWalk;
    readonly #hiddenNote: HiddenNote;
    /** By the terms that the items of the rule stand for. */
    #chips = new Map<string, HTMLElement>();
    #terms: readonly string[] = [];
    /** The readings of the rule, and of each the mark that it is the one that fits the search. */
    #readings: readonly { readonly said: string; readonly row: HTMLElement; readonly mark: HTMLElement }[] =
        [];
    /** Of a rule that only another reading lets fit the search, that reading. */
    readonly #foundAs = h("p", { class: "found-as" });
    readonly #step: (by: number) => void;

    /** `step` moves to a neighbouring rule of the table. */
    constructor(context: Context, step: (by: number) => void) {
        this.#context = context;
        this.#walk = new LatticeWalk(context);
        this.#hiddenNote = new HiddenNote(context);
        this.#step = step;
    }

    update(now: Sight, before: Sight | undefined): void {
        const { state, found } = now;
        const { rule, node } = state;
        this.root.hidden = rule === undefined;
        if (rule === undefined) {
            return;
        }
        if (rule !== before?.state.rule) {
            const hasFocus = this.root.contains(document.activeElement);
            refill(this.root, ...this.#content(rule));
            this.root.scrollTop = 0;
            if (hasFocus) {
                this.root.focus();
            }
        }
        this.#markReadings(found.masks[rule]!);
        this.#terms = state.terms;
        this.#chips.forEach((chip, term) => {
            setAttributes(chip, { "aria-pressed": state.terms.includes(term) ? "true" : "false" });
        });
        if (rule !== before?.state.rule || found !== before.found) {
            this.#hiddenNote.update(now);
        }
        if (rule !== before?.state.rule || node !== before.state.node) {
            const position = node ?? this.#walk.home;
            if (position !== undefined) {
                this.#walk.show(position);
            }
        }
    }

    #content(rule: number): Child[] {
        const { book } = this.#context;
        const [first, second] = tablesOf(book, rule);
        return [
            this.#bar(rule),
            this.#hiddenNote.root,
            this.#sentence(rule),
            this.#numbers(rule),
            section("Four counts", mosaicOf(first, second)),
            this.#holdout(rule),
            this.#readingList(rule),
            this.#wordings(rule),
            this.#related(rule),
            this.#lattice(rule),
            this.#measures(rule),
        ];
    }

    #bar(rule: number): HTMLElement {
        const step = (text: string, label: string, by: number) =>
            button(text, { "aria-label": label, title: label, class: "icon" }, () => {
                this.#step(by);
            });
        const close = button(
            "×",
            { "aria-label": "Close this rule", title: "Close (Esc)", class: "icon" },
            () => {
                this.#context.change({ rule: undefined, node: undefined });
            },
        );
        return h(
            "div",
            { class: "bar-of-panel" },
            h("h2", {}, `Rule ${countText(rule + 1)}`),
            step("↑", "Previous rule in the table", -1),
            step("↓", "Next rule in the table", 1),
            close,
        );
    }

    #sentence(rule: number): HTMLElement {
        const { book, words } = this.#context;
        const { premise, howOften, conclusion, counts, others } = sentenceOf(book, words, rule);
        return h(
            "div",
            { class: "sentence" },
            h(
                "p",
                { class: "said" },
                "If ",
                h("b", {}, shortened(premise, mostLetters)),
                unbroken(`, ${howOften}: `),
                h("b", {}, shortened(conclusion, mostLetters)),
            ),
            h("p", {}, unbroken(counts)),
            this.#foundAs,
            h(
                "p",
                { class: "quiet" },
                [kindWords[kindOf(book, rule)], others].filter((text) => text !== "").join(" · "),
            ),
            this.#items(rule),
        );
    }

    /** The items of both sides; each asks for the rules with it on the same side, or no longer. */
    #items(rule: number): HTMLElement {
        const { book, named } = this.#context;
        const { premises, conclusions } = book.rules;
        this.#chips = new Map();
        const of = (place: "if" | "then", side: number) => {
            const most = 12;
            const items = [...listAt(named(), side)].slice(0, most);
            return h(
                "p",
                { class: "items-of-rule" },
                h("span", { class: "quiet" }, `Rules with ${place}`),
                ...items.map((item) => this.#chip(item, place)),
            );
        };
        return h("div", {}, of("if", premises[rule]!), of("then", conclusions[rule]!));
    }

    #chip(item: number, place: "if" | "then"): HTMLElement {
        const { items } = this.#context.book;
        const term = itemText(items.numbers[item]!, place);
        const side = place === "if" ? "premise" : "conclusion";
        const title = `Rules with this item in the ${side}; once more takes the filter away`;
        const chip = button(shortened(items.names[item]!, 60), { class: "chip", title }, () => {
            const others = this.#terms.filter((each) => each !== term);
            const isNew = others.length === this.#terms.length;
            this.#context.change({ terms: isNew ? [...others, term] : others });
        });
        this.#chips.set(term, chip);
        return chip;
    }

    #numbers(rule: number): HTMLElement {
        const { quantities } = this.#context;
        const tiles = ["support", "confidence", "lift", "leverage"].map((name) => {
            const { title, say, explanation } = quantities.get(name);
            const said = boundsText(quantities.bounds(name, rule), say);
            return h(
                "div",
                { title: explanation },
                h("dt", {}, title),
                h("dd", { class: said.includes(" to ") ? "range" : undefined }, said),
            );
        });
        return h("dl", { class: "tiles" }, ...tiles);
    }

    /** Whether the rule held where it was not found. */
    #holdout(rule: number): HTMLElement | undefined {
        const { book } = this.#context;
        const { holdout } = book.rules;
        const alpha = book.header.holdout?.alpha;
        if (holdout === undefined || alpha === undefined) {
            return undefined;
        }
        const p = this.#context.quantities.get("holdout_p").say(0 - holdout.ps[rule]!);
        const remark =
            `So it is confirmed, with a holdout p of ${p}. ` +
            `Chance alone would confirm any rule of this page in at most ${percentText(alpha)} of cases.`;
        return section(
            "In other transactions",
            h("p", {}, unbroken(holdoutSentence(book, rule))),
            h("p", { class: "quiet" }, unbroken(remark)),
        );
    }

    #readingList(rule: number): HTMLElement {
        const rows = readingsOf(this.#context.book, rule).map((reading) => this.#reading(rule, reading));
        this.#readings = rows;
        const remark = "They tell of one association, and all follow from the four counts.";
        return section(
            "Four ways to read it",
            h("p", { class: "quiet" }, remark),
            h("ul", { class: "list" }, ...rows.map(({ row }) => row)),
        );
    }

    #reading(rule: number, reading: Reading): { said: string; row: HTMLElement; mark: HTMLElement } {
        const text = `${this.#side(reading.premise)} → ${this.#side(reading.conclusion)}`;
        const isOwn = reading.rule === rule;
        const words =
            reading.rule === undefined || isOwn ? h("span", {}, text) : this.#linkTo(reading.rule, text);
        const mark = h("span", { class: "fits", hidden: true }, " (fits the search)");
        const confidence = boundsText(reading.confidence, percentText);
        const numbers = unbroken(`${confidence}, lift ${boundsText(reading.lift, measureText)}`);
        const row = h(
            "li",
            { "aria-current": isOwn ? "true" : undefined },
            h("span", {}, words, mark),
            h("span", { class: "value" }, numbers),
        );
        return { said: `${text}, ${numbers}`, row, mark };
    }

    /** Of a rule that fits the search by other readings only, says by which. `mask`: a bit for each that does. */
    #markReadings(mask: number): void {
        const other = otherReading(mask);
        this.#readings.forEach(({ row, mark }, reading) => {
            mark.hidden = other === undefined || ((mask >> reading) & 1) === 0;
            row.classList.toggle("found", !mark.hidden);
        });
        this.#foundAs.hidden = other === undefined;
        this.#foundAs.textContent =
            other === undefined
                ? ""
                : `⇄ The search found another reading of it: ${this.#readings[other]!.said}`;
    }

    #side(side: SideItems): string {
        return shortened(this.#context.words.textOf(side, 12), 160);
    }

    #linkTo(rule: number, text: string): HTMLElement {
        return button(text, { class: "link" }, () => {
            this.#context.change({ rule, node: undefined });
        });
    }

    /** Other itemsets that the same transactions hold, from the classes of both sides. */
    #wordings(rule: number): HTMLElement | undefined {
        const { book, lattice } = this.#context;
        const { premises, conclusions } = book.rules;
        const sides = [premises[rule]!, conclusions[rule]!] as const;
        const items = sides.map((side) => sideItems(book, side)) as [SideItems, SideItems];
        const lists = sides.map((side, i) => {
            const isKnown = book.sides.spreads[side] === 0;
            const found = isKnown
                ? lattice().wordingsOf(items[i]!, book.sides.counts[side]!, items[1 - i]!.items)
                : [];
            return found.map((each) => this.#side({ items: each, isNegated: items[i]!.isNegated }));
        });
        if (lists.every((list) => list.length === 0)) {
            return undefined;
        }
        const parts = lists.flatMap((list, i) =>
            list.length === 0
                ? []
                : [
                      h("p", { class: "quiet" }, i === 0 ? "For the premise:" : "For the conclusion:"),
                      longList(list.map((text) => h("li", {}, text))),
                  ],
        );
        const remark = h("p", { class: "quiet" }, "Exactly the same transactions meet:");
        return section("In other words", remark, ...parts);
    }

    #related(rule: number): HTMLElement {
        const related = relatedRules(this.#context.book, rule);
        const kinds: readonly (readonly [keyof Related, string])[] = [
            ["stronger", "These say more, and hold at least as often:"],
            ["wouldBeStronger", "These would say more, but hold less often:"],
            ["weaker", "These say less, and hold no more often:"],
            ["special", "These are about special cases, and hold more often:"],
        ];
        const parts = kinds.flatMap(([kind, words]) => {
            const rules = related[kind];
            return rules.length === 0
                ? []
                : [
                      h("p", { class: "quiet" }, words),
                      longList(
                          rules.slice(0, 200).map((other) => this.#otherRule(other)),
                          rules.length,
                      ),
                  ];
        });
        const none = h("p", { class: "quiet" }, "No rule on this page says more or less of the same.");
        return section("Stronger and weaker rules", ...(parts.length === 0 ? [none] : parts));
    }

    #otherRule(rule: number): HTMLElement {
        const { book } = this.#context;
        const [premise, conclusion] = [book.rules.premises[rule]!, book.rules.conclusions[rule]!];
        const text = `${this.#side(sideItems(book, premise))} → ${this.#side(sideItems(book, conclusion))}`;
        const confidence = boundsText(measureOf(book, rule, "confidence"), percentText);
        return h("li", {}, this.#linkTo(rule, text), h("span", { class: "value" }, confidence));
    }

    #lattice(rule: number): HTMLElement {
        const { book, lattice } = this.#context;
        this.#walk.home = lattice().classOfRule(rule);
        if (this.#walk.home === undefined) {
            const why = book.header.lattice.why;
            const remark = "The class that this rule comes from is not on the page.";
            const said = h("p", { class: "quiet" }, [remark, why].join(" ").trim());
            return section("In the lattice", this.#form(rule), said);
        }
        const explained =
            "A class has all items that can join it without another transaction coming in. Above stand the next " +
            "larger classes, with what they add; below the next smaller ones, with what they lack; each with its " +
            "number of transactions. A click walks there.";
        return section(
            "In the lattice",
            h("p", { class: "quiet" }, explained),
            this.#form(rule),
            this.#walk.root,
        );
    }

    /** Between what of the lattice the rule leads. */
    #form(rule: number): HTMLElement | undefined {
        const { rules, header } = this.#context.book;
        const form = rules.forms === undefined ? undefined : header.forms[rules.forms[rule]!];
        return form === undefined
            ? undefined
            : h(
                  "p",
                  { class: "quiet form" },
                  `This rule: ${formWords(form.text)} `,
                  h("span", { title: form.text }, `(form ${form.label})`),
              );
    }

    #measures(rule: number): HTMLElement {
        const { book, quantities } = this.#context;
        const rows = book.header.measures.map((measure) => {
            const { name } = measure;
            const quantity = quantities.named(name);
            const { formula, explanation } = quantity?.isProbability === true ? quantity : measure;
            const value =
                quantity?.isProbability === true
                    ? boundsText(quantities.bounds(name, rule), quantity.say)
                    : boundsText(measureOf(book, rule, name), measureText);
            return h(
                "div",
                {},
                h("dt", {}, name.replaceAll("_", " "), h("code", {}, formula)),
                h("dd", { class: "value" }, value),
                h("dd", { class: "quiet" }, explanation),
            );
        });
        const { symbols } = book.header;
        return section(
            "All measures",
            h("dl", { class: "measures" }, ...rows),
            h("p", { class: "quiet" }, symbols),
        );
    }
}

function section(title: string, ...content: readonly Child[]): HTMLElement {
    const id = newId("section");
    return h("section", { "aria-labelledby": id }, h("h3", { id }, title), ...content);
}

/** A list of which only the first few are shown until one asks for all. */
function longList(entries: readonly HTMLElement[], count = entries.length): HTMLElement {
    const list = h("ul", { class: "list" }, ...entries.slice(0, mostOfAList));
    const rest = entries.slice(mostOfAList);
    if (rest.length > 0) {
        const more = h("li", {});
        const left = count - entries.length;
        const show = button(`${countText(count - mostOfAList)} more`, { class: "link" }, () => {
            more.replaceWith(...rest);
            if (left > 0) {
                list.append(h("li", { class: "quiet" }, `and ${countText(left)} more`));
            }
        });
        refill(more, show);
        list.append(more);
    }
    return list;
}
