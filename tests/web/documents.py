"""Fast Infoset documents that XML text cannot lead to, written octet by octet, and a large one."""

import re
import struct

HEADER = b"\xe0\x00\x00\x01\x00"
END = b"\xff"

# By the number of the encoding algorithm, with what the tool spells them like.
ARRAYS = {
    1: b"\x00\x7f\xff",
    2: b"any old octets",
    3: struct.pack(">3h", -32768, 0, 32767),
    4: struct.pack(">40i", *(n * n * (-1) ** n for n in range(40))),
    5: struct.pack(">3q", -2**63, 2**53 + 1, 2**63 - 1),
    6: b"\x60\xa8",
    7: struct.pack(">5f", 0.1, -0.0, 3.4e38, 1.5e-45, float("inf")),
    8: struct.pack(">11d", 0.1, -0.0, 1e4, 1e22, 1e23, 123456789012345683968.0, 5e-324, 1.5e-7, 100000.0, float("-inf"),
                   float("nan")),
    9: bytes(range(32)),
}


def _length(octets, small, medium):
    """The octets behind a length (X.891, C.22 to C.24): up to small of them, up to medium more, or many."""
    count = len(octets)
    if count <= small:
        return bytes([count - 1]) + octets
    if count <= small + 256:
        return bytes([medium, count - small - 1]) + octets
    return bytes([medium + medium // 2]) + struct.pack(">I", count - small - 257) + octets


def _set(bits, octets):
    return bytes([bits | octets[0]]) + octets[1:]


def name(octets):
    """A literal string that becomes an entry of its table."""
    return _length(octets, 64, 0x40)


def element(local, prefix=None, uri=None, attributes=(), namespaces=()):
    """The beginning of an element. Attributes are (name, value), namespaces (prefix, URI)."""
    bits = 0x40 if attributes else 0
    parts = [b"", b"", name(local)]
    name_bits = 0x3C
    if prefix is not None:
        name_bits |= 2
        parts[0] = name(prefix)
    if uri is not None:
        name_bits |= 1
        parts[1] = name(uri)
    text = bytes([bits | 0x38]) if namespaces else b""
    for each_prefix, each_uri in namespaces:
        text += b"\xcf" + name(each_prefix) + name(each_uri)
    text += bytes([0xF0, name_bits]) if namespaces else bytes([bits | name_bits])
    text += b"".join(parts)
    for each, value in attributes:
        text += b"\x78" + name(each) + _length(value, 8, 0x08)
    return text + (b"\xf0" if attributes else b"")


def chunk(octets):
    """Text as a literal that becomes no entry."""
    return _set(0x80, _length(octets, 2, 0x02))


def comment(octets):
    return b"\xe2" + _length(octets, 8, 0x08)


def instruction(target, content):
    return b"\xe1" + name(target) + _length(content, 8, 0x08)


def array(algorithm, octets):
    """Text by an encoding algorithm."""
    return bytes([0x8C | (algorithm - 1) >> 6]) + _set((algorithm - 1 & 0x3F) << 2, _length(octets, 2, 0x02))


def arrays():
    """A document with an array of each kind."""
    text = HEADER
    for algorithm, octets in ARRAYS.items():
        text += (element(b"a") if text == HEADER else b"") + array(algorithm, octets)
    return text + END


# What a page must not obey: markup, ends of scripts and attributes, separators of lines, invalid UTF-8.
HOSTILE = [
    b"<script>window.hacked=1</script>",
    b"<img src=x onerror=\"window.hacked=1\">",
    b"</script><script>window.hacked=1</script>",
    b"\"'`><svg/onload=window.hacked=1>",
    b"<!--<script>--><b>&lt;&#60;&amp;${window.hacked=1}",
    b"javascript:window.hacked=1//\\u003cscript\\x3e",
    "\u2028\u2029\u202e\u2066window.hacked=1\ufeff\u0000\u0085".encode(),
    b"\xff\xfe<\xc0\xafscript>\xed\xa0\x80\xf5\xe2\x82",
    b"]]></title></style></textarea></noscript><plaintext>",
]


def hostile():
    """All of them in every place of a document where text can be."""
    text = HEADER
    for octets in HOSTILE:
        text += element(octets, octets, octets, [(octets, octets)], [(octets, octets)])
        text += chunk(octets) + comment(octets) + instruction(octets, octets)
    return text + b"\xff" * (len(HOSTILE) // 2) + (b"\xff" if len(HOSTILE) % 2 else b"\xf0")


def large(octets):
    """XML text, a real document again and again, that comes to about so many octets as Fast Infoset."""
    with open("/usr/share/gir-1.0/Gio-2.0.gir", encoding="utf-8") as file:
        text = re.sub(r"<\?xml.*?\?>", "", file.read())
    return "<all>" + text * max(1, round(octets / 2190000)) + "</all>"
