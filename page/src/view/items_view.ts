import { unknownCount } from "../data/book.ts";
import { partnersOf, usageOf, type ItemUsage, type Partner } from "../model/item_usage.ts";
import { countText, measureText, percentText } from "../model/number_words.ts";
import { pairCountsOf, type PairCounts } from "../model/pair_counts.ts";
import { columnText, itemText, type Place } from "../model/search_terms.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h, refill, setAttributes, shortened, unbroken } from "./dom.ts";

const mostRows = 200;
const mostPartners = 12;

/** By what items are ordered. */
type Order = "name" | "count" | "premises" | "conclusions";

/** The items: how often they are in the transactions and on either side of the shown rules, and with which others. */
export class ItemsView implements Component {
    readonly root = h("section", { class: "items-view", "aria-label": "Items" });
    readonly #context: Context;
    readonly #remark = h("p", { class: "quiet" });
    readonly #rows = h("tbody");
    readonly #more = h("p");
    readonly #partners = h("aside", { class: "partners", "aria-label": "The chosen item" });
    readonly #heads = new Map<Order, HTMLElement>();
    #order: Order = "premises";
    #limit = mostRows;
    #sight: Sight | undefined;
    #usage: ItemUsage | undefined;

    constructor(context: Context) {
        this.#context = context;
        const head = (order: Order, text: string) => {
            const cell = h(
                "th",
                { scope: "col", class: order === "name" ? "" : "number" },
                button(text, {}, () => {
                    this.#order = order;
                    this.#fill();
                }),
            );
            this.#heads.set(order, cell);
            return cell;
        };
        const heads = h(
            "tr",
            {},
            head("name", "Item"),
            head("count", "Transactions"),
            head("premises", "In premises"),
            head("conclusions", "In conclusions"),
        );
        const table = h("table", { class: "plain" }, h("thead", {}, heads), this.#rows);
        refill(
            this.root,
            h("div", { class: "wide" }, this.#columns(), this.#remark, table, this.#more),
            this.#partners,
        );
    }

    update(now: Sight, before: Sight | undefined): void {
        this.#sight = now;
        if (now.state.view !== "items") {
            return;
        }
        const isNew =
            before?.state.view !== "items" || now.rules !== before.rules || this.#usage === undefined;
        if (isNew) {
            this.#usage = usageOf(this.#context.book, this.#context.named(), now.rules);
        }
        if (isNew || now.state.item !== before.state.item) {
            this.#fill();
            this.#fillPartners();
        }
    }

    /** The columns of a table; each filters by all of its values. */
    #columns(): HTMLElement | undefined {
        const most = 60;
        const { columns } = this.#context.book.header;
        const chips = columns.slice(0, most).map(({ name }) =>
            button(shortened(name, 60), { class: "chip", title: "Show the rules with this column" }, () => {
                this.#showRules([columnText(name)]);
            }),
        );
        return chips.length === 0
            ? undefined
            : h("p", { class: "items-of-rule" }, h("span", { class: "quiet" }, "Columns "), ...chips);
    }

    #fill(): void {
        const usage = this.#usage!;
        const { rules, state } = this.#sight!;
        const order = this.#ordered(usage).filter(
            (item) => usage.premises[item]! + usage.conclusions[item]! > 0 || item === state.item,
        );
        const largest = (counts: Uint32Array) => counts.reduce((one, other) => Math.max(one, other), 1);
        const most = largest(usage.premises.map((count, i) => Math.max(count, usage.conclusions[i]!)));
        refill(this.#rows, ...order.slice(0, this.#limit).map((item) => this.#row(item, usage, most)));
        this.#remark.textContent =
            `${countText(order.length)} items in the ${countText(rules.length)} rules shown. ` +
            "A name shows its partners; a number shows its rules.";
        const left = order.length - this.#limit;
        const more = button(`Show ${countText(Math.min(left, mostRows))} more`, {}, () => {
            this.#limit += mostRows;
            this.#fill();
        });
        refill(this.#more, left > 0 ? more : undefined);
        this.#heads.forEach((head, each) => {
            const direction = each === "name" ? "ascending" : "descending";
            setAttributes(head, { "aria-sort": each === this.#order ? direction : undefined });
        });
    }

    #ordered({ premises, conclusions }: ItemUsage): number[] {
        const { items } = this.#context.book;
        const all = Array.from({ length: items.count }, (_, item) => item);
        const { compare } = new Intl.Collator("en", { numeric: true });
        const by: Readonly<Record<Order, (one: number, other: number) => number>> = {
            name: (one, other) => compare(items.names[one]!, items.names[other]!),
            count: (one, other) => known(items.counts[other]!) - known(items.counts[one]!),
            premises: (one, other) =>
                premises[other]! - premises[one]! || conclusions[other]! - conclusions[one]!,
            conclusions: (one, other) =>
                conclusions[other]! - conclusions[one]! || premises[other]! - premises[one]!,
        };
        return all.sort(by[this.#order]);
    }

    #row(item: number, usage: ItemUsage, most: number): HTMLElement {
        const { items } = this.#context.book;
        const count = items.counts[item]!;
        const name = button(shortened(items.names[item]!, 200), { class: "link" }, () => {
            this.#context.change({ item });
        });
        return h(
            "tr",
            { "aria-current": item === this.#sight?.state.item ? "true" : undefined },
            h("td", { class: "name" }, name),
            h("td", { class: "number" }, count === unknownCount ? "–" : countText(count)),
            this.#usageCell(item, usage.premises[item]!, "if", most),
            this.#usageCell(item, usage.conclusions[item]!, "then", most),
        );
    }

    #usageCell(item: number, count: number, place: Place, most: number): HTMLElement {
        const bar = h("i", { class: "bar" });
        bar.style.setProperty("--low", `${(100 * count) / most}%`);
        const name = shortened(this.#context.book.items.names[item]!, 60);
        const side = place === "if" ? "premise" : "conclusion";
        const label = `Show the rules with ${name} in the ${side}`;
        const content =
            count === 0
                ? h("span", { class: "quiet" }, "–")
                : button(countText(count), { class: "link", title: label }, () => {
                      this.#showRules([itemText(this.#context.book.items.numbers[item]!, place)]);
                  });
        return h("td", { class: "number" }, content, bar);
    }

    #showRules(terms: readonly string[]): void {
        const kept = this.#sight!.state.terms.filter((term) => !terms.includes(term));
        this.#context.change({ view: "rules", terms: [...kept, ...terms], draft: "" });
    }

    #close(): HTMLButtonElement {
        const attributes = { "aria-label": "Close this item", title: "Close (Esc)", class: "icon" };
        return button("×", attributes, () => {
            this.#context.change({ item: undefined });
        });
    }

    #fillPartners(): void {
        const { item } = this.#sight!.state;
        this.#partners.hidden = item === undefined;
        if (item === undefined) {
            return;
        }
        const { items, transactions } = this.#context.book;
        const held = items.counts[item]!;
        const share = percentText(held / transactions);
        const count =
            held === unknownCount
                ? "How many transactions hold it is not known."
                : unbroken(`In ${countText(held)} of ${countText(transactions)} transactions (${share}).`);
        const name = h("h2", {}, shortened(items.names[item]!, 200));
        refill(
            this.#partners,
            h("div", { class: "bar-of-panel" }, name, this.#close()),
            h("p", {}, count),
            button("Show its rules", { class: "primary" }, () => {
                this.#showRules([itemText(items.numbers[item]!)]);
            }),
            ...this.#partnersOf(item),
        );
    }

    #partnersOf(item: number): HTMLElement[] {
        const { book, named } = this.#context;
        const pairs = pairCountsOf(book, named(), item);
        const partners = partnersOf(book, named(), this.#sight!.rules, item, pairs);
        if (partners.length === 0) {
            return [h("p", { class: "quiet" }, "No shown rule has another item on its other side.")];
        }
        const lists: readonly (readonly [string, readonly Partner[]])[] = [
            ["Goes with", partners.filter(({ lift }) => lift !== undefined && lift >= 1)],
            ["Less often with", partners.filter(({ lift }) => lift !== undefined && lift < 1)],
            ["Also in rules with", partners.filter(({ lift }) => lift === undefined)],
        ];
        return lists
            .filter(([, some]) => some.length > 0)
            .flatMap(([heading, some]) => [
                h("h3", {}, heading),
                h(
                    "ul",
                    { class: "list" },
                    ...some.slice(0, mostPartners).map((each) => this.#partner(item, each, pairs)),
                ),
            ]);
    }

    #partner(item: number, { item: other, rules, lift }: Partner, pairs: PairCounts): HTMLElement {
        const { items } = this.#context.book;
        const name = shortened(items.names[other]!, 80);
        const inRules = rules === 1 ? "in 1 rule" : `in ${countText(rules)} rules`;
        const together = pairs.get(other);
        const title =
            together === undefined
                ? undefined
                : `${countText(together)} ${together === 1 ? "transaction has" : "transactions have"} both`;
        const link = button(name, { class: "link", title: `Show the rules with both, ${inRules}` }, () => {
            this.#showRules([item, other].map((each) => itemText(items.numbers[each]!)));
        });
        const value = lift === undefined ? inRules : `lift ${measureText(lift)}`;
        return h(
            "li",
            {},
            rules === 0 ? h("span", {}, name) : link,
            h("span", { class: "value", title }, value),
        );
    }
}

function known(count: number): number {
    return count === unknownCount ? -1 : count;
}
