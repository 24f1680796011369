
/**
 * The document: its octets, the constructs (fields) in their order, and the vocabulary tables.
 *
 * Fields are numbers from 0 on. What is kept of each are a few numbers in arrays of the machine's types, so that
 * millions of them are no trouble. Bits are counted from the beginning of the document.
 */
class FieldList {
    /** Reads the document that the page carries. progress(part) is told how much is done, from 0 to 1. */
    static async read(data, progress) {
        const about = await data.readJson("about");
        const list = new FieldList();
        list.about = about;
        const all = about.octets + about.fields + 1;
        list.octets = await data.read("octets", about.octets, count => progress(count / all / 2));
        const fields = await data.read("fields", about.fields,
            count => progress((about.octets + count) / all / 2));
        list._texts = await data.read("texts", about.texts);
        const names = await data.read("names", about.names);
        list._readShapes(about);
        list._makeTables(about, names);
        await list._readFields(fields, progress);
        list._readKnownEntries();
        return list;
    }

    /** The first octet that the page holds, and the one behind the last. */
    get firstOctet() {
        return Math.floor(this.about.firstBit / 8);
    }
    get lastOctet() {
        return this.firstOctet + this.octets.length;
    }

    /** The octet at a place in the document. */
    octet(at) {
        return this.octets[at - this.firstOctet];
    }

    /** Octets from first to last, places in the document. */
    octetsOf(first, last) {
        return this.octets.subarray(first - this.firstOctet, last - this.firstOctet);
    }

    start(field) {
        return this._starts[field];
    }
    end(field) {
        return this._starts[field + 1];
    }
    bits(field) {
        return this._starts[field + 1] - this._starts[field];
    }
    depth(field) {
        return this._depths[field];
    }
    shape(field) {
        return this._shapes[this._shapeNumbers[field]];
    }
    index(field) {
        return this.shape(field).isElementEnd ? 0 : this._indexes[field];
    }

    /** The number of the field behind those that are nested in this one, the end of an element included. */
    behind(field) {
        return this._behind[field];
    }

    /** The field that holds a bit, -1 when there is none. */
    fieldAt(bit) {
        if (this.count === 0 || bit < this._starts[0] || bit >= this._starts[this.count]) {
            return -1;
        }
        let low = 0;
        let high = this.count;
        while (low < high) {
            const middle = (low + high) >>> 1;
            if (this._starts[middle + 1] <= bit) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low;
    }

    /** The fields that this one is nested in, from the outermost one on. */
    ancestors(field) {
        const found = [];
        let depth = this._depths[field];
        for (let i = field - 1; i >= 0 && depth > 0; --i) {
            if (this._depths[i] < depth && this._behind[i] > field) {
                found.push(i);
                depth = this._depths[i];
            }
        }
        return found.reverse();
    }

    /** The field that this one is nested in, -1 for none. */
    parent(field) {
        return this.ancestors(field).pop() ?? -1;
    }

    /** The parts of a field: {kind, bits}, from first to last. */
    parts(field) {
        const shape = this.shape(field);
        return shape.isOpen
            ? [...shape.parts.slice(0, -1), {kind: shape.parts.at(-1).kind, bits: this.bits(field) - shape.fixedBits}]
            : shape.parts;
    }

    /** What the bits of a field say where they carry no value. */
    note(field) {
        const shape = this.shape(field);
        return shape.hasOwnNote ? new TextDecoder().decode(this._ownText(field, 0)) : shape.note;
    }

    hasValue(field) {
        return this.shape(field).source !== "";
    }

    /** The values of a typed array; null when the field is none. */
    typedValues(field) {
        return this.shape(field).source === "typed"
            ? new TypedValues(this._lastPart(field), this.shape(field).algorithm) : null;
    }

    /**
     * The value of a field as octets of UTF-8, about limit of them; null when there is none. What stands for an entry
     * of a table has the value of the entry.
     */
    value(field, limit = Infinity) {
        const shape = this.shape(field);
        switch (shape.source) {
        case "octets": return this._lastPart(field);
        case "typed": return FieldList._ENCODER.encode(this.typedValues(field).textOf(limit));
        case "table": return this.entry(shape.table, this._indexes[field], limit);
        case "element": return this.elementName(this.elementOf(field), limit);
        case "text": return this._ownText(field, shape.hasOwnNote ? 1 : 0);
        default: return null;
        }
    }

    /** The value of a field in quotes, or about limit octets of it and how much there is. */
    quotedValue(field, limit) {
        const shape = this.shape(field);
        if (shape.source === "table") {
            return this.quotedEntry(shape.table, this._indexes[field], limit);
        }
        const values = this.typedValues(field);
        const text = values?.textOf(limit) ?? "";
        return text.length > limit
            ? `"${text.slice(0, limit)}"\u2026 (${Quoting.counted(values.count, values.isList ? "value" : "octet")})`
            : Quoting.quoted(this.value(field, limit), limit);
    }

    /** How many octets the value stands in itself: none where it is given by an index. */
    literalSize(field) {
        const shape = this.shape(field);
        return shape.isOpen && shape.isLiteral ? (this.bits(field) - shape.fixedBits) / 8 : 0;
    }

    /** The bits in which the value stands itself, [first, behind the last]. */
    valueBits(field) {
        return [this.end(field) - this.parts(field).at(-1).bits, this.end(field)];
    }

    /** The element that ends with a field. */
    elementOf(end) {
        return this._indexes[end] - 1;
    }

    /** The number of an element's name in its table, 0 when it is in none. */
    elementNameIndex(element) {
        if (this.shape(element).use === "reads") {
            return this._indexes[element];
        }
        // A literal name is complete behind its parts, with the entry that it becomes.
        for (let i = element + 1; i < this._behind[element] && i < element + 5000; ++i) {
            const shape = this.shape(i);
            if (shape.table === FieldList.ELEMENT_NAME && shape.use !== "") {
                return this._indexes[i];
            }
        }
        return 0;
    }

    /** The name of an element as octets of UTF-8. */
    elementName(element, limit = Infinity) {
        return this.entry(FieldList.ELEMENT_NAME, this.elementNameIndex(element), limit);
    }

    /** An entry of a table as octets of UTF-8, about limit of them. */
    entry(table, index, limit = Infinity) {
        const entries = this.tables[table];
        if (entries.names) {
            const [prefix, , local] = entries.names.subarray(3 * index - 3, 3 * index);
            const before = prefix ? this.entry(FieldList.PREFIX, prefix, limit) : FieldList._NOTHING;
            const behind = local ? this.entry(FieldList.LOCAL_NAME, local, limit) : FieldList._NOTHING;
            const name = new Uint8Array(before.length + (before.length ? 1 : 0) + behind.length);
            name.set(before);
            if (before.length) {
                name[before.length] = 0x3A;
            }
            name.set(behind, name.length - behind.length);
            return name;
        }
        const field = entries.addedBy(index);
        return field >= 0 ? this.value(field, limit) : entries.known[index - 1] ?? FieldList._NOTHING;
    }

    /** The same in quotes, or about limit octets of it and how much there is. */
    quotedEntry(table, index, limit) {
        const field = this.tables[table].names ? -1 : this.tables[table].addedBy(index);
        return field >= 0 ? this.quotedValue(field, limit) : Quoting.quoted(this.entry(table, index), limit);
    }

    /** The namespace name of an entry of a name table; nothing when it has none. */
    namespaceOf(table, index) {
        const namespaceName = this.tables[table].names[3 * index - 2];
        return namespaceName ? this.entry(FieldList.NAMESPACE_NAME, namespaceName) : FieldList._NOTHING;
    }

    _lastPart(field) {
        const end = this.end(field) / 8;
        return this.octetsOf(end - (this.bits(field) - this.shape(field).fixedBits) / 8, end);
    }

    // The texts of a field that has some follow one another: a note, a value.
    _ownText(field, which) {
        let low = 0;
        let high = this._textFields.length;
        while (low < high) {
            const middle = (low + high) >>> 1;
            if (this._textFields[middle] < field) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return this._textAt(this._textPlaces[low + which])[0];
    }

    // The text at a place, and where the next one is.
    _textAt(place) {
        const numbers = new NumberReader(this._texts, place);
        const size = numbers.next();
        return [this._texts.subarray(numbers.at, numbers.at + size), numbers.at + size];
    }

    _readShapes(about) {
        if (about.fault) {
            about.kinds[FieldList.TRAILING] = "not understood";
        }
        this._shapes = (about.shapes ?? []).map(shape => {
            const parts = shape.parts.map(([kind, bits]) => ({kind, bits}));
            return {
                construct: shape.construct,
                deeper: shape.deeper,
                note: shape.note ?? "",
                hasOwnNote: shape.ownNote ?? false,
                source: shape.source ?? "",
                encoding: shape.encoding ?? "",
                algorithm: shape.algorithm ?? 0,
                use: shape.use ?? "",
                table: shape.table ?? 0,
                hasIndex: shape.index ?? false,
                isOpen: shape.open ?? false,
                isLiteral: ["octets", "typed", "text"].includes(shape.source),
                parts,
                fixedBits: parts.reduce((sum, part) => sum + part.bits, 0),
                isElement: shape.construct === "element",
                isElementEnd: shape.construct === "end of element",
                isAttribute: shape.construct === "attribute",
            };
        });
    }

    _makeTables(about, names) {
        const numbers = new NumberReader(names);
        this.tables = about.tables.map(table => new VocabularyTable(table, numbers));
    }

    async _readFields(octets, progress) {
        const count = this.count = this.about.fieldCount;
        const isLong = this.lastOctet * 8 > 0xFFFFFFFF;
        this._starts = isLong ? new Float64Array(count + 1) : new Uint32Array(count + 1);
        this._shapeNumbers = this._shapes.length > 0xFFFF ? new Uint32Array(count) : new Uint16Array(count);
        this._indexes = new Uint32Array(count);
        this._depths = new Uint32Array(count);
        this._behind = new Uint32Array(count);
        this._textFields = [];
        this._textPlaces = [];
        const numbers = new NumberReader(octets);
        const open = []; // the fields that others may be nested in yet
        const last = new Array(this.tables.length).fill(0);
        let bit = this.about.firstBit;
        let depth = 0;
        let place = 0; // in the texts
        for (let i = 0; i < count; ++i) {
            if (i % 500000 === 0) {
                progress(0.5 + i / count / 2);
                await Slices.pause();
            }
            const number = numbers.next();
            const shape = this._shapes[number];
            this._starts[i] = bit;
            this._shapeNumbers[i] = number;
            bit += shape.fixedBits + (shape.isOpen ? 8 * numbers.next() : 0);
            depth += shape.deeper;
            this._depths[i] = depth;
            this._behind[i] = i + 1;
            if (shape.hasIndex) {
                this._indexes[i] = numbers.next();
            } else if (shape.use === "adds") {
                this._indexes[i] = last[shape.table] + 1;
            }
            if (shape.use === "adds") {
                last[shape.table] = this._indexes[i];
                this.tables[shape.table].add(this._indexes[i], i);
            } else if (shape.use === "reads") {
                this.tables[shape.table].use(this._indexes[i]);
            } else if (shape.use === "literal") {
                ++this.tables[shape.table].neither;
            }
            for (let texts = (shape.hasOwnNote ? 1 : 0) + (shape.source === "text" ? 1 : 0); texts > 0; --texts) {
                this._textFields.push(i);
                this._textPlaces.push(place);
                place = this._textAt(place)[1];
            }
            // What this one is not nested in is complete.
            while (open.length > 0 && this._depths[open.at(-1)] > depth) {
                this._behind[open.pop()] = i;
            }
            if (open.length > 0 && this._depths[open.at(-1)] === depth) {
                const sibling = open.pop();
                this._behind[sibling] = i;
                if (shape.source === "element") {
                    // The end belongs to its element, whose number takes the place of an index.
                    this._behind[sibling] = i + 1;
                    this._indexes[i] = sibling + 1;
                    continue;
                }
            }
            if (i + 1 < count) {
                open.push(i);
            }
        }
        this._starts[count] = bit;
        for (const field of open) {
            this._behind[field] = count;
        }
        this._textEnd = place;
    }

    _readKnownEntries() {
        let place = this._textEnd;
        for (const table of this.tables) {
            for (let i = 0; i < (table.names ? 0 : table.knownCount); ++i) {
                const [text, next] = this._textAt(place);
                table.known.push(text);
                place = next;
            }
        }
    }

    static PREFIX = 2;
    static NAMESPACE_NAME = 3;
    static LOCAL_NAME = 4;
    static ELEMENT_NAME = 10;
    static ATTRIBUTE_NAME = 11;
    static LITERAL_NAME = 4; // this and the kinds behind it are octets
    static TRAILING = 7;

    static _NOTHING = new Uint8Array(0);
    static _ENCODER = new TextEncoder();
}
