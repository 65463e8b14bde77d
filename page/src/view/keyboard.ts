import { views, type ViewState } from "../model/view_state.ts";
import type { Context } from "./component.ts";
import type { RuleTable } from "./rule_table.ts";
import type { SearchBar } from "./search_bar.ts";

interface Keyboard {
    readonly context: Context;
    readonly table: RuleTable;
    readonly search: SearchBar;
    readonly help: HTMLDialogElement;
    readonly state: () => ViewState;
}

/** The keys that work wherever the focus is, except in fields: "/", "?", Esc, "j", "k", and numbers for views. */
export function listenToKeys({ context, table, search, help, state }: Keyboard): void {
    const actions: Readonly<Record<string, () => void>> = {
        "/": () => {
            search.focus();
        },
        "?": () => {
            help.showModal();
        },
        j: () => {
            table.step(1);
        },
        k: () => {
            table.step(-1);
        },
    };
    document.addEventListener("keydown", (event) => {
        if (event.ctrlKey || event.altKey || event.metaKey || help.open) {
            return;
        }
        if (event.key === "Escape") {
            const changes = loosened(state());
            if (changes !== undefined) {
                event.preventDefault();
                context.change(changes);
                if ("rule" in changes) {
                    table.focus();
                }
            }
            return;
        }
        if (isTyping(event.target)) {
            return;
        }
        const view = views[Number(event.key) - 1];
        const action = actions[event.key];
        if (action !== undefined) {
            event.preventDefault();
            action();
        } else if (view !== undefined) {
            context.change({ view });
        }
    });
}

/** What Esc gives up: first what is typed, then the rule that is looked at, then the last term. */
function loosened({ draft, rule, terms, view, item }: ViewState): Partial<ViewState> | undefined {
    if (draft !== "") {
        return { draft: "" };
    }
    if (view === "rules" && rule !== undefined) {
        return { rule: undefined, node: undefined };
    }
    if (view === "items" && item !== undefined) {
        return { item: undefined };
    }
    return terms.length === 0 ? undefined : { terms: terms.slice(0, -1) };
}

function isTyping(target: EventTarget | null): boolean {
    return (
        (target instanceof HTMLInputElement && target.type !== "checkbox") ||
        target instanceof HTMLSelectElement ||
        target instanceof HTMLTextAreaElement
    );
}
