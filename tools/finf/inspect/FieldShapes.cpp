#include "inspect/FieldShapes.h"
#include "walk/Text.h"
#include <iterator>

namespace finf {

namespace {

// By FieldShapes::Source.
constexpr const char* SOURCES[] = {"", "octets", "typed", "table", "element", "text"};
static_assert(std::size(SOURCES) == static_cast<std::size_t>(FieldShapes::Source::TEXT) + 1);

template<class Number>
void appendRaw(std::string& key, Number number) {
    key.append(reinterpret_cast<const char*>(&number), sizeof number);
}

} // namespace

std::size_t FieldShapes::numberOf(const Field& field, const Form& form) {
    // The shape of almost every field is known, so that finding it must not cost more than this.
    _key.clear();
    appendRaw(_key, field.construct);
    appendRaw(_key, form.source);
    appendRaw(_key, static_cast<char>((form.hasOwnNote ? 1 : 0) | (form.hasIndex ? 2 : 0) |
                                      (form.isOpen ? 4 : 0) | (field.isEncoded ? 8 : 0)));
    appendRaw(_key, form.deeper);
    appendRaw(_key, field.use);
    if (field.use != TableUse::NONE) {
        appendRaw(_key, field.table);
    }
    if (field.isEncoded) {
        appendRaw(_key, field.form);
        appendRaw(_key, field.formIndex);
    }
    appendRaw(_key, field.parts.size());
    for (std::size_t i = 0; i < field.parts.size(); ++i) {
        appendRaw(_key, field.parts[i].kind);
        appendRaw(_key, form.isOpen && i + 1 == field.parts.size() ? 0 : field.parts[i].bits);
    }
    if (!form.hasOwnNote) {
        _key.append(field.note);
    }
    const auto [place, isNew] = _numbers.try_emplace(_key, _numbers.size());
    if (isNew) {
        describe(field, form);
    }
    return place->second;
}

void FieldShapes::describe(const Field& field, const Form& form) {
    const auto addText = [this](const char* name, std::string_view text) {
        _json.append(", \"").append(name).append("\": ");
        Text::appendJson(_json, text);
    };
    const auto add = [this](const char* name, const std::string& json) {
        _json.append(", \"").append(name).append("\": ").append(json);
    };
    if (!_json.empty()) {
        _json.back() = ',';
    } else {
        _json.push_back('[');
    }
    _json.append("\n{\"construct\": ");
    Text::appendJson(_json, nameOf(field.construct));
    add("deeper", std::to_string(form.deeper));
    if (form.hasOwnNote) {
        add("ownNote", "true");
    } else if (!field.note.empty()) {
        addText("note", field.note);
    }
    if (form.source != Source::NONE) {
        addText("source", SOURCES[static_cast<std::size_t>(form.source)]);
    }
    if (field.isEncoded) {
        addText("encoding", field.encodingName());
        if (field.form == Field::Form::ENCODINGALGORITHM) {
            add("algorithm", std::to_string(field.formIndex));
        }
    }
    if (field.use != TableUse::NONE) {
        addText("use", field.use == TableUse::READ    ? "reads"
                       : field.use == TableUse::ADDED ? "adds"
                                                      : "literal");
        add("table", std::to_string(field.table));
    }
    if (form.hasIndex) {
        add("index", "true");
    }
    if (form.isOpen) {
        add("open", "true");
    }
    std::string parts = "[";
    for (const FieldPart& part : field.parts) {
        parts.append(parts.size() > 1 ? ", [" : "[").append(std::to_string(static_cast<int>(part.kind)));
        const bool isRest = form.isOpen && &part == &field.parts.back();
        parts.append(", ").append(std::to_string(isRest ? 0 : part.bits)).append("]");
    }
    add("parts", parts.append("]"));
    _json.append("}]");
}

} // namespace finf
