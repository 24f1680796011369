
/** One vocabulary table: which entries there are, what has added them and how often they were referred to. */
class VocabularyTable {
    /** about is what the page says of it; names reads the entries of name tables. */
    constructor(about, names) {
        this.name = about.name;
        this.knownCount = about.known; // entries before the first field
        this.known = [];               // their texts; of name tables none
        this.names = null;             // of name tables: prefix, namespace name, local name of each entry
        if (about.names !== undefined) {
            this.names = new Uint32Array(3 * about.names);
            for (let i = 0; i < this.names.length; ++i) {
                this.names[i] = names.next();
            }
        }
        this.hits = 0;
        this.added = 0;
        this.neither = 0;
        this._fields = []; // by index: the field that has added the entry, and one
        this._uses = [];
    }

    /** The largest index of an entry. */
    get size() {
        return Math.max(this.knownCount, this._fields.length - 1);
    }

    /** The smallest index that is in use. */
    get first() {
        return this.knownCount > 0 ? 1 : Math.max(1, this._fields.findIndex(field => field > 0));
    }

    /** The field that has added an entry, -1 when it was there before. */
    addedBy(index) {
        return (this._fields[index] ?? 0) - 1;
    }

    /** How often an entry was referred to. */
    usesOf(index) {
        return this._uses[index] ?? 0;
    }

    add(index, field) {
        VocabularyTable._reach(this._fields, index);
        this._fields[index] = field + 1;
        ++this.added;
    }

    use(index) {
        VocabularyTable._reach(this._uses, index);
        ++this._uses[index];
        ++this.hits;
    }

    // Arrays without gaps are quick.
    static _reach(array, index) {
        while (array.length <= index) {
            array.push(0);
        }
    }
}
