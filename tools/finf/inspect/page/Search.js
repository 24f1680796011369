
/** Finds what the user asks for, while he may go on; matches are fields, or places of octets. */
class Search {
    constructor(page) {
        this._page = page;
        this._fields = page.fields;
        this._kind = document.getElementById("search-kind");
        this._text = document.getElementById("search-text");
        this._result = document.getElementById("search-result");
        this._matches = [];
        this._current = -1;
        this._asked = ""; // what the matches are those of
        this._run = 0;    // number of the search that runs; others give up
        document.getElementById("search").addEventListener("submit", event => {
            event.preventDefault();
            this._go(1);
        });
        document.getElementById("search-previous").addEventListener("click", () => this._go(-1));
        this._text.addEventListener("keydown", event => {
            if (event.key === "Enter" && event.shiftKey) {
                event.preventDefault();
                this._go(-1);
            }
        });
        this._kind.addEventListener("change", () => this._hint());
        // The browser's own search sees only what is in sight.
        document.addEventListener("keydown", event => {
            if (event.key === "f" && (event.ctrlKey || event.metaKey) && document.activeElement !== this._text) {
                event.preventDefault();
                this._text.focus();
                this._text.select();
            }
        });
        this._hint();
    }

    /** Whether a field is among the matches. */
    isMatch(field) {
        return this._isOfFields && Search._place(this._matches, field) >= 0;
    }

    _hint() {
        this._text.placeholder = {
            text: "In names and values", construct: "Such as comment", octets: "Such as e0 00", offset: "Such as 0x1b",
        }[this._kind.value];
    }

    async _go(step) {
        const asked = `${this._kind.value} ${this._text.value}`;
        if (this._text.value === "") {
            this._forget();
            this._result.value = "";
            return;
        }
        if (asked !== this._asked) {
            this._forget();
            this._asked = asked;
            const run = ++this._run;
            try {
                await this._find(this._kind.value, this._text.value, run, step);
            } catch (error) {
                if (!(error instanceof RangeError)) {
                    throw error;
                }
                this._asked = "";
                this._result.value = error.message;
            }
        } else if (this._matches.length > 0) {
            const count = this._matches.length;
            this._choose((this._current + step + count) % count);
        }
    }

    _forget() {
        ++this._run;
        this._matches = [];
        this._current = -1;
        this._asked = "";
        this._page.setMatch([0, 0]);
    }

    async _find(kind, text, run, step) {
        if (kind === "offset") {
            this._goTo(text);
            return;
        }
        this._isOfFields = kind !== "octets";
        this._result.value = "Searching";
        const finder = kind === "text" ? this._withText(text) : kind === "construct" ? this._withConstruct(text)
            : this._withOctets(text);
        const origin = this._isOfFields ? this._page.selected : this._page.octet;
        const slices = new Slices();
        for await (const match of finder) {
            if (run !== this._run) {
                return;
            }
            if (match >= 0) {
                this._matches.push(match);
                if (this._current < 0 && step > 0 && match >= origin) {
                    this._choose(this._matches.length - 1, true);
                }
            }
            await slices.next();
        }
        if (run !== this._run) {
            return;
        }
        if (this._matches.length === 0) {
            this._result.value = "No match";
        } else if (this._current < 0) {
            const next = this._matches.findIndex(match => match >= origin);
            this._choose(step > 0 ? Math.max(0, next) : next > 0 ? next - 1 : this._matches.length - 1);
        } else {
            this._tell();
        }
        this._page.update();
    }

    _choose(current, isRunning = false) {
        this._current = current;
        const match = this._matches[current];
        if (this._isOfFields) {
            this._page.select(match, {from: this});
        } else {
            this._page.setMatch([match * 8, (match + this._length) * 8]);
            this._page.select(this._fields.fieldAt(match * 8), {from: this, octet: match});
        }
        if (!isRunning) {
            this._tell();
        }
    }

    _tell() {
        this._result.value =
            `${Quoting.number(this._current + 1)} of ${Quoting.number(this._matches.length)}`;
    }

    _goTo(text) {
        const octet = /^\s*(0x[0-9a-f]+|\d+)\s*$/i.test(text) ? Number(text) : NaN;
        if (Number.isNaN(octet)) {
            throw new RangeError("An offset is 27 or 0x1b");
        }
        if (octet < this._fields.firstOctet || octet >= this._fields.lastOctet) {
            throw new RangeError("Not on this page");
        }
        this._page.select(this._fields.fieldAt(octet * 8), {from: this, octet});
        this._asked = "";
        this._result.value = Quoting.place(octet * 8);
    }

    // The finders yield matches, and -1 from time to time where there are none.

    async *_withConstruct(text) {
        const wanted = text.toLowerCase();
        const fits = (...texts) => texts.some(each => each.toLowerCase().includes(wanted));
        const shapes = new Map();
        for (let field = 0; field < this._fields.count; ++field) {
            const shape = this._fields.shape(field);
            if (!shapes.has(shape)) {
                shapes.set(shape, fits(shape.construct, shape.note, shape.encoding));
            }
            if (shapes.get(shape) || (shape.hasOwnNote && fits(this._fields.note(field)))) {
                yield field;
            } else if (field % 20000 === 0) {
                yield -1;
            }
        }
    }

    async *_withOctets(text) {
        const digits = text.replace(/\s|0x/g, "");
        if (!/^([0-9a-f]{2})+$/i.test(digits)) {
            throw new RangeError("Octets are pairs of hexadecimal digits");
        }
        const wanted = Uint8Array.from(digits.match(/../g), pair => parseInt(pair, 16));
        this._length = wanted.length;
        const {octets, firstOctet} = this._fields;
        for (let at = octets.indexOf(wanted[0]); at >= 0; at = octets.indexOf(wanted[0], at + 1)) {
            yield wanted.every((octet, i) => octets[at + i] === octet) ? at + firstOctet : -1;
        }
    }

    async *_withText(text) {
        const wanted = new TextEncoder().encode(text).map(octet => Search._LOWER[octet]);
        // An entry is looked at once, however often it is used.
        const entries = [];
        for (const [number, table] of this._fields.tables.entries()) {
            entries.push(new Uint8Array(table.size + 1));
            for (let index = table.first; index <= table.size; ++index) {
                entries[number][index] = Search._holds(this._fields.entry(number, index), wanted) ? 1 : 0;
                if (index % 1000 === 0) {
                    yield -1;
                }
            }
        }
        let looked = 0;
        for (let field = 0; field < this._fields.count; ++field) {
            const shape = this._fields.shape(field);
            let isMatch = false;
            if (shape.source === "table") {
                isMatch = entries[shape.table][this._fields.index(field)] === 1;
            } else if (shape.source === "typed") {
                isMatch = Search._valuesHold(this._fields.typedValues(field), text);
                looked += 100000;
            } else if (shape.isLiteral) {
                const value = this._fields.value(field);
                isMatch = Search._holds(value, wanted);
                looked += value.length + 100;
            } else {
                looked += 10;
            }
            if (isMatch) {
                yield field;
            } else if (looked > 200000) {
                looked = 0;
                yield -1;
            }
        }
    }

    // Whether octets hold others, which are in lower case, without regard to the case of ASCII letters.
    static _holds(octets, wanted) {
        const lower = Search._LOWER;
        const first = wanted[0];
        for (let at = 0, last = octets.length - wanted.length; at <= last; ++at) {
            if (lower[octets[at]] === first) {
                let i = 1;
                while (i < wanted.length && lower[octets[at + i]] === wanted[i]) {
                    ++i;
                }
                if (i === wanted.length) {
                    return true;
                }
            }
        }
        return false;
    }

    static _valuesHold(values, text) {
        if (!values.isList) {
            return values.textOf().toLowerCase().includes(text.toLowerCase());
        }
        const wanted = text.toLowerCase();
        // Arrays are long, and most texts can be in no number.
        const characters = values.name === "boolean" ? /^[a-z]+$/
            : values.name === "uuid" ? /^[\da-f-]+$/ : /^[-+.\dinfae]+$/;
        for (let i = 0; characters.test(wanted) && i < values.count; ++i) {
            if (values.text(i).toLowerCase().includes(wanted)) {
                return true;
            }
        }
        return false;
    }

    // The place of a number in a list that ascends, or -1.
    static _place(list, number) {
        let low = 0;
        let high = list.length - 1;
        while (low <= high) {
            const middle = (low + high) >>> 1;
            if (list[middle] === number) {
                return middle;
            }
            if (list[middle] < number) {
                low = middle + 1;
            } else {
                high = middle - 1;
            }
        }
        return -1;
    }

    static _LOWER = Uint8Array.from({length: 256}, (_, octet) => octet >= 0x41 && octet <= 0x5A ? octet + 0x20 : octet);
}
