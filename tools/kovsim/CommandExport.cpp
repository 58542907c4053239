// kovsim export MODEL.ksd -o FILE.vtu

#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <string>

#include "Commands.h"
#include "Json.h"
#include "ObjectContent.h"
#include "OutputPlace.h"
#include "Progress.h"
#include "VtuExport.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string output;
    bool noSets = false;
    bool json = false;
};

int Export(Options const& options) {
    auto const start = std::chrono::steady_clock::now();
    OutputPlace place(options.output);
    KOVObjDocument const document = OpenForReading(options.document);
    Progress progress(options.output);
    VtuExportSummary const summary =
        VtuExport(document,
                  {!options.noSets,
                   [&progress](double done, double total) { progress.Show(done, total); }})
            .Write(place.Path());
    document.Close();
    progress.Clear();
    place.Publish();
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    if (options.json) {
        Json json;
        json.BeginObject().Member("document", options.document).Member("file", options.output);
        json.Member("points", summary.points).Member("cells", summary.cells);
        json.Member("nodeSets", static_cast<long>(summary.nodeSets));
        json.Member("elementSets", static_cast<long>(summary.elementSets));
        json.Member("seconds", seconds.count()).EndObject();
        PrintAbout(options.output, json.Text());
    } else {
        PrintAbout(options.output,
                   options.document + " -> " + options.output + "\n" +
                       CountText(summary.points, "point") + ", " +
                       CountText(summary.cells, "cell") + ", " +
                       CountText(static_cast<long>(summary.nodeSets), "node set") + ", " +
                       CountText(static_cast<long>(summary.elementSets), "element set") + "\n");
    }
    return 0;
}

}  // namespace

void AddExport(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("export", "Write the mesh as a VTU file for viewers");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_option("-o,--output", options->output, "The file to make, such as FILE.vtu")
        ->required();
    command->add_flag("--no-sets", options->noSets, "Leave out the arrays of the sets");
    command->add_flag("--json", options->json, "Print the summary as JSON");
    command->footer(
        "Points carry NodeLabel, cells ElementLabel and ElementType (an index into "
        "ElementTypeNames);\n"
        "each set is an array of its name, 1 for its members and 0 for all others.");
    command->callback([options, &action] { action = [options] { return Export(*options); }; });
}

}  // namespace kov::tool
