// kovsim fields MODEL.ksd

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "FieldListing.h"
#include "ResultChoice.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string step;
    std::string frame;
    std::vector<std::string> fields;
    bool json = false;
};

// All fields that a step has in any frame, each as it stands in the last frame that has it.
std::vector<ListedField> LatestFields(DocumentResults& results, ResultStep const& step,
                                      FieldPicker& picker) {
    std::vector<ListedField> found;
    // The first of the fields of a name and grid among those found.
    std::map<std::pair<std::string, int>, std::vector<ListedField>> byKey;
    std::vector<std::pair<std::string, int>> order;
    for (std::size_t i = 0; i < step.frames.size(); ++i) {
        int const frame = static_cast<int>(i) + 1;
        for (FieldHead const& head : results.FieldsOf(step.frames[i])) {
            if (!picker.Takes(head)) continue;
            auto const [at, isNew] = byKey.try_emplace({head.name, head.grid});
            if (isNew) order.push_back(at->first);
            std::vector<ListedField>& listed = at->second;
            int const before = listed.empty() ? 0 : listed[0].frames;
            if (!listed.empty() && listed[0].frame == frame) {
                listed.push_back({head, frame, before});
            } else {
                listed = {{head, frame, before + 1}};
            }
        }
    }
    for (auto const& key : order) {
        std::vector<ListedField> const& listed = byKey[key];
        found.insert(found.end(), listed.begin(), listed.end());
    }
    return found;
}

void AddWithoutFrame(DocumentResults& results, ResultStep const& step, FieldPicker& picker,
                     std::vector<ListedField>& fields) {
    for (FieldHead const& head : results.FieldsWithoutFrame(step)) {
        if (picker.Takes(head)) fields.push_back({head, 0, 0});
    }
}

std::vector<ListedField> FieldsOfFrame(DocumentResults& results, FrameNumber const& number,
                                       FieldPicker& picker) {
    std::vector<ListedField> fields;
    for (FieldHead const& head : FieldsOf(results, number)) {
        if (picker.Takes(head)) fields.push_back({head, number.frame, 0});
    }
    return fields;
}

// Everything that is to be listed, so that a wrong name is told before anything is shown.
std::vector<ListedStep> Choose(DocumentResults& results, Options const& options,
                               std::optional<FrameChoice> const& choice) {
    FieldPicker picker(options.fields);
    std::vector<ListedStep> listed;
    std::vector<std::size_t> const steps = ChooseSteps(results, options.step);
    listed.reserve(steps.size());
    for (std::size_t const step : steps) listed.push_back({step, {}});
    if (!choice) {
        for (ListedStep& each : listed) {
            ResultStep const& step = results.Steps()[each.step];
            each.parts.push_back({ListedPart::kLatest, LatestFields(results, step, picker)});
            AddWithoutFrame(results, step, picker, each.parts[0].fields);
        }
    } else {
        auto at = listed.begin();
        for (FrameNumber const& frame : ChooseFrames(results, steps, *choice)) {
            while (at->step != frame.step) ++at;
            at->parts.push_back({frame.frame, FieldsOfFrame(results, frame, picker)});
        }
    }
    picker.CheckAllFound();
    return listed;
}

int Fields(Options const& options) {
    std::optional<FrameChoice> choice;
    if (!options.frame.empty()) choice = ReadFrameChoice(options.frame);
    KOVObjDocument const document = OpenForReading(options.document);
    WhileReading(options.document, [&] {
        DocumentResults results(document);
        std::vector<ListedStep> const steps = Choose(results, options, choice);
        FieldListing listing(document, results);
        options.json ? listing.PrintJson(options.document, steps) : listing.Print(steps);
    });
    return 0;
}

}  // namespace

void AddFields(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "fields", "List steps, frames and result fields, with the range of each component");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_option("--step", options->step, "This step alone: its name, or its number");
    command->add_option("--frame", options->frame,
                        "The fields of these frames: a number, last, all, or none for those "
                        "outside of frames");
    command
        ->add_option("--fields,--field", options->fields,
                     "These fields alone: names, or labels of variables, such as U,S")
        ->delimiter(',');
    command->add_flag("--json", options->json, "Print it as JSON, with all digits");
    command->footer(
        "Without --frame each field stands once in a step, as it is in the last frame that has it, "
        "with the\n"
        "number of frames that do. Exit status: 2 for an unknown step, frame or field; the nearest "
        "names are shown.");
    command->callback([options, &action] { action = [options] { return Fields(*options); }; });
}

}  // namespace kov::tool
