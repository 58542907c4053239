// kovsim extract MODEL.ksd --set NAME -o SUB.ksd

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "Commands.h"
#include "DocumentReader.h"
#include "Failure.h"
#include "Json.h"
#include "KOVSimTransaction.h"
#include "NamedElements.h"
#include "Names.h"
#include "OutputPlace.h"
#include "Progress.h"
#include "SubModel.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string set;
    std::string output;
    bool json = false;
};

std::string JsonSummary(Options const& options, SubModelSummary const& summary, double seconds) {
    Json json;
    json.BeginObject().Member("document", options.document).Member("set", options.set);
    json.Member("output", options.output);
    auto const remaining = [&json](char const* name, Remaining const& of) {
        json.Key(name).BeginObject().Member("before", of.before).Member("after", of.after);
        json.EndObject();
    };
    remaining("nodes", summary.nodes);
    remaining("elements", summary.elements);
    remaining("instances", summary.instances);
    remaining("nodeSets", summary.nodeSets);
    remaining("elementSets", summary.elementSets);
    remaining("surfaces", summary.surfaces);
    remaining("orientations", summary.orientations);
    json.Member("seconds", seconds).EndObject();
    return json.Text();
}

std::string PlainSummary(Options const& options, SubModelSummary const& summary, double seconds) {
    std::string text = options.document + " -> " + options.output + "\n";
    char row[120];
    auto const remaining = [&](char const* name, Remaining const& of) {
        if (of.before == 0 && of.after == 0) return;
        std::snprintf(row, sizeof row, "%-24s %12d of %d\n", name, of.after, of.before);
        text += row;
    };
    remaining("nodes", summary.nodes);
    remaining("elements", summary.elements);
    remaining("instances", summary.instances);
    remaining("node sets", summary.nodeSets);
    remaining("element sets", summary.elementSets);
    remaining("surfaces", summary.surfaces);
    remaining("orientations", summary.orientations);
    std::snprintf(row, sizeof row, "%-24s %12.2f\n", "seconds", seconds);
    return text + row;
}

int Extract(Options const& options) {
    auto const start = std::chrono::steady_clock::now();
    OutputPlace place(options.output);
    SubModelSummary summary;
    {
        KOVObjDocument const source = OpenForReading(options.document);
        KOVSimCSet const elements =
            WhileReading(options.document, [&] { return ElementsNamed(source, options.set); });
        Progress progress(options.output);
        double const total = static_cast<double>(source.Statistics().liveBulkBytes);
        KOVObjDocument const target = KOVObjDocument::Create(ToKOVString(place.Path()));
        KOVSimTransaction transaction(target.ContextID());
        summary = WhileReading(options.document, [&] {
            SubModelOptions how;
            how.progress = [&](double bytes) { progress.Show(std::min(bytes, total), total); };
            return WriteSubModel(source, elements, target, how);
        });
        transaction.Commit();
        target.Close();
        source.Close();
        progress.Clear();
    }
    place.Publish();
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    PrintAbout(options.output, options.json ? JsonSummary(options, summary, seconds.count())
                                            : PlainSummary(options, summary, seconds.count()));
    return 0;
}

}  // namespace

void AddExtract(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("extract", "Make a document of the elements of a set, with all theirs");
    command->add_option("MODEL", options->document, "The document to read")->required();
    command
        ->add_option("--set", options->set,
                     "The element set or surface, such as Set-1, Part-1.Set-1 or \"My Part\".Set-1")
        ->required();
    command->add_option("-o,--output", options->output, "The document to make")->required();
    command->add_flag("--json", options->json, "Print the summary as JSON");
    command->footer(
        "Sets, surfaces, instances and fields are cut to what remains; those of which nothing\n"
        "remains are left out. Sets that were empty already stay.");
    command->callback([options, &action] { action = [options] { return Extract(*options); }; });
}

}  // namespace kov::tool
