import { positionOn, valueAt } from "../model/axis.ts";
import {
    densityOf,
    reachOfLifts,
    shadesOf,
    sidesOfChance,
    type ScatterValues,
    type SidesOfChance,
} from "../model/density.ts";
import { countText } from "../model/number_words.ts";
import { plainSentence, sentenceOf } from "../model/rule_words.ts";
import { rangeText } from "../model/search_terms.ts";
import { roundedShown, tickLabel, ticksFor } from "../model/shown_units.ts";
import type { Component, Context, Sight } from "./component.ts";
import { h, newId, refill, shortened } from "./dom.ts";
import { withRange } from "./ranges.ts";
import { drawCells, drawPoints, type Area } from "./scatter_drawing.ts";

const mostPoints = 20_000;
const margin = { left: 52, right: 14, top: 10, bottom: 24 };
const cellSize = 3;

/** A point in the plot: 0 to 1 from the left, and from the bottom. */
interface Place {
    readonly across: number;
    readonly up: number;
}

/** Rules by two quantities, coloured by lift; where there are many, by how many lie together. Dragging chooses. */
export class Scatter implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #canvas = h("canvas", { role: "img" });
    readonly #marks = h("div", { class: "marks", "aria-hidden": "true" });
    readonly #selection = h("div", { class: "selection", hidden: true });
    readonly #tip = h("div", { class: "tip", hidden: true });
    readonly #plot: HTMLElement;
    readonly #xChoice: HTMLSelectElement;
    readonly #yChoice: HTMLSelectElement;
    #shades: Float32Array | undefined;
    #sight: Sight | undefined;
    #dragFrom: Place | undefined;
    #isDue = false;
    #drawnWidth = 0;
    #drawnHeight = 0;

    constructor(context: Context) {
        this.#context = context;
        this.#plot = h("div", { class: "plot" }, this.#canvas, this.#marks, this.#selection, this.#tip);
        this.#xChoice = this.#choice("across", (xAxis) => ({ xAxis }));
        this.#yChoice = this.#choice("up", (yAxis) => ({ yAxis }));
        const controls = h(
            "div",
            { class: "controls" },
            h("label", {}, "up ", this.#yChoice),
            h("label", {}, "across ", this.#xChoice),
            legend(sidesOfChance(context.quantities.column("lift").low)),
        );
        this.root = h(
            "section",
            { class: "scatter", "aria-label": "Map of the rules" },
            controls,
            this.#plot,
        );
        this.#listen();
        new ResizeObserver(() => {
            const { clientWidth, clientHeight } = this.#plot;
            if (clientWidth !== this.#drawnWidth || clientHeight !== this.#drawnHeight) {
                this.#drawSoon();
            }
        }).observe(this.#plot);
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
            this.#drawSoon();
        });
    }

    update(now: Sight, before: Sight | undefined): void {
        this.#sight = now;
        this.#xChoice.value = now.state.xAxis;
        this.#yChoice.value = now.state.yAxis;
        if (
            now.passes !== before?.passes ||
            now.busy !== before.busy ||
            now.state.xAxis !== before.state.xAxis ||
            now.state.yAxis !== before.state.yAxis ||
            now.state.rule !== before.state.rule
        ) {
            this.#drawSoon();
        }
    }

    /** Draws once for all changes of a frame. */
    #drawSoon(): void {
        if (!this.#isDue) {
            this.#isDue = true;
            requestAnimationFrame(() => {
                this.#isDue = false;
                this.#draw();
            });
        }
    }

    #choice(name: string, changes: (quantity: string) => object): HTMLSelectElement {
        const options = this.#context.quantities.all.map((each) =>
            h("option", { value: each.name }, each.title),
        );
        const choice = h("select", { "aria-label": `Quantity ${name}` }, ...options);
        choice.addEventListener("change", () => {
            this.#context.change(changes(choice.value));
        });
        return choice;
    }

    #values(): ScatterValues | undefined {
        const state = this.#sight?.state;
        const { quantities, scales } = this.#context;
        if (state === undefined || quantities.isSlow(state.xAxis) || quantities.isSlow(state.yAxis)) {
            return undefined;
        }
        return {
            across: scales.positions(state.xAxis),
            up: scales.positions(state.yAxis),
            shades: (this.#shades ??= this.#shadesOfLifts()),
        };
    }

    #shadesOfLifts(): Float32Array {
        const lifts = this.#context.quantities.column("lift").low;
        return shadesOf(lifts, reachOfLifts(lifts));
    }

    #area(): Area {
        const { clientWidth, clientHeight } = this.#plot;
        return {
            left: margin.left,
            top: margin.top,
            width: Math.max(10, clientWidth - margin.left - margin.right),
            height: Math.max(10, clientHeight - margin.top - margin.bottom),
        };
    }

    #draw(): void {
        const values = this.#values();
        const sight = this.#sight;
        const drawing = this.#canvas.getContext("2d");
        if (values === undefined || sight === undefined || drawing === null || this.#plot.clientWidth === 0) {
            return;
        }
        const area = this.#area();
        const { clientWidth, clientHeight } = this.#plot;
        this.#drawnWidth = clientWidth;
        this.#drawnHeight = clientHeight;
        const pixels = devicePixelRatio;
        this.#canvas.width = clientWidth * pixels;
        this.#canvas.height = clientHeight * pixels;
        drawing.scale(pixels, pixels);
        const chosen = sight.state.rule === undefined ? undefined : placeOf(sight.state.rule, values);
        if (sight.rules.length <= mostPoints) {
            drawPoints(drawing, area, pointsOf(sight.rules, values), chosen);
        } else {
            const grid = [Math.ceil(area.width / cellSize), Math.ceil(area.height / cellSize)] as const;
            drawCells(drawing, area, densityOf(sight.passes, values, grid), chosen);
        }
        this.#label(sight, area);
    }

    #label({ state, rules }: Sight, area: Area): void {
        const { quantities, scales } = this.#context;
        const xAxis = scales.axis(state.xAxis);
        const yAxis = scales.axis(state.yAxis);
        const x = quantities.get(state.xAxis);
        const y = quantities.get(state.yAxis);
        const mark = (kind: string, text: string, left: number, top: number) => {
            const label = h("span", { class: kind }, text);
            label.style.left = `${left}px`;
            label.style.top = `${top}px`;
            return label;
        };
        refill(
            this.#marks,
            ...ticksFor(x, xAxis, area.width / 90).map((tick) =>
                mark(
                    "x",
                    tickLabel(x, tick),
                    area.left + positionOn(xAxis, tick) * area.width,
                    area.top + area.height,
                ),
            ),
            ...ticksFor(y, yAxis, area.height / 45).map((tick) =>
                mark(
                    "y",
                    tickLabel(y, tick),
                    area.left,
                    area.top + (1 - positionOn(yAxis, tick)) * area.height,
                ),
            ),
        );
        this.#canvas.setAttribute(
            "aria-label",
            `${countText(rules.length)} rules by ${x.title} and ${y.title}, coloured by lift`,
        );
    }

    #listen(): void {
        const plot = this.#plot;
        plot.addEventListener("pointerdown", (event) => {
            plot.setPointerCapture(event.pointerId);
            this.#dragFrom = this.#placeAt(event);
        });
        plot.addEventListener("pointermove", (event) => {
            this.#onMove(event);
        });
        plot.addEventListener("pointerup", (event) => {
            this.#onUp(event);
        });
        plot.addEventListener("pointerleave", () => {
            this.#tip.hidden = true;
        });
        plot.addEventListener("pointercancel", () => {
            this.#dragFrom = undefined;
            this.#selection.hidden = true;
        });
    }

    #placeAt(event: PointerEvent): Place {
        const box = this.#plot.getBoundingClientRect();
        const area = this.#area();
        const within = (part: number) => Math.min(1, Math.max(0, part));
        return {
            across: within((event.clientX - box.left - area.left) / area.width),
            up: within(1 - (event.clientY - box.top - area.top) / area.height),
        };
    }

    #onMove(event: PointerEvent): void {
        const place = this.#placeAt(event);
        if (this.#dragFrom === undefined) {
            this.#showTip(place, event);
            return;
        }
        const area = this.#area();
        const from = this.#dragFrom;
        const { style } = this.#selection;
        this.#tip.hidden = true;
        this.#selection.hidden = false;
        style.left = `${area.left + Math.min(from.across, place.across) * area.width}px`;
        style.width = `${Math.abs(from.across - place.across) * area.width}px`;
        style.top = `${area.top + (1 - Math.max(from.up, place.up)) * area.height}px`;
        style.height = `${Math.abs(from.up - place.up) * area.height}px`;
    }

    #onUp(event: PointerEvent): void {
        const from = this.#dragFrom;
        const to = this.#placeAt(event);
        this.#dragFrom = undefined;
        this.#selection.hidden = true;
        if (from === undefined) {
            return;
        }
        if (Math.abs(from.across - to.across) < 0.01 && Math.abs(from.up - to.up) < 0.02) {
            const rule = this.#nearest(to);
            if (rule !== undefined) {
                this.#context.change({ rule, node: undefined });
            }
            return;
        }
        this.#choose(from, to);
    }

    /** Asks for the rules in a rectangle; a side of it at an end of the axis stays open. */
    #choose(from: Place, to: Place): void {
        const { state } = this.#sight!;
        const { quantities } = this.#context;
        let { terms } = state;
        const add = (name: string, one: number, other: number) => {
            const quantity = quantities.get(name);
            const axis = this.#context.scales.axis(name);
            const end = (position: number, isOpen: boolean, round: (value: number) => number) => {
                const value = roundedShown(quantity, axis, valueAt(axis, position));
                return isOpen ? undefined : quantity.isCount ? round(value) : value;
            };
            const [low, high] = [Math.min(one, other), Math.max(one, other)];
            const text = rangeText(name, end(low, low === 0, Math.ceil), end(high, high === 1, Math.floor));
            terms = withRange(this.#context, terms, name, low === 0 && high === 1 ? undefined : text);
        };
        add(state.xAxis, from.across, to.across);
        add(state.yAxis, from.up, to.up);
        this.#context.change({ terms });
    }

    #showTip(place: Place, event: PointerEvent): void {
        const rule = this.#nearest(place);
        this.#tip.hidden = rule === undefined;
        if (rule === undefined) {
            return;
        }
        const { book, words } = this.#context;
        const sentence = sentenceOf(book, words, rule);
        refill(
            this.#tip,
            h("b", {}, shortened(plainSentence(sentence), 240)),
            h("span", {}, sentence.counts),
        );
        const box = this.#plot.getBoundingClientRect();
        const isLeft = event.clientX - box.left < box.width / 2;
        this.#tip.style.left = isLeft ? `${event.clientX - box.left + 14}px` : "auto";
        this.#tip.style.right = isLeft ? "auto" : `${box.right - event.clientX + 14}px`;
        this.#tip.style.top = `${Math.max(0, event.clientY - box.top - 20)}px`;
    }

    /** The rule next to a place, if one is near. */
    #nearest(place: Place): number | undefined {
        const values = this.#values();
        const { rules } = this.#sight!;
        const { width, height } = this.#area();
        let nearest: number | undefined;
        let least = 12 ** 2;
        if (values !== undefined && rules.length <= 10 * mostPoints) {
            for (const rule of rules) {
                const { across, up } = placeOf(rule, values);
                const distance = ((across - place.across) * width) ** 2 + ((up - place.up) * height) ** 2;
                if (distance < least) {
                    least = distance;
                    nearest = rule;
                }
            }
        }
        return nearest;
    }
}

function placeOf(rule: number, { across, up }: ScatterValues): Place {
    return { across: across[rule]!, up: up[rule]! };
}

function pointsOf(rules: Uint32Array, values: ScatterValues) {
    return Array.from(rules, (rule) => ({ ...placeOf(rule, values), shade: values.shades[rule]! })).filter(
        ({ across, up }) => !Number.isNaN(across + up),
    );
}

/** What the colours mean that occur: not all pages have rules with less than chance. */
function legend({ isBelow, isAbove }: SidesOfChance): HTMLElement {
    const id = newId("legend");
    const ends = { both: ["less", "more than chance"], above: ["chance", "more"], below: ["less", "chance"] };
    const present = isBelow && isAbove ? "both" : isAbove ? "above" : isBelow ? "below" : undefined;
    return h(
        "div",
        { class: "legend", "aria-labelledby": id, role: "group", hidden: present === undefined },
        h("span", { id }, "lift"),
        h("span", { class: "end" }, present && ends[present][0]),
        h("span", { class: `ramp ${present ?? ""}` }),
        h("span", { class: "end" }, present && ends[present][1]),
    );
}
