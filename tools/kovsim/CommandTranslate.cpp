// kovsim translate DECK -o MODEL.ksd

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "Commands.h"
#include "ElementClasses.h"
#include "Json.h"
#include "KOVObjDocument.h"
#include "KOVSimTransaction.h"
#include "Names.h"
#include "ObjectContent.h"
#include "OutputPlace.h"
#include "Progress.h"
#include "Translation.h"

namespace kov::tool {
namespace {

struct Options {
    std::string deck;
    std::string output;
    bool strict = false;
    bool json = false;
};

std::string JsonSummary(Options const& options, TranslationSummary const& summary, int classes,
                        double seconds) {
    Json json;
    json.BeginObject();
    json.Member("deck", options.deck).Member("document", options.output);
    json.Member("nodes", summary.nodes).Member("elements", summary.elements);
    json.Key("elementTypes").BeginObject();
    for (auto const& type : summary.types) json.Member(type.name, type.count);
    json.EndObject();
    json.Member("nodeSets", static_cast<long>(summary.nodeSets));
    json.Member("elementSets", static_cast<long>(summary.elementSets));
    json.Member("parts", static_cast<long>(summary.parts));
    json.Member("instances", static_cast<long>(summary.instances));
    json.Member("surfaces", static_cast<long>(summary.surfaces));
    json.Member("orientations", static_cast<long>(summary.orientations));
    json.Member("distributions", static_cast<long>(summary.distributions));
    json.Member("materials", static_cast<long>(summary.materials));
    json.Member("sections", static_cast<long>(summary.sections));
    json.Member("plies", static_cast<long>(summary.plies));
    json.Member("initialConditions", static_cast<long>(summary.initialConditions));
    json.Member("elementClasses", classes);
    json.Member("files", summary.files);
    json.Member("repeatedNodes", summary.repeatedNodes);
    json.Key("unknownKeywords").BeginObject();
    for (auto const& [keyword, count] : summary.unknownKeywords) json.Member(keyword, count);
    json.EndObject();
    json.Key("notes").BeginObject();
    for (auto const& [note, count] : summary.notes) json.Member(note, count);
    json.EndObject();
    json.Key("elementsWithoutSection").BeginObject();
    json.Member("elements", summary.sectionlessElements);
    json.Member("blocks", summary.sectionlessBlocks);
    json.Key("first").BeginArray();
    for (Sectionless const& block : summary.sectionless) {
        json.BeginObject().Member("file", block.path).Member("line", block.line);
        json.Member("type", block.type).Member("elements", block.count);
        json.Member("instance", block.instance).Member("label", block.label).EndObject();
    }
    json.EndArray().EndObject();
    json.Key("sectionsOfAnotherKind").BeginObject();
    json.Member("elements", summary.misfits.elements);
    json.Member("sections", summary.misfits.sections);
    json.Key("first").BeginArray();
    for (Misfit const& section : summary.misfits.first) {
        json.BeginObject().Member("file", section.path).Member("line", section.line);
        json.Member("kind", FittingElement(section.kind)).Member("set", section.set);
        json.Member("elements", section.count).Member("type", section.type);
        json.Member("instance", section.instance).Member("label", section.label).EndObject();
    }
    json.EndArray().EndObject();
    json.Key("unstableElasticity").BeginObject().Member("rows", summary.unstable.rows);
    json.Key("first").BeginArray();
    for (UnstableRows::Row const& row : summary.unstable.first) {
        json.BeginObject().Member("file", row.path).Member("line", row.line);
        json.Member("material", row.material).Member("finding", row.text).EndObject();
    }
    json.EndArray().EndObject();
    json.Member("seconds", seconds);
    json.EndObject();
    return json.Text();
}

std::string SectionlessText(TranslationSummary const& summary) {
    std::string text;
    for (Sectionless const& block : summary.sectionless) {
        text += std::to_string(block.count) + (block.count == 1 ? " element (" : " elements (") +
                block.type + ") of " + block.path + ":" + std::to_string(block.line) +
                (block.count == 1 ? " is in no section" : " are in no section") +
                ", the first is " + std::to_string(block.label);
        if (!block.instance.empty()) text += " of " + NameText(block.instance);
        text += "\n";
    }
    long const more = summary.sectionlessBlocks - static_cast<long>(summary.sectionless.size());
    if (more > 0) {
        text += "and those of " + std::to_string(more) +
                (more == 1 ? " more keyword" : " more keywords") + ", " +
                std::to_string(summary.sectionlessElements) + " elements in all\n";
    }
    return text;
}

std::string MisfitText(Misfits const& misfits) {
    std::string text;
    for (Misfit const& section : misfits.first) {
        std::string const kind = FittingElement(section.kind);
        text += section.path + ":" + std::to_string(section.line) + ": " + kind + " section '" +
                Shown(section.set) + "' is given to " + std::to_string(section.count) +
                (section.count == 1 ? " element that is no " + kind
                                    : " elements that are no " + kind + "s") +
                ", the first is " + std::to_string(section.label);
        if (!section.instance.empty()) text += " of " + NameText(section.instance);
        text += " (" + section.type + ")\n";
    }
    long const more = misfits.sections - static_cast<long>(misfits.first.size());
    if (more > 0) {
        text += "and " + std::to_string(more) +
                (more == 1 ? " more section, " : " more sections, ") +
                std::to_string(misfits.elements) + " elements in all\n";
    }
    return text;
}

std::string UnstableText(UnstableRows const& unstable) {
    std::string text;
    for (UnstableRows::Row const& row : unstable.first) {
        text += row.path + ":" + std::to_string(row.line) + ": elasticity of material '" +
                Shown(row.material) + "' is not stable: " + row.text + "\n";
    }
    long const more = unstable.rows - static_cast<long>(unstable.first.size());
    if (more > 0) text += "and " + CountText(more, "more row") + " of elasticity\n";
    return text;
}

std::string PlainSummary(Options const& options, TranslationSummary const& summary, int classes,
                         double seconds) {
    std::string text = options.deck + " -> " + options.output + "\n";
    auto const line = [&text](std::string const& name, long count) {
        char row[160];
        std::snprintf(row, sizeof row, "%-24s %12ld\n", name.c_str(), count);
        text += row;
    };
    line("nodes", summary.nodes);
    line("elements", summary.elements);
    for (auto const& type : summary.types) line("  " + type.name, type.count);
    line("node sets", static_cast<long>(summary.nodeSets));
    line("element sets", static_cast<long>(summary.elementSets));
    auto const some = [&line](std::string const& name, std::size_t count) {
        if (count > 0) line(name, static_cast<long>(count));
    };
    some("parts", summary.parts);
    some("instances", summary.instances);
    some("surfaces", summary.surfaces);
    some("orientations", summary.orientations);
    some("distributions", summary.distributions);
    some("materials", summary.materials);
    some("sections", summary.sections);
    some("plies", summary.plies);
    some("initial conditions", summary.initialConditions);
    line("element classes", classes);
    if (summary.files > 1) line("files", summary.files);
    if (summary.repeatedNodes > 0) line("nodes defined twice", summary.repeatedNodes);
    for (auto const& [keyword, count] : summary.unknownKeywords) line("unknown " + keyword, count);
    for (auto const& [note, count] : summary.notes)
        text += note + ": " + std::to_string(count) + "\n";
    text += SectionlessText(summary);
    text += MisfitText(summary.misfits);
    text += UnstableText(summary.unstable);
    char row[80];
    std::snprintf(row, sizeof row, "%-24s %12.2f\n", "seconds", seconds);
    return text + row;
}

int Translate(Options const& options) {
    auto const start = std::chrono::steady_clock::now();
    OutputPlace place(options.output);
    TranslationSummary summary;
    int classes = 0;
    {
        SystemFiles files;
        Progress progress(options.deck);
        KOVObjDocument const document = KOVObjDocument::Create(ToKOVString(place.Path()));
        KOVSimTransaction transaction(document.ContextID());
        Translation translation(files, document, transaction,
                                {options.strict, [&progress](double done, double total) {
                                     progress.Show(done, total);
                                 }});
        summary = translation.Run(options.deck);
        transaction.Commit();
        translation.WriteLayers();
        classes = ClassifyElements(document);
        LinkSectionsToClasses(document);
        document.Close();
    }
    place.Publish();
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    PrintAbout(options.output, options.json
                                   ? JsonSummary(options, summary, classes, seconds.count())
                                   : PlainSummary(options, summary, classes, seconds.count()));
    return 0;
}

}  // namespace

void AddTranslate(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("translate", "Translate a keyword deck into a document");
    command->add_option("DECK", options->deck, "The deck to read")->required();
    command->add_option("-o,--output", options->output, "The document to make, such as MODEL.ksd")
        ->required();
    command->add_flag("--strict", options->strict,
                      "Take keywords that are not known, and parameters that are not kept, for "
                      "errors");
    command->add_flag("--json", options->json, "Print the summary as JSON");
    command->callback([options, &action] { action = [options] { return Translate(*options); }; });
}

}  // namespace kov::tool
