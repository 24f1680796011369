#ifndef TAMO_TESTS_ADAPTERS_TREETEXTS_H
#define TAMO_TESTS_ADAPTERS_TREETEXTS_H

#include "Tamo/FastInfoset/adapters/libxml2.h"
#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <vector>

namespace Tamo::FastInfoset::Adapters::Test {

/// All nodes below one as text, a line each, with their depth, kind, names and values, to compare trees node
/// by node. The order of an element's declarations, which Fast Infoset does not keep, is that of the
/// alphabet; document types have what a Fast Infoset document says of them, and empty
/// CDATA sections, which it has no form for, are left out.
std::string textOf(const pugi::xml_node& top);
std::string textOf(const xmlDoc* pDocument);
std::string textOf(const xmlNode* pNode);

/// A tree by libxml2's or pugixml's own parser, entities replaced.
LibxmlDocument parsed(const std::string& xml);
void parse(const std::string& xml, pugi::xml_document& document);

/// The Fast Infoset document that Converter makes of XML text.
std::string encoded(const std::string& xml, bool strict = true);

std::string contentOf(const std::filesystem::path& file);

/// The documents that others tests have, too; with TAMO_DOCUMENTS, a directory, those below it as well.
std::vector<std::filesystem::path> sampleFiles();

} // namespace Tamo::FastInfoset::Adapters::Test

#endif
