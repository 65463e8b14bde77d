import { kinds } from "../model/rules.ts";
import { countText } from "../model/number_words.ts";
import type { Component, Context, Sight } from "./component.ts";
import { h, refill } from "./dom.ts";

const kindWords = {
    exact: "without exception",
    approximative: "with exceptions",
    bounded: "not known exactly",
} as const;

/** Of the four groups of forms, in their order. */
const groupWords = [
    "if one of …, then one of …",
    "if none of …, then none of …",
    "if one of …, then none of …",
    "if none of …, then one of …",
];

/** One of several things that can be left out of the rules. */
interface Switch {
    readonly name: string;
    readonly words: string;
    readonly count: number;
}

/** Kinds and forms of rules, each with how many rules of the page are of it; what is unticked is left out. */
export class Switches implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #boxes = new Map<string, HTMLInputElement>();

    constructor(context: Context) {
        this.#context = context;
        this.root = h("div", { class: "switches" });
        refill(this.root, this.#kindSwitches(), this.#formSwitches());
    }

    update({ state }: Sight, before: Sight | undefined): void {
        if (state.formsOff !== before?.state.formsOff || state.kindsOff !== before.state.kindsOff) {
            const off = new Set<string>([...state.formsOff, ...state.kindsOff]);
            this.#boxes.forEach((box, name) => (box.checked = !off.has(name)));
        }
    }

    #kindSwitches(): HTMLElement | undefined {
        const counts = countedPositions(this.#context.filter.kinds, kinds.length);
        const present = kinds
            .map((kind, i) => ({ name: kind, words: kindWords[kind], count: counts[i]! }))
            .filter((kind) => kind.count > 0);
        return present.length < 2 ? undefined : this.#group("Certainty", present);
    }

    #formSwitches(): HTMLElement | undefined {
        const { rules, header } = this.#context.book;
        if (rules.forms === undefined) {
            return undefined;
        }
        const counts = countedPositions(rules.forms, header.forms.length);
        const groups = groupWords.map((words, i) => {
            const forms = header.forms
                .map((form, position) => ({ ...form, count: counts[position]! }))
                .filter((form) => form.group === i + 1 && form.count > 0)
                .map(({ label, text, count }) => ({ name: label, words: text, count }));
            return forms.length === 0 ? undefined : this.#group(words, forms);
        });
        const present = groups.filter((group) => group !== undefined);
        return h("details", {}, h("summary", {}, "Forms of rules"), ...present);
    }

    #group(title: string, switches: readonly Switch[]): HTMLElement {
        return h("fieldset", {}, h("legend", {}, title), ...switches.map((each) => this.#switch(each)));
    }

    #switch({ name, words, count }: Switch): HTMLElement {
        const box = h("input", { type: "checkbox", checked: true });
        box.addEventListener("change", () => {
            this.#tell();
        });
        this.#boxes.set(name, box);
        const isForm = name.startsWith("R");
        return h(
            "label",
            {},
            box,
            h("span", { class: isForm ? "form" : "" }, isForm ? `${name}  ${words}` : words),
            h("span", { class: "count" }, countText(count)),
        );
    }

    #tell(): void {
        const off = [...this.#boxes].filter(([, box]) => !box.checked).map(([name]) => name);
        const kindsOff = kinds.filter((kind) => off.includes(kind));
        this.#context.change({
            kindsOff,
            formsOff: off.filter((name) => !kinds.some((kind) => kind === name)),
        });
    }
}

function countedPositions(positions: Iterable<number>, length: number): Uint32Array {
    const counts = new Uint32Array(length);
    for (const position of positions) {
        counts[position]! += 1;
    }
    return counts;
}
