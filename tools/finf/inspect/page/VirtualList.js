
/**
 * A scroller over any number of rows, of which only those in sight are elements of the page; they are made once and
 * filled anew. Browsers cannot lay out a box as high as millions of rows, so beyond a height the scroll bar stands for
 * the whole in proportion, while the wheel and the keys still move by what they say.
 */
class VirtualList {
    /**
     * scroller is the element that scrolls. makeRow() returns an element; fillRow(element, number) makes it show a row;
     * filled() is called when all in sight are right.
     */
    constructor(scroller, {rowHeight, makeRow, fillRow, filled = () => {}}) {
        this.scroller = scroller;
        this.rowHeight = rowHeight;
        this._makeRow = makeRow;
        this._fillRow = fillRow;
        this._filled = filled;
        this._count = 0;
        this._top = 0; // how many pixels of rows are above what is in sight
        this._rows = [];
        this._spacer = VirtualList._box("spacer");
        this._window = VirtualList._box("window");
        this._spacer.append(this._window);
        scroller.replaceChildren(this._spacer);
        scroller.addEventListener("scroll", () => this._scrolled(), {passive: true});
        scroller.addEventListener("wheel", event => this._wheel(event), {passive: false});
        new ResizeObserver(() => this.update()).observe(scroller);
    }

    get count() {
        return this._count;
    }
    set count(count) {
        this._count = count;
        this._spacer.style.height = `${this._spacerHeight()}px`;
        this._moveTo(this._top);
        this.update();
    }

    /** The first row in sight, and the one behind the last that is in sight as a whole. */
    get firstRow() {
        return Math.floor(this._top / this.rowHeight);
    }
    get lastRow() {
        return Math.min(this._count, Math.floor((this._top + this._height()) / this.rowHeight));
    }

    /** How many rows fit. */
    get rowsInSight() {
        return Math.max(1, Math.floor(this._height() / this.rowHeight));
    }

    /** Brings a row into sight: as little as needed, or to the upper third when it is far away. */
    show(row) {
        const top = row * this.rowHeight;
        const height = this._height();
        if (top >= this._top && top + this.rowHeight <= this._top + height) {
            return;
        }
        if (Math.abs(top - this._top) > 2 * height) {
            this._moveTo(this.rowHeight * Math.round((top - height / 3) / this.rowHeight));
        } else {
            this._moveTo(top < this._top ? top : top + this.rowHeight - height);
        }
        this.update();
    }

    /** Draws what is in sight anew, with the next frame. */
    update() {
        this._frame ??= requestAnimationFrame(() => {
            this._frame = undefined;
            this._draw();
        });
    }

    /** The element of a row, null when it is not in sight. */
    elementOf(row) {
        return this._rows.find(element => !element.hidden && element.row === row) ?? null;
    }

    _draw() {
        const height = this._height();
        this._window.style.height = `${height}px`;
        const wanted = Math.ceil(height / this.rowHeight) + 1;
        while (this._rows.length < wanted) {
            const element = this._makeRow();
            this._rows.push(element);
            this._window.append(element);
        }
        while (this._rows.length > wanted) {
            this._rows.pop().remove();
        }
        const first = this.firstRow;
        this._rows.forEach((element, i) => {
            element.row = first + i;
            element.hidden = element.row >= this._count;
            if (!element.hidden) {
                element.style.transform = `translateY(${(first + i) * this.rowHeight - this._top}px)`;
                this._fillRow(element, element.row);
            }
        });
        this._filled();
    }

    _height() {
        return this.scroller.clientHeight;
    }

    _contentHeight() {
        return this._count * this.rowHeight;
    }

    _spacerHeight() {
        return Math.min(this._contentHeight(), VirtualList._HIGHEST);
    }

    _isInProportion() {
        return this._contentHeight() > VirtualList._HIGHEST;
    }

    _moveTo(top) {
        const range = Math.max(0, this._contentHeight() - this._height());
        this._top = Math.min(Math.max(0, top), range);
        this._expected = this._isInProportion()
            ? this._top / range * (this._spacerHeight() - this._height()) : this._top;
        this.scroller.scrollTop = this._expected;
    }

    _scrolled() {
        const scrollTop = this.scroller.scrollTop;
        if (Math.abs(scrollTop - this._expected) >= 1) { // the user has, not _moveTo
            this._expected = scrollTop;
            this._top = this._isInProportion()
                ? scrollTop / (this._spacerHeight() - this._height()) * (this._contentHeight() - this._height())
                : scrollTop;
        }
        this.update();
    }

    _wheel(event) {
        if (this._isInProportion() && !event.ctrlKey && event.deltaY !== 0) {
            event.preventDefault();
            const unit = [1, this.rowHeight, this._height()][event.deltaMode];
            this._moveTo(this._top + event.deltaY * unit);
            this.update();
        }
    }

    static _box(className) {
        const box = document.createElement("div");
        box.className = className;
        box.role = "presentation";
        return box;
    }

    static _HIGHEST = 5000000;
}
