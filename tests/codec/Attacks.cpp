#include "Attacks.h"
#include "Octets.h"
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace Tamo::FastInfoset::Test {

namespace {

constexpr std::size_t LONG = 100 * 1024;

// Of a small member, which has to stay small.
constexpr std::size_t longFor(std::size_t n) {
    return n < 1000 ? 4 * n : LONG;
}

// With as many digits for every number, so that documents grow as n does.
std::string numbered(const char* start, std::size_t number) {
    return start + std::to_string(100000 + number);
}

std::string body(std::string_view hex) {
    return octets("E000000100") + octets(hex);
}

// An index at the first bit (C.13, C.25).
std::string indexed(std::size_t index) {
    if (index <= 64) {
        return {static_cast<char>(0x80 | (index - 1))};
    }
    const auto rest = static_cast<std::uint32_t>(index - (index <= 8256 ? 65 : 8257));
    return index <= 8256 ? std::string{static_cast<char>(0xC0 | rest >> 8), static_cast<char>(rest)}
                         : std::string{static_cast<char>(0xE0 | rest >> 16), static_cast<char>(rest >> 8),
                                       static_cast<char>(rest)};
}

// With this many ends of elements and of the document; the first one goes into the last octet where that has
// room for it.
std::string closed(std::string document, std::size_t count) {
    if (document.ends_with('\xF0')) {
        document.back() = '\xFF';
        --count;
    }
    return document.append(count / 2, '\xFF') + (count % 2 != 0 ? "\xF0" : "");
}

template<class Part>
std::string repeated(std::size_t n, Part part) {
    std::string result;
    for (std::size_t i = 0; i < n; ++i) {
        result += part(i);
    }
    return result;
}

std::string times(std::size_t n, const std::string& part) {
    return repeated(n, [&](std::size_t) { return part; });
}

// The declarations of an element, from prefix0 on, each of a namespace name of its own or all of one.
std::string declarations(const char* prefix, std::size_t n, bool isOneName) {
    const auto part = [&](std::size_t i) {
        return octets("CF") + literal(numbered(prefix, i)) +
               (isOneName && i > 0 ? indexed(2) : literal(numbered("u", i)));
    };
    return octets("38") + repeated(n, part) + octets("F0");
}

// Three letters, others for each number.
std::string letters(std::size_t number) {
    constexpr std::string_view LETTERS("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    return {LETTERS[number % 52], LETTERS[number / 52 % 52], LETTERS[number / 2704]};
}

std::string smallNames(std::size_t n) {
    return closed(
        body("3C 00 72") +
            repeated(n, [](std::size_t i) { return octets("3C") + literal(letters(i)) + octets("F0"); }),
        2);
}

std::string smallTexts(std::size_t n) {
    return closed(body("3C 00 72") + repeated(n, [](std::size_t i) { return octets("92 00") + letters(i); }),
                  2);
}

std::string longName(std::size_t n) {
    return closed(body("3C") + literal(std::string(longFor(n), 'x')) + std::string(n - 1, '\0'), n + 1);
}

std::string longNamespaceByIndex(std::size_t n) {
    return closed(body("3C 00 72 38 CF 00 70") + literal(std::string(longFor(n), 'u')) +
                      octets("F0 3D 81 00 61 F0") + times(n - 1, octets("38 CF 81 81 F0 01 F0")),
                  2);
}

std::string closedMappings(std::size_t n) {
    return closed(body("3C 00 61") + std::string(n - 2, '\0') + declarations("p", n, true) +
                      std::string(1, '\0'),
                  n + 1);
}

// The prefixes that a writer would generate belong to the document.
std::string takenPrefixes(std::size_t n) {
    return closed(body("") + declarations("ns", n, true) +
                      octets("3C 00 72 7C 00 61 79 00 76 00 62 40 63 FF") + times(n, octets("41 00 80 FF")),
                  2);
}

std::string unboundAttributes(std::size_t n) {
    const auto part = [](std::size_t i) {
        return octets("79") + literal(numbered("v", i)) + octets("00 62") +
               (i == 0 ? octets("40 63") : octets("80"));
    };
    return body("7C 00 61") + repeated(n, part) + octets("FF F0");
}

std::string nestedUnboundAttributes(std::size_t n) {
    const auto part = [](std::size_t i) {
        return (i == 0 ? octets("7C 00 61 79") : octets("40 79")) + literal(numbered("v", i)) +
               octets("00 62") + (i == 0 ? octets("40 63 F0") : octets("80 F0"));
    };
    return closed(body("") + repeated(n, part), n + 1);
}

// One long value that all attributes have by its index, and a typed one among them.
std::string longValueBesideTyped(std::size_t n) {
    const std::size_t size = n < 200 ? 4 * n : LONG / 2;
    const std::string length =
        n < 200 ? octets("48") + static_cast<char>(size - 9)
                : octets("4C 00 00") + static_cast<char>((size - 265) >> 8) + static_cast<char>(size - 265);
    const auto part = [](std::size_t i) { return octets("78") + literal(numbered("b", i)) + octets("80"); };
    return body("7C 00 61 78 00 62") + length + std::string(size, 'v') +
           octets("78 00 63 30 33 00 00 00 07") + repeated(n, part) + octets("FF F0");
}

// Elements of one namespace, whose prefix each binds to another one.
std::string hiddenBindings(std::size_t n) {
    const auto part = [](std::size_t i) {
        return i == 0 ? octets("38 CF 00 70 00 75 F0 3F 81 81 00 61")
                      : octets("38 CF 81") + literal(numbered("u", i)) + octets("F0 00");
    };
    return closed(body("") + repeated(n, part), n + 1);
}

std::string nestedDefaults(std::size_t n) {
    const auto part = [](std::size_t i) {
        return octets("38 CD") + literal(numbered("u", i)) + octets("F0 3D") + indexed(i + 2) +
               octets("00 61");
    };
    return closed(body("") + repeated(n, part), n + 1);
}

std::string onePrefixAgain(std::size_t n) {
    const auto part = [](std::size_t i) { return octets("CF 81") + literal(numbered("u", i)); };
    return body("38 CF 00 70 00 75") + repeated(n, part) + octets("F0 3C 00 61 FF");
}

std::string firstInFirstOut(std::size_t n) {
    return body("3C 00 72") + declarations("p", n, false) + octets("3C 00 61 F0 01 FF F0");
}

// Declarations that no end event takes back, because another element has started since: they are written
// again for the elements that follow.
std::string declarationsLeft(std::size_t n) {
    return closed(body("3C 00 72") + declarations("p", n, true) + octets("3C 00 61 3C 00 62 FF") +
                      times(n, octets("02 F0")),
                  2);
}

std::string deep(std::size_t n) {
    return closed(body("3C 00 61") + std::string(n - 1, '\0'), n + 1);
}

// Names for which std::hash of the start with the name behind it is the same, where std::hash is what
// libstdc++ makes of strings: up to 65536 of them. A name has STAGES parts of CHOICES values each, after
// which the hash's state is the same whatever the value.
class EqualHashes {
public:
    explicit EqualHashes(std::string_view start) {
        _state = 0xC70F6907 ^ (start.size() + STAGES * 16) * M;
        for (std::size_t i = 0; i < start.size(); i += 8) {
            mix(word(start.data() + i));
        }
        for (auto& stage : _stages) {
            findParts(stage);
        }
    }

    std::string name(std::size_t number) const {
        std::string result;
        for (const auto& stage : _stages) {
            result += stage[number % CHOICES];
            number /= CHOICES;
        }
        return result;
    }

private:
    static constexpr std::size_t STAGES = 8;
    static constexpr std::size_t CHOICES = 4;
    static constexpr std::uint64_t M = 0xC6A4A7935BD1E995;

    static std::uint64_t word(const char* p) {
        std::uint64_t result = 0;
        std::memcpy(&result, p, sizeof(result));
        return result;
    }
    static std::uint64_t shifted(std::uint64_t value) { return value ^ value >> 47; }
    void mix(std::uint64_t value) { _state = (_state ^ shifted(value * M) * M) * M; }

    // The inverse of M among the odd numbers.
    static constexpr std::uint64_t inverse() {
        std::uint64_t result = M;
        for (int i = 0; i < 6; ++i) {
            result *= 2 - M * result;
        }
        return result;
    }

    // Parts of two words: any first one, and the second one that leads where the others lead.
    void findParts(std::array<std::string, CHOICES>& parts) {
        constexpr std::uint64_t INVERSE = inverse();
        const std::uint64_t before = _state;
        std::string part("aaaaaaaaaaaaaaaa");
        parts[0] = part;
        mix(word(part.data()));
        mix(word(part.data() + 8));
        const std::uint64_t target = _state;
        for (std::size_t found = 1; found < CHOICES;) {
            advance(part);
            _state = before;
            mix(word(part.data()));
            const std::uint64_t second = shifted((_state ^ target * INVERSE) * INVERSE) * INVERSE;
            std::memcpy(part.data() + 8, &second, sizeof(second));
            if (part.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.") ==
                std::string::npos) {
                parts[found++] = part;
            }
        }
        _state = target;
    }

    static void advance(std::string& letters) {
        for (std::size_t i = 0; i < 8 && ++letters[i] > 'z'; ++i) {
            letters[i] = 'a';
        }
    }

    std::uint64_t _state;
    std::array<std::array<std::string, CHOICES>, STAGES> _stages;
};

std::string equalHashNamespaces(std::size_t n) {
    const EqualHashes names("");
    const auto part = [&](std::size_t i) {
        return octets("38 CD") + literal(names.name(i)) + octets("F0") +
               (i == 0 ? octets("3D 81 00 61") : octets("3D") + indexed(i + 2) + octets("80")) + octets("F0");
    };
    return closed(body("3C 00 72") + repeated(n, part), 2);
}

std::string equalHashVocabulary(std::size_t n) {
    const EqualHashes names("");
    const std::size_t rest = n - 129;
    const std::string count = {static_cast<char>(0x80 | rest >> 16), static_cast<char>(rest >> 8),
                               static_cast<char>(rest)};
    return octets("E000000120 0200") + count +
           repeated(n, [&](std::size_t i) { return literal(names.name(i)); }) + octets("3C 00 61 FF");
}

std::string xmlDeclaredByDefault(std::size_t n) {
    return "<!DOCTYPE a [<!ATTLIST a xmlns CDATA '" + std::string(longFor(n), 'u') + "'>]>" +
           times(n, "<a>") + times(n, "</a>");
}

std::string xmlNestedDefaults(std::size_t n) {
    return repeated(n, [](std::size_t i) { return "<a xmlns='" + numbered("u", i) + "'>"; }) +
           times(n, "</a>");
}

std::string xmlHiddenBindings(std::size_t n) {
    return "<p:a xmlns:p='u' xmlns:q='u'>" +
           repeated(n, [](std::size_t i) { return "<q:a xmlns:p='" + numbered("u", i) + "' p:b=''>"; }) +
           times(n, "</q:a>") + "</p:a>";
}

std::string xmlManyDeclarations(std::size_t n) {
    return "<a" +
           repeated(n,
                    [](std::size_t i) {
                        return " xmlns:" + numbered("p", i) + "='" + numbered("u", i) + "' " +
                               numbered("p", i) + ":b=''";
                    }) +
           "/>";
}

std::string xmlLongNamespace(std::size_t n) {
    return "<r xmlns='" + std::string(longFor(n), 'u') + "'>" + times(n, "<a/>") + "</r>";
}

std::string xmlDefaultValues(std::size_t n) {
    return "<!DOCTYPE r [<!ATTLIST a" +
           repeated(n / 4, [](std::size_t i) { return numbered(" b", i) + " CDATA 'v'"; }) + ">]><r>" +
           times(n, "<a/>") + "</r>";
}

std::string xmlEqualHashes(std::size_t n) {
    const EqualHashes names("element ");
    return "<!DOCTYPE element [<!ATTLIST element" +
           repeated(n, [&](std::size_t i) { return " " + names.name(i) + " NMTOKEN #IMPLIED"; }) +
           ">]><element/>";
}

constexpr Attack ATTACKS[] = {
    {"long-name", false, longName, 20000, 50, Attack::REFUSED},
    {"long-namespace-by-index", false, longNamespaceByIndex, 10000, 50, Attack::REFUSED},
    {"closed-mappings", false, closedMappings, 20000, 40, Attack::REFUSED},
    {"taken-prefixes", false, takenPrefixes, 10000, 40, Attack::BOUNDED},
    {"unbound-attributes", false, unboundAttributes, 10000, 40, Attack::BOUNDED},
    {"nested-unbound-attributes", false, nestedUnboundAttributes, 10000, 40, Attack::BOUNDED},
    {"long-value-beside-typed", false, longValueBesideTyped, 1000, 40, Attack::BOUNDED},
    {"hidden-bindings", false, hiddenBindings, 20000, 40, Attack::BOUNDED},
    {"nested-defaults", false, nestedDefaults, 20000, 40, Attack::BOUNDED},
    {"one-prefix-again", false, onePrefixAgain, 20000, 60, Attack::BOUNDED},
    {"first-in-first-out", false, firstInFirstOut, 20000, 40, Attack::BOUNDED},
    {"declarations-left", false, declarationsLeft, 3000, 40, Attack::REPEATED},
    {"deep", false, deep, 200000, 400, Attack::BOUNDED},
    {"small-names", false, smallNames, 120000, 40, Attack::BOUNDED, 64},
    {"small-texts", false, smallTexts, 120000, 40, Attack::BOUNDED, 64},
    {"equal-hash-namespaces", false, equalHashNamespaces, 10000, 5, Attack::BOUNDED},
    {"equal-hash-vocabulary", false, equalHashVocabulary, 10000, 0, Attack::BOUNDED},
    {"xml-declared-by-default", true, xmlDeclaredByDefault, 10000, 30, Attack::REFUSED},
    {"xml-nested-defaults", true, xmlNestedDefaults, 20000, 30, Attack::BOUNDED},
    {"xml-hidden-bindings", true, xmlHiddenBindings, 20000, 20, Attack::BOUNDED},
    {"xml-many-declarations", true, xmlManyDeclarations, 5000, 30, Attack::BOUNDED},
    {"xml-long-namespace", true, xmlLongNamespace, 20000, 50, Attack::REFUSED},
    {"xml-default-values", true, xmlDefaultValues, 16000, 60, Attack::REFUSED},
    {"xml-equal-hashes", true, xmlEqualHashes, 10000, 5, Attack::BOUNDED},
};

} // namespace

std::span<const Attack> attacks() {
    return ATTACKS;
}

} // namespace Tamo::FastInfoset::Test
