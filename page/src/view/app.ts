import type { Book } from "../data/book.ts";
import type { Lists } from "../data/lists.ts";
import { passing, RuleFilter, type Found } from "../model/filter.ts";
import { Lattice } from "../model/lattice.ts";
import { namedItems } from "../model/named_items.ts";
import { givenOrder, orderBy } from "../model/order.ts";
import { Quantities } from "../model/quantities.ts";
import { Scales } from "../model/scales.ts";
import { sideRanks } from "../model/side_ranks.ts";
import { SideWords } from "../model/side_words.ts";
import { firstState, fragmentOf, stateOf, type Known, type ViewState } from "../model/view_state.ts";
import type { Component, Context, Sight } from "./component.ts";
import { downloadCsv, nextTask } from "./csv_download.ts";
import { h, refill } from "./dom.ts";
import { ExclusionsView } from "./exclusions_view.ts";
import { FilterPanel } from "./filter_panel.ts";
import { helpDialog, type Licence } from "./help_dialog.ts";
import { ItemsView } from "./items_view.ts";
import { listenToKeys } from "./keyboard.ts";
import { NoRules } from "./no_rules.ts";
import { PageHeader } from "./page_header.ts";
import { PrintTable } from "./print_table.ts";
import { RulePanel } from "./rule_panel.ts";
import { RuleTable } from "./rule_table.ts";
import { Scatter } from "./scatter.ts";
import { SearchBar } from "./search_bar.ts";
import { Toolbar } from "./toolbar.ts";

/** The page as a whole: its state, what follows from it, and the parts that show it. */
export class App {
    readonly #book: Book;
    readonly #context: Context;
    readonly #known: Known;
    readonly #components: readonly Component[];
    readonly #heard = h("p", { class: "heard", "aria-live": "polite" });
    readonly #rulesView = h("section", { class: "rules-view", "aria-label": "Rules" });
    readonly #sideValues = new Map<string, Float64Array>();
    #state: ViewState;
    #order: Uint32Array;
    #orderOf = JSON.stringify("");
    /** The last few, so that the way back is short. */
    readonly #orders = new Map<string, Uint32Array>();
    #found: Found;
    #passesOf = "";
    #rules: Uint32Array;
    #shown: Sight | undefined;
    #preparing = "";
    #isFragmentDue = false;

    constructor(book: Book, licences: readonly Licence[]) {
        this.#book = book;
        this.#context = this.#makeContext();
        this.#known = {
            quantities: this.#context.quantities.all.map(({ name }) => name),
            forms: book.header.forms.map(({ label }) => label),
            rules: book.rules.count,
            classes: book.header.lattice.shown,
            items: book.items.count,
        };
        this.#state = stateOf(location.hash, this.#context.first, this.#known);
        this.#order = givenOrder(book.rules.count);
        this.#found = this.#context.filter.all;
        this.#rules = this.#order;
        this.#components = this.#makeComponents(licences);
        document.body.classList.toggle("is-empty", book.rules.count === 0);
        this.#update();
        addEventListener("hashchange", () => {
            this.#restore();
        });
    }

    #makeContext(): Context {
        const book = this.#book;
        const quantities = new Quantities(book);
        const isKnown = (name: string) => quantities.named(name) !== undefined && name !== "support";
        const shownAtFirst = [...book.header.shown_measures, "holdout_confidence", "holdout_p"];
        let lattice: Lattice | undefined;
        let named: Lists | undefined;
        return {
            book,
            quantities,
            scales: new Scales(quantities),
            words: new SideWords(book),
            filter: new RuleFilter(book, quantities),
            lattice: () => (lattice ??= new Lattice(book)),
            named: () => (named ??= namedItems(book)),
            first: firstState(shownAtFirst.filter(isKnown)),
            change: (changes) => {
                this.#change(changes, "rule" in changes || "view" in changes || "node" in changes);
            },
            follow: (changes) => {
                this.#change(changes, false);
            },
            address: () => addressWith(fragmentOf(this.#state, this.#context.first)),
            say: (text) => {
                this.#heard.textContent = text;
            },
        };
    }

    #makeComponents(licences: readonly Licence[]): Component[] {
        const context = this.#context;
        const help = helpDialog(this.#book.header.program, licences);
        const noRules = new NoRules(context);
        const table = new RuleTable(context, noRules.root);
        const search = new SearchBar(context);
        const header = new PageHeader(context, () => {
            help.showModal();
        });
        const panel = new RulePanel(context, (by) => {
            table.step(by);
        });
        const toolbar = new Toolbar(context, () => {
            void downloadCsv(context, this.#shown!);
        });
        const filters = new FilterPanel(context);
        const scatter = new Scatter(context);
        const items = new ItemsView(context);
        const exclusions = new ExclusionsView(context);
        refill(
            this.#rulesView,
            filters.root,
            h("div", { class: "results" }, scatter.root, toolbar.root, table.root),
            panel.root,
        );
        this.#print(new PrintTable(context));
        refill(
            document.body,
            header.root,
            search.root,
            h("main", {}, this.#rulesView, items.root, exclusions.root),
            this.#heard,
            help,
        );
        listenToKeys({ context, table, search, help, state: () => this.#state });
        // The emptiness of the table is said before the table asks how high it is.
        return [header, search, noRules, filters, toolbar, panel, table, scatter, items, exclusions];
    }

    #print(table: PrintTable): void {
        this.#rulesView.append(table.root);
        addEventListener("beforeprint", () => {
            table.fill(this.#shown!);
        });
        addEventListener("afterprint", () => {
            table.clear();
        });
    }

    #change(changes: Partial<ViewState>, isStep: boolean): void {
        this.#state = { ...this.#state, ...changes };
        this.#update();
        this.#writeFragment(isStep);
    }

    #restore(): void {
        if (location.hash.slice(1) !== fragmentOf(this.#state, this.#context.first)) {
            this.#state = stateOf(location.hash, this.#context.first, this.#known);
            this.#update();
        }
    }

    /** Steps are written at once, what follows in quick succession now and then: browsers allow only so many. */
    #writeFragment(isStep: boolean): void {
        const delay = 400;
        if (isStep) {
            this.#storeFragment(true);
        } else if (!this.#isFragmentDue) {
            this.#isFragmentDue = true;
            setTimeout(() => {
                this.#isFragmentDue = false;
                this.#storeFragment(false);
            }, delay);
        }
    }

    #storeFragment(isStep: boolean): void {
        const fragment = fragmentOf(this.#state, this.#context.first);
        if (fragment === location.hash.slice(1)) {
            return;
        }
        const address = addressWith(fragment);
        if (isStep) {
            history.pushState(null, "", address);
        } else {
            history.replaceState(null, "", address);
        }
    }

    /** Brings everything up to date with the state. What takes long is prepared first, in pieces. */
    #update(): void {
        const missing = this.#missing();
        if (missing !== undefined && this.#preparing === "") {
            void this.#prepare(missing);
        }
        this.#choose(missing === undefined);
        const { state, found, rules, busy } = {
            state: this.#state,
            found: this.#found,
            rules: this.#rules,
            busy: this.#preparing,
        };
        const now: Sight = { state, passes: found.passes, found, rules, busy };
        const before = this.#shown;
        this.#shown = now;
        document.body.dataset["view"] = state.view;
        document.body.classList.toggle("has-rule", state.rule !== undefined && state.view === "rules");
        for (const component of this.#components) {
            component.update(now, before);
        }
    }

    /** The rules that pass, in their order; the old order as long as the new one has to be prepared. */
    #choose(canSort: boolean): void {
        const { terms, draft, formsOff, kindsOff, byReadings, sorting } = this.#state;
        const filter = {
            terms: [...terms, ...this.#context.filter.termsOf(draft)],
            formsOff,
            kindsOff,
            byReadings,
        };
        const filterText = JSON.stringify(filter);
        const orderText = JSON.stringify(sorting ?? "");
        const isOrdered = orderText === this.#orderOf || !canSort;
        if (isOrdered && filterText === this.#passesOf) {
            return;
        }
        if (!isOrdered) {
            this.#orderOf = orderText;
            this.#order = this.#orders.get(orderText) ?? this.#sorted();
            keepFew(this.#orders, orderText, this.#order);
        }
        if (filterText !== this.#passesOf) {
            this.#passesOf = filterText;
            this.#found = this.#context.filter.found(filter);
        }
        const isAnyAsked = filter.terms.length + formsOff.length + kindsOff.length > 0;
        this.#rules = isAnyAsked ? passing(this.#order, this.#found.passes) : this.#order;
    }

    #sorted(): Uint32Array {
        const { sorting } = this.#state;
        if (sorting === undefined) {
            return givenOrder(this.#book.rules.count);
        }
        const ofSides = this.#sideValues.get(sorting.by);
        const values =
            ofSides === undefined
                ? this.#context.quantities.column(sorting.by)
                : { low: ofSides, high: ofSides };
        return orderBy(values, sorting.isAscending);
    }

    /** What the state needs that is not there yet and takes long: the name of a quantity, or a side. */
    #missing(): string | undefined {
        const { sorting, columns, xAxis, yAxis, terms, draft } = this.#state;
        const { quantities, filter } = this.#context;
        const by = sorting?.by;
        if ((by === "premise" || by === "conclusion") && !this.#sideValues.has(by)) {
            return by;
        }
        const asked = [...terms, ...filter.termsOf(draft)].map((text) => {
            const term = filter.term(text);
            return term?.kind === "range" ? term.quantity : "";
        });
        return [by ?? "", xAxis, yAxis, ...columns, ...asked].find((name) => quantities.isSlow(name));
    }

    async #prepare(name: string): Promise<void> {
        this.#preparing = `Preparing ${name.replaceAll("_", " ")} …`;
        if (name === "premise" || name === "conclusion") {
            await this.#rankSides();
        } else {
            await this.#context.quantities.prepare(name, nextTask);
        }
        this.#preparing = "";
        this.#update();
    }

    async #rankSides(): Promise<void> {
        const ranks = await sideRanks(this.#book, nextTask);
        const { premises, conclusions } = this.#book.rules;
        const ofRules = (sides: Uint32Array) => Float64Array.from(sides, (side) => ranks[side]!);
        this.#sideValues.set("premise", ofRules(premises));
        this.#sideValues.set("conclusion", ofRules(conclusions));
    }
}

function addressWith(fragment: string): string {
    const page = location.href.replace(/#.*$/su, "");
    return fragment === "" ? page : `${page}#${fragment}`;
}

function keepFew(orders: Map<string, Uint32Array>, key: string, order: Uint32Array): void {
    const most = 6;
    const [oldest] = orders.keys();
    if (orders.size >= most && !orders.has(key) && oldest !== undefined) {
        orders.delete(oldest);
    }
    orders.set(key, order);
}
