import { button, h, newId } from "./dom.ts";

/**
 * A button that copies the address of what one sees. Where the browser does not let it, the address stands in a field,
 * selected, for people to copy it themselves.
 */
export class LinkCopy {
    readonly root: HTMLElement;
    readonly #address: () => string;
    readonly #say: (text: string) => void;
    readonly #button: HTMLButtonElement;
    readonly #field = h("input", {
        type: "text",
        readonly: true,
        id: newId("address"),
        "aria-label": "Link",
    });
    readonly #box = h("span", { class: "address", hidden: true }, this.#field);

    constructor(address: () => string, say: (text: string) => void) {
        this.#address = address;
        this.#say = say;
        const title =
            "Copy the address of what you see: rules, filters, order and the chosen rule. " +
            "Who is to open it elsewhere needs this file, too: what begins with # goes behind its address";
        this.#button = button("Copy link", { title }, () => {
            void this.#copy();
        });
        this.root = h("span", { class: "link-copy" }, this.#box, this.#button);
        this.#field.addEventListener("blur", () => {
            this.#box.hidden = true;
        });
        this.#field.addEventListener("keydown", (event) => {
            if (event.key === "Escape") {
                event.stopPropagation();
                this.#button.focus();
            }
        });
    }

    async #copy(): Promise<void> {
        const address = this.#address();
        try {
            await navigator.clipboard.writeText(address);
            this.#showCopied();
        } catch {
            this.#offer(address);
        }
    }

    #showCopied(): void {
        const duration = 2_000;
        this.#say("The link is copied");
        this.#button.textContent = "Copied";
        setTimeout(() => {
            this.#button.textContent = "Copy link";
        }, duration);
    }

    #offer(address: string): void {
        this.#field.value = address;
        this.#box.hidden = false;
        this.#field.focus();
        this.#field.select();
        this.#say("The browser does not let the page copy. The link is selected: copy it");
    }
}
