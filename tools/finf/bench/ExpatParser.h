#ifndef TAMO_FINF_EXPATPARSER_H
#define TAMO_FINF_EXPATPARSER_H

#include "Tamo/Types.h"
#include "bench/DocumentTally.h"
#include <memory>
#include <string>
#include <string_view>

struct XML_ParserStruct;

namespace finf {

/// Expat by itself, with nothing of ours around it: namespace processing on, names as the triplets that it
/// yields, handlers that count. What the tool measures against; conversions use Tamo::XML::SAXParser.
class ExpatParser {
public:
    ExpatParser();
    ~ExpatParser();

    ExpatParser(const ExpatParser&) = delete;
    ExpatParser& operator=(const ExpatParser&) = delete;

    /// The version of the library, "2.5.0".
    static std::string version();

    /// The number of events of a document. Throws FinfError.
    Tamo::UInt64 count(std::string_view xml);

    /// What the document says. Throws FinfError.
    Tamo::UInt64 sum(std::string_view xml);

private:
    void parse(std::string_view xml);

    struct Free {
        void operator()(XML_ParserStruct* pParser) const;
    };
    std::unique_ptr<XML_ParserStruct, Free> _pParser;
};

} // namespace finf

#endif
