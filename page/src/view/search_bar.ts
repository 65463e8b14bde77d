import { countText, measureText } from "../model/number_words.ts";
import { quoted, type Limit, type Pattern, type Term } from "../model/search_terms.ts";
import type { Component, Context, Sight } from "./component.ts";
import { button, h, newId, refill, setAttributes, shortened } from "./dom.ts";

const mostLetters = 40;
const mostSuggestions = 8;

/** The search: terms as chips, a field for the next one that filters while one types, and names that fit. */
export class SearchBar implements Component {
    readonly root: HTMLElement;
    readonly #context: Context;
    readonly #chips = h("ul", { class: "chips", "aria-label": "Filters" });
    readonly #field: HTMLInputElement;
    readonly #problem = h("p", { class: "problem-of-field", role: "status", id: newId("problem") });
    readonly #suggestions = h("datalist", { id: newId("names") });
    #terms: readonly string[] = [];

    constructor(context: Context) {
        this.#context = context;
        this.#field = h("input", {
            type: "search",
            placeholder: "Search: a name, -name, then:name, lift>1.2",
            "aria-label": "Search rules",
            "aria-keyshortcuts": "/",
            autocomplete: "off",
            autocapitalize: "off",
            spellcheck: "false",
            list: this.#suggestions.id,
            "aria-describedby": this.#problem.id,
        });
        this.#field.addEventListener("input", () => {
            this.#suggest();
            context.change({ draft: this.#field.value });
        });
        this.#field.addEventListener("keydown", (event) => {
            this.#onKey(event);
        });
        this.root = h(
            "div",
            { class: "search", role: "search" },
            this.#chips,
            this.#field,
            this.#suggestions,
            this.#problem,
        );
    }

    update({ state }: Sight): void {
        if (this.#field.value !== state.draft) {
            this.#field.value = state.draft;
        }
        const { filter } = this.#context;
        const problems = filter.termsOf(state.draft).flatMap((text) => filter.problem(text) ?? []);
        const problem = problems.join("; ");
        if (this.#problem.textContent !== problem) {
            this.#problem.textContent = problem;
            setAttributes(this.#field, { "aria-invalid": problem === "" ? undefined : "true" });
        }
        if (state.terms !== this.#terms) {
            this.#terms = state.terms;
            refill(this.#chips, ...state.terms.map((term, position) => this.#chip(term, position)));
            this.#chips.hidden = state.terms.length === 0;
        }
    }

    /** Moves the focus into the field. */
    focus(): void {
        this.#field.focus();
        this.#field.select();
    }

    #chip(text: string, position: number): HTMLElement {
        const said = this.#say(text);
        const remove = button("×", { "aria-label": `Remove the filter ${said}`, title: "Remove" }, () => {
            this.#context.change({ terms: this.#terms.filter((_, i) => i !== position) });
            this.#field.focus();
        });
        return h(
            "li",
            { class: "chip" },
            h("span", { title: shortened(said, 300) }, shortened(said, mostLetters)),
            remove,
        );
    }

    #say(text: string): string {
        const term = this.#context.filter.term(text);
        return term === undefined ? text : termText(this.#context, term);
    }

    #onKey(event: KeyboardEvent): void {
        if (event.key === "Enter") {
            event.preventDefault();
            this.#takeDraft();
        } else if (event.key === "Backspace" && this.#field.value === "" && this.#terms.length > 0) {
            this.#context.change({ terms: this.#terms.slice(0, -1) });
        }
    }

    #takeDraft(): void {
        const { filter } = this.#context;
        const all = filter.termsOf(this.#field.value);
        const typed = all.filter((term) => filter.term(term) !== undefined);
        const wrong = all.filter((term) => filter.problem(term) !== undefined);
        const terms = [...new Set([...this.#terms, ...typed])];
        this.#context.change({ terms, draft: wrong.join(" ") });
    }

    /** Offers names that contain what is typed last, with the terms before it. */
    #suggest(): void {
        const text = this.#field.value;
        const { begin } = this.#context.filter.typed(text).at(-1) ?? { begin: text.length };
        const [, sign = "", last = ""] = /^(-?(?:(?:if|then):)?)"?(.*)$/su.exec(text.slice(begin)) ?? [];
        const typed = last.trimEnd().toLowerCase();
        const before = text.slice(0, begin) + sign;
        const fitting = [];
        for (const name of typed === "" ? [] : this.#context.book.items.names) {
            if (name.length < mostLetters && name.toLowerCase().includes(typed)) {
                fitting.push(h("option", { value: before + asTerm(name) }));
            }
            if (fitting.length === mostSuggestions) {
                break;
            }
        }
        refill(this.#suggestions, ...fitting);
    }
}

/** A name as it is searched for, in quotes where it has signs that mean something in a search. */
function asTerm(name: string): string {
    return /[\s"|*#]|^-|^(?:if|then):/u.test(name) ? quoted(name) : name;
}

/** A term as a chip says it: "in the premise: whole milk", "lift 1.2 to 3". */
export function termText(context: Context, term: Term): string {
    if (term.kind === "items") {
        const names = term.patterns.map((pattern) => patternText(context, pattern)).join(" or ");
        const place = term.place === "any" ? "" : `${term.place}: `;
        return `${term.isExcluded ? "not " : ""}${place}${names}`;
    }
    const { title } = context.quantities.get(term.quantity);
    const { from, to } = term;
    if (from !== undefined && to !== undefined) {
        return from.value === to.value
            ? `${title} = ${limitText(from)}`
            : `${title} ${limitText(from)} to ${limitText(to)}`;
    }
    const sign = from === undefined ? "<" : ">";
    const limit = from ?? to;
    return limit === undefined
        ? title
        : `${title} ${limit.isIncluded ? sign.replace("<", "≤").replace(">", "≥") : sign} ${limitText(limit)}`;
}

function limitText({ value, isPercent }: Limit): string {
    if (isPercent) {
        return `${String(value)} %`;
    }
    return Number.isInteger(value) ? countText(value) : measureText(value);
}

function patternText({ book }: Context, pattern: Pattern): string {
    switch (pattern.kind) {
        case "part":
            return pattern.text;
        case "whole":
            return pattern.pieces.join("*");
        case "number":
            return book.items.names[book.items.numbers.indexOf(pattern.number)] ?? `#${pattern.number}`;
    }
}
