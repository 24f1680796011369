
/** What the octets of a document are spent on, counted in bits. */
class Spending {
    constructor(fields, kindCount) {
        this._fields = fields;
        this.kinds = new Array(kindCount).fill(0); // of all fields
        this.slots = [];                           // the same of as many equal stretches of the document
        this.slotBits = 0;                         // the length of each
        this._totals = null;
    }

    /** Fills kinds and slots. */
    async readKinds(slotCount) {
        const fields = this._fields;
        const first = fields.firstOctet * 8;
        this.slotBits = Math.max(8, fields.octets.length * 8 / slotCount);
        this.slots = Array.from({length: slotCount}, () => new Float64Array(this.kinds.length));
        const slices = new Slices();
        for (let field = 0; field < fields.count; ++field) {
            const shape = fields.shape(field);
            const behind = shape.parts.length - 1;
            let bit = fields.start(field) - first;
            for (let i = 0; i <= behind; ++i) {
                const {kind, bits: fixed} = shape.parts[i];
                let bits = i === behind && shape.isOpen ? fields.bits(field) - shape.fixedBits : fixed;
                this.kinds[kind] += bits;
                while (bits > 0) {
                    const slot = Math.min(Math.floor(bit / this.slotBits), slotCount - 1);
                    const here = slot === slotCount - 1 ? bits : Math.min(bits, (slot + 1) * this.slotBits - bit);
                    this.slots[slot][kind] += here;
                    bit += here;
                    bits -= here;
                }
            }
            if (field % 10000 === 0) {
                await slices.next();
            }
        }
        // Octets behind a fault are spent on nothing that is known.
        const end = fields.count ? fields.start(fields.count) - first : 0;
        const rest = fields.octets.length * 8 - end;
        if (rest > 0) {
            this.kinds[FieldList.TRAILING] += rest;
            for (let slot = Math.floor(end / this.slotBits); slot < slotCount; ++slot) {
                this.slots[slot][FieldList.TRAILING] +=
                    Math.max(0, Math.min((slot + 1) * this.slotBits, end + rest) - Math.max(end, slot * this.slotBits));
            }
        }
    }

    /**
     * By construct, by element name and by attribute name: lists of {name, count, bits, field}, largest first, field
     * being the largest one of them. What is in an element counts for the innermost one.
     */
    async totals() {
        this._totals ??= this._count();
        return this._totals;
    }

    async _count() {
        const fields = this._fields;
        const constructs = new Map();
        const elements = new Map();
        const attributes = new Map();
        const nothing = {};
        const open = [nothing];
        let attribute = nothing;
        const slices = new Slices();
        const end = record => {
            if (record.map) {
                Spending._add(record.map, record.index, record.bits, record.field);
                record.map = null;
            }
        };
        for (let field = 0; field < fields.count; ++field) {
            const shape = fields.shape(field);
            const bits = fields.bits(field);
            Spending._add(constructs, shape.construct, bits, field);
            if (shape.isElement) {
                end(attribute);
                open.push({map: elements, index: fields.elementNameIndex(field), bits: 0, field});
            } else if (shape.isAttribute) {
                end(attribute);
                attribute = {map: attributes, index: fields.index(field), bits: 0, field, depth: fields.depth(field)};
            } else if (fields.depth(field) <= attribute.depth) {
                end(attribute);
            } else if (shape.table === FieldList.ATTRIBUTE_NAME && attribute.map) {
                attribute.index = fields.index(field); // a literal name is complete
            }
            if (attribute.map) {
                attribute.bits += bits;
            }
            open.at(-1).bits += bits;
            if (shape.source === "element") {
                end(open.pop());
            }
            if (field % 10000 === 0) {
                await slices.next();
            }
        }
        end(attribute);
        open.forEach(end);
        const named = (map, table) => Spending._sorted(map,
            index => index ? fields.quotedEntry(table, index, 80).slice(1, -1) : "(no name)");
        return {
            constructs: Spending._sorted(constructs, name => name),
            elements: named(elements, FieldList.ELEMENT_NAME),
            attributes: named(attributes, FieldList.ATTRIBUTE_NAME),
        };
    }

    static _add(map, key, bits, field) {
        const entry = map.get(key);
        if (!entry) {
            map.set(key, {count: 1, bits, field, most: bits});
            return;
        }
        ++entry.count;
        entry.bits += bits;
        if (bits > entry.most) {
            entry.most = bits;
            entry.field = field;
        }
    }

    static _sorted(map, nameOf) {
        return [...map].sort(([, a], [, b]) => b.bits - a.bits).slice(0, 200)
            .map(([key, entry]) => ({name: nameOf(key), ...entry}));
    }

    /**
     * Literals that are in no table although they come again: {count, bits, field}, where bits are those of all but the
     * first and field is the first one, largest first; and the bits of all of them, {list, bits}.
     */
    async repeats() {
        const fields = this._fields;
        const seen = new Map();
        const slices = new Slices();
        for (let field = 0; field < fields.count; ++field) {
            const shape = fields.shape(field);
            if (shape.use === "literal" && shape.isOpen) {
                const [first, last] = fields.valueBits(field);
                const key = `${shape.encoding}\n${Spending._keyOf(fields.octetsOf(first / 8, last / 8))}`;
                const entry = seen.get(key);
                if (entry) {
                    ++entry.count;
                    entry.bits += fields.bits(field);
                } else {
                    seen.set(key, {count: 1, bits: 0, field});
                }
            }
            if (field % 2000 === 0) {
                await slices.next();
            }
        }
        const again = [...seen.values()].filter(entry => entry.count > 1).sort((a, b) => b.bits - a.bits);
        const bits = again.reduce((sum, entry) => sum + entry.bits, 0);
        return {list: again.slice(0, 200), count: again.length, bits};
    }

    // Short texts are their own keys; of long ones, two hash values and the length tell them apart.
    static _keyOf(octets) {
        if (octets.length <= 48) {
            return String.fromCharCode(...octets);
        }
        let one = 0x811C9DC5;
        let other = 0;
        for (const octet of octets) {
            one = Math.imul(one ^ octet, 0x01000193);
            other = Math.imul(other, 31) + octet | 0;
        }
        return `${octets.length} ${one} ${other}`;
    }
}
