// kovsim layup MODEL.ksd [--section NAME | --element INSTANCE LABEL] [--values] [--svg FILE.svg]

#include <CLI/CLI.hpp>
#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "Failure.h"
#include "InstanceQuestion.h"
#include "Json.h"
#include "LayupJson.h"
#include "LayupPicture.h"
#include "LayupReader.h"
#include "LayupText.h"
#include "MeshLabels.h"
#include "Names.h"
#include "OutputPlace.h"
#include "TextFile.h"
#include "TextOut.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string section;
    std::vector<std::string> element;  ///< instance and label
    std::string picture;
    bool hasSection = false;
    bool values = false;
    bool hasPicture = false;
    bool json = false;
};

// Prints layups one by one.
class Printer {
  public:
    Printer(Options const& options, KOVObjDocument const& document) : m_options(options) {
        if (options.values) m_labels.emplace(document, KOVObjLabelerElements);
        if (!options.json) return;
        m_json.BeginObject().Member("document", options.document).Key("layups").BeginArray();
    }

    void Print(Layup const& layup) {
        if (m_options.json) {
            PrintLayup(m_out, m_json, layup, m_labels ? &*m_labels : nullptr);
        } else {
            if (m_count > 0) m_out << "\n";
            m_out << LayupText(layup);
            if (m_labels) PrintLayupValues(m_out, layup, *m_labels);
        }
        ++m_count;
    }

    void Finish() {
        if (m_options.json) {
            m_json.EndArray().EndObject();
            m_out << m_json.Text();
        } else if (m_count == 0) {
            m_out << "no section has layers\n";
        }
        m_out.Flush();
    }

  private:
    Options const& m_options;
    std::optional<MeshLabels> m_labels;
    TextOut m_out;
    Json m_json;
    int m_count = 0;
};

int ElementLabel(std::string const& word) {
    int label = 0;
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), label);
    if (error == std::errc() && end == word.data() + word.size()) return label;
    throw Failure("'" + Shown(word) + "' is no label; expected a whole number");
}

// The one layup of a document that has no more.
Layup OnlyLayup(LayupReader& reader) {
    std::optional<Layup> only;
    reader.ForAll([&](Layup const& layup) {
        if (only) {
            throw DocumentFault(
                "several sections have layers; choose the one to draw with --section or "
                "--element");
        }
        only = layup;
    });
    if (!only) throw DocumentFault("no section has layers; there is nothing to draw");
    return *only;
}

int ShowLayups(Options const& options) {
    std::optional<OutputPlace> place;
    if (options.hasPicture) place.emplace(options.picture);
    KOVObjDocument const document = OpenForReading(options.document);
    return WhileReading(options.document, [&] {
        LayupReader reader(document, options.values);
        Printer printer(options, document);
        std::optional<Layup> one;
        if (options.hasSection) {
            one = reader.OfSection(options.section);
        } else if (!options.element.empty()) {
            one = reader.OfElement(InstanceName(options.element[0]),
                                   ElementLabel(options.element[1]));
        } else if (place) {
            one = OnlyLayup(reader);
        }
        if (place) {
            WriteTextFile(place->Path(), options.picture, LayupPicture(*one));
            place->Publish();
        }
        if (one) {
            printer.Print(*one);
        } else {
            reader.ForAll([&](Layup const& layup) { printer.Print(layup); });
        }
        printer.Finish();
        return 0;
    });
}

}  // namespace

void AddLayup(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("layup", "Show the layers of shell and composite solid sections");
    command->add_option("MODEL", options->document, "The document")->required();
    CLI::Option* const section =
        command->add_option("--section", options->section,
                            "One section: Part-1.Skin, Skin, or a name that `sections` shows");
    CLI::Option* const element =
        command
            ->add_option("--element", options->element,
                         "The section of one element, with its own numbers; the instance of a "
                         "model without instances is \"\"")
            ->type_name("INSTANCE LABEL")
            ->expected(2)
            ->excludes(section);
    section->excludes(element);
    command->add_flag("--values", options->values,
                      "Also the numbers of each element, where they vary");
    CLI::Option const* const picture = command->add_option(
        "--svg", options->picture, "Also draw the layup into a file, such as FILE.svg");
    command->add_flag("--json", options->json, "Print it as JSON");
    command->footer(
        "Layer 1 is the bottom one. Exit status: 0 shown, 2 for an unknown section or element, or "
        "one\nwithout layers.");
    command->callback([options, section, picture, &action] {
        options->hasSection = section->count() > 0;
        options->hasPicture = picture->count() > 0;
        action = [options] { return ShowLayups(*options); };
    });
}

}  // namespace kov::tool
