
/** The constructs as a tree, one a row, as `finf inspect` words them. Those that hold others can be closed. */
class TreePane {
    constructor(page) {
        this._page = page;
        this._fields = page.fields;
        this._tree = document.getElementById("constructs");
        this._closed = new Uint8Array(this._fields.count); // by field: 1 for closed
        this._rows = null; // the fields in rows; null when those are all fields
        this._list = new VirtualList(this._tree, {
            rowHeight: 22,
            makeRow: () => this._makeRow(),
            fillRow: (element, row) => this._fillRow(element, row),
            filled: () => this._setActive(),
        });
        this._list.count = this._fields.count;
        this._tree.addEventListener("click", event => this._clicked(event));
        this._tree.addEventListener("dblclick", event => this._toggle(this._fieldUnder(event)));
        this._tree.addEventListener("mousemove", event => this._page.hover(this._fieldUnder(event)));
        this._tree.addEventListener("mouseleave", () => this._page.hover(-1));
        this._tree.addEventListener("keydown", event => this._key(event));
        document.getElementById("collapse").addEventListener("click", () => this._closeAll());
        document.getElementById("expand").addEventListener("click", () => this._openAll());
    }

    /** Brings a construct into sight, opening what it is in. */
    show(field) {
        if (this._rows) {
            const around = this._fields.ancestors(field);
            if (this._fields.shape(field).source === "element") {
                around.push(this._fields.elementOf(field));
            }
            if (around.some(each => this._closed[each])) {
                around.forEach(each => this._closed[each] = 0);
                this._arrange();
            }
        }
        this._list.show(this._rowOf(field));
        this._list.update();
    }

    update() {
        this._list.update();
    }

    focus() {
        this._tree.focus();
    }

    _isParent(field) {
        return this._fields.behind(field) > field + 1;
    }

    _fieldOf(row) {
        return this._rows ? this._rows[row] : row;
    }

    // The row of a field, or the one of what hides it.
    _rowOf(field) {
        if (!this._rows) {
            return field;
        }
        let low = 0;
        let high = this._rowCount - 1;
        while (low < high) {
            const middle = (low + high + 1) >>> 1;
            if (this._rows[middle] <= field) {
                low = middle;
            } else {
                high = middle - 1;
            }
        }
        return low;
    }

    _arrange() {
        this._rows ??= new Uint32Array(this._fields.count);
        let count = 0;
        for (let field = 0; field < this._fields.count;) {
            this._rows[count++] = field;
            field = this._closed[field] ? this._fields.behind(field) : field + 1;
        }
        if (count === this._fields.count) {
            this._rows = null;
        }
        this._rowCount = count;
        this._list.count = count;
    }

    _toggle(field) {
        if (field >= 0 && this._isParent(field)) {
            this._closed[field] ^= 1;
            this._arrange();
            this._list.show(this._rowOf(Math.max(0, this._page.selected)));
        }
    }

    // All but the outermost, so that the structure is what remains.
    _closeAll() {
        this._closed.fill(0);
        for (let field = 0; field < this._fields.count; ++field) {
            if (this._isParent(field) && this._fields.depth(field) > 0) {
                this._closed[field] = 1;
                field = this._fields.behind(field) - 1;
            }
        }
        this._arrange();
        this._list.show(this._rowOf(Math.max(0, this._page.selected)));
    }

    _openAll() {
        this._closed.fill(0);
        this._arrange();
        this._list.show(this._rowOf(Math.max(0, this._page.selected)));
    }

    _makeRow() {
        const row = Dom.make("div", {class: "row", role: "treeitem"});
        const part = name => row[name] = Dom.make("span", {class: name});
        row.append(part("offset"), part("indent"), part("toggle"), part("construct"), part("value"),
            part("encoding"), part("entry"), part("note"), part("size"));
        row.toggle.ariaHidden = "true";
        return row;
    }

    _fillRow(element, row) {
        const field = this._fieldOf(row);
        const fields = this._fields;
        const shape = fields.shape(field);
        const isFault = field === this._page.faultField;
        const isParent = this._isParent(field);
        const isClosed = this._closed[field] === 1;
        const depth = fields.depth(field);
        element.id = `construct-${field}`;
        element.className = "row" + (field === this._page.selected ? " selected" : "") +
            (field === this._page.hovered ? " hovered" : "") + (this._page.isMatch(field) ? " match" : "") +
            (isFault ? " fault" : "") + (shape.isElement ? " head" : "");
        element.ariaLevel = depth + 1;
        element.ariaSelected = field === this._page.selected;
        if (isParent) {
            element.ariaExpanded = !isClosed;
        } else {
            element.removeAttribute("aria-expanded");
        }
        const bits = fields.bits(field);
        const start = fields.start(field);
        element.offset.textContent = bits === 0 ? ""
            : Math.floor(start / 8).toString(16).padStart(8, "0") + (start % 8 ? `.${start % 8}` : "");
        // Those that are deep are numbered instead, or nothing of them would be seen.
        element.indent.style.width = `${Math.min(depth, TreePane._DEEPEST) * 16}px`;
        element.indent.textContent = depth > TreePane._DEEPEST ? depth : "";
        element.toggle.textContent = !isParent ? "" : isClosed ? "\u25B8" : "\u25BE";
        element.construct.textContent = isFault ? `broken ${shape.construct}` : shape.construct;
        const hasValue = !isFault && fields.hasValue(field);
        element.value.textContent = hasValue ? fields.quotedValue(field, TreePane._SHORT) : "";
        element.note.textContent = isFault ? this._page.faultReason
            : shape.construct === "trailing octets" ? Quoting.number(bits / 8) : fields.note(field);
        element.encoding.textContent = shape.encoding !== "UTF-8" ? shape.encoding : "";
        const index = fields.index(field);
        element.entry.textContent = shape.use === "" || index === 0 ? ""
            : `${shape.use === "adds" ? "+" : "="} ${this._page.tableName(shape.table)} ${index}`;
        // What is nested counts for what it is nested in.
        const all = fields.start(fields.behind(field)) - start;
        element.size.textContent = all ? Quoting.octets(all) : "";
        if (shape.isElement && !hasValue && !isFault) {
            // The name stands further down, but it is what one looks for.
            element.value.textContent = Quoting.quoted(fields.elementName(field, TreePane._SHORT), TreePane._SHORT);
            element.value.classList.add("implied");
        } else {
            element.value.classList.remove("implied");
        }
    }

    _setActive() {
        const id = `construct-${this._page.selected}`;
        if (document.getElementById(id)) {
            this._tree.setAttribute("aria-activedescendant", id);
        } else {
            this._tree.removeAttribute("aria-activedescendant");
        }
    }

    _fieldUnder(event) {
        const row = event.target.closest("[role=treeitem]");
        return row ? Number(row.id.slice(10)) : -1;
    }

    _clicked(event) {
        const field = this._fieldUnder(event);
        if (field < 0) {
            return;
        }
        if (event.target.classList.contains("toggle")) {
            this._toggle(field);
        } else {
            this._page.select(field, {from: this});
        }
    }

    _key(event) {
        if (event.altKey || event.metaKey || event.ctrlKey) {
            return;
        }
        const selected = Math.max(0, this._page.selected);
        const row = this._rowOf(selected);
        const last = this._list.count - 1;
        const moves = {
            ArrowUp: row - 1, ArrowDown: row + 1, Home: 0, End: last,
            PageUp: row - this._list.rowsInSight, PageDown: row + this._list.rowsInSight,
        };
        if (event.key in moves) {
            this._page.select(this._fieldOf(Math.min(Math.max(moves[event.key], 0), last)), {from: this});
        } else if (event.key === "ArrowRight" && this._closed[selected]) {
            this._toggle(selected);
        } else if (event.key === "ArrowRight") {
            if (this._isParent(selected)) {
                this._page.select(selected + 1, {from: this});
            }
        } else if (event.key === "ArrowLeft" && this._isParent(selected) && !this._closed[selected]) {
            this._toggle(selected);
        } else if (event.key === "ArrowLeft") {
            const parent = this._fields.parent(selected);
            if (parent >= 0) {
                this._page.select(parent, {from: this});
            }
        } else if (event.key === " ") {
            this._toggle(selected);
        } else if (event.key === "Enter") {
            this._page.focusOctets();
        } else {
            return;
        }
        event.preventDefault();
    }

    static _DEEPEST = 24;
    static _SHORT = 120;
}
