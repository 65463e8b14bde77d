import { axisOf, positionsOn, type Axis } from "./axis.ts";
import type { Quantities } from "./quantities.ts";

/** The axis of each quantity, and where each rule stands on it; made when first asked for. */
export class Scales {
    readonly #quantities: Quantities;
    readonly #axes = new Map<string, Axis>();
    readonly #positions = new Map<string, Float32Array>();

    constructor(quantities: Quantities) {
        this.#quantities = quantities;
    }

    /** The axis of all values of a quantity. O(rules) the first time. */
    axis(name: string): Axis {
        return kept(this.#axes, name, () =>
            axisOf(this.#quantities.column(name), this.#quantities.get(name).isWide),
        );
    }

    /** Where each rule stands on the axis, by the lower end of what is known; NaN for nowhere. */
    positions(name: string): Float32Array {
        return kept(this.#positions, name, () => {
            return positionsOn(this.axis(name), this.#quantities.column(name).low);
        });
    }
}

function kept<Value>(values: Map<string, Value>, name: string, make: () => Value): Value {
    let value = values.get(name);
    if (value === undefined) {
        value = make();
        values.set(name, value);
    }
    return value;
}
