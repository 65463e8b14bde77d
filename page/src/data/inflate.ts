/** Whether this browser can unpack the data of a page. */
export function canInflate(): boolean {
    try {
        return new DecompressionStream("deflate-raw") instanceof DecompressionStream;
    } catch {
        return false; // it knows no such stream, or none of this format
    }
}

/**
 * Unpacks raw deflate. Rejects where the bytes are damaged. The stream is made by hand, as that of a Blob comes through
 * another process of the browser.
 */
export async function inflated(bytes: Uint8Array<ArrayBuffer>): Promise<ArrayBuffer> {
    const packed = new ReadableStream<Uint8Array<ArrayBuffer>>({
        start: (controller) => {
            controller.enqueue(bytes);
            controller.close();
        },
    });
    return new Response(packed.pipeThrough(new DecompressionStream("deflate-raw"))).arrayBuffer();
}
