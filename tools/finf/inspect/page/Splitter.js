
/** The line between constructs and panel, which can be moved by pointer and keys. */
class Splitter {
    constructor() {
        this._line = document.getElementById("splitter");
        this._main = document.querySelector("main");
        this._set(60);
        this._line.addEventListener("pointerdown", event => this._line.setPointerCapture(event.pointerId));
        this._line.addEventListener("pointermove", event => {
            if (this._line.hasPointerCapture(event.pointerId)) {
                const {top, height} = this._main.getBoundingClientRect();
                this._set(100 * (event.clientY - top) / height);
            }
        });
        this._line.addEventListener("keydown", event => {
            const step = {ArrowUp: -5, ArrowDown: 5, Home: -100, End: 100}[event.key];
            if (step) {
                event.preventDefault();
                this._set(this._part + step);
            }
        });
    }

    // The part of the height that is above, in per cent.
    _set(part) {
        this._part = Math.min(Math.max(15, part), 85);
        this._line.ariaValueNow = Math.round(this._part);
        this._main.style.setProperty("--above", `${this._part}fr`);
        this._main.style.setProperty("--below", `${100 - this._part}fr`);
    }
}
