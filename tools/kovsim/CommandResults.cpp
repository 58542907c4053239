// kovsim results MODEL.ksd --add FILE...

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Columns.h"
#include "Commands.h"
#include "DocumentReader.h"
#include "Json.h"
#include "Names.h"
#include "Nearest.h"
#include "Progress.h"
#include "ResultFormats.h"
#include "ResultWriter.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::vector<std::string> files;
    std::optional<std::string> instance;
    bool skipUnknown = false;
    bool growing = false;
    bool json = false;
};

char const* PlaceName(ResultPlace place) {
    switch (place) {
        case ResultPlace::Node:
            return "nodes";
        case ResultPlace::Element:
            return "elements";
        case ResultPlace::IntegrationPoint:
            break;
    }
    return "integration points";
}

bool IsKnown(ResultVariable const& variable) {
    for (ResultTarget const& target : variable.targets) {
        if (!target.known) return false;
    }
    return true;
}

std::string FieldNames(ResultVariable const& variable) {
    std::string names;
    for (ResultTarget const& target : variable.targets) {
        names += (names.empty() ? "" : ", ") + Shown(target.name);
    }
    return names;
}

struct Totals {
    int fields = 0;
    long long values = 0;
    long long skipped = 0;
};

Totals TotalsOf(ResultSummary const& summary) {
    Totals totals;
    for (ResultVariable const& variable : summary.variables) {
        totals.fields += variable.fields * static_cast<int>(variable.targets.size());
        totals.values += variable.values;
        totals.skipped += variable.skipped;
    }
    return totals;
}

std::string JsonSummary(Options const& options, ResultSummary const& summary, double seconds) {
    Totals const totals = TotalsOf(summary);
    Json json;
    json.BeginObject().Member("document", options.document);
    json.Key("files").BeginArray();
    for (std::string const& file : options.files) json.Value(file);
    json.EndArray();
    json.Member("stepsMade", summary.stepsMade);
    json.Member("framesAdded", summary.framesAdded).Member("framesThere", summary.framesThere);
    json.Member("fields", totals.fields).Member("values", totals.values);
    json.Member("skippedRows", totals.skipped);
    json.Key("variables").BeginArray();
    for (ResultVariable const& variable : summary.variables) {
        json.BeginObject().Member("label", variable.label);
        json.Member("place", PlaceName(variable.place)).Member("known", IsKnown(variable));
        json.Member("frames", variable.fields).Member("values", variable.values);
        json.Member("skippedRows", variable.skipped);
        json.Key("firstSkipped").OneLine().BeginArray();
        for (int const label : variable.firstSkipped) json.Value(label);
        json.EndArray();
        json.Key("fields").BeginArray();
        for (ResultTarget const& target : variable.targets) {
            json.OneLine().BeginObject().Member("name", target.name);
            json.Member("components", static_cast<int>(target.symbols.size()));
            json.Member("algebraicType", target.algebraicType);
            json.Member("gridInMap", target.knownThere).EndObject();
        }
        json.EndArray();
        if (!IsKnown(variable)) {
            json.Key("nearest").OneLine().BeginArray();
            for (std::string const& label : NearestVariables(variable.label)) json.Value(label);
            json.EndArray();
        }
        json.EndObject();
    }
    json.EndArray();
    json.Key("notes").BeginArray();
    for (std::string const& note : summary.notes) json.Value(note);
    json.EndArray();
    json.Member("seconds", seconds).EndObject();
    return json.Text();
}

std::string SkippedText(ResultVariable const& variable) {
    bool const nodes = variable.place == ResultPlace::Node;
    std::string text = variable.label + ": " + std::to_string(variable.skipped) + " rows of " +
                       (nodes ? "nodes" : "elements") + " that the model does not have, such as";
    for (std::size_t i = 0; i < variable.firstSkipped.size(); ++i) {
        text += (i == 0 ? " " : ", ") + std::to_string(variable.firstSkipped[i]);
    }
    return text + "\n";
}

// Names and counts, in two columns of which the first is as wide as the longest name wants.
class CountLines {
  public:
    explicit CountLines(ResultSummary const& summary) {
        for (ResultVariable const& variable : summary.variables) {
            std::size_t const length = LetterCount(NameOf(variable));
            if (length <= Columns::kWidest) m_width = std::max(m_width, length);
        }
    }

    static std::string NameOf(ResultVariable const& variable) {
        return "  " + Shown(variable.label) + " as " + FieldNames(variable);
    }
    std::string Line(std::string const& name, std::string const& count) const {
        std::size_t const behind = m_width - std::min(m_width, LetterCount(name));
        std::size_t const before = kCount - std::min(kCount, count.size());
        return name + std::string(behind + 1 + before, ' ') + count + "\n";
    }
    std::string Line(std::string const& name, long long count) const {
        return Line(name, std::to_string(count));
    }

  private:
    static constexpr std::size_t kCount = 12;
    std::size_t m_width = 24;
};

std::string PlainSummary(Options const& options, ResultSummary const& summary, double seconds) {
    Totals const totals = TotalsOf(summary);
    std::string text;
    for (std::string const& file : options.files) text += file + " -> " + options.document + "\n";
    CountLines const lines(summary);
    text += lines.Line("steps made", summary.stepsMade);
    text += lines.Line("frames added", summary.framesAdded);
    if (summary.framesThere > 0) text += lines.Line("frames already there", summary.framesThere);
    text += lines.Line("fields", totals.fields);
    for (ResultVariable const& variable : summary.variables) {
        text += lines.Line(CountLines::NameOf(variable),
                           static_cast<long long>(variable.fields) *
                               static_cast<long long>(variable.targets.size()));
    }
    text += lines.Line("values", totals.values);
    for (ResultVariable const& variable : summary.variables) {
        if (variable.skipped > 0) text += SkippedText(variable);
        if (IsKnown(variable)) continue;
        text += "variable '" + Shown(variable.label) + "' is not known, and stands under its own " +
                "name" + NearestHint(NearestVariables(variable.label)) + "\n";
    }
    for (std::string const& note : summary.notes) text += note + "\n";
    char taken[40];
    std::snprintf(taken, sizeof taken, "%.2f", seconds);
    return text + lines.Line("seconds", taken);
}

// What stands in the document when the work ends before its time.
std::string AddedText(ResultWriter const* writer) {
    int const added = writer == nullptr ? 0 : writer->Summary().framesAdded;
    if (added == 0) return "; no frame was added";
    return "; " + std::to_string(added) +
           (added == 1 ? " frame was added before" : " frames were added before");
}

void AddFiles(Options const& options, KOVObjDocument const& document,
              std::unique_ptr<ResultWriter>& writer) {
    Progress progress(options.document);
    std::size_t file = 0;
    ResultOptions wanted;
    wanted.instance = options.instance;
    wanted.skipUnknown = options.skipUnknown;
    wanted.growing = options.growing;
    wanted.progress = [&](double done) {
        progress.Show(static_cast<double>(file) + done, static_cast<double>(options.files.size()));
    };
    writer = std::make_unique<ResultWriter>(document, wanted);
    for (; file < options.files.size(); ++file) {
        writer->Add(*OpenResults(options.files[file]));
    }
}

int Add(Options const& options) {
    auto const start = std::chrono::steady_clock::now();
    for (std::string const& file : options.files) OpenResults(file);
    KOVObjDocument const document = OpenForWriting(options.document);
    std::unique_ptr<ResultWriter> writer;
    try {
        AddFiles(options, document, writer);
        document.Close();
    } catch (Interruption const& interruption) {
        throw Interruption(interruption.Signal(), AddedText(writer.get()));
    } catch (DocumentFault const& fault) {
        throw Failure(options.document + ": " + fault.what() + AddedText(writer.get()));
    } catch (Failure const& failure) {
        throw Failure(failure.what() + AddedText(writer.get()));
    } catch (KOVSimException const& error) {
        throw Failure(options.document + ": " + error.what() + AddedText(writer.get()));
    }
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    ResultSummary const& summary = writer->Summary();
    std::string const text = options.json ? JsonSummary(options, summary, seconds.count())
                                          : PlainSummary(options, summary, seconds.count());
    PrintAbout(options.document, text);
    return 0;
}

}  // namespace

void AddResults(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("results", "Add the results of a solver run to a document");
    command->add_option("MODEL", options->document, "The document to add to")->required();
    command
        ->add_option("--add", options->files,
                     "Files of results: CalculiX .frd, or Exodus II; their content tells which")
        ->required();
    command->add_option("--instance", options->instance,
                        "The instance whose labels the files name, where the model has several");
    command->add_flag("--skip-unknown", options->skipUnknown,
                      "Leave out values of nodes and elements that the model does not have");
    command->add_flag("--growing", options->growing,
                      "A file that ends within a frame is still being written, and no error");
    command->add_flag("--json", options->json, "Print the summary as JSON");
    command->callback([options, &action] { action = [options] { return Add(*options); }; });
}

}  // namespace kov::tool
