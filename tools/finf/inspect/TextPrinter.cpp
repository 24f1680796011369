#include "inspect/TextPrinter.h"
#include "walk/Text.h"
#include <algorithm>

namespace finf {

namespace {

constexpr std::size_t OCTETS_A_LINE = 8;
constexpr std::size_t OCTETS_WIDTH = 3 * OCTETS_A_LINE + 1;
constexpr std::size_t VALUE_LENGTH = 60;
constexpr std::size_t DEEPEST_INDENTATION = 24;

// Select graphic rendition, ECMA-48.
constexpr const char* PLAIN = "\x1B[0m";
constexpr const char* DIM = "\x1B[2m";
constexpr const char* BOLD = "\x1B[1m";
constexpr const char* RED = "\x1B[31m";
constexpr const char* GREEN = "\x1B[32m";
constexpr const char* YELLOW = "\x1B[33m";
constexpr const char* CYAN = "\x1B[36m";

bool isHead(Construct construct) {
    switch (construct) {
    case Construct::ELEMENT:
    case Construct::ELEMENT_END:
    case Construct::CHARACTER_CHUNK:
    case Construct::COMMENT:
    case Construct::PROCESSING_INSTRUCTION:
    case Construct::INITIAL_VOCABULARY:
    case Construct::DOCUMENT_TYPE_DECLARATION:
        return true;
    default:
        return false;
    }
}

} // namespace

void TextPrinter::show(const Field& field) {
    begin(field, field.octets, field.bits);
    appendColoured(isHead(field.construct) ? BOLD : "", nameOf(field.construct));
    if (field.construct == Construct::TRAILING_OCTETS) {
        _line.append(": ").append(std::to_string(field.bits / 8));
    }
    if (field.hasValue) {
        _line.push_back(' ');
        setColour(GREEN);
        if (field.isCut) {
            Text::appendQuoted(_line, field.value.substr(0, VALUE_LENGTH), std::string::npos);
            _line.append("... (beginning of a large array)");
        } else {
            Text::appendQuoted(_line, field.value, options().full ? std::string::npos : VALUE_LENGTH);
        }
        setColour(PLAIN);
    }
    if (!field.note.empty()) {
        _line.append(": ").append(field.note);
    }
    if (field.isEncoded && field.form != Field::Form::UTF8) {
        _line.append(" in ").append(field.encodingName());
    }
    if (field.index != 0 || field.use == TableUse::READ) {
        _line.append("  ");
        setColour(YELLOW);
        _line.append(field.use == TableUse::ADDED ? "+ " : "= ").append(nameOf(field.table)).append(" ");
        _line.append(std::to_string(field.index));
        setColour(PLAIN);
    }
    write();
    for (std::size_t i = OCTETS_A_LINE; options().full && i < field.octets.size(); i += OCTETS_A_LINE) {
        _line.append(12, ' ');
        setColour(CYAN);
        Text::appendHex(_line, field.octets.substr(i, OCTETS_A_LINE), " ");
        setColour(PLAIN);
        write();
    }
}

void TextPrinter::fault(const Field& field, const std::string& reason) {
    if (!_hasBegun || field.construct == Construct::TRAILING_OCTETS) {
        return; // no Fast Infoset document, of which nothing could be shown, or shown as what it is
    }
    const std::string_view octets = field.octets.substr(0, OCTETS_A_LINE);
    begin(field, octets, octets.size() * 8 - std::min(octets.size() * 8, std::size_t{field.bit % 8}));
    setColour(RED);
    _line.append("broken ").append(nameOf(field.construct)).append(": ").append(reason);
    setColour(PLAIN);
    write();
}

void TextPrinter::tables(const DocumentWalker& walker) {
    forEachTable(walker, [this](Field::Table table, std::size_t size, const auto& entry) {
        for (std::size_t i = 1; i < size; ++i) {
            if (i == 1) {
                appendColoured(YELLOW, nameOf(table));
                write();
            }
            Text::appendNumber(_line, i, 8, 10);
            _line.append("  ");
            setColour(GREEN);
            Text::appendQuoted(_line, entry(i), options().full ? std::string::npos : VALUE_LENGTH);
            setColour(PLAIN);
            write();
        }
    });
}

void TextPrinter::finish() {
    if (isFull()) {
        _line = "... more, behind the --limit";
        write();
    }
}

void TextPrinter::begin(const Field& field, std::string_view octets, Tamo::UInt64 bits) {
    if (isBehindDocument() && _hasBegun) {
        write();
    }
    if (!_hasBegun) {
        _hasBegun = true;
        _line.append("offset").append(6, ' ').append("octets").append(OCTETS_WIDTH - 6, ' ');
        _line.append("construct");
        write();
    }
    if (bits == 0) {
        _line.append(12, ' ').append(OCTETS_WIDTH, ' ');
    } else {
        setColour(DIM);
        Text::appendNumber(_line, field.bit / 8, 8, 16);
        _line.append(field.bit % 8 != 0 ? "." + std::to_string(field.bit % 8) : "  ").append("  ");
        setColour(PLAIN);
        setColour(CYAN);
        const std::size_t start = _line.size();
        appendOctets(field, octets, bits);
        const std::size_t width = _line.size() - start;
        setColour(PLAIN);
        _line.append(width < OCTETS_WIDTH ? OCTETS_WIDTH - width : 1, ' ');
    }
    const std::size_t depth = std::min(field.depth, DEEPEST_INDENTATION);
    _line.append(2 * depth, ' ');
    if (depth < field.depth) {
        _line.append("[").append(std::to_string(field.depth)).append("] ");
    }
}

void TextPrinter::appendOctets(const Field& field, std::string_view octets, Tamo::UInt64 bits) {
    const bool isShort = octets.size() > OCTETS_A_LINE && !options().full;
    const std::size_t count = std::min(octets.size(), OCTETS_A_LINE - (isShort ? 1 : 0));
    const Tamo::UInt64 end = field.bit % 8 + bits;
    for (std::size_t i = 0; i < count; ++i) {
        _line.append(i == 0 ? "" : " ");
        // The bits of this octet that are the field's, from first to last.
        const std::size_t first = i == 0 ? field.bit % 8 : 0;
        const std::size_t last = std::min(Tamo::UInt64{8}, end - 8 * i);
        std::string digits;
        Text::appendHex(digits, octets.substr(i, 1));
        if (first % 4 == 0 && last % 4 == 0) {
            _line.push_back(first == 0 ? digits[0] : '.');
            _line.push_back(last == 8 ? digits[1] : '.');
        } else {
            const auto octet = static_cast<unsigned char>(octets[i]);
            for (std::size_t bit = 0; bit < 8; ++bit) {
                _line.push_back(bit < first || bit >= last ? '.' : (octet >> (7 - bit)) & 1 ? '1' : '0');
            }
        }
    }
    if (isShort) {
        _line.append(" ..");
    }
}

void TextPrinter::appendColoured(const char* colour, std::string_view text) {
    setColour(colour);
    _line.append(text);
    setColour(*colour != '\0' ? PLAIN : "");
}

void TextPrinter::setColour(const char* colour) {
    if (options().colour) {
        _line.append(colour);
    }
}

void TextPrinter::write() {
    _line.push_back('\n');
    _out.write(_line.data(), static_cast<std::streamsize>(_line.size()));
    _line.clear();
}

} // namespace finf
