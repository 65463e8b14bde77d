import { roundedOn, tickText, ticksOf, type Axis } from "./axis.ts";
import { probabilityText } from "./number_words.ts";
import type { Quantity } from "./quantities.ts";

/** What is needed of a quantity to say and read its numbers. */
type Unit = Pick<Quantity, "isProbability" | "isCount">;

/** A number that people type or read as it is kept: of a probability, its decimal logarithm. */
export function keptOf({ isProbability }: Unit, shown: number): number {
    return isProbability ? Math.log10(Math.max(0, shown)) : shown;
}

/** The opposite of `keptOf`. */
export function shownOf({ isProbability }: Unit, kept: number): number {
    return isProbability ? Number((10 ** kept).toPrecision(12)) : kept;
}

/** A value as people read it, in so many digits that neighbours which can be told apart on the axis differ. */
export function roundedShown(unit: Unit, axis: Axis, kept: number): number {
    return unit.isProbability ? Number((10 ** kept).toPrecision(2)) : roundedOn(axis, kept);
}

/** Where labels of an axis stand, about so many: of counts at whole numbers, of probabilities at powers of ten. */
export function ticksFor({ isProbability, isCount }: Unit, axis: Axis, about: number): number[] {
    return ticksOf(axis, about).filter((tick) => !(isProbability || isCount) || Number.isInteger(tick));
}

/** The label of such a place. */
export function tickLabel({ isProbability }: Unit, tick: number): string {
    return !isProbability ? tickText(tick) : tick < -3 ? probabilityText(tick) : tickText(10 ** tick);
}
