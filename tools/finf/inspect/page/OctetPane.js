
/**
 * The octets: rows of sixteen (eight where there is little room) in hexadecimal and as ASCII, coloured by what they are
 * spent on, with the octets of constructs marked to the bit.
 */
class OctetPane {
    constructor(page) {
        this._page = page;
        this._fields = page.fields;
        this._grid = document.getElementById("octets");
        this._cursor = this._fields.firstOctet;
        this._width = 16;
        this._list = new VirtualList(this._grid, {
            rowHeight: 20,
            makeRow: () => this._makeRow(),
            fillRow: (element, row) => this._fillRow(element, row),
            filled: () => this._setActive(),
        });
        this._grid.addEventListener("click", event => this._clicked(event));
        this._grid.addEventListener("mousemove", event => this._page.hover(this._fieldUnder(event)));
        this._grid.addEventListener("mouseleave", () => this._page.hover(-1));
        this._grid.addEventListener("keydown", event => this._key(event));
        const narrow = matchMedia("(max-width: 1100px)");
        const setWidth = () => {
            this._width = narrow.matches ? 8 : 16;
            this._grid.classList.toggle("narrow", narrow.matches);
            this._grid.setAttribute("aria-colcount", this._width + 1);
            this._base = this._fields.firstOctet - this._fields.firstOctet % this._width;
            this._list.count = Math.ceil((this._fields.lastOctet - this._base) / this._width);
            this._grid.setAttribute("aria-rowcount", this._list.count);
            this._list.show(this._rowOf(this._cursor));
        };
        narrow.addEventListener("change", setWidth);
        setWidth();
    }

    /** Where the cursor is. */
    get cursor() {
        return this._cursor;
    }

    /** The first octet in sight and the one behind the last. */
    get inSight() {
        return [this._base + this._list.firstRow * this._width, this._base + this._list.lastRow * this._width];
    }

    /** Puts the cursor on an octet and shows it. */
    show(octet) {
        this._cursor = Math.min(Math.max(octet, this._fields.firstOctet), this._fields.lastOctet - 1);
        this._list.show(this._rowOf(this._cursor));
        this._list.update();
    }

    update() {
        this._list.update();
    }

    focus() {
        this._grid.focus();
    }

    _rowOf(octet) {
        return Math.floor((octet - this._base) / this._width);
    }

    _makeRow() {
        const row = Dom.make("div", {class: "row", role: "row"});
        row.head = Dom.make("span", {class: "offset", role: "rowheader"});
        row.cells = Array.from({length: 16}, () => Dom.make("span", {role: "gridcell"}));
        row.ascii = Array.from({length: 3}, () => Dom.make("span"));
        row.ascii[1].className = "marked";
        row.append(row.head, ...row.cells, Dom.make("span", {class: "ascii", "aria-hidden": "true"}, ...row.ascii));
        return row;
    }

    _fillRow(element, row) {
        const start = this._base + row * this._width;
        element.setAttribute("aria-rowindex", row + 1);
        element.head.textContent = start.toString(16).padStart(8, "0");
        const marks = this._page.marks;
        const texts = ["", "", ""];
        let field = this._fields.fieldAt(Math.max(start, this._fields.firstOctet) * 8);
        element.cells.forEach((cell, i) => {
            const octet = start + i;
            cell.hidden = i >= this._width;
            if (cell.hidden) {
                return;
            }
            if (octet < this._fields.firstOctet || octet >= this._fields.lastOctet) {
                cell.className = "";
                cell.textContent = "";
                cell.removeAttribute("id");
                cell.removeAttribute("aria-selected");
                texts[2] += " ";
                return;
            }
            const value = this._fields.octet(octet);
            const [kind, next] = this._kindOf(octet, field);
            field = next;
            let classes = kind < 0 ? "unread" : `kind-${kind}`;
            const isSelected = OctetPane._covers(marks.selected, octet);
            for (const [name, bits] of Object.entries(marks)) {
                if (OctetPane._covers(bits, octet)) {
                    classes += " " + name;
                }
            }
            cell.className = classes + (octet === this._cursor ? " cursor" : "");
            // Of an octet that it shares, as much is marked as is its own.
            const [first, last] = isSelected ? marks.selected : [0, Infinity];
            cell.classList.toggle("part", first > octet * 8 || last < octet * 8 + 8);
            cell.style.setProperty("--first", Math.max(0, first - octet * 8) / 8);
            cell.style.setProperty("--last", Math.min(8, last - octet * 8) / 8);
            cell.id = `octet-${octet}`;
            cell.ariaSelected = isSelected;
            cell.textContent = Quoting.hex(value);
            const character = value >= 0x20 && value < 0x7F ? String.fromCharCode(value) : "\u00B7";
            texts[isSelected ? 1 : octet * 8 < marks.selected[0] ? 0 : 2] += character;
        });
        element.ascii.forEach((part, i) => {
            part.textContent = texts[i];
        });
    }

    // What most bits of an octet are spent on, -1 when nobody has read it; and the field that goes on behind it. The
    // search begins with a field.
    _kindOf(octet, field) {
        if (field < 0 || field >= this._fields.count) {
            return [-1, field];
        }
        const sums = new Array(this._page.kinds.length).fill(0);
        let isRead = false;
        for (; field < this._fields.count; ++field) {
            let bit = this._fields.start(field);
            for (const {kind, bits} of this._fields.parts(field)) {
                const common = Math.min(bit + bits, octet * 8 + 8) - Math.max(bit, octet * 8);
                if (common > 0) {
                    sums[kind] += common;
                    isRead = true;
                }
                bit += bits;
            }
            if (this._fields.end(field) > octet * 8 + 8) {
                break;
            }
        }
        return [isRead ? sums.indexOf(Math.max(...sums)) : -1, field];
    }

    static _covers([first, last], octet) {
        return first < octet * 8 + 8 && last > octet * 8;
    }

    _setActive() {
        const id = `octet-${this._cursor}`;
        if (document.getElementById(id)) {
            this._grid.setAttribute("aria-activedescendant", id);
        } else {
            this._grid.removeAttribute("aria-activedescendant");
        }
        this._page.scrolled();
    }

    _octetUnder(event) {
        const cell = event.target.closest("[role=gridcell]");
        return cell?.id ? Number(cell.id.slice(6)) : -1;
    }

    _fieldUnder(event) {
        const octet = this._octetUnder(event);
        return octet < 0 ? -1 : this._fields.fieldAt(octet * 8);
    }

    _clicked(event) {
        const octet = this._octetUnder(event);
        if (octet >= 0) {
            this._choose(octet, octet === this._cursor);
        }
    }

    // Of constructs that share an octet the first one is selected, and the next one when it is chosen again.
    _choose(octet, isAgain) {
        let field = this._fields.fieldAt(octet * 8);
        const [first, last] = this._page.marks.selected;
        if (isAgain && OctetPane._covers([first, last], octet)) {
            const next = this._fields.fieldAt(last);
            if (next >= 0 && this._fields.start(next) < octet * 8 + 8) {
                field = next;
            }
        }
        this._cursor = octet;
        this._page.select(field, {octet, from: this});
        this._list.show(this._rowOf(octet));
        this._list.update();
    }

    _key(event) {
        if (event.altKey || event.metaKey) {
            return;
        }
        const page = this._list.rowsInSight * this._width;
        const inRow = (this._cursor - this._base) % this._width;
        const moves = {
            ArrowLeft: -1, ArrowRight: 1, ArrowUp: -this._width, ArrowDown: this._width, PageUp: -page, PageDown: page,
            Home: event.ctrlKey ? -Infinity : -inRow, End: event.ctrlKey ? Infinity : this._width - 1 - inRow,
        };
        if (event.key === " ") {
            this._choose(this._cursor, true);
        } else if (event.key === "Enter") {
            this._page.focusConstructs();
        } else if (event.key in moves) {
            const target = this._cursor + moves[event.key];
            this._choose(Math.min(Math.max(target, this._fields.firstOctet), this._fields.lastOctet - 1), false);
        } else {
            return;
        }
        event.preventDefault();
    }
}
