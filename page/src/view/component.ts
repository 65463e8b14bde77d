import type { Book } from "../data/book.ts";
import type { Lists } from "../data/lists.ts";
import type { Found, Passes, RuleFilter } from "../model/filter.ts";
import type { Lattice } from "../model/lattice.ts";
import type { Quantities } from "../model/quantities.ts";
import type { Scales } from "../model/scales.ts";
import type { SideWords } from "../model/side_words.ts";
import type { ViewState } from "../model/view_state.ts";

/** What parts of the page need of the whole. */
export interface Context {
    readonly book: Book;
    readonly quantities: Quantities;
    readonly scales: Scales;
    readonly words: SideWords;
    readonly filter: RuleFilter;
    /** Made when it is first asked for. */
    readonly lattice: () => Lattice;
    /** The items that the words of each side name. */
    readonly named: () => Lists;
    readonly first: ViewState;
    /** Changes what is seen. Another rule, class or view is a step that the browser can go back by. */
    readonly change: (changes: Partial<ViewState>) => void;
    /** Changes what is seen, perhaps many times a second: nothing of it is such a step. */
    readonly follow: (changes: Partial<ViewState>) => void;
    /** The address of what is seen now. */
    readonly address: () => string;
    /** Tells people who do not see the page what happened. */
    readonly say: (text: string) => void;
}

/** What is seen. Parts that did not change are the same objects as before. */
export interface Sight {
    readonly state: ViewState;
    readonly passes: Passes;
    /** By which of their readings rules pass, and how many more would. */
    readonly found: Found;
    /** The rules that pass, in their order. */
    readonly rules: Uint32Array;
    /** What is being computed; empty: nothing. */
    readonly busy: string;
}

/** A part of the page. */
export interface Component {
    readonly root: HTMLElement;
    /** Shows what is seen now. `before` is what it showed last; nothing the first time. */
    update(now: Sight, before: Sight | undefined): void;
}
