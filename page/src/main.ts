import "./styles/base.css";
import "./styles/layout.css";
import "./styles/table.css";
import "./styles/charts.css";
import "./styles/panel.css";
import "./styles/print.css";
import { bytesOfBase64 } from "./data/base64.ts";
import { bookOf, type Book } from "./data/book.ts";
import { canInflate, inflated } from "./data/inflate.ts";
import { App } from "./view/app.ts";
import type { Licence } from "./view/help_dialog.ts";
import { showProblem } from "./view/problem.ts";

/** Put in by the build: the licences of the libraries that are in the bundle. */
declare const licencesOfLibraries: readonly Licence[];

async function start(): Promise<void> {
    if (!canInflate()) {
        showProblem(
            "This browser is too old for this page.",
            "The page unpacks its rules with DecompressionStream, which browsers have since 2023. " +
                "Please open it in a current version of Firefox, Chrome, Edge or Safari.",
        );
        return;
    }
    const book = await readBook().catch((error: unknown) => {
        showProblem(
            "The rules in this file cannot be read.",
            `It may be damaged, or cut short. (${String(error)})`,
        );
    });
    if (book !== undefined) {
        new App(book, licencesOfLibraries);
        performance.mark("shown");
    }
}

/** Reads the data of this page, which are no longer needed as text then. */
async function readBook(): Promise<Book> {
    const data = document.getElementById("korv-data");
    const book = bookOf(await inflated(bytesOfBase64(data?.textContent ?? "")));
    data?.remove();
    return book;
}

void start();
