
/** Work in slices, between which the browser gets to draw and to hear its user. */
class Slices {
    /** Lets the browser do what it has to. */
    static pause() {
        return new Promise(resolve => setTimeout(resolve));
    }

    constructor(milliseconds = 12) {
        this._milliseconds = milliseconds;
        this._end = performance.now() + milliseconds;
    }

    /** Pauses when the slice is over. */
    async next() {
        if (performance.now() >= this._end) {
            await Slices.pause();
            this._end = performance.now() + this._milliseconds;
        }
    }
}
