// kovsim verify MODEL.ksd

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "Interrupt.h"
#include "Json.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    bool json = false;
};

int Verify(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    std::vector<std::string> findings;
    bool const sound = document.Verify([&](char const* finding) {
        findings.emplace_back(finding);
        if (!options.json) Print(options.document + ": " + finding + "\n");
        ThrowIfInterrupted();
    });
    if (options.json) {
        Json json;
        json.BeginObject().Member("document", options.document).Member("sound", sound);
        json.Key("findings").BeginArray();
        for (std::string const& finding : findings) json.Value(finding);
        json.EndArray().EndObject();
        Print(json.Text());
    } else {
        Print(options.document +
              (sound ? ": sound\n" : ": " + std::to_string(findings.size()) + " findings\n"));
    }
    return sound ? 0 : 1;
}

}  // namespace

void AddVerify(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("verify", "Check every checksum and every invariant of a document");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_flag("--json", options->json, "Print the findings as JSON");
    command->footer("Exit status: 0 sound, 1 findings, 2 could not be checked.");
    command->callback([options, &action] { action = [options] { return Verify(*options); }; });
}

}  // namespace kov::tool
