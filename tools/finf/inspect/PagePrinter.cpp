#include "inspect/PagePrinter.h"
#include "inspect/DocumentStatistics.h"
#include "inspect/PageText.h"
#include "walk/Text.h"
#include <algorithm>

namespace finf {

using Tamo::UInt64;
using Tamo::FastInfoset::DocumentVocabulary;
using Tamo::FastInfoset::QualifiedNameEntry;

namespace {

constexpr UInt64 MOST_DEPARTURES = 1000;
constexpr unsigned int LAST_TYPED_ALGORITHM = 9; // number 10 is text

/// How many octets of the field are its last part, when that begins with an octet and ends with one.
std::size_t octetsOfLastPart(const Field& field) {
    if (field.parts.empty() || field.parts.back().bits % 8 != 0 || (field.bit + field.bits) % 8 != 0) {
        return 0;
    }
    return static_cast<std::size_t>(field.parts.back().bits / 8);
}

void addJson(std::string& json, const char* name, std::string_view text) {
    json.append(json.ends_with('{') ? "\"" : ", \"").append(name).append("\": ");
    Text::appendJson(json, text);
}

void addJson(std::string& json, const char* name, UInt64 number) {
    json.append(json.ends_with('{') ? "\"" : ", \"").append(name).append("\": ");
    json.append(std::to_string(number));
}

void appendItem(std::string& json, const std::string& item) {
    json.append(json.empty() ? "\n" : ",\n").append(item);
}

} // namespace

PagePrinter::PagePrinter(std::ostream& out, const Options& options, const std::string& file,
                         std::istream& source)
    : FieldPrinter(out, options),
      _record(source),
      _source(&_record),
      _octets(out, "octets"),
      _fields(out, "fields"),
      _texts(out, "texts"),
      _names(out, "names"),
      _finder([this](const Field& field, const std::string& what, Tamo::UInt64 partBit) {
          addDeparture(field.place(partBit), what);
      }),
      _about("{") {
    addJson(_about, "file", file == "-" ? "standard input" : file);
}

void PagePrinter::start(const DocumentWalker& walker) {
    _finder.setVocabulary(walker.vocabulary());
}

void PagePrinter::field(const Field& field) {
    if (!_hasBegun) {
        PageText::writeHead(_out);
        _hasBegun = true;
    }
    FieldPrinter::field(field);
    if (!isFull()) {
        _finder.field(field);
    }
    _record.forget((field.bit + field.bits) / 8);
}

void PagePrinter::show(const Field& field) {
    if (_count == 0) {
        _firstBit = field.bit;
        _lastOctet = field.bit / 8;
    }
    const FieldShapes::Form form = formOf(field);
    _fields.writeNumber(_shapes.numberOf(field, form));
    if (form.isOpen) {
        _fields.writeNumber(octetsOfLastPart(field));
    }
    if (form.hasIndex) {
        _fields.writeNumber(field.index);
    }
    if (form.hasOwnNote) {
        writeText(field.note);
    }
    if (form.source == FieldShapes::Source::TEXT) {
        writeText(field.value);
    }
    if (field.construct == Construct::ELEMENT) {
        ++_openElements;
    } else if (field.construct == Construct::ELEMENT_END && _openElements > 0) {
        --_openElements;
    }
    _depth = field.depth;
    _lastBit = field.bit + field.bits;
    writeOctets((_lastBit + 7) / 8);
    ++_count;
}

FieldShapes::Form PagePrinter::formOf(const Field& field) {
    FieldShapes::Form form;
    form.source = sourceOf(field);
    form.deeper = static_cast<long>(field.depth) - static_cast<long>(_depth);
    // Notes that hold numbers would make a shape each.
    form.hasOwnNote =
        field.construct == Construct::NUMBER_OF_ITEMS || field.construct == Construct::NAME_SURROGATE;
    const BitKind last = field.parts.empty() ? BitKind::STRUCTURE : field.parts.back().kind;
    form.isOpen = octetsOfLastPart(field) != 0 &&
                  (form.source == FieldShapes::Source::OCTETS || last == BitKind::NAME ||
                   last == BitKind::STRING || last == BitKind::TYPED || last == BitKind::TRAILING);
    if (field.use == TableUse::ADDED) {
        // Entries mostly follow one another.
        form.hasIndex = field.index != _lastAdded[field.table] + 1;
        _lastAdded[field.table] = field.index;
        if (_firstAdded[field.table] == 0) {
            _firstAdded[field.table] = field.index;
        }
    } else {
        form.hasIndex = field.use == TableUse::READ || (field.use == TableUse::NOT_ADDED && field.index != 0);
    }
    return form;
}

FieldShapes::Source PagePrinter::sourceOf(const Field& field) const {
    if (!field.hasValue) {
        return FieldShapes::Source::NONE;
    }
    if (field.construct == Construct::ELEMENT_END && _openElements > 0) {
        return FieldShapes::Source::ELEMENT;
    }
    if (field.use == TableUse::READ || (field.index != 0 && field.table >= DocumentVocabulary::ELEMENT_NAME &&
                                        field.use != TableUse::NONE)) {
        return FieldShapes::Source::TABLE;
    }
    if (field.isEncoded && field.form == Field::Form::ENCODINGALGORITHM &&
        field.formIndex <= LAST_TYPED_ALGORITHM) {
        return FieldShapes::Source::TYPED;
    }
    const std::size_t octets = octetsOfLastPart(field);
    return octets != 0 && octets <= field.octets.size() &&
                   field.value == field.octets.substr(field.octets.size() - octets)
               ? FieldShapes::Source::OCTETS
               : FieldShapes::Source::TEXT;
}

void PagePrinter::writeText(std::string_view text) {
    _texts.writeNumber(text.size());
    _texts.write(text);
}

void PagePrinter::writeOctets(UInt64 end) {
    if (end > _lastOctet) {
        _octets.write(_record.octets(_lastOctet, end));
        _lastOctet = end;
    }
}

void PagePrinter::addDeparture(const std::string& place, const std::string& what) {
    if (_departureCount++ < MOST_DEPARTURES) {
        std::string item = "{";
        addJson(item, "place", place);
        addJson(item, "what", what);
        if (_count > 0) {
            addJson(item, "field", _count - 1);
        }
        appendItem(_departures, item.append("}"));
    }
}

void PagePrinter::fault(const Field& field, const std::string& reason) {
    if (!_hasBegun) {
        return; // no Fast Infoset document, of which nothing could be shown
    }
    if (_count == 0 || field.bit >= _lastBit) {
        // What has been read of it, to the end of the octet.
        Field broken;
        broken.construct = field.construct;
        broken.depth = field.depth;
        broken.bit = field.bit;
        broken.parts = field.parts;
        for (const FieldPart& part : broken.parts) {
            broken.bits += part.bits;
        }
        const UInt64 end =
            8 * std::min(_record.size(), (broken.bit + std::max(broken.bits, UInt64{1}) + 7) / 8);
        if (broken.bit + broken.bits > end) {
            broken.bits = 0;
            broken.parts.clear();
        }
        const UInt64 rest = end - std::min(end, broken.bit + broken.bits);
        if (rest > 0) {
            broken.bits += rest;
            broken.parts.push_back({BitKind::TRAILING, rest});
        }
        show(broken);
    }
    _fault = "{";
    addJson(_fault, "field", _count - 1);
    addJson(_fault, "place", field.place());
    addJson(_fault, "reason", reason);
    _fault.push_back('}');
    // The octets that nobody has read are part of the picture.
    char block[4096];
    do {
        writeOctets(_record.size());
        _record.forget(_record.size());
    } while (_record.sgetn(block, sizeof block) > 0);
}

void PagePrinter::tables(const DocumentWalker& walker) {
    for (int id = DocumentVocabulary::RESTRICTED_ALPHABET; id <= DocumentVocabulary::ATTRIBUTE_NAME; ++id) {
        const auto table = static_cast<Field::Table>(id);
        std::string item = "{";
        addJson(item, "name", nameOf(table));
        if (table >= DocumentVocabulary::ELEMENT_NAME) {
            const auto& vocabulary = walker.vocabulary();
            const auto& names = table == DocumentVocabulary::ELEMENT_NAME ? vocabulary.elementVocabulary()
                                                                          : vocabulary.attributeVocabulary();
            addJson(item, "known", knownOf(table, names.size()));
            addJson(item, "names", std::max(names.size(), std::size_t{1}) - 1);
            for (std::size_t i = 1; i < names.size(); ++i) {
                const QualifiedNameEntry& name = names.value(static_cast<unsigned int>(i));
                for (const unsigned int part : {name.prefixId(), name.namespaceId(), name.localNameId()}) {
                    _names.writeNumber(part == QualifiedNameEntry::ABSENT ? 0 : part);
                }
            }
        } else if (table >= DocumentVocabulary::PREFIX) {
            const auto& values = walker.vocabulary().vocabulary(table);
            const std::size_t known = knownOf(table, values.size());
            addJson(item, "known", known);
            for (std::size_t i = 1; i <= known; ++i) {
                writeText(values.value(static_cast<unsigned int>(i)));
            }
        } else {
            addJson(item, "known", UInt64{0}); // which is not what documents are about
        }
        appendItem(_tables, item.append("}"));
    }
}

// How many entries a table had before the first field shown; size counts the placeholder.
std::size_t PagePrinter::knownOf(Field::Table table, std::size_t size) const {
    const std::size_t all = std::max(size, std::size_t{1}) - 1;
    return _firstAdded[table] == 0 ? all : std::min(all, std::size_t{_firstAdded[table]} - 1);
}

void PagePrinter::finish() {
    if (!_hasBegun) {
        return;
    }
    for (PageData* pData : {&_octets, &_fields, &_texts, &_names}) {
        pData->finish();
    }
    addJson(_about, "firstBit", _firstBit);
    addJson(_about, "fieldCount", _count);
    for (const auto& [name, pData] :
         {std::pair("octets", &_octets), {"fields", &_fields}, {"texts", &_texts}, {"names", &_names}}) {
        addJson(_about, name, pData->size());
    }
    _about.append(", \"kinds\": [");
    for (std::size_t i = 0; i < BIT_KINDS; ++i) {
        _about.append(i == 0 ? "" : ", ");
        Text::appendJson(_about, nameOf(static_cast<BitKind>(i)));
    }
    _about.append("]");
    const auto add = [this](const char* name, const std::string& json) {
        if (!json.empty()) {
            _about.append(",\n\"").append(name).append("\": ").append(json);
        }
    };
    add("part", isFull() || options().offset > 0 ? "true" : "");
    add("fault", _fault);
    add("shapes", _shapes.json());
    add("tables", "[" + _tables + "]");
    add("departures", "[" + _departures + "]");
    addJson(_about, "departureCount", _departureCount);
    _about.append("}\n");
    PageData about(_out, "about");
    about.write(_about);
    about.finish();
    PageText::writeTail(_out);
}

} // namespace finf
