#ifndef TAMO_FINF_BATCH_H
#define TAMO_FINF_BATCH_H

#include "command/Command.h"
#include "command/Options.h"
#include "convert/Conversion.h"
#include "convert/Progress.h"
#include "files/DocumentOutputs.h"
#include "files/FileList.h"
#include "files/InputFile.h"
#include <functional>
#include <memory>
#include <string>

namespace finf {

/// Converts all files that a command line asks for, several at a time when it says so. One that fails does
/// not keep the others from being converted.
class Batch {
public:
    /// Makes the conversion of one thread; called from several threads.
    using Factory = std::function<std::unique_ptr<Conversion>()>;

    /// The options are borrowed. Throws as FileList does.
    Batch(const Options& options, const Extensions& extensions, Factory factory);

    /// Converts the files, then reports the failures in the order of the command line. RECOVERED when there
    /// is none but documents that do not come to their end, of which is written what is whole.
    ExitStatus run();

private:
    void convertAll();
    void work(Progress& progress);
    void convert(Conversion& conversion, Job& job, Progress& progress);
    void convertDocuments(Conversion& conversion, InputFile& input, DocumentOutputs& outputs) const;
    void checkOutput(const Job& job) const;
    static std::string summaryOf(const Job& job);
    ExitStatus report();

    const Options& _options;
    const Extensions _extensions;
    FileList _list;
    Factory _factory;
    std::atomic<std::size_t> _next = 0;
};

} // namespace finf

#endif
