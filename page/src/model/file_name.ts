/** The name of a file with the rules of some data: "titanic-rules.csv" of "titanic.csv". */
export function csvName(title: string): string {
    const mostLetters = 60;
    const name = title
        .replace(/\.[\p{L}\p{N}]{1,8}$/u, "")
        .replace(/[^\p{L}\p{M}\p{N}_-]+/gu, "-")
        .replace(/^[-_]+/u, "");
    const short = Array.from(name).slice(0, mostLetters).join("").replace(/-+$/u, "");
    return short === "" ? "rules.csv" : `${short}-rules.csv`;
}
