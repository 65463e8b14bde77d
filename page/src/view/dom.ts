/** What an element can be given: attributes by name; a flag stands without a value, or not at all. */
export type Attributes = Readonly<Record<string, string | number | boolean | undefined>>;

/** What an element can contain. Texts become text nodes, so nothing in them is ever interpreted. */
export type Child = Node | string | undefined;

/** Makes an element of HTML. */
export function h<Tag extends keyof HTMLElementTagNameMap>(
    tag: Tag,
    attributes: Attributes = {},
    ...children: readonly Child[]
): HTMLElementTagNameMap[Tag] {
    return filled(document.createElement(tag), attributes, children);
}

/** Makes an element of SVG. */
export function svg<Tag extends keyof SVGElementTagNameMap>(
    tag: Tag,
    attributes: Attributes = {},
    ...children: readonly Child[]
): SVGElementTagNameMap[Tag] {
    return filled(document.createElementNS("http://www.w3.org/2000/svg", tag), attributes, children);
}

/** A button with a text, or with other content. */
export function button(content: Child, attributes: Attributes, onClick: () => void): HTMLButtonElement {
    const made = h("button", { type: "button", ...attributes }, content);
    made.addEventListener("click", onClick);
    return made;
}

/** Sets attributes; a missing or false value takes an attribute away. */
export function setAttributes(element: Element, attributes: Attributes): void {
    for (const [name, value] of Object.entries(attributes)) {
        if (value === undefined || value === false) {
            element.removeAttribute(name);
        } else {
            element.setAttribute(name, value === true ? "" : String(value));
        }
    }
}

/** Puts children in the place of those that an element has. */
export function refill(element: Element, ...children: readonly Child[]): void {
    element.replaceChildren(...children.filter((child) => child !== undefined));
}

function filled<Made extends Element>(
    element: Made,
    attributes: Attributes,
    children: readonly Child[],
): Made {
    setAttributes(element, attributes);
    refill(element, ...children);
    return element;
}

let lastId = 0;

/** A name for an element that no other has. */
export function newId(kind: string): string {
    lastId += 1;
    return `${kind}-${lastId}`;
}

/** A text of which no line ends between a number and its percent sign. */
export function unbroken(text: string): string {
    return text.replaceAll(" %", "\u00a0%");
}

/** A text that is no longer than this many characters; what is cut off is told by an ellipsis. */
export function shortened(text: string, most: number): string {
    if (text.length <= most) {
        return text;
    }
    const end = /[\uD800-\uDBFF]/u.test(text[most - 2] ?? "") ? most - 2 : most - 1;
    return `${text.slice(0, end)}…`;
}
