import type { Axis } from "../model/axis.ts";
import { positionOn } from "../model/axis.ts";
import { boundsText, countText } from "../model/number_words.ts";
import type { Quantity } from "../model/quantities.ts";
import { plainSentence, sentenceOf } from "../model/rule_words.ts";
import { otherReading } from "../model/readings.ts";
import type { ViewState } from "../model/view_state.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h, refill, setAttributes, shortened } from "./dom.ts";
import { RowWindow } from "./row_window.ts";

/** A table that is narrower, in pixels, has a card for each rule in the place of a row. */
const leastWidth = 640;
const mostLetters = 300;
const spareRows = 4;

/** The table of rules. Only the rows in sight exist; they are used again as one scrolls. */
export class RuleTable implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #head = h("div", { class: "head", role: "row", "aria-rowindex": 1 });
    readonly #body = h("div", { class: "body", role: "rowgroup" });
    readonly #spacer = h("div", { class: "spacer", role: "presentation" }, this.#body);
    readonly #grid: HTMLElement;
    readonly #nothing = h("div", { class: "nothing", hidden: true });
    readonly #window = new RowWindow();
    readonly #axes = new Map<string, Axis>();
    #rows: HTMLElement[] = [];
    #laidOutFor = "";
    #sight: Sight | undefined;
    #active = 0;
    #isNarrow = false;

    constructor(context: Context, nothing: HTMLElement) {
        this.#context = context;
        refill(this.#nothing, nothing);
        this.#grid = h(
            "div",
            {
                class: "grid",
                role: "grid",
                tabindex: 0,
                "aria-label": "Rules",
                "aria-keyshortcuts": "ArrowUp ArrowDown Enter",
            },
            h("div", { class: "heads", role: "rowgroup" }, this.#head),
            this.#spacer,
        );
        this.root = h("div", { class: "rule-table" }, this.#grid, this.#nothing);
        const lettersOfIds = countText(context.book.rules.count).length;
        this.root.style.setProperty("--letters-of-ids", String(lettersOfIds));
        this.#grid.addEventListener("scroll", () => {
            this.#window.scrollTo(this.#grid.scrollTop);
            this.#fill();
        });
        this.#grid.addEventListener("keydown", (event) => {
            this.#onKey(event);
        });
        this.#body.addEventListener("click", (event) => {
            this.#onClick(event);
        });
        new ResizeObserver(() => {
            if (this.#sizes !== this.#laidOutFor) {
                this.#layOut();
            }
        }).observe(this.#grid);
    }

    update(now: Sight, before: Sight | undefined): void {
        const columnsChanged = now.state.columns !== before?.state.columns;
        this.#sight = now;
        if (columnsChanged || now.state.sorting !== before.state.sorting) {
            this.#fillHead(now.state);
        }
        if (before === undefined || now.rules !== before.rules || columnsChanged) {
            this.#active = Math.max(0, now.state.rule === undefined ? 0 : now.rules.indexOf(now.state.rule));
            this.#window.scrollTo(0);
            if (before !== undefined) {
                this.#grid.scrollTop = 0; // which would have a new page laid out twice
            }
            this.#layOut();
            if (before === undefined && this.#active > 0) {
                this.#show(this.#active);
            }
        } else if (now.state.rule !== before.state.rule) {
            this.#follow(now);
        }
        const isBusy = now.busy !== "";
        setAttributes(this.#grid, { "aria-rowcount": now.rules.length + 1, "aria-busy": isBusy });
        this.#grid.hidden = now.rules.length === 0;
        this.#nothing.hidden = now.rules.length !== 0;
    }

    /** Moves the focus into the table. */
    focus(): void {
        this.#grid.focus();
    }

    /** Looks at the rule so many rows further; at the active one where no rule of the table is looked at yet. */
    step(by: number): void {
        const { rules, state } = this.#sight!;
        if (rules.length === 0) {
            return;
        }
        if (rules[this.#active] === state.rule) {
            this.#activate(this.#active + by);
        } else {
            this.#show(this.#active);
            this.#open();
        }
    }

    #follow({ state, rules }: Sight): void {
        const position = state.rule === undefined ? -1 : rules.indexOf(state.rule);
        if (position >= 0 && position !== this.#active) {
            this.#active = position;
            this.#show(position);
        } else {
            this.#fill(true);
        }
    }

    #layOut(): void {
        const count = this.#sight?.rules.length ?? 0;
        this.#isNarrow = this.root.clientWidth < leastWidth;
        this.root.classList.toggle("is-narrow", this.#isNarrow);
        this.#laidOutFor = this.#sizes;
        const rowHeight = this.#rowHeight;
        const headHeight = this.#head.offsetHeight;
        const viewHeight = Math.max(rowHeight, this.#grid.clientHeight - headHeight);
        this.#window.resize(count, rowHeight, viewHeight);
        this.root.style.setProperty("--row-height", `${rowHeight}px`);
        this.#spacer.style.height = `${this.#window.height}px`;
        this.#body.style.height = `${Math.min(viewHeight, this.#window.height)}px`;
        this.#body.style.top = `${headHeight}px`;
        this.#fill(true);
    }

    /** What the layout follows from, as text. */
    get #sizes(): string {
        const isNarrow = this.root.clientWidth < leastWidth;
        return [isNarrow, this.#grid.clientHeight, this.#head.offsetHeight].join();
    }

    #fillHead({ columns, sorting }: ViewState): void {
        const heads = [
            { by: "", title: "#", label: "as ranked by the program" },
            { by: "premise", title: "If", label: "premise" },
            { by: "conclusion", title: "then", label: "conclusion" },
            ...columns.map((name) => {
                const { title, explanation } = this.#context.quantities.get(name);
                return { by: name, title, label: explanation };
            }),
        ];
        const cells = heads.map(({ by, title, label }, position) => {
            const isSorted = by === (sorting?.by ?? "");
            const direction = sorting !== undefined && !sorting.isAscending ? "descending" : "ascending";
            const isNumber = position > 2;
            const onClick = () => {
                this.#sortBy(by, isNumber);
            };
            return h(
                "div",
                {
                    role: "columnheader",
                    class: isNumber ? "number" : "side",
                    "aria-sort": isSorted ? direction : undefined,
                    "aria-colindex": position + 1,
                },
                button(title, { title: `Sort: ${label}`, tabindex: 0 }, onClick),
            );
        });
        refill(this.#head, ...cells);
        this.root.style.setProperty("--numbers", String(columns.length));
        setAttributes(this.#grid, { "aria-colcount": heads.length });
        refill(this.#body);
        this.#rows = [];
    }

    /** Numbers begin with the largest, probabilities with the smallest, sides with the first; again turns it round. */
    #sortBy(by: string, isNumber: boolean): void {
        const sorting = this.#sight?.state.sorting;
        const isSmallFirst = !isNumber || this.#context.quantities.get(by).isProbability;
        const isAscending = sorting?.by === by ? !sorting.isAscending : isSmallFirst;
        this.#context.change({ sorting: by === "" ? undefined : { by, isAscending } });
    }

    /** Puts the rules in sight into rows; a row that has its rule already stays as it is. */
    #fill(isAnew = false): void {
        const sight = this.#sight;
        if (sight === undefined) {
            return;
        }
        const [begin, end] = this.#window.range;
        const needed = Math.min(sight.rules.length, this.#window.page + 2 + spareRows);
        this.#provideRows(needed, sight.state);
        this.#rows.forEach((row, slot) => {
            const offset = (((slot - begin) % this.#rows.length) + this.#rows.length) % this.#rows.length;
            const position = begin + offset;
            row.hidden = position >= end;
            if (!row.hidden) {
                this.#place(row, position, sight, isAnew);
            }
        });
        setAttributes(this.#grid, { "aria-activedescendant": this.#rowAt(this.#active)?.id });
    }

    #provideRows(count: number, { columns }: ViewState): void {
        if (this.#rows.length === count) {
            return;
        }
        this.#rows = Array.from({ length: count }, (_, slot) => emptyRow(slot, columns.length));
        refill(this.#body, ...this.#rows);
    }

    #place(row: HTMLElement, position: number, sight: Sight, isAnew: boolean): void {
        const { rules, state } = sight;
        const rule = rules[position]!;
        const y = position * this.#rowHeight - this.#window.top;
        row.style.transform = `translateY(${y}px)`;
        setAttributes(row, {
            "aria-selected": rule === state.rule ? "true" : "false",
            "data-active": position === this.#active,
        });
        if (isAnew || row.dataset["position"] !== String(position)) {
            row.dataset["position"] = String(position);
            setAttributes(row, { "aria-rowindex": position + 2 });
            this.#write(row, rule, sight);
        }
    }

    get #rowHeight(): number {
        return this.#isNarrow ? 92 : 42;
    }

    #write(row: HTMLElement, rule: number, { state: { columns, byReadings }, found }: Sight): void {
        const { book, words } = this.#context;
        const [id, premise, conclusion, ...numbers] = [...row.children] as HTMLElement[];
        id!.textContent = countText(rule + 1);
        this.#writeSide(premise!, words.text(book.rules.premises[rule]!));
        if (byReadings && otherReading(found.masks[rule]!) !== undefined) {
            premise!.prepend(markOfReading());
        }
        this.#writeSide(conclusion!, words.text(book.rules.conclusions[rule]!));
        columns.forEach((name, i) => {
            this.#writeNumber(numbers[i]!, this.#context.quantities.get(name), rule);
        });
    }

    #writeSide(cell: HTMLElement, text: string): void {
        cell.textContent = shortened(text, mostLetters);
        cell.title = shortened(text, 4 * mostLetters);
    }

    /** A number with a bar; of one that is not known exactly, the bar goes on in a paler band. */
    #writeNumber(cell: HTMLElement, quantity: Quantity, rule: number): void {
        const { quantities } = this.#context;
        const bounds = quantities.bounds(quantity.name, rule);
        const [text, bar] = [...cell.children] as [HTMLElement, HTMLElement];
        const said = boundsText(bounds, quantity.say);
        text.textContent = said.replace(" to ", "–\u200b");
        cell.classList.toggle("range", said.includes(" to "));
        cell.dataset["label"] = quantity.title;
        const axis = this.#axisOf(quantity);
        const at = (value: number) =>
            axis === undefined ? "0%" : `${(100 * (positionOn(axis, value) || 0)).toFixed(1)}%`;
        bar.style.setProperty("--low", at(bounds.low));
        bar.style.setProperty("--high", at(bounds.high));
    }

    /** Nothing as long as the values of all rules are not there, and for probabilities, which no length stands for. */
    #axisOf(quantity: Quantity): Axis | undefined {
        if (quantity.isProbability) {
            return undefined;
        }
        let axis = this.#axes.get(quantity.name);
        if (axis === undefined && !this.#context.quantities.isSlow(quantity.name)) {
            axis = fromZero(this.#context.scales.axis(quantity.name));
            this.#axes.set(quantity.name, axis);
        }
        return axis;
    }

    #rowAt(position: number): HTMLElement | undefined {
        return this.#rows.find((row) => !row.hidden && row.dataset["position"] === String(position));
    }

    #show(position: number): void {
        this.#grid.scrollTop = this.#window.show(position);
        this.#fill(true);
    }

    #activate(position: number): void {
        const last = (this.#sight?.rules.length ?? 0) - 1;
        this.#active = Math.max(0, Math.min(last, position));
        this.#show(this.#active);
        const rule = this.#sight?.rules[this.#active];
        if (rule !== undefined && this.#sight?.state.rule !== undefined) {
            this.#context.follow({ rule, node: undefined });
        } else {
            this.#tell();
        }
    }

    /** Says the active rule to those who hear the page. */
    #tell(): void {
        const rule = this.#sight?.rules[this.#active];
        if (rule !== undefined) {
            const { book, words, say } = this.#context;
            say(plainSentence(sentenceOf(book, words, rule)));
        }
    }

    #open(): void {
        const rule = this.#sight?.rules[this.#active];
        if (rule !== undefined) {
            this.#context.change({ rule, node: undefined });
        }
    }

    #onClick(event: Event): void {
        const row = event.target instanceof Element ? event.target.closest<HTMLElement>("[role=row]") : null;
        if (row !== null) {
            this.#active = Number(row.dataset["position"]);
            this.#open();
        }
    }

    #onKey(event: KeyboardEvent): void {
        const page = this.#window.page;
        const last = (this.#sight?.rules.length ?? 0) - 1;
        const places: Record<string, number> = {
            ArrowDown: this.#active + 1,
            ArrowUp: this.#active - 1,
            PageDown: this.#active + page,
            PageUp: this.#active - page,
            Home: 0,
            End: last,
        };
        const place = places[event.key];
        const isPlain = !event.altKey && !event.ctrlKey && !event.metaKey;
        if (place !== undefined && isPlain) {
            event.preventDefault();
            this.#activate(place);
        } else if (event.key === "Enter" && event.target === this.#grid) {
            event.preventDefault();
            this.#open();
        }
    }
}

/** Says that a filter found a rule by another reading than the one in its row. */
function markOfReading(): HTMLElement {
    const words = "Found by another reading: turned round, or with both sides denied";
    return h("span", { class: "by-reading", role: "img", "aria-label": words, title: words }, "⇄");
}

function emptyRow(slot: number, numbers: number): HTMLElement {
    const cell = (name: string, position: number, ...children: readonly HTMLElement[]) =>
        h("div", { class: name, role: "gridcell", "aria-colindex": position + 1 }, ...children);
    return h(
        "div",
        { class: "row", role: "row", id: `row-${slot}` },
        cell("id", 0),
        cell("side premise", 1),
        cell("side conclusion", 2),
        ...Array.from({ length: numbers }, (_, i) =>
            cell("number", 3 + i, h("span"), h("i", { class: "bar" })),
        ),
    );
}

/** Bars begin at 0, so that one that is twice as long stands for twice as much. */
function fromZero(axis: Axis): Axis {
    return axis.isLogarithmic ? axis : { ...axis, from: Math.min(0, axis.from) };
}
