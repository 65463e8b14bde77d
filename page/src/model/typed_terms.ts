import { quoted, termPieces } from "./search_terms.ts";

/** A term that is typed, and where it begins in the text. */
export interface TypedTerm {
    readonly text: string;
    readonly begin: number;
}

/**
 * Reads what is typed as terms. Words that are a name together are one term, as if they stood in quotes: `butter milk`
 * where an item is called so, and `butter m` at the end of the text, where its name is perhaps still being typed.
 */
export class TypedTerms {
    /** In small letters; only those with blanks. */
    readonly #names: readonly string[];
    readonly #mostWords: number;

    /** O(names). */
    constructor(names: readonly string[]) {
        this.#names = names.filter((name) => /\s/u.test(name)).map((name) => name.toLowerCase());
        this.#mostWords = this.#names.reduce((most, name) => Math.max(most, name.split(/\s+/u).length), 1);
    }

    /** The terms of a text, in their order; the longest names first. O(names * pieces) or less. */
    of(text: string): TypedTerm[] {
        const pieces = termPieces(text);
        const terms: TypedTerm[] = [];
        let position = 0;
        while (position < pieces.length) {
            const { term, end } = this.#termAt(text, pieces, position);
            terms.push(term);
            position = end;
        }
        return terms;
    }

    #termAt(text: string, pieces: readonly TypedTerm[], first: number): { term: TypedTerm; end: number } {
        const { begin, text: alone } = pieces[first]!;
        for (let end = Math.min(pieces.length, first + this.#mostWords); end > first + 1; --end) {
            const last = pieces[end - 1]!;
            const words = text.slice(begin, last.begin + last.text.length);
            const [, sign = "", name = ""] = /^(-?(?:(?:if|then):)?)(.*)$/su.exec(words) ?? [];
            if (this.#isName(name.toLowerCase(), end === pieces.length)) {
                return { term: { text: sign + quoted(name), begin }, end };
            }
        }
        return { term: { text: alone, begin }, end: first + 1 };
    }

    #isName(words: string, isLast: boolean): boolean {
        return this.#names.some((name) => name === words || (isLast && name.startsWith(words)));
    }
}
