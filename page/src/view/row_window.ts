/** The greatest height that all browsers can scroll over, in pixels. */
const mostPixels = 15_000_000;

/**
 * Which rows of a long list are in sight. Where all rows together are higher than browsers can scroll over, the
 * scroller is shorter: near movements move the rows by as many pixels, far ones by their part of the whole.
 */
export class RowWindow {
    #rows = 0;
    #rowHeight = 1;
    #viewHeight = 0;
    #scrolled = 0;
    #top = 0;

    /** Sets the sizes and keeps the place as far as there still is one. */
    resize(rows: number, rowHeight: number, viewHeight: number): void {
        this.#rows = rows;
        this.#rowHeight = rowHeight;
        this.#viewHeight = viewHeight;
        this.#top = Math.min(this.#top, this.#lastTop);
    }

    /** How high the scroller is. */
    get height(): number {
        return Math.min(this.#rows * this.#rowHeight, mostPixels);
    }

    /** How far down the list the upper edge is, in pixels of all rows. */
    get top(): number {
        return this.#top;
    }

    /** Where the scroller must stand for the rows that are in sight. */
    get scrolled(): number {
        return this.#scrolled;
    }

    /** Follows the scroller. */
    scrollTo(scrolled: number): void {
        const by = scrolled - this.#scrolled;
        const last = this.#lastScrolled;
        const isNear = Math.abs(by) < 2 * this.#viewHeight && scrolled > 0 && scrolled < last;
        const top = isNear ? this.#top + by : last <= 0 ? 0 : (scrolled / last) * this.#lastTop;
        this.#scrolled = scrolled;
        this.#top = this.#within(this.#isScaled ? top : scrolled);
    }

    /** Brings a row into sight, and gives where the scroller must stand for that. */
    show(row: number): number {
        const rowTop = row * this.#rowHeight;
        const lowest = rowTop + this.#rowHeight - this.#viewHeight;
        const top = this.#within(Math.max(Math.min(this.#top, rowTop), lowest));
        this.#scrolled = this.#scrolledFor(top);
        this.#top = top;
        return this.#scrolled;
    }

    /** The first row in sight and the one behind the last. */
    get range(): readonly [number, number] {
        const first = Math.floor(this.#top / this.#rowHeight);
        const end = Math.ceil((this.#top + this.#viewHeight) / this.#rowHeight);
        return [Math.max(0, first), Math.min(this.#rows, end)];
    }

    /** How many rows are in sight as a whole. */
    get page(): number {
        return Math.max(1, Math.floor(this.#viewHeight / this.#rowHeight));
    }

    /** Where the scroller must stand, in whole pixels, for a place in the list. */
    #scrolledFor(top: number): number {
        if (!this.#isScaled) {
            return top;
        }
        const part = this.#lastTop === 0 ? 0 : top / this.#lastTop;
        return Math.round(part * this.#lastScrolled);
    }

    #within(top: number): number {
        return Math.max(0, Math.min(top, this.#lastTop));
    }

    get #isScaled(): boolean {
        return this.#rows * this.#rowHeight > mostPixels;
    }

    get #lastTop(): number {
        return Math.max(0, this.#rows * this.#rowHeight - this.#viewHeight);
    }

    get #lastScrolled(): number {
        return this.height - this.#viewHeight;
    }
}
