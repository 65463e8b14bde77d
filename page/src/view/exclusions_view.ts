import {
    chosenExclusions,
    exclusionsOf,
    orderedExclusions,
    type Exclusion,
    type ExclusionOrder,
} from "../model/exclusion_list.ts";
import { countText, measureText, percentText, probabilityText } from "../model/number_words.ts";
import { itemText } from "../model/search_terms.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h, refill, setAttributes, shortened } from "./dom.ts";

const mostRows = 100;

/** Pairs of items that meet less often than by chance: what excludes, or replaces, what. */
export class ExclusionsView implements Component {
    readonly root = h("section", { class: "exclusions-view", "aria-label": "Exclusions" });
    readonly #context: Context;
    readonly #rows = h("tbody");
    readonly #more = h("p");
    readonly #remark = h("p", { class: "quiet", role: "status" });
    readonly #heads = new Map<ExclusionOrder, HTMLElement>();
    #all: Exclusion[] | undefined;
    #order: ExclusionOrder = "p";
    #limit = mostRows;
    #sight: Sight | undefined;

    constructor(context: Context) {
        this.#context = context;
        const { exclusions } = context.book.header;
        const intro = h(
            "p",
            {},
            "Two items that are seldom in the same transaction often replace, or rule out, each other.",
        );
        if (!exclusions.known || exclusions.shown === 0) {
            const none = exclusions.known ? "No two items meet so seldom that it is no chance." : "";
            refill(
                this.root,
                h("div", { class: "wide" }, intro, h("p", { class: "quiet" }, none, " ", exclusions.why)),
            );
            return;
        }
        refill(this.root, h("div", { class: "wide" }, intro, this.#remark, this.#table(), this.#more));
    }

    update(now: Sight, before: Sight | undefined): void {
        this.#sight = now;
        const { state } = now;
        if (state.view !== "exclusions" || this.#context.book.exclusions.count === 0) {
            return;
        }
        const last = before?.state;
        if (last?.view !== "exclusions" || state.terms !== last.terms || state.draft !== last.draft) {
            this.#limit = mostRows;
            this.#fill();
        }
    }

    #table(): HTMLElement {
        const head = (order: ExclusionOrder, text: string, title: string) => {
            const sort = button(text, { title }, () => {
                this.#order = order;
                this.#fill();
            });
            const cell = h("th", { scope: "col", class: "number" }, sort);
            this.#heads.set(order, cell);
            return cell;
        };
        const heads = h(
            "tr",
            {},
            h("th", { scope: "col" }, "Items"),
            h("th", { scope: "col", class: "seen" }, "Together, of what is expected"),
            head("lift", "Seen / expected", "how many times as often as by chance they meet"),
            head("expected", "Expected", "how many transactions would have both by chance"),
            head("covered", "One of them", "the share of all transactions that have one of the two"),
            head("p", "p", "how probable it is that chance alone gives so few; 0.001 is once in 1,000 times"),
        );
        return h("table", { class: "plain" }, h("thead", {}, heads), this.#rows);
    }

    #fill(): void {
        const { book, filter } = this.#context;
        const { state } = this.#sight!;
        this.#all ??= exclusionsOf(book);
        const terms = [...state.terms, ...filter.termsOf(state.draft)].map((term) => filter.term(term));
        const chosen = chosenExclusions(book, this.#all, terms);
        const ordered = this.#order === "p" ? chosen : orderedExclusions(chosen, this.#order);
        const largest = chosen.reduce((most, { expected }) => Math.max(most, expected), 1);
        refill(this.#rows, ...ordered.slice(0, this.#limit).map((each) => this.#row(each, largest)));
        this.#remark.textContent = this.#remarkText(chosen.length);
        const left = ordered.length - this.#limit;
        const more = button(`Show ${countText(Math.min(left, mostRows))} more`, {}, () => {
            this.#limit += mostRows;
            this.#fill();
        });
        refill(this.#more, left > 0 ? more : undefined);
        this.#heads.forEach((head, order) => {
            const direction = order === "lift" || order === "p" ? "ascending" : "descending";
            setAttributes(head, { "aria-sort": order === this.#order ? direction : undefined });
        });
    }

    #remarkText(count: number): string {
        const { left_out: leftOut, alpha = 0.05 } = this.#context.book.header.exclusions;
        const all = this.#all?.length ?? 0;
        if (count === 0 && all > 0) {
            const pairs = `${countText(all)} pairs that meet less often than by chance`;
            return `None of the ${pairs} has the items that are searched for.`;
        }
        const pairs = count === 1 ? "1 pair" : `${countText(count)} pairs`;
        const chance = `In at most ${percentText(alpha)} of all files, chance alone would give any pair at all.`;
        const further = leftOut === 0 ? "" : ` ${countText(leftOut)} weaker pairs are not on this page.`;
        return `${pairs} of items that meet less often than by chance, the most surprising first. ${chance}${further}`;
    }

    #row(exclusion: Exclusion, largest: number): HTMLElement {
        const { items } = this.#context.book;
        const { first, second, together, expected, lift, covered, p } = exclusion;
        const name = (item: number) =>
            button(shortened(items.names[item]!, 120), { class: "link", title: "Show its rules" }, () => {
                this.#context.change({ view: "rules", terms: [itemText(items.numbers[item]!)], draft: "" });
            });
        const verb = together === 0 ? " excludes " : " less often than expected with ";
        const bar = h("i", { class: "bar expected" });
        bar.style.setProperty("--low", `${(100 * together) / largest}%`);
        bar.style.setProperty("--high", `${(100 * expected) / largest}%`);
        const number = (text: string) => h("td", { class: "number" }, text);
        return h(
            "tr",
            {},
            h("td", { class: "name" }, name(first), h("span", { class: "quiet" }, verb), name(second)),
            h(
                "td",
                { class: "seen" },
                h("span", {}, `${countText(together)} of ${measureText(expected)}`),
                bar,
            ),
            number(measureText(lift)),
            number(measureText(expected)),
            number(percentText(covered)),
            number(probabilityText(0 - p)),
        );
    }
}
