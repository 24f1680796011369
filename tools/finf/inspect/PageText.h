#ifndef TAMO_FINF_PAGETEXT_H
#define TAMO_FINF_PAGETEXT_H

#include <ostream>

namespace finf {

/// The page without a document: what stands in page/, with style sheet and scripts in their places, as
/// cmake/EmbedPage.cmake puts it together.
class PageText {
public:
    /// What comes before the data of a document.
    static void writeHead(std::ostream& out);

    /// What comes behind them.
    static void writeTail(std::ostream& out);
};

} // namespace finf

#endif
