import { valueAt, positionOn, type Axis } from "../model/axis.ts";
import type { Passes } from "../model/filter.ts";
import { binsOf, countsOfBins, numberOfBins } from "../model/histogram.ts";
import { plainText } from "../model/number_words.ts";
import type { Quantity } from "../model/quantities.ts";
import { rangeText } from "../model/search_terms.ts";
import { roundedShown, shownOf, tickLabel, ticksFor } from "../model/shown_units.ts";
import { typedNumber, type TypedNumber } from "../model/typed_number.ts";
import type { Context } from "./component.ts";
import { h, newId, refill, setAttributes, svg } from "./dom.ts";
import { rangeOn, withRange } from "./ranges.ts";

const height = 48;

/** How the values of a quantity are spread: of all rules, and of those that are shown. Dragging chooses a range. */
export class HistogramPanel {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #quantity: Quantity;
    readonly #axis: Axis;
    /** In which bin each rule is. */
    readonly #bins: Uint8Array;
    readonly #all: Uint32Array;
    readonly #allBars = svg("path", { class: "all" });
    readonly #shownBars = svg("path", { class: "shown" });
    readonly #brush = svg("rect", { class: "brush", y: 0, height });
    readonly #plot: SVGSVGElement;
    readonly #from = numberField("from");
    readonly #to = numberField("to");
    readonly #problem = h("p", { class: "problem-of-field", role: "alert", id: newId("problem") });
    #terms: readonly string[] = [];
    #dragFrom: number | undefined;

    constructor(context: Context, quantity: Quantity) {
        this.#context = context;
        this.#quantity = quantity;
        this.#axis = context.scales.axis(quantity.name);
        this.#bins = binsOf(context.scales.positions(quantity.name));
        this.#all = countsOfBins(this.#bins, context.filter.all.passes);
        this.#plot = this.#makePlot();
        const title = h("h2", { id: newId("histogram"), title: quantity.explanation }, quantity.title);
        const fields = h("div", { class: "fields" }, this.#from, "–", this.#to);
        this.root = h(
            "section",
            {
                class: quantity.isProbability ? "histogram wide-fields" : "histogram",
                "aria-labelledby": title.id,
            },
            title,
            fields,
            this.#problem,
            this.#plot,
            this.#scale(),
        );
        for (const field of [this.#from, this.#to]) {
            setAttributes(field, {
                "aria-label": `${quantity.title} ${field === this.#from ? "from" : "to"}`,
                "aria-describedby": this.#problem.id,
            });
            field.addEventListener("change", () => {
                this.#read();
            });
        }
        this.#allBars.setAttribute("d", this.#bars(this.#all));
    }

    /** Shows the rules that pass (nothing said: all do), and the range that the terms ask for. */
    update(passes: Passes | undefined, terms: readonly string[]): void {
        const shown = passes === undefined ? this.#all : countsOfBins(this.#bins, passes);
        this.#shownBars.setAttribute("d", this.#bars(shown));
        this.#terms = terms;
        this.#showRange();
    }

    #makePlot(): SVGSVGElement {
        const plot = svg(
            "svg",
            {
                viewBox: `0 0 ${numberOfBins} ${height}`,
                preserveAspectRatio: "none",
                "aria-hidden": "true",
            },
            this.#allBars,
            this.#shownBars,
            this.#brush,
        );
        plot.addEventListener("pointerdown", (event) => {
            plot.setPointerCapture(event.pointerId);
            this.#dragFrom = this.#positionOf(event);
        });
        plot.addEventListener("pointermove", (event) => {
            if (this.#dragFrom !== undefined) {
                this.#drag(this.#dragFrom, this.#positionOf(event));
            }
        });
        const end = () => {
            this.#dragFrom = undefined;
        };
        plot.addEventListener("pointerup", (event) => {
            if (this.#dragFrom !== undefined && Math.abs(this.#dragFrom - this.#positionOf(event)) < 0.01) {
                this.#choose(undefined, undefined);
            }
            end();
        });
        plot.addEventListener("pointercancel", end);
        return plot;
    }

    #positionOf(event: PointerEvent): number {
        const { left, width } = this.#plot.getBoundingClientRect();
        return Math.min(1, Math.max(0, (event.clientX - left) / width));
    }

    #drag(one: number, other: number): void {
        if (Math.abs(one - other) >= 0.01) {
            // Whole bars are chosen, and an end of the axis leaves the range open.
            const begin = Math.floor(Math.min(one, other) * numberOfBins) / numberOfBins;
            const end = Math.ceil(Math.max(one, other) * numberOfBins) / numberOfBins;
            this.#choose(
                begin === 0 ? undefined : this.#roundedAt(begin),
                end === 1 ? undefined : this.#roundedAt(end),
            );
        }
    }

    #roundedAt(position: number): number {
        return roundedShown(this.#quantity, this.#axis, valueAt(this.#axis, position));
    }

    #choose(from: number | undefined, to: number | undefined): void {
        const { name, isCount } = this.#quantity;
        const whole = (value: number | undefined, round: (value: number) => number) =>
            value === undefined || !isCount ? value : round(value);
        const isOpen = from === undefined && to === undefined;
        const text = isOpen ? undefined : rangeText(name, whole(from, Math.ceil), whole(to, Math.floor));
        this.#context.change({ terms: withRange(this.#context, this.#terms, name, text) });
    }

    /** Chooses the range that is typed, or says what is expected. */
    #read(): void {
        const whole = this.#quantity.isCount ? this.#context.book.transactions : 1;
        const [from, to] = [this.#from, this.#to].map((field) => {
            const typed = typedNumber(field.value, whole, this.#quantity.most);
            setAttributes(field, { "aria-invalid": typed.kind === "problem" ? "true" : undefined });
            return typed;
        }) as [TypedNumber, TypedNumber];
        const problems = [from, to].flatMap((typed) => (typed.kind === "problem" ? [typed.problem] : []));
        this.#problem.textContent = problems.join("; ");
        if (problems.length === 0) {
            this.#choose(valueOf(from), valueOf(to));
        }
    }

    #showRange(): void {
        const range = rangeOn(this.#context, this.#terms, this.#quantity.name);
        const from = range?.from;
        const to = range?.to;
        const begin = from === undefined ? 0 : positionOn(this.#axis, from);
        const end = to === undefined ? 1 : positionOn(this.#axis, to);
        setAttributes(this.#brush, {
            x: begin * numberOfBins,
            width: Math.max(0.4, (end - begin) * numberOfBins),
            visibility: range === undefined ? "hidden" : "visible",
        });
        const shown = (end: number | undefined) =>
            end === undefined ? undefined : shownOf(this.#quantity, end);
        setField(this.#from, shown(from));
        setField(this.#to, shown(to));
    }

    /** The height of a bar is the root of its count, so that rare values are seen. */
    #bars(counts: Uint32Array): string {
        const most = Math.sqrt(this.#all.reduce((one, other) => Math.max(one, other), 1));
        let path = "";
        counts.forEach((count, bin) => {
            if (count > 0) {
                const size = Math.max(1.5, (Math.sqrt(count) / most) * height);
                path += `M${bin + 0.08} ${height}v${-size}h0.84v${size}z`;
            }
        });
        return path;
    }

    #scale(): HTMLElement {
        const axis = this.#axis;
        const labels = ticksFor(this.#quantity, axis, 4).map((tick) => {
            const label = h("span", {}, tickLabel(this.#quantity, tick));
            label.style.left = `${100 * positionOn(axis, tick)}%`;
            return label;
        });
        const scale = h("div", { class: "scale", "aria-hidden": "true" });
        refill(scale, ...labels, axis.hasInfinite ? h("span", { class: "infinite" }, "∞") : undefined);
        return scale;
    }
}

function numberField(placeholder: string): HTMLInputElement {
    return h("input", { type: "text", inputmode: "decimal", placeholder, size: 6 });
}

function valueOf(typed: TypedNumber): number | undefined {
    return typed.kind === "number" ? typed.value : undefined;
}

function setField(field: HTMLInputElement, value: number | undefined): void {
    if (document.activeElement !== field) {
        field.value = value === undefined ? "" : plainText(value);
    }
}
