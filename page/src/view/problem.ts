import { h, refill } from "./dom.ts";

/** Says in the place of the page why there is none. */
export function showProblem(title: string, text: string): void {
    refill(
        document.body,
        h("main", { class: "problem", role: "alert" }, h("h1", {}, title), h("p", {}, text)),
    );
}
