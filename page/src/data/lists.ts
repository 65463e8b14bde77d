/** Lists of numbers, one behind the other. List i is `values` from starts[i] up to starts[i + 1]. */
export interface Lists {
    readonly starts: Uint32Array;
    readonly values: Uint32Array;
}

/** Lists of these sizes, which stand one behind the other in `values`. */
export function listsOf(sizes: Uint32Array, values: Uint32Array): Lists {
    const starts = new Uint32Array(sizes.length + 1);
    for (let i = 0; i < sizes.length; ++i) {
        starts[i + 1] = starts[i]! + sizes[i]!;
    }
    return { starts, values };
}

/** How many lists there are. */
export function numberOfLists(lists: Lists): number {
    return lists.starts.length - 1;
}

/** One of the lists; a view, not a copy. */
export function listAt(lists: Lists, index: number): Uint32Array {
    return lists.values.subarray(lists.starts[index], lists.starts[index + 1]);
}

/** How many numbers one of the lists has. */
export function sizeOfList(lists: Lists, index: number): number {
    return lists.starts[index + 1]! - lists.starts[index]!;
}
