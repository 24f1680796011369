#include "inspect/StatsCommand.h"
#include "command/CommonOptions.h"
#include "command/FinfError.h"
#include "convert/FastInfosetToXML.h"
#include "files/DirectoryWalk.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"
#include "files/SpoolFile.h"
#include "files/StandardOutput.h"
#include "files/TeeBuf.h"
#include "files/X3D.h"
#include "inspect/GzipCounter.h"
#include "inspect/StatisticsChart.h"
#include "inspect/StatisticsPicture.h"
#include "inspect/Walk.h"
#include "walk/DocumentWalker.h"
#include <algorithm>
#include <iostream>
#include <optional>

namespace finf {

StatsCommand::StatsCommand(CLI::App& parent)
    : Command(parent, "stats", "What the octets of Fast Infoset documents are spent on") {
    app()
        .add_option("INPUT", _inputs, "Fast Infoset documents; - or nothing is standard input")
        ->type_name("");
    app().add_flag("-r,--recursive", _recursive, "Read the .finf files in directories, too");
    CLI::Option* const pJson = app().add_flag("--json", _json, "Print one JSON document");
    app()
        .add_option("--svg", _picture, "Draw a picture, too; - is standard output")
        ->type_name("FILE")
        ->excludes(pJson);
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
    const auto paths =
        DirectoryWalk::expand(_inputs, _recursive, [&](const std::string& path, const FinfError& failure) {
            status = std::max(status, attempt(path, [&] { throw failure; }));
        });
    for (const std::string& path : paths) {
        StandardOutput::passOn();
        status = std::max(status, attempt(path, [&] {
                              documents.push_back(statisticsOf(path));
                              if (_picture != "-" && !_json) {
                                  std::cout << (documents.size() > 1 ? "\n" : "");
                                  chart.write(documents.back());
                              }
                          }));
    }
    if (_json) {
        std::cout << DocumentStatistics::json(documents);
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

// The document is read twice and held in memory never.
DocumentStatistics StatsCommand::statisticsOf(const std::string& path) const {
    DocumentStatistics statistics;
    statistics.name = path == "-" ? "standard input" : path;
    InputFile input(path);
    input.requireKind(DocumentKind::FAST_INFOSET);
    std::optional<SpoolFile> spool;
    GzipCounter counter;
    std::vector<std::streambuf*> others{&counter};
    if (!input.status()) {
        others.push_back(&spool.emplace().sink());
    }
    input.explain(DocumentKind::FAST_INFOSET, [&] {
        TeeBuf tee(*input.stream().rdbuf(), others);
        std::istream forWalk(&tee);
        VocabularyFiles vocabularies(_decoding.vocabularies, _decoding.limits);
        DocumentWalker walker(forWalk, statistics, vocabularies, _decoding.limits);
        X3D::addDecodings(walker.decodingAlgorithms());
        walker.setMaxShownArray(0);
        const std::string reason = faultOf(walker);
        if (!reason.empty()) {
            throw FinfError(walker.current().place() + ": " + reason);
        }
    });
    statistics.fastInfoset = counter.size();
    statistics.fastInfosetGzip = counter.finish();

    std::optional<InputFile> again;
    GzipCounter xmlCounter;
    std::ostream xml(&xmlCounter);
    FastInfosetToXML conversion(_decoding);
    std::istream& octets = spool ? spool->read() : again.emplace(path).stream();
    do {
        conversion.convert(octets, xml);
    } while (octets.peek() != std::istream::traits_type::eof());
    xml.flush();
    statistics.xml = xmlCounter.size();
    statistics.xmlGzip = xmlCounter.finish();
    return statistics;
}

} // namespace finf
