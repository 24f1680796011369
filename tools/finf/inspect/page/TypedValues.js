
/** The values of an array in binary (ITU-T X.891, 10.2 to 10.10), each with the octets that it stands in. */
class TypedValues {
    /** octets is a view of the array's octets, algorithm the number of a built-in encoding algorithm, 1 to 9. */
    constructor(octets, algorithm) {
        this.octets = octets;
        this.algorithm = algorithm;
        this._view = new DataView(octets.buffer, octets.byteOffset, octets.byteLength);
        const [name, width] = TypedValues._ALGORITHMS[algorithm];
        this.name = name;
        this.isNumeric = algorithm >= 3 && algorithm <= 8 && algorithm !== TypedValues._BOOLEAN;
        this._width = width;
        if (algorithm === TypedValues._BOOLEAN) {
            // Four bits tell how many bits of the end are not used.
            this.count = Math.max(0, octets.length * 8 - 4 - (octets[0] >> 4));
        } else {
            this.count = Math.floor(octets.length / width);
        }
    }

    /** Value number i as a number, for pictures; NaN when it is none. */
    number(i) {
        switch (this.algorithm) {
        case 3: return this._view.getInt16(2 * i);
        case 4: return this._view.getInt32(4 * i);
        case 5: return Number(this._view.getBigInt64(8 * i));
        case 7: return this._view.getFloat32(4 * i);
        case 8: return this._view.getFloat64(8 * i);
        default: return NaN;
        }
    }

    /** Value number i as text. */
    text(i) {
        switch (this.algorithm) {
        case 5: return this._view.getBigInt64(8 * i).toString();
        case TypedValues._BOOLEAN: return (this.octets[(i + 4) >> 3] >> (7 - (i + 4) % 8)) & 1 ? "true" : "false";
        case 7:
        case 8: return TypedValues._shortest(this.number(i));
        case 9: return this._hex(16 * i, 16 * i + 16).toLowerCase().replace(/^(.{8})(.{4})(.{4})(.{4})/, "$1-$2-$3-$4-");
        default: return this.number(i).toString();
        }
    }

    /** The bits of value number i, [first, behind the last], counted from the beginning of the array. */
    bits(i) {
        return this.algorithm === TypedValues._BOOLEAN ? [i + 4, i + 5]
            : [8 * this._width * i, 8 * this._width * (i + 1)];
    }

    /** The text that all of the values stand for, or more than limit characters of it. */
    textOf(limit = Infinity) {
        const size = Math.min(this.octets.length, limit + 1);
        if (this.algorithm === 1) {
            return this._hex(0, size);
        }
        if (this.algorithm === 2) {
            const whole = size < this.octets.length ? size - size % 3 : size;
            let binary = "";
            for (let i = 0; i < whole; ++i) {
                binary += String.fromCharCode(this.octets[i]);
            }
            return btoa(binary);
        }
        const texts = [];
        let length = 0;
        for (let i = 0; i < this.count && length <= limit + 1; ++i) {
            texts.push(this.text(i));
            length += texts[i].length + 1;
        }
        return texts.join(" ");
    }

    /** Whether the values are told apart, unlike octets in hexadecimal or base64. */
    get isList() {
        return this.algorithm >= 3;
    }

    /** How many values make a row that is no longer than a line. */
    get across() {
        return this.algorithm === 9 ? 1 : this.algorithm === 5 || this.algorithm >= 7 ? 4 : 8;
    }

    _hex(first, last) {
        let text = "";
        for (let i = first; i < last; ++i) {
            text += Quoting.hex(this.octets[i]);
        }
        return text.toUpperCase();
    }

    // As finf decode spells it: the shorter one of decimal and scientific notation.
    static _shortest(value) {
        if (!Number.isFinite(value)) {
            return Number.isNaN(value) ? "NaN" : value > 0 ? "INF" : "-INF";
        }
        const sign = value < 0 || Object.is(value, -0) ? "-" : "";
        const [mantissa, exponentText] = Math.abs(value).toExponential().split("e");
        const exponent = Number(exponentText);
        const digits = mantissa.replace(".", "");
        const scientific = `${mantissa}e${exponent < 0 ? "-" : "+"}${Math.abs(exponent).toString().padStart(2, "0")}`;
        let fixed;
        if (exponent < 0) {
            fixed = "0." + "0".repeat(-exponent - 1) + digits;
        } else if (digits.length <= exponent + 1) {
            fixed = exponent < 25 ? BigInt(Math.abs(value)).toString() : "0".repeat(exponent + 1);
        } else {
            fixed = digits.slice(0, exponent + 1) + "." + digits.slice(exponent + 1);
        }
        return sign + (fixed.length <= scientific.length ? fixed : scientific);
    }

    static _BOOLEAN = 6;

    // Name, and width of a value in octets.
    static _ALGORITHMS = [null, ["hexadecimal", 1], ["base64", 1], ["short", 2], ["int", 4], ["long", 8],
        ["boolean", 1], ["float", 4], ["double", 8], ["uuid", 16]];
}
