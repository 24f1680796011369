"use strict";

/**
 * Text of documents made fit to be shown, whatever octets it consists of: in quotes on one line, control characters and
 * what is no UTF-8 as \xNN, quotes and backslashes behind a backslash. The page puts it into text nodes only.
 */
class Quoting {
    /** The octets in quotes; of more than limit octets about that much, and how many there are. */
    static quoted(octets, limit = Infinity) {
        const end = Quoting._endOfBeginning(octets, limit);
        const text = '"' + Quoting.escaped(octets, 0, end) + '"';
        return end < octets.length ? `${text}\u2026 (${octets.length} octets)` : text;
    }

    /** The octets from first to last without quotes around them. */
    static escaped(octets, first, last) {
        let text = "";
        for (let at = first; at < last;) {
            const [codePoint, length] = Quoting._decode(octets, at, last);
            if (codePoint === 0x0A) {
                text += "\\n";
            } else if (codePoint === 0x09) {
                text += "\\t";
            } else if (Quoting._isControl(codePoint)) {
                for (let i = 0; i < length; ++i) {
                    text += "\\x" + Quoting.hex(octets[at + i]);
                }
            } else {
                text += (codePoint === 0x22 || codePoint === 0x5C ? "\\" : "") + String.fromCodePoint(codePoint);
            }
            at += length;
        }
        return text;
    }

    /** Two digits. */
    static hex(octet) {
        return Quoting._HEX[octet];
    }

    /** An offset as it is written everywhere: "0x1b", with the bit where it is not the first one. */
    static place(bit) {
        const rest = bit % 8;
        return "0x" + Math.floor(bit / 8).toString(16) + (rest ? `, bit ${rest}` : "");
    }

    /** A number with thin spaces between groups of three digits. */
    static number(number) {
        return Math.round(number).toString().replace(/\B(?=(\d{3})+$)/g, "\u2009");
    }

    /** A number of bits as octets: "3", "0.5". */
    static octets(bits) {
        const whole = Math.floor(bits / 8);
        const rest = bits % 8;
        return Quoting.number(whole) + (rest ? (rest / 8).toString().slice(1) : "");
    }

    /** How many there are of something: "1 octet", "2 octets". */
    static counted(number, word) {
        return `${Quoting.number(number)} ${word}${number === 1 ? "" : "s"}`;
    }

    /** What part of the whole something is. */
    static percent(part, whole) {
        return (whole ? 100 * part / whole : 0).toFixed(1) + "\u2009%";
    }

    // No part of a character; a little more than the limit is shown whole.
    static _endOfBeginning(octets, limit) {
        if (octets.length <= limit + 8) {
            return octets.length;
        }
        let end = limit;
        while (end > 0 && (octets[end] & 0xC0) === 0x80) {
            --end;
        }
        return end;
    }

    // The character at a place, -1 for none, and how many octets it takes.
    static _decode(octets, at, last) {
        const first = octets[at];
        if (first < 0x80) {
            return [first, 1];
        }
        if (first < 0xC2 || first > 0xF4) {
            return [-1, 1];
        }
        // The range of the second octet leaves out long forms, surrogates and what is above U+10FFFF.
        let low = first === 0xE0 ? 0xA0 : first === 0xF0 ? 0x90 : 0x80;
        let high = first === 0xED ? 0x9F : first === 0xF4 ? 0x8F : 0xBF;
        const expected = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        let codePoint = first & (0x7F >> expected);
        for (let length = 1; length < expected; ++length) {
            const octet = octets[at + length];
            if (at + length >= last || octet < low || octet > high) {
                return [-1, length];
            }
            codePoint = codePoint << 6 | (octet & 0x3F);
            low = 0x80;
            high = 0xBF;
        }
        return [codePoint, expected];
    }

    // What is not seen, or turns the direction of the text around it.
    static _isControl(codePoint) {
        return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || codePoint === 0x2028 ||
            codePoint === 0x2029 || (codePoint >= 0x202A && codePoint <= 0x202E) ||
            (codePoint >= 0x2066 && codePoint <= 0x2069);
    }

    static _HEX = Array.from({length: 256}, (_, octet) => octet.toString(16).padStart(2, "0"));
}
