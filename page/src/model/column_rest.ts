import type { ColumnHeader } from "../data/header.ts";

/**
 * Whether some items of a column are said by the others: the column is exhaustive, and the others are fewer, or as
 * many and plain where the items themselves are denied.
 */
export function saysByRest(column: ColumnHeader, items: number, isNegated: boolean): boolean {
    const others = column.items.length - items;
    return column.exhaustive && others > 0 && (others < items || (others === items && isNegated));
}
