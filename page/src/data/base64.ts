/** What engines have that know base64 themselves; TypeScript's library does not list it yet. */
interface Base64Reader {
    fromBase64?: (text: string) => Uint8Array<ArrayBuffer>;
}

/**
 * The bytes of a text in base64: the standard alphabet, with padding and without line ends.
 * Throws where the text is none.
 */
export function bytesOfBase64(text: string): Uint8Array<ArrayBuffer> {
    const reader = Uint8Array as unknown as Base64Reader;
    return reader.fromBase64 === undefined ? bytesByAtob(text) : reader.fromBase64(text);
}

/** The same for engines that know no better way than atob. */
export function bytesByAtob(text: string): Uint8Array<ArrayBuffer> {
    const characters = atob(text);
    const bytes = new Uint8Array(characters.length);
    for (let i = 0; i < bytes.length; ++i) {
        bytes[i] = characters.charCodeAt(i);
    }
    return bytes;
}
