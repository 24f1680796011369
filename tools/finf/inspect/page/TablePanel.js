
/** The vocabulary tables: entries, what has added them and how often they were used. */
class TablePanel {
    constructor(page, element) {
        this._page = page;
        this._fields = page.fields;
        this._table = Dom.make("select", {id: "table"});
        this._order = Dom.make("select", {id: "table-order"}, new Option("by number", "index"),
            new Option("by uses", "uses"), new Option("by octets", "octets"));
        this._summary = Dom.make("p", {class: "summary"});
        this._scroller = Dom.make("div",
            {"class": "scroller entries", "role": "table", "tabindex": "0", "aria-label": "Entries"});
        element.append(Dom.make("div", {class: "choices"}, Dom.make("label", {for: "table"}, "Table "), this._table,
            Dom.make("label", {for: "table-order"}, " Order "), this._order), this._summary, this._scroller);
        this._fields.tables.forEach((table, number) => {
            if (table.size > 0) {
                this._table.append(new Option(`${table.name} (${Quoting.number(this._entriesOf(table))})`, number));
            }
        });
        this._table.addEventListener("change", () => this._arrange());
        this._order.addEventListener("change", () => this._arrange());
        this._list = new VirtualList(this._scroller, {
            rowHeight: 24,
            makeRow: () => this._makeRow(),
            fillRow: (row, number) => this._fillRow(row, number),
        });
    }

    show() {
        if (!this._entries && this._table.options.length > 0) {
            this._arrange();
        }
        this._list.update();
    }

    /** Shows an entry, and puts the focus on it. */
    showEntry(table, index) {
        this._table.value = table;
        this._order.value = "index";
        this._arrange();
        const row = index - this._first;
        this._list.show(row);
        this._marked = index;
        requestAnimationFrame(() => requestAnimationFrame(() => this._list.elementOf(row)?.button.focus()));
    }

    _entriesOf(table) {
        return table.size - table.first + 1;
    }

    _arrange() {
        const number = this._number = Number(this._table.value);
        const table = this._fields.tables[number];
        this._first = table.first;
        this._marked = 0;
        this._entries = Uint32Array.from({length: this._entriesOf(table)}, (_, i) => table.first + i);
        if (this._order.value !== "index") {
            const key = this._order.value === "uses"
                ? index => table.usesOf(index) : index => this._octets(table, index);
            const keys = Float64Array.from({length: table.size + 1}, (_, index) => key(index));
            this._entries.sort((a, b) => keys[b] - keys[a] || a - b);
        }
        this._inNames = this._namesBy(number);
        let unused = 0;
        let unusedOctets = 0;
        for (const index of this._entries) {
            if (table.usesOf(index) === 0 && !this._inNames?.[index]) {
                ++unused;
                unusedOctets += this._octets(table, index);
            }
        }
        const all = table.hits + table.added + table.neither;
        this._summary.textContent = `${Quoting.number(table.hits)} hits (${Quoting.percent(table.hits, all)}), ` +
            `${Quoting.number(table.added)} added, ${Quoting.number(table.neither)} literals in no table. ` +
            (unused ? `${Quoting.number(unused)} entries were never used` +
                (unusedOctets ? `; their literals take ${Quoting.number(unusedOctets)} octets.` : ".") : "");
        this._list.count = this._entries.length;
        this._scroller.setAttribute("aria-rowcount", this._entries.length);
    }

    // Of how many names each entry of a table is a part; null for tables that hold no parts.
    _namesBy(number) {
        const part = number - FieldList.PREFIX;
        if (part < 0 || part > 2) {
            return null;
        }
        const counts = new Uint32Array(this._fields.tables[number].size + 1);
        for (const {names} of this._fields.tables) {
            for (let i = part; i < (names?.length ?? 0); i += 3) {
                ++counts[names[i]];
            }
        }
        return counts;
    }

    _octets(table, index) {
        const field = table.addedBy(index);
        return field < 0 ? 0 : this._fields.literalSize(field);
    }

    _makeRow() {
        const row = Dom.make("div", {class: "row", role: "row"});
        const cell = (name, role = "cell") => row[name] = Dom.make("span", {class: name, role});
        row.append(cell("number", "rowheader"), cell("text"), cell("uses"), cell("origin"));
        row.button = Dom.button("", () => this._page.select(row.field, {from: this}));
        return row;
    }

    _fillRow(row, number) {
        const index = this._entries[number];
        const table = this._fields.tables[this._number];
        row.ariaRowIndex = number + 1;
        row.classList.toggle("selected", index === this._marked);
        row.number.textContent = index;
        let text = this._fields.quotedEntry(this._number, index, 120);
        if (table.names) {
            const namespaceName = this._fields.namespaceOf(this._number, index);
            text += namespaceName.length ? ` in ${Quoting.quoted(namespaceName, 120)}` : "";
        }
        row.text.textContent = text;
        const names = this._inNames?.[index] ?? 0;
        row.uses.textContent = (names ? `${Quoting.counted(names, "name")}, ` : "") +
            Quoting.counted(table.usesOf(index), "use");
        row.field = table.addedBy(index);
        if (row.field < 0) {
            row.origin.textContent = "there before";
        } else {
            row.button.textContent = `at ${Quoting.place(this._fields.start(row.field))}`;
            row.origin.replaceChildren(row.button);
        }
    }
}
