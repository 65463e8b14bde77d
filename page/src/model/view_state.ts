import { kinds, type Kind } from "./rules.ts";

export type View = "rules" | "items" | "exclusions";

export const views: readonly View[] = ["rules", "items", "exclusions"];

/** By what rules are ordered: a quantity, or a side ("premise", "conclusion"). */
export interface Sorting {
    readonly by: string;
    readonly isAscending: boolean;
}

/** Everything that decides on what one sees. The fragment of the page's address has all of it. */
export interface ViewState {
    readonly view: View;
    /** The terms of the search, as text. */
    readonly terms: readonly string[];
    /** What is being typed; it counts as terms, too. */
    readonly draft: string;
    readonly formsOff: readonly string[];
    readonly kindsOff: readonly Kind[];
    /** Whether items may be named by another reading of a rule. */
    readonly byReadings: boolean;
    /** Nothing: as the program ranked the rules. */
    readonly sorting: Sorting | undefined;
    /** The quantities in the table. */
    readonly columns: readonly string[];
    readonly xAxis: string;
    readonly yAxis: string;
    /** The rule that is looked at, by its position. */
    readonly rule: number | undefined;
    /** Where the walk in the lattice is; nothing: at the class of the rule. */
    readonly node: number | undefined;
    /** The item whose partners are shown. */
    readonly item: number | undefined;
}

/** What one sees at first. `measures`: those that the program shows as columns. */
export function firstState(measures: readonly string[]): ViewState {
    return {
        view: "rules",
        terms: [],
        draft: "",
        formsOff: [],
        kindsOff: [],
        byReadings: false,
        sorting: undefined,
        columns: ["support", ...measures],
        xAxis: "support",
        yAxis: "confidence",
        rule: undefined,
        node: undefined,
        item: undefined,
    };
}

/** The state as a fragment, without "#"; only what differs from the first state, so it is empty for that. */
export function fragmentOf(state: ViewState, first: ViewState): string {
    const fragment = new URLSearchParams();
    const add = (key: string, value: string, usual: string) => {
        if (value !== usual) {
            fragment.append(key, value);
        }
    };
    add("view", state.view, first.view);
    state.terms.forEach((term) => {
        fragment.append("q", term);
    });
    add("typed", state.draft, "");
    add("without", [...state.formsOff, ...state.kindsOff].join(), "");
    add("readings", state.byReadings ? "all" : "", "");
    add("sort", sortingText(state.sorting), "");
    add("columns", state.columns.join(), first.columns.join());
    add("x", state.xAxis, first.xAxis);
    add("y", state.yAxis, first.yAxis);
    add("rule", numberText(state.rule), "");
    add("class", numberText(state.node), "");
    add("item", numberText(state.item), "");
    return fragment.toString();
}

/** What of a book a fragment can speak of. */
export interface Known {
    readonly quantities: readonly string[];
    readonly forms: readonly string[];
    readonly rules: number;
    readonly classes: number;
    readonly items: number;
}

/** The state that a fragment tells of. What makes no sense in it is passed over. */
export function stateOf(fragment: string, first: ViewState, known: Known): ViewState {
    const told = new URLSearchParams(fragment.replace(/^#/u, ""));
    const without = (told.get("without") ?? "").split(",");
    const columns = told.get("columns")?.split(",");
    const isQuantity = (name: string) => known.quantities.includes(name);
    const quantity = (key: string, usual: string) => {
        const name = told.get(key) ?? usual;
        return isQuantity(name) ? name : usual;
    };
    return {
        view: views.find((view) => view === told.get("view")) ?? first.view,
        terms: told.getAll("q").filter((term) => term !== ""),
        draft: told.get("typed") ?? "",
        formsOff: known.forms.filter((form) => without.includes(form)),
        kindsOff: kinds.filter((kind) => without.includes(kind)),
        byReadings: told.get("readings") === "all",
        sorting: sortingOf(told.get("sort") ?? "", [...known.quantities, "premise", "conclusion"]),
        columns: columns === undefined ? first.columns : [...new Set(columns)].filter(isQuantity),
        xAxis: quantity("x", first.xAxis),
        yAxis: quantity("y", first.yAxis),
        rule: positionOf(told.get("rule"), known.rules),
        node: positionOf(told.get("class"), known.classes),
        item: positionOf(told.get("item"), known.items),
    };
}

/** "lift" for descending, "+lift" for ascending order, as the program's own option says it. */
function sortingText(sorting: Sorting | undefined): string {
    return sorting === undefined ? "" : `${sorting.isAscending ? "+" : ""}${sorting.by}`;
}

function sortingOf(text: string, names: readonly string[]): Sorting | undefined {
    const isAscending = text.startsWith("+");
    const by = isAscending ? text.slice(1) : text;
    return names.includes(by) ? { by, isAscending } : undefined;
}

/** Positions are told from 1, as the program numbers rules. */
function numberText(position: number | undefined): string {
    return position === undefined ? "" : String(position + 1);
}

function positionOf(text: string | null, count: number): number | undefined {
    const position = Number(text ?? "0") - 1;
    return Number.isInteger(position) && position >= 0 && position < count ? position : undefined;
}
