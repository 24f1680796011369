#include "files/X3D.h"
#include "X3DQuantizedFloats.h"
#include "X3DVocabulary.h"
#include <iterator>
#include <sstream>

namespace finf {

namespace {

std::vector<std::string> linesOf(const char* text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace

std::vector<std::string> X3D::uris() {
    return {std::begin(example::X3DLoader::URIS), std::end(example::X3DLoader::URIS)};
}

Tamo::FastInfoset::DocumentVocabulary X3D::vocabulary() {
    return example::x3dVocabulary(
        {linesOf(ELEMENTS), linesOf(ATTRIBUTES), linesOf(VALUES), linesOf(ALGORITHMS)});
}

void X3D::addDecodings(Tamo::FastInfoset::DecodingAlgorithm& algorithms) {
    algorithms.add(example::X3DQuantizedFloats::URI, &example::X3DQuantizedFloats::decode);
}

} // namespace finf
