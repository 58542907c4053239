// kovsim compact A.ksd -o B.ksd

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "Commands.h"
#include "DocumentReader.h"
#include "Interrupt.h"
#include "Json.h"
#include "Names.h"
#include "OutputPlace.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string output;
    bool json = false;
};

int Compact(Options const& options) {
    OutputPlace place(options.output);
    KOVObjDocument const document = OpenForReading(options.document);
    document.WriteCompacted(ToKOVString(place.Path()));
    ThrowIfInterrupted();
    KOVObjDocumentStatistics const before = document.Statistics();
    long const bytesBefore = before.catalogueBytes + before.bulkBytes;
    document.Close();
    KOVObjDocument const written = OpenForReading(place.Path());
    KOVObjDocumentStatistics const after = written.Statistics();
    long const bytesAfter = after.catalogueBytes + after.bulkBytes;
    written.Close();
    place.Publish();
    if (options.json) {
        Json json;
        json.BeginObject().Member("document", options.document).Member("output", options.output);
        json.Member("bytesBefore", bytesBefore).Member("bytesAfter", bytesAfter);
        json.Member("supersededBefore", static_cast<long>(before.supersededBytes)).EndObject();
        PrintAbout(options.output, json.Text());
    } else {
        PrintAbout(options.output, options.document + " -> " + options.output + "\n" +
                                       std::to_string(bytesBefore) + " bytes before, " +
                                       std::to_string(bytesAfter) + " after\n");
    }
    return 0;
}

}  // namespace

void AddCompact(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("compact", "Write a document again without superseded bytes");
    command->add_option("MODEL", options->document, "The document to read")->required();
    command->add_option("-o,--output", options->output, "The document to make")->required();
    command->add_flag("--json", options->json, "Print the sizes as JSON");
    command->callback([options, &action] { action = [options] { return Compact(*options); }; });
}

}  // namespace kov::tool
