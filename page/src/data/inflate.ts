/** Whether this browser can unpack the data of a page. */
export function canInflate(): boolean {
    try {
        return new DecompressionStream("deflate-raw") instanceof DecompressionStream;
    } catch {
        return false; // it knows no such stream, or none of this format
    }
}

/** Unpacks raw deflate. Rejects where the bytes are damaged. */
export async function inflated(bytes: Uint8Array<ArrayBuffer>): Promise<ArrayBuffer> {
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
    return new Response(stream).arrayBuffer();
}
