
/** Numbers of seven bits an octet, the least significant ones first (see PageData.h). */
class NumberReader {
    constructor(octets, at = 0) {
        this._octets = octets;
        this.at = at;
    }

    next() {
        let octet = this._octets[this.at++];
        if (octet < 0x80) {
            return octet;
        }
        let number = octet & 0x7F;
        for (let scale = 0x80; octet >= 0x80; scale *= 0x80) {
            octet = this._octets[this.at++];
            number += (octet & 0x7F) * scale;
        }
        return number;
    }
}
