
/** All about the construct that is selected: what it says, bit by bit, and what it has to do with tables. */
class DetailPanel {
    constructor(page, element) {
        this._page = page;
        this._fields = page.fields;
        this._element = element;
    }

    show() {
        const field = this._page.selected;
        this._element.scrollTop = 0;
        if (field < 0) {
            this._element.replaceChildren(Dom.make("p", {}, this._fields.octets.length === 0
                ? "There are no constructs on this page."
                : "These octets stand behind the fault. Nobody knows what they mean."));
            return;
        }
        const shape = this._fields.shape(field);
        const facts = Dom.make("dl");
        const fact = (name, ...content) => facts.append(Dom.make("dt", {}, name), Dom.make("dd", {}, ...content));
        const isFault = field === this._page.faultField;
        if (isFault) {
            fact("Fault", this._page.faultReason);
        }
        fact("Place", Quoting.place(this._fields.start(field)));
        fact("Size", this._size(field));
        if (this._fields.note(field)) {
            fact("Says", this._fields.note(field));
        }
        if (this._fields.hasValue(field) && !isFault) {
            fact("Value", this._value(field));
        }
        if (shape.encoding) {
            fact("Encoding", shape.encoding);
        }
        if (shape.use === "literal") {
            fact("Table", this._fields.index(field) ? "a literal of what the table holds already" : "not added to any");
        } else if (shape.use) {
            fact("Table", ...this._entry(field));
        }
        const values = isFault ? null : this._fields.typedValues(field);
        this._element.replaceChildren(Dom.make("h3", {}, (isFault ? "broken " : "") + shape.construct),
            this._path(field), facts, this._bits(field), ...(values?.isList ? [this._numbers(field, values)] : []));
    }

    _size(field) {
        const bits = this._fields.bits(field);
        const all = this._fields.start(this._fields.behind(field)) - this._fields.start(field);
        const own = bits === 0 ? "none: the constructs before it imply it"
            : `${Quoting.octets(bits)} octet${bits === 8 ? "" : "s"}` +
                (bits % 8 ? ` (${Quoting.counted(bits, "bit")})` : "");
        return all > bits
            ? `${own}; with what is nested ${Quoting.octets(all)} octets, ` +
                `${Quoting.percent(all, this._fields.octets.length * 8)} of the page`
            : own;
    }

    _path(field) {
        const path = Dom.make("nav", {"class": "path", "aria-label": "Nested in"});
        const elements = this._fields.ancestors(field);
        if (elements.length > DetailPanel._LONGEST_PATH) {
            path.append(`${elements.length - DetailPanel._LONGEST_PATH} more / `);
        }
        for (const each of elements.slice(-DetailPanel._LONGEST_PATH)) {
            const shape = this._fields.shape(each);
            const name = shape.isElement
                ? Quoting.quoted(this._fields.elementName(each, 40), 40).slice(1, -1) : shape.construct;
            path.append(Dom.button(name, () => this._page.select(each, {from: this})), " / ");
        }
        return path;
    }

    _value(field) {
        if (this._fields.typedValues(field)?.isList) {
            return Dom.make("div", {class: "value"}, this._fields.quotedValue(field, 2000)); // all of them are below
        }
        const octets = this._fields.value(field);
        const box = Dom.make("div", {class: "value"});
        let shown = 0;
        const more = Dom.button("Show more", () => {
            let end = Math.min(octets.length, shown + DetailPanel._VALUE);
            while (end < octets.length && end > shown + 1 && (octets[end] & 0xC0) === 0x80) {
                --end;
            }
            more.before(Quoting.escaped(octets, shown, end));
            shown = end;
            more.hidden = shown === octets.length;
            if (more.hidden) {
                more.after('"');
            }
        });
        box.append('"', more);
        more.click();
        return box;
    }

    _entry(field) {
        const {use, table} = this._fields.shape(field);
        const index = this._fields.index(field);
        const entries = this._fields.tables[table];
        const name = `${this._page.tableName(table)} ${index}`;
        const adder = entries.addedBy(index);
        const uses = entries.usesOf(index);
        const content = [use === "adds" ? `adds ${name}` : `stands for ${name}`];
        if (use !== "adds") {
            content.push(adder < 0 ? ", which was there before. "
                : `, added at ${Quoting.place(this._fields.start(adder))}. `);
        } else {
            content.push(". ");
        }
        content.push(`${Quoting.counted(uses, "use")} on this page. `);
        const go = (text, target) => {
            if (target >= 0) {
                content.push(Dom.button(text, () => this._page.select(target, {from: this})), " ");
            }
        };
        go("Where it was added", use === "adds" ? -1 : adder);
        if (uses > (use === "adds" ? 0 : 1)) {
            go("Previous use", this._use(field, -1));
            go("Next use", this._use(field, 1));
        }
        content.push(Dom.button("In its table", () => this._page.showEntry(table, index)));
        return content;
    }

    // The next field in a direction that reads the same entry, -1 for none.
    _use(field, step) {
        const {table} = this._fields.shape(field);
        const index = this._fields.index(field);
        for (let i = field + step; i >= 0 && i < this._fields.count; i += step) {
            const shape = this._fields.shape(i);
            if (shape.use === "reads" && shape.table === table && this._fields.index(i) === index) {
                return i;
            }
        }
        return -1;
    }

    _bits(field) {
        let bit = this._fields.start(field);
        const rows = this._fields.parts(field).map(({kind, bits}) => {
            const row = [Quoting.place(bit), this._digits(bit, bits, kind), Quoting.octets(bits),
                Dom.make("span", {class: `kind-${kind}`}, Dom.make("span", {class: "swatch"}), this._page.kinds[kind])];
            bit += bits;
            return row;
        });
        return Dom.table("Bit by bit", ["Place", "Bits, or octets", "Octets", "Spent on"], rows);
    }

    // What is octets in hexadecimal; all else in binary, with a space where another octet begins.
    _digits(bit, bits, kind) {
        const digits = [];
        if (bits % 8 === 0 && bit % 8 === 0 && (kind >= FieldList.LITERAL_NAME || bits > 32)) {
            for (let i = 0; i < bits / 8 && i < DetailPanel._OCTETS; ++i) {
                digits.push(Quoting.hex(this._fields.octet(bit / 8 + i)));
            }
            return digits.join(" ") + (bits / 8 > DetailPanel._OCTETS ? " \u2026" : "");
        }
        for (let at = bit; at < bit + bits; ++at) {
            const octet = this._fields.octet(Math.floor(at / 8));
            digits.push(at > bit && at % 8 === 0 ? " " : "", (octet >> (7 - at % 8)) & 1);
        }
        return digits.join("");
    }

    // The values of an array, each joined to its octets.
    _numbers(field, values) {
        const title = `${Quoting.counted(values.count, "value")} (${values.name})`;
        const section = Dom.make("section", {"class": "numbers", "aria-label": "Values"}, Dom.make("h4", {}, title));
        if (values.isNumeric && values.count > 1) {
            section.append(new NumberPicture(values, this._page).element);
        }
        const across = values.across;
        const scroller = Dom.make("div",
            {"class": "scroller", "tabindex": "0", "role": "table", "aria-label": "Values"});
        section.append(scroller);
        const [first] = this._fields.valueBits(field);
        const list = new VirtualList(scroller, {
            rowHeight: 22,
            makeRow: () => {
                const row = Dom.make("div", {class: "row", role: "row"});
                row.head = Dom.make("span", {class: "offset", role: "rowheader"});
                const mark = event => {
                    const [from, to] = values.bits(Number(event.currentTarget.value));
                    this._page.setNumber([first + from, first + to]);
                };
                row.cells = Array.from({length: across},
                    () => Dom.make("span", {role: "cell"}, Dom.button("", mark)));
                row.append(row.head, ...row.cells);
                return row;
            },
            fillRow: (element, row) => {
                element.ariaRowIndex = row + 1;
                element.head.textContent = row * across;
                element.cells.forEach((cell, i) => {
                    const number = row * across + i;
                    cell.hidden = number >= values.count;
                    if (!cell.hidden) {
                        cell.firstChild.value = number;
                        cell.firstChild.textContent = values.text(number);
                    }
                });
            },
        });
        list.count = Math.ceil(values.count / across);
        scroller.setAttribute("aria-rowcount", list.count);
        scroller.style.setProperty("--across", across);
        scroller.style.height = `${Math.min(list.count, 12) * 22 + 2}px`;
        return section;
    }

    static _LONGEST_PATH = 12;
    static _VALUE = 20000;
    static _OCTETS = 64;
}
