import type { Component, Context, Sight } from "./component.ts";
import { h, refill } from "./dom.ts";
import { HistogramPanel } from "./histogram_panel.ts";
import { Switches } from "./switches.ts";

/** Filters that one sets by looking: histograms of the quantities in the table, and switches. */
export class FilterPanel implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #histograms = h("div", { class: "histograms" });
    readonly #panels = new Map<string, HistogramPanel>();
    readonly #switches: Switches;
    #shown: readonly HistogramPanel[] = [];

    constructor(context: Context) {
        this.#context = context;
        this.#switches = new Switches(context);
        const content = h("div", { class: "filters-content" }, this.#histograms, this.#switches.root);
        const isWide = matchMedia("(min-width: 701px)").matches;
        const summary = h("summary", {}, "Filters");
        this.root = h(
            "aside",
            { class: "filters", "aria-label": "Filters" },
            h("details", { open: isWide }, summary, content),
        );
    }

    update(now: Sight, before: Sight | undefined): void {
        const { state, passes, busy } = now;
        if (state.columns !== before?.state.columns || busy !== before.busy) {
            this.#choose(state.columns);
        }
        const isSame =
            passes === before?.passes && state.columns === before.state.columns && busy === before.busy;
        if (!isSame || state.terms !== before.state.terms) {
            const areAllShown = now.rules.length === passes.length;
            for (const panel of this.#shown) {
                panel.update(areAllShown ? undefined : passes, state.terms);
            }
        }
        this.#switches.update(now, before);
    }

    #choose(columns: readonly string[]): void {
        const { quantities, book } = this.#context;
        const names = [...new Set([...columns, "items"])].filter((name) => !quantities.isSlow(name));
        this.#shown = book.rules.count === 0 ? [] : names.map((name) => this.#panel(name));
        refill(this.#histograms, ...this.#shown.map((panel) => panel.root));
    }

    #panel(name: string): HistogramPanel {
        let panel = this.#panels.get(name);
        if (panel === undefined) {
            panel = new HistogramPanel(this.#context, this.#context.quantities.get(name));
            this.#panels.set(name, panel);
        }
        return panel;
    }
}
