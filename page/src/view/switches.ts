import { formWords } from "../model/form_words.ts";
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
    /** How the program calls a form. */
    readonly detail?: string;
}

/** Kinds and forms of rules; what is unticked is left out. Each with how many rules of it the other filters leave. */
export class Switches implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #boxes = new Map<string, HTMLInputElement>();
    readonly #counts = new Map<string, HTMLElement>();

    constructor(context: Context) {
        this.#context = context;
        this.root = h("div", { class: "switches" });
        refill(this.root, this.#kindSwitches(), this.#formSwitches());
    }

    update({ state, found }: Sight, before: Sight | undefined): void {
        if (state.formsOff !== before?.state.formsOff || state.kindsOff !== before.state.kindsOff) {
            const off = new Set<string>([...state.formsOff, ...state.kindsOff]);
            this.#boxes.forEach((box, name) => (box.checked = !off.has(name)));
        }
        if (found !== before?.found) {
            const { forms } = this.#context.book.header;
            forms.forEach(({ label }, i) => {
                this.#showCount(label, found.forms[i]!);
            });
            kinds.forEach((kind, i) => {
                this.#showCount(kind, found.kinds[i]!);
            });
        }
    }

    #showCount(name: string, count: number): void {
        const shown = this.#counts.get(name);
        if (shown !== undefined) {
            shown.textContent = countText(count);
            shown.parentElement!.classList.toggle("none", count === 0);
        }
    }

    #kindSwitches(): HTMLElement | undefined {
        const counts = this.#context.filter.all.kinds;
        const present = kinds
            .filter((_, i) => counts[i]! > 0)
            .map((kind) => ({ name: kind, words: kindWords[kind] }));
        return present.length < 2 ? undefined : this.#group("Certainty", present);
    }

    #formSwitches(): HTMLElement | undefined {
        const { filter, book } = this.#context;
        const { rules, header } = book;
        if (rules.forms === undefined) {
            return undefined;
        }
        const counts = filter.all.forms;
        const groups = groupWords.map((words, i) => {
            const forms = header.forms
                .filter((form, position) => form.group === i + 1 && counts[position]! > 0)
                .map(({ label, text }) => ({
                    name: label,
                    words: formWords(text),
                    detail: `${label}: ${text}`,
                }));
            return forms.length === 0 ? undefined : this.#group(words, forms);
        });
        const present = groups.filter((group) => group !== undefined);
        const remark =
            "A class has all items that can join it without another transaction coming in. " +
            "Its fewest items say the same as all of them.";
        return h(
            "details",
            { class: "forms" },
            h("summary", {}, "Forms of rules"),
            h("p", { class: "quiet" }, remark),
            ...present,
        );
    }

    #group(title: string, switches: readonly Switch[]): HTMLElement {
        return h("fieldset", {}, h("legend", {}, title), ...switches.map((each) => this.#switch(each)));
    }

    #switch({ name, words, detail }: Switch): HTMLElement {
        const box = h("input", { type: "checkbox", checked: true });
        box.addEventListener("change", () => {
            this.#tell();
        });
        const count = h("span", { class: "count" });
        this.#boxes.set(name, box);
        this.#counts.set(name, count);
        return h(
            "label",
            {},
            box,
            h(
                "span",
                {},
                words,
                detail === undefined ? undefined : h("small", { title: detail }, ` ${name}`),
            ),
            count,
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
