import { h, button } from "./dom.ts";

/** A library within the page. */
export interface Licence {
    readonly name: string;
    readonly version: string;
    readonly text: string;
}

const searches: readonly (readonly [string, string])[] = [
    ["milk", "rules that name an item with “milk” in its name"],
    ["-bread", "rules that name no such item"],
    ["if:milk  then:survived=yes", "only in the premise, or in the conclusion"],
    ['"whole milk"', "a name with other signs, or a part of one with blanks"],
    ["beer|wine", "either"],
    ["class=*", "a whole name, with * for any signs: here a column"],
    ["#17", "the item of this number"],
    ["lift>1.2  p<0.001  support>=5%", "numbers; a percentage beside a count is one of all transactions"],
    ["confidence:0.8..0.9", "a range"],
];

const keys: readonly (readonly [string, string])[] = [
    ["/", "search"],
    ["Enter", "in the search: keep what is typed as a filter; in the table: look at the rule"],
    ["↑ ↓ Page Up Page Down Home End", "move in the table"],
    ["Esc", "close the rule, clear what is typed, then the filters one by one"],
    ["j k", "look at the first rule, then at the next and the previous one, from anywhere"],
    ["1 2 3", "rules, items, exclusions"],
    ["?", "this help"],
];

/** Explains the search and the keys, and names the libraries within the page with their licences. */
export function helpDialog(program: string, licences: readonly Licence[]): HTMLDialogElement {
    const dialog = h("dialog", { class: "help-dialog", "aria-labelledby": "help-title" });
    const close = button("×", { class: "icon", "aria-label": "Close" }, () => {
        dialog.close();
    });
    dialog.append(
        h("div", { class: "bar-of-panel" }, h("h2", { id: "help-title" }, "Help"), close),
        h("h3", {}, "Reading a rule"),
        h(
            "p",
            {},
            "“If A or B, then in 90 % of cases: C”: of the transactions that hold A or B, 90 % hold C. " +
                "Lift says how many times as often that is as in general; 1 is chance. Nothing here says why it is so.",
        ),
        h("h3", {}, "Search"),
        pairs(searches),
        h(
            "p",
            {},
            "All filters must hold. Dragging over a histogram or over the map chooses a range; " +
                "a click on a histogram gives it up. Where another of the four readings of a rule " +
                "(turned round, or with both sides denied) names an item as asked, “more in another reading” shows it.",
        ),
        h("h3", {}, "Keys"),
        pairs(keys),
        h("p", {}, "The address of this page keeps what you see: copy it to come back to it."),
        h("h3", {}, "About"),
        h("p", {}, `Written by ${program}. The page needs no network; nothing in it leaves your computer.`),
        ...licences.map(({ name, version, text }) =>
            h("details", {}, h("summary", {}, `${name} ${version}`), h("pre", {}, text)),
        ),
    );
    return dialog;
}

function pairs(entries: readonly (readonly [string, string])[]): HTMLElement {
    return h(
        "dl",
        { class: "pairs" },
        ...entries.flatMap(([term, words]) => [h("dt", {}, h("kbd", {}, term)), h("dd", {}, words)]),
    );
}
