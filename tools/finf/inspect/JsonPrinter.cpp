#include "inspect/JsonPrinter.h"
#include "walk/Text.h"

namespace finf {

namespace {

constexpr std::size_t SHORTENED = 64;

} // namespace

JsonPrinter::JsonPrinter(std::ostream& out, const Options& options, const std::string& file)
    : FieldPrinter(out, options), _file(file) {
    begin();
}

void JsonPrinter::begin() {
    _isFirst = true;
    _inFields = true;
    _json.append("{\"file\": ");
    Text::appendJson(_json, _file);
    _json.append(", \"fields\": [");
    write();
}

// What comes behind a document belongs to the next, unless nothing of this one was shown.
void JsonPrinter::beginNext() {
    if (isBehindDocument() && !(_isFirst && _inFields)) {
        endFields();
        _json.append("}\n");
        begin();
    }
}

void JsonPrinter::show(const Field& field) {
    beginNext();
    _json.append(_isFirst ? "\n{" : ",\n{");
    _isFirst = false;
    addPlace(field);
    const std::size_t limit = options().full ? std::string::npos : SHORTENED;
    bool isShortened = field.octets.size() > limit || 8 * field.octets.size() < field.bits;
    add("bits", field.bits);
    separate("octets");
    _json.push_back('"');
    Text::appendHex(_json, field.octets.substr(0, limit));
    _json.push_back('"');
    add("depth", field.depth);
    add("construct", nameOf(field.construct));
    if (!field.note.empty()) {
        add("note", field.note);
    }
    if (field.hasValue) {
        separate("value");
        const std::size_t start = _json.size();
        Text::appendJson(_json, field.value, limit);
        isShortened = isShortened || field.isCut || _json.size() - start < field.value.size() + 2;
    }
    if (field.isEncoded) {
        add("encoding", field.encodingName());
    }
    if (field.use != TableUse::NONE) {
        add("table", nameOf(field.table));
        if (field.index != 0 || field.use == TableUse::READ) {
            add("index", field.index);
        }
        add("use", field.use == TableUse::READ ? "reads" : field.use == TableUse::ADDED ? "adds" : "literal");
    }
    if (isShortened) {
        separate("shortened");
        _json.append("true");
    }
    _json.push_back('}');
    write();
}

void JsonPrinter::fault(const Field& field, const std::string& reason) {
    beginNext();
    endFields();
    _json.append(",\n\"fault\": {");
    addPlace(field);
    add("construct", nameOf(field.construct));
    add("reason", reason);
    _json.push_back('}');
    write();
}

void JsonPrinter::tables(const DocumentWalker& walker) {
    endFields();
    _json.append(",\n\"tables\": {");
    forEachTable(walker, [this](Field::Table table, std::size_t size, const auto& entry) {
        _json.append(_json.ends_with('{') ? "\n\"" : ",\n\"").append(nameOf(table)).append("\": [");
        for (std::size_t i = 1; i < size; ++i) {
            _json.append(i == 1 ? "" : ", ");
            Text::appendJson(_json, entry(i));
            write();
        }
        _json.push_back(']');
    });
    _json.append("}");
    write();
}

void JsonPrinter::finish() {
    endFields();
    _json.append(isFull() ? ",\n\"more\": true}\n" : "}\n");
    write();
}

void JsonPrinter::add(const char* name, std::string_view text) {
    separate(name);
    Text::appendJson(_json, text);
}

void JsonPrinter::add(const char* name, Tamo::UInt64 number) {
    separate(name);
    Text::appendNumber(_json, number, 1, 10);
}

void JsonPrinter::separate(const char* name) {
    _json.append(_json.ends_with('{') ? "\"" : ", \"").append(name).append("\": ");
}

void JsonPrinter::addPlace(const Field& field) {
    add("offset", field.bit / 8);
    add("bit", field.bit % 8);
}

void JsonPrinter::endFields() {
    if (_inFields) {
        _inFields = false;
        _json.append("\n]");
    }
}

void JsonPrinter::write() {
    _out.write(_json.data(), static_cast<std::streamsize>(_json.size()));
    _json.clear();
}

} // namespace finf
