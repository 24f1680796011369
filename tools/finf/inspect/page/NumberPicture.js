
/** The numbers of an array as a curve, with the least and the greatest one. */
class NumberPicture {
    constructor(values, page) {
        this._values = values;
        this._page = page;
        this._measure();
        const range = `${NumberPicture._text(this._least)} to ${NumberPicture._text(this._greatest)}`;
        this._canvas = Dom.make("canvas", {role: "img", "aria-label": `Curve of the values, ${range}`});
        this.element = Dom.make("figure", {}, this._canvas, Dom.make("figcaption", {}, range));
        new ResizeObserver(() => this._draw()).observe(this._canvas);
    }

    // The least and the greatest number of each column.
    _measure() {
        const columns = Math.min(this._values.count, NumberPicture._COLUMNS);
        this._lows = new Array(columns).fill(Infinity);
        this._highs = new Array(columns).fill(-Infinity);
        for (let i = 0; i < this._values.count; ++i) {
            const number = this._values.number(i);
            if (Number.isFinite(number)) {
                const column = Math.floor(i * columns / this._values.count);
                this._lows[column] = Math.min(this._lows[column], number);
                this._highs[column] = Math.max(this._highs[column], number);
            }
        }
        this._least = this._lows.reduce((a, b) => Math.min(a, b), Infinity);
        this._greatest = this._highs.reduce((a, b) => Math.max(a, b), -Infinity);
    }

    _draw() {
        const canvas = this._canvas;
        const width = canvas.width = canvas.clientWidth * devicePixelRatio;
        const height = canvas.height = canvas.clientHeight * devicePixelRatio;
        const context = canvas.getContext("2d");
        const range = this._greatest - this._least || 1;
        const margin = 2 * devicePixelRatio;
        const y = number => height - margin - (number - this._least) / range * (height - 2 * margin);
        context.strokeStyle = this._page.colour("--kind-6");
        context.lineWidth = 1.5 * devicePixelRatio;
        context.beginPath();
        this._lows.forEach((low, column) => {
            if (low <= this._highs[column]) {
                const x = (column + 0.5) / this._lows.length * width;
                context.lineTo(x, y(low));
                context.lineTo(x, y(this._highs[column]));
            }
        });
        context.stroke();
    }

    static _text(number) {
        return Number.isFinite(number) ? String(number) : "no finite number";
    }

    static _COLUMNS = 400;
}
