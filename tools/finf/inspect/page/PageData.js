
/** The data that the page carries (see PageData.h): blocks of base64, deflated, under a name. */
class PageData {
    /** Takes the blocks out of the page. */
    constructor() {
        this._blocks = new Map();
        for (const element of document.querySelectorAll("script[data-name]")) {
            const name = element.dataset.name;
            if (!this._blocks.has(name)) {
                this._blocks.set(name, []);
            }
            this._blocks.get(name).push(element.textContent);
            element.remove();
        }
    }

    /** The octets under a name, of which there are size; can be asked for once. */
    async read(name, size, progress) {
        const blocks = this._blocks.get(name) ?? [];
        this._blocks.delete(name);
        const inflater = new DecompressionStream("deflate");
        const written = PageData._write(blocks, inflater.writable.getWriter());
        const octets = new Uint8Array(size);
        let count = 0;
        for (const reader = inflater.readable.getReader(); ;) {
            const {done, value} = await reader.read();
            if (done) {
                break;
            }
            octets.set(value, count);
            count += value.length;
            progress?.(count);
        }
        await written;
        if (count !== size) {
            throw new Error(`the page should hold ${size} octets of "${name}" and holds ${count}`);
        }
        return octets;
    }

    /** The object under a name, whose JSON text is all there is of it. */
    async readJson(name) {
        const inflater = new DecompressionStream("deflate");
        PageData._write(this._blocks.get(name) ?? [], inflater.writable.getWriter()).catch(() => {});
        return JSON.parse(await new Response(inflater.readable).text());
    }

    static async _write(blocks, writer) {
        for (let i = 0; i < blocks.length; ++i) {
            const octets = PageData._octetsOf(blocks[i]);
            blocks[i] = ""; // which may be forgotten now
            await writer.write(octets);
        }
        await writer.close();
    }

    static _octetsOf(base64) {
        if (Uint8Array.fromBase64) {
            return Uint8Array.fromBase64(base64);
        }
        const text = atob(base64);
        const octets = new Uint8Array(text.length);
        for (let i = 0; i < text.length; ++i) {
            octets[i] = text.charCodeAt(i);
        }
        return octets;
    }
}
