
/** The whole document as a strip: what the octets of each stretch are spent on. It is a slider for the place, too. */
class DocumentMap {
    constructor(page) {
        this._page = page;
        this._fields = page.fields;
        this._canvas = document.getElementById("map-canvas");
        this._legend = document.getElementById("legend");
        this._canvas.addEventListener("pointerdown", event => this._dragged(event));
        this._canvas.addEventListener("pointermove", event => {
            if (event.buttons & 1) {
                this._dragged(event);
            }
        });
        this._canvas.addEventListener("keydown", event => this._key(event));
        this._canvas.ariaValueMin = this._fields.firstOctet;
        this._canvas.ariaValueMax = Math.max(this._fields.firstOctet, this._fields.lastOctet - 1);
        new ResizeObserver(() => this.update()).observe(this._canvas);
        page.kinds.forEach((name, kind) => this._legend.append(
            Dom.make("li", {class: `kind-${kind}`}, Dom.make("span", {class: "swatch"}), name)));
        this.update();
    }

    /** Shows which kinds there are once it is known. */
    showKinds() {
        [...this._legend.children].forEach((item, kind) => {
            item.hidden = this._page.spending.kinds[kind] === 0;
        });
        this._picture = null;
        this.update();
    }

    /** To be called when the colours are others. */
    colour() {
        this._picture = null;
        this.update();
    }

    update() {
        const octet = this._page.octet;
        this._canvas.ariaValueNow = octet;
        this._canvas.ariaValueText = `Offset ${Quoting.place(octet * 8)}`;
        this._frame ??= requestAnimationFrame(() => {
            this._frame = undefined;
            this._draw();
        });
    }

    _draw() {
        const canvas = this._canvas;
        const scale = devicePixelRatio;
        const width = Math.max(1, Math.round(canvas.clientWidth * scale));
        const height = Math.max(1, Math.round(canvas.clientHeight * scale));
        if (canvas.width !== width || canvas.height !== height || !this._picture) {
            canvas.width = width;
            canvas.height = height;
            this._picture = Dom.make("canvas", {width, height});
            this._drawKinds(this._picture.getContext("2d"), width, height);
        }
        const context = canvas.getContext("2d");
        context.clearRect(0, 0, width, height);
        context.drawImage(this._picture, 0, 0);
        const size = this._fields.octets.length;
        const x = octet => (octet - this._fields.firstOctet) / size * width;
        context.lineWidth = 2 * scale;
        context.strokeStyle = this._page.colour("--accent");
        const [first, last] = this._page.octetsInSight;
        context.strokeRect(x(first), scale, Math.max(3 * scale, x(Math.min(last, this._fields.lastOctet)) - x(first)),
            height - 2 * scale);
        context.fillStyle = this._page.colour("--text");
        context.fillRect(x(this._page.octet) - scale, 0, 2 * scale, height);
    }

    _drawKinds(context, width, height) {
        const colours = this._page.kinds.map((_, kind) => this._page.colour(`--kind-${kind}`));
        const {slots, slotBits} = this._page.spending;
        slots.forEach((kinds, slot) => {
            const from = Math.floor(slot * width / slots.length);
            const to = Math.ceil((slot + 1) * width / slots.length);
            let y = height;
            kinds.forEach((bits, kind) => {
                const part = bits / slotBits * height;
                context.fillStyle = colours[kind];
                context.fillRect(from, y - part, to - from, part);
                y -= part;
            });
        });
    }

    _dragged(event) {
        const {left, width} = this._canvas.getBoundingClientRect();
        this._goTo(this._fields.firstOctet + Math.floor((event.clientX - left) / width * this._fields.octets.length));
    }

    _key(event) {
        const step = Math.max(1, Math.round(this._fields.octets.length / 100));
        const octet = this._page.octet;
        const target = {
            ArrowLeft: octet - step, ArrowDown: octet - step, ArrowRight: octet + step, ArrowUp: octet + step,
            PageDown: octet - 10 * step, PageUp: octet + 10 * step,
            Home: this._fields.firstOctet, End: this._fields.lastOctet - 1,
        }[event.key];
        if (target !== undefined && !event.altKey && !event.ctrlKey && !event.metaKey) {
            event.preventDefault();
            this._goTo(target);
        }
    }

    _goTo(octet) {
        octet = Math.min(Math.max(octet, this._fields.firstOctet), this._fields.lastOctet - 1);
        this._page.select(this._fields.fieldAt(octet * 8), {from: this, octet});
    }
}
