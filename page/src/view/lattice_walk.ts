import { countText, percentText } from "../model/number_words.ts";
import type { Neighbour, Neighbourhood } from "../model/lattice.ts";
import type { Context } from "./component.ts";
import { button, h, refill, shortened, svg, unbroken } from "./dom.ts";

const mostNodes = 6;
const mostNames = 3;

/** A class with its neighbours, supersets above and subsets below. A click on a neighbour walks there. */
export class LatticeWalk {
    readonly root = h("div", { class: "lattice" });
    /** Where the walk begins: the class of the rule, to which a button leads back. */
    home: number | undefined;
    readonly #context: Context;
    readonly #lines = svg("svg", { class: "lines", "aria-hidden": "true" });
    #isFocusDue = false;

    constructor(context: Context) {
        this.#context = context;
        new ResizeObserver(() => {
            this.#drawLines();
        }).observe(this.root);
    }

    /** Shows a class. */
    show(position: number): void {
        const around = this.#context.lattice().around(position);
        const uppers = this.#layer("Classes with more items", around.uppers, around.moreUppers, "+");
        const lowers = this.#layer("Classes with fewer items", around.lowers, around.moreLowers, "−");
        refill(this.root, this.#lines, uppers, this.#centre(around), lowers);
        this.#drawLines();
        if (this.#isFocusDue) {
            this.#isFocusDue = false;
            this.root.querySelector<HTMLElement>(".centre")?.focus();
        }
    }

    #walk(position: number): void {
        this.#isFocusDue = true;
        this.#context.change({ node: position === this.home ? undefined : position });
    }

    #centre({ position, count, items, essentials }: Neighbourhood): HTMLElement {
        const { home } = this;
        const { book, words } = this.#context;
        const shortest = essentials.toSorted((one, other) => one.length - other.length)[0] ?? items;
        return h(
            "div",
            { class: "centre", tabindex: -1 },
            h("b", {}, shortened(words.textOf({ items, isNegated: false }, 12), 300)),
            h(
                "span",
                {},
                `One of these ${countText(items.length)} items is in ${countText(count)} transactions ` +
                    unbroken(`(${percentText(count / book.transactions)}).`),
            ),
            shortest.length < items.length
                ? h(
                      "span",
                      {},
                      "The same transactions hold: " +
                          shortened(words.textOf({ items: shortest, isNegated: false }, 8), 160),
                  )
                : undefined,
            home === undefined || position === home
                ? undefined
                : button("Back to the class of the rule", { class: "link" }, () => {
                      this.#walk(home);
                  }),
        );
    }

    #layer(label: string, neighbours: readonly Neighbour[], left: number, sign: string): HTMLElement {
        const shown = neighbours.slice(0, mostNodes);
        const hidden = neighbours.slice(mostNodes);
        const list = h("ul", { "aria-label": label }, ...shown.map((each) => this.#node(each, sign)));
        if (hidden.length > 0) {
            const more = h("li", {});
            const show = button(`${countText(hidden.length)} more`, { class: "link" }, () => {
                more.replaceWith(...hidden.map((each) => this.#node(each, sign)));
                this.#drawLines();
            });
            refill(more, show);
            list.append(more);
        }
        if (left > 0) {
            list.append(h("li", { class: "quiet" }, `${countText(left)} not on this page`));
        }
        if (neighbours.length === 0 && left === 0) {
            list.append(h("li", { class: "quiet" }, sign === "+" ? "no larger class" : "no smaller class"));
        }
        return list;
    }

    #node({ position, count, difference }: Neighbour, sign: string): HTMLElement {
        const { names } = this.#context.book.items;
        const named = difference.slice(0, mostNames).map((item) => shortened(names[item]!, 40));
        const more = difference.length - named.length;
        const text = `${sign} ${named.join(", ")}${more > 0 ? ` and ${countText(more)} more` : ""}`;
        const content = h("span", {}, h("span", {}, text), h("small", {}, countText(count)));
        return h(
            "li",
            {},
            button(content, { class: "node" }, () => {
                this.#walk(position);
            }),
        );
    }

    #drawLines(): void {
        const box = this.root.getBoundingClientRect();
        const centre = this.root.querySelector(".centre")?.getBoundingClientRect();
        if (centre === undefined) {
            return;
        }
        const lines = [...this.root.querySelectorAll(".node")].map((node) => {
            const { left, width, top, bottom } = node.getBoundingClientRect();
            const isAbove = bottom <= centre.top;
            return svg("line", {
                x1: left + width / 2 - box.left,
                y1: (isAbove ? bottom : top) - box.top,
                x2: centre.left + centre.width / 2 - box.left,
                y2: (isAbove ? centre.top : centre.bottom) - box.top,
            });
        });
        refill(this.#lines, ...lines);
    }
}
