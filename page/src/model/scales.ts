import { axisOf, positionsOn, type Axis } from "./axis.ts";
import type { Quantities } from "./quantities.ts";

/** The logarithm of the smallest probability that a range can tell from others: smaller ones are no numbers. */
const least = -300;

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
        const { isWide, isProbability } = this.#quantities.get(name);
        return kept(this.#axes, name, () => {
            const axis = axisOf(this.#quantities.column(name), isWide);
            return isProbability
                ? { ...axis, from: Math.max(axis.from, least), to: Math.min(axis.to, 0) }
                : axis;
        });
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
