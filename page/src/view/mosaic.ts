import type { Table } from "../model/table.ts";
import { cellsOf } from "../model/table.ts";
import { h, svg } from "./dom.ts";
import { boundsText, countText } from "../model/number_words.ts";

const width = 100;
const height = 56;
const gap = 0.8;

/**
 * The four counts of a rule as a picture: a column for the transactions that meet the premise and one for the others,
 * as wide as there are many; in each, what meets the conclusion stands at the bottom. A dashed line shows how high it
 * would stand by chance. What is not known lies within hatched bands.
 */
export function mosaicOf(first: Table, second: Table): HTMLElement {
    const edge = bandOf(first.x / first.n, second.x / second.n);
    const left = bandOf(share(first.a, first.x), share(second.a, second.x));
    const right = bandOf(shareOfOthers(first), shareOfOthers(second));
    const chance = bandOf(first.y / first.n, second.y / second.n);
    const middle = edge.low * width;
    const picture = svg(
        "svg",
        {
            class: "mosaic",
            viewBox: `0 0 ${width} ${height}`,
            preserveAspectRatio: "none",
            "aria-hidden": "true",
        },
        hatching(),
        ...column(0, middle - gap / 2, left, "met"),
        ...column(edge.high * width + gap / 2, width, right, "unmet"),
        band(middle, 0, (edge.high - edge.low) * width, height),
        ...[chance.low, chance.high].map((part) => line(part)),
    );
    return h("div", { class: "mosaic-box" }, picture, countTable(first, second));
}

interface Band {
    readonly low: number;
    readonly high: number;
}

function bandOf(one: number, other: number): Band {
    return { low: Math.min(one, other), high: Math.max(one, other) };
}

function share(part: number, whole: number): number {
    return whole === 0 ? 0 : part / whole;
}

/** How many of the transactions that do not meet the premise meet the conclusion. */
function shareOfOthers({ x, y, a, n }: Table): number {
    return share(y - a, n - x);
}

function column(from: number, to: number, { low, high }: Band, name: string): SVGElement[] {
    const size = Math.max(0, to - from);
    const rest = height * (1 - high);
    return [
        svg("rect", {
            class: `${name} without`,
            x: from,
            y: 0,
            width: size,
            height: Math.max(0, rest - gap / 2),
        }),
        svg("rect", {
            class: `${name} with`,
            x: from,
            y: height * (1 - low),
            width: size,
            height: height * low,
        }),
        band(from, rest, size, height * (high - low)),
    ];
}

function band(x: number, y: number, bandWidth: number, bandHeight: number): SVGElement {
    const isVisible = bandWidth > 0 && bandHeight > 0;
    return svg("rect", {
        class: "open",
        x,
        y,
        width: isVisible ? bandWidth : 0,
        height: isVisible ? bandHeight : 0,
        fill: "url(#hatching)",
    });
}

function line(part: number): SVGElement {
    const y = height * (1 - part);
    return svg("line", { class: "chance", x1: 0, x2: width, y1: y, y2: y });
}

function hatching(): SVGElement {
    const stripes = svg("path", { class: "stripes", d: "M0 4L4 0M-1 1L1 -1M3 5L5 3" });
    const pattern = svg(
        "pattern",
        { id: "hatching", width: 4, height: 4, patternUnits: "userSpaceOnUse" },
        stripes,
    );
    return svg("defs", {}, pattern);
}

/** The counts as a table, for who reads rather than looks. */
function countTable(first: Table, second: Table): HTMLElement {
    const [one, other] = [cellsOf(first), cellsOf(second)];
    const cell = (name: keyof typeof one, kind: string) =>
        h("td", { class: kind }, boundsText(bandOf(one[name], other[name]), countText));
    const head = (text: string, scope: string) => h("th", { scope }, text);
    return h(
        "table",
        { class: "counts" },
        h("caption", {}, "Transactions; dashed: how high the coloured parts would stand by chance"),
        h("thead", {}, h("tr", {}, h("td"), head("premise met", "col"), head("not met", "col"))),
        h(
            "tbody",
            {},
            h(
                "tr",
                {},
                head("conclusion fails", "row"),
                cell("onlyPremise", "met without"),
                cell("neither", "unmet without"),
            ),
            h(
                "tr",
                {},
                head("conclusion holds", "row"),
                cell("both", "met with"),
                cell("onlyConclusion", "unmet with"),
            ),
        ),
    );
}
