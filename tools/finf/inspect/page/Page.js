
/** The page as a whole: what is selected, and the parts that show it. */
class Page {
    /** Reads the document and shows it. */
    static async open() {
        const reading = document.getElementById("reading");
        reading.hidden = false;
        try {
            const fields = await FieldList.read(new PageData(), part => {
                reading.textContent = `Reading the document, ${Math.floor(100 * part)}\u2009%`;
            });
            const page = new Page(fields);
            reading.hidden = true;
            return page;
        } catch (error) {
            reading.textContent = typeof DecompressionStream === "undefined"
                ? "This browser is too old for the page: it lacks DecompressionStream."
                : `The page is damaged: ${error.message}`;
            throw error;
        }
    }

    constructor(fields) {
        this.fields = fields;
        this.kinds = fields.about.kinds;
        this.spending = new Spending(fields, this.kinds.length);
        this.faultField = fields.about.fault?.field ?? -1;
        this.faultReason = fields.about.fault?.reason ?? "";
        this.selected = fields.count > 0 ? 0 : -1;
        this.hovered = -1;
        this.octet = fields.firstOctet;
        const nothing = [0, 0];
        /** The bits that are marked, [first, behind the last], by what for. */
        this.marks = {
            extent: nothing, selected: nothing, hovered: nothing, match: nothing, number: nothing, fault: nothing,
        };
        this._showTheme();
        this._showHead();
        document.getElementById("page").hidden = false;
        this._octets = new OctetPane(this);
        this._constructs = new TreePane(this);
        this._map = new DocumentMap(this);
        this._search = new Search(this);
        new Splitter();
        this._makeTabs();
        if (this.faultField >= 0) {
            this.marks.fault = [fields.start(this.faultField), fields.end(this.faultField)];
        }
        this.select(this.faultField >= 0 ? this.faultField : this.selected, {from: this});
        this._followAddress();
        addEventListener("hashchange", () => this._followAddress());
        this.counted = this.spending.readKinds(Math.min(1024, Math.max(1, fields.octets.length)))
            .then(() => this._map.showKinds());
    }

    /** Selects a field (-1: none) and shows it everywhere; octet is what the cursor is put on. */
    select(field, {octet, from}) {
        const fields = this.fields;
        this.selected = field;
        this.marks.number = [0, 0];
        if (field >= 0) {
            this.marks.selected = [fields.start(field), fields.end(field)];
            this.marks.extent = [fields.start(field), fields.start(fields.behind(field))];
            octet ??= Math.min(Math.floor(fields.start(field) / 8), fields.lastOctet - 1);
        } else {
            this.marks.selected = this.marks.extent = [0, 0];
        }
        this.octet = octet ?? this.octet;
        if (from !== this._octets) {
            this._octets.show(this.octet);
        }
        if (field >= 0) {
            this._constructs.show(field);
        }
        if (this._tabs.current === "construct") {
            this._details.show();
        } else if (from === this._octets || from === this._constructs) {
            this._tabs.show("construct");
        }
        this._noteAddress();
        this.update();
    }

    /** Marks what the pointer is on, -1 for nothing. */
    hover(field) {
        if (field !== this.hovered) {
            this.hovered = field;
            this.marks.hovered = field < 0 ? [0, 0] : [this.fields.start(field), this.fields.end(field)];
            this.update();
        }
    }

    /** Marks the bits of one value of an array and shows them. */
    setNumber(bits) {
        this.marks.number = bits;
        this.octet = Math.floor(bits[0] / 8);
        this._octets.show(this.octet);
        this.update();
    }

    /** Marks the bits of a match. */
    setMatch(bits) {
        this.marks.match = bits;
        this.update();
    }

    isMatch(field) {
        return this._search?.isMatch(field) ?? false;
    }

    /** Shows an entry of a table. */
    showEntry(table, index) {
        this._tabs.show("tables");
        this._tables.showEntry(table, index);
    }

    focusOctets() {
        this._octets.focus();
    }
    focusConstructs() {
        this._constructs.focus();
    }

    tableName(table) {
        return this.fields.tables[table].name;
    }

    get octetsInSight() {
        return this._octets.inSight;
    }

    /** To be called when other octets are in sight. */
    scrolled() {
        this._map?.update();
    }

    /** Draws anew what depends on the selection. */
    update() {
        this._octets.update();
        this._constructs.update();
        this._map.update();
    }

    /** A colour of the style sheet as the theme has it now. */
    colour(name) {
        this._colours ??= new Map();
        if (!this._colours.has(name)) {
            this._probe ??= document.body.appendChild(Dom.make("span", {"class": "probe", "aria-hidden": "true"}));
            this._probe.style.color = `var(${name})`;
            this._colours.set(name, getComputedStyle(this._probe).color);
        }
        return this._colours.get(name);
    }

    _showHead() {
        const {about, octets, count} = this.fields;
        document.title = `${about.file} \u2013 Fast Infoset`;
        document.getElementById("file").textContent = about.file;
        const state = about.fault ? "broken" : about.part ? "a part of the document" : "complete";
        document.getElementById("summary").textContent =
            `${Quoting.counted(octets.length, "octet")}, ${Quoting.counted(count, "construct")}, ${state}`;
        document.getElementById("octets-hint").textContent = "coloured by what they are spent on";
        document.getElementById("constructs-hint").textContent = "sizes in octets, with what is nested";
        if (about.fault) {
            const box = document.getElementById("fault");
            box.hidden = false;
            box.append(Dom.make("strong", {}, "Broken "), `at ${about.fault.place}: ${about.fault.reason} `,
                Dom.button("Show", () => this.select(this.faultField, {from: this}), {"aria-label": "Show the fault"}));
        }
    }

    _makeTabs() {
        this._tabs = new Tabs(document.getElementById("tabs"), document.getElementById("panels"));
        this._details = new DetailPanel(this, this._tabs.add("construct", "Construct", () => this._details.show()));
        this._tables = new TablePanel(this, this._tabs.add("tables", "Tables", () => this._tables.show()));
        const spending = new SpendingPanel(this, this._tabs.add("spending", "Spent on", () => spending.show()));
        const repeats = new RepeatPanel(this, this._tabs.add("repeats", "Repeats", () => repeats.show()));
        const count = this.fields.about.departureCount;
        const departures = `Departures${count ? ` (${Quoting.number(count)})` : ""}`;
        new DeparturePanel(this, this._tabs.add("departures", departures, () => {}));
        this._tabs.show("construct");
    }

    _showTheme() {
        const select = document.getElementById("theme");
        const apply = () => {
            document.documentElement.dataset.theme = select.value;
            this._colours = null;
            this._map?.colour();
        };
        select.addEventListener("change", apply);
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", apply);
        apply();
    }

    // The address names the place, so that it can be passed on: page.html#0x1b.

    _followAddress() {
        const octet = Number(location.hash.slice(1) || NaN);
        if (octet >= this.fields.firstOctet && octet < this.fields.lastOctet && octet !== this.octet) {
            this.select(this.fields.fieldAt(octet * 8), {octet, from: null});
        }
    }

    _noteAddress() {
        clearTimeout(this._noting);
        this._noting = setTimeout(() => history.replaceState(null, "", `#0x${this.octet.toString(16)}`), 500);
    }
}
