import { superscripts } from "./number_words.ts";

/** A number as it is typed into a field of a range; `problem` says what is expected where it is none. */
export type TypedNumber =
    | { readonly kind: "open" }
    | { readonly kind: "number"; readonly value: number }
    | { readonly kind: "problem"; readonly problem: string };

/**
 * Reads a number of a quantity: `0.5`, `0,5`, `1,250`, `50%`, `3·10⁻⁷`. A comma before groups of three digits parts
 * thousands; any other is a decimal one. `whole`: of how many a percentage is one; 1 beside a share. `most`: nothing
 * is beyond it.
 */
export function typedNumber(text: string, whole: number, most: number): TypedNumber {
    const typed = withoutPower(text.replace(/\s/gu, ""));
    if (typed === "") {
        return { kind: "open" };
    }
    const [, digits = "", percent = ""] = /^(.*?)(%?)$/su.exec(typed) ?? [];
    const isGrouped = /^-?[1-9]\d{0,2}(?:,\d{3})+(?:\.\d*)?$/u.test(digits);
    const plain = isGrouped ? digits.replaceAll(",", "") : digits.replace(/^([^,.]*),([^,.]*)$/u, "$1.$2");
    const example = most <= 1 ? "0.5 or 50%" : "1.5 or 1,250";
    if (!/^[-+]?(?:\d+\.?\d*|\.\d+)(?:e[-+]?\d+)?$/iu.test(plain)) {
        return { kind: "problem", problem: `found “${text.trim()}”; expected a number, such as ${example}` };
    }
    const value = percent === "" ? Number(plain) : (Number(plain) * whole) / 100;
    return Math.abs(value) > most
        ? { kind: "problem", problem: `found ${text.trim()}; expected at most ${most}, such as ${example}` }
        : { kind: "number", value };
}

/** "3.5·10⁻⁷" as "3.5e-7", as the page says such numbers. */
function withoutPower(text: string): string {
    return text.replace(/^(?:(.*)·)?10(⁻?)([⁰¹²³⁴⁵⁶⁷⁸⁹]+)$/u, (_, digits = "1", sign, power: string) => {
        const exponent = Array.from(power, (digit) => superscripts.indexOf(digit)).join("");
        return `${String(digits)}e${sign === "" ? "" : "-"}${exponent}`;
    });
}
