#include "inspect/StatsCommand.h"
#include "Tamo/MemoryStream.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "convert/FastInfosetToXML.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"
#include "files/StandardOutput.h"
#include "inspect/GzipCounter.h"
#include "inspect/StatisticsChart.h"
#include "inspect/StatisticsPicture.h"
#include "inspect/Walk.h"
#include "walk/DocumentWalker.h"
#include <algorithm>
#include <iostream>

namespace finf {

StatsCommand::StatsCommand(CLI::App& parent)
    : Command(parent, "stats", "What the octets of Fast Infoset documents are spent on") {
    app()
        .add_option("INPUT", _inputs, "Fast Infoset documents; - or nothing is standard input")
        ->type_name("");
    app().add_option("--svg", _picture, "Draw a picture, too; - is standard output")->type_name("FILE");
    app().add_flag("-f,--force", _force, "Overwrite an existing FILE");
    addColourOption(app(), _colour);
    addVocabularyOption(app(), _decoding.vocabularies);
    addLimitOptions(app(), _decoding.limits);
}

ExitStatus StatsCommand::run() {
    OutputFile::removeTemporariesOnSignals();
    ExitStatus status = DONE;
    StatisticsChart chart(std::cout, StandardOutput::takesColours(_colour));
    std::vector<DocumentStatistics> documents;
    for (const std::string& path : _inputs) {
        StandardOutput::passOn();
        status = std::max(status, attempt(path, [&] {
                              documents.push_back(statisticsOf(path));
                              if (_picture != "-") {
                                  std::cout << (documents.size() > 1 ? "\n" : "");
                                  chart.write(documents.back());
                              }
                          }));
    }
    if (!_picture.empty() && !documents.empty()) {
        status = std::max(status, attempt(_picture == "-" ? "standard output" : _picture, [&] {
                              OutputFile output(_picture, _force);
                              StatisticsPicture::write(output.stream(), documents);
                              output.commit();
                          }));
    }
    return status;
}

DocumentStatistics StatsCommand::statisticsOf(const std::string& path) const {
    const std::string octets = InputFile::readAll(path);
    DocumentStatistics statistics;
    statistics.name = path == "-" ? "standard input" : path;

    Tamo::MemoryInputStream forWalk(octets.data(), octets.size());
    VocabularyFiles vocabularies(_decoding.vocabularies, _decoding.limits);
    DocumentWalker walker(forWalk, statistics, vocabularies, _decoding.limits);
    const std::string reason = faultOf(walker);
    if (!reason.empty()) {
        throw FinfError(walker.current().place() + ": " + reason);
    }

    GzipCounter counter;
    counter.sputn(octets.data(), static_cast<std::streamsize>(octets.size()));
    statistics.fastInfoset = counter.size();
    statistics.fastInfosetGzip = counter.finish();

    Tamo::MemoryInputStream forConversion(octets.data(), octets.size());
    GzipCounter xmlCounter;
    std::ostream xml(&xmlCounter);
    FastInfosetToXML(_decoding).convert(forConversion, xml);
    statistics.xml = xmlCounter.size();
    statistics.xmlGzip = xmlCounter.finish();
    return statistics;
}

} // namespace finf
