// kovsim export MODEL.ksd -o FILE.vtu | FILE.pvd

#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "Commands.h"
#include "DocumentResults.h"
#include "FieldArrays.h"
#include "Json.h"
#include "Names.h"
#include "ObjectContent.h"
#include "OutputPlace.h"
#include "Progress.h"
#include "ResultChoice.h"
#include "TextFile.h"
#include "VtuExport.h"
#include "VtuSeries.h"

namespace kov::tool {
namespace {

namespace fs = std::filesystem;

struct Options {
    std::string document;
    std::string output;
    std::string step;
    std::string frame;
    std::vector<std::string> fields;
    bool noFields = false;
    bool noSets = false;
    bool json = false;

    bool IsSeries() const { return LowerCase(fs::path(output).extension().string()) == ".pvd"; }
};

// A file to be made: a frame and its fields, or the mesh alone.
struct File {
    std::string name;  ///< beside the collection; empty for the only file
    std::optional<FrameNumber> frame;
    double time = 0.0;
    std::vector<FieldHead> fields;
};

struct Done {
    VtuExportSummary mesh;
    std::vector<std::string> arrays;      ///< of fields, over all files
    std::vector<std::string> fromPoints;  ///< of them, those carried from integration points
    std::vector<std::string> notes;
};

void AddNew(std::vector<std::string>& to, std::vector<std::string> const& texts) {
    for (std::string const& text : texts) {
        if (std::find(to.begin(), to.end(), text) == to.end()) to.push_back(text);
    }
}

// ------------------------------------------------------------------------------------ choosing

// The one frame of a VTU file; nothing where the document has no results.
std::optional<FrameNumber> OneFrame(DocumentResults& results, Options const& options,
                                    FrameChoice choice) {
    std::vector<std::size_t> const steps = ChooseSteps(results, options.step);
    std::vector<FrameNumber> const frames = ChooseFrames(results, steps, choice);
    if (frames.size() > 1 && choice.kind != FrameChoice::Kind::Last) {
        throw DocumentFault(std::to_string(frames.size()) + " steps have frame " + options.frame +
                            "; choose one with --step");
    }
    if (!frames.empty()) return frames.back();
    for (std::size_t i = steps.size(); i-- > 0;) {
        if (!FieldsOf(results, {steps[i], 0}).empty()) return FrameNumber{steps[i], 0};
    }
    return std::nullopt;
}

std::vector<File> ChooseFiles(DocumentResults& results, Options const& options, bool& counted) {
    std::vector<File> files;
    bool const asked = !options.step.empty() || !options.frame.empty();
    std::vector<FrameNumber> frames;
    if (options.IsSeries()) {
        FrameChoice const choice = options.frame.empty() ? FrameChoice{FrameChoice::Kind::All, 0}
                                                         : ReadFrameChoice(options.frame);
        frames = ChooseFrames(results, ChooseSteps(results, options.step), choice);
        if (frames.empty()) throw DocumentFault("no frames to make a series of");
    } else if (!options.noFields || asked) {
        FrameChoice const choice =
            options.frame.empty() ? FrameChoice{} : ReadFrameChoice(options.frame);
        std::optional<FrameNumber> const frame = OneFrame(results, options, choice);
        if (frame) frames.push_back(*frame);
    }
    SeriesTimes const times = TimesOf(results, frames);
    counted = times.counted;
    FieldPicker picker(options.fields);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        File& file = files.emplace_back();
        file.frame = frames[i];
        file.time = times.times[i];
        if (options.noFields) continue;
        for (FieldHead const& head : FieldsOf(results, frames[i])) {
            if (picker.Takes(head)) file.fields.push_back(head);
        }
    }
    picker.CheckAllFound();
    if (files.empty()) files.emplace_back();
    return files;
}

// "run_0001.vtu" and so on.
void NameFiles(std::vector<File>& files, std::string const& stem) {
    std::size_t const digits = std::max<std::size_t>(4, std::to_string(files.size()).size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::string const number = std::to_string(i + 1);
        files[i].name = stem + "_" + std::string(digits - number.size(), '0') + number + ".vtu";
    }
}

// ------------------------------------------------------------------------------------- writing

// No file says how its solver numbers the points, and another order gives other numbers at nodes.
std::string PointsNote(std::vector<std::string> const& arrays) {
    std::string names;
    for (std::string const& array : arrays) names += (names.empty() ? "" : ", ") + NameText(array);
    return names +
           " carried from integration points, whose numbers are taken to run along the first "
           "direction of an element fastest, and from corner to corner of triangles and tetrahedra";
}

class Exporter {
  public:
    Exporter(KOVObjDocument const& document, DocumentResults& results, Options const& options,
             std::vector<File> const& files)
        : m_document(document),
          m_results(results),
          m_files(files),
          m_progress(options.output),
          m_mesh(document, {!options.noSets, [this](double done, double total) {
                                double const share = total > 0 ? done / total : 0;
                                m_progress.Show(static_cast<double>(m_written) + share,
                                                static_cast<double>(m_files.size()));
                            }}) {
        for (File const& file : files) {
            for (FieldHead const& head : file.fields) m_names.See(head);
        }
    }

    void Write(File const& file, std::string const& path) {
        FieldArrays arrays(m_document, m_results, m_names, file.fields);
        m_done.mesh = m_mesh.Write(path, [&](VtuWriter& out) {
            if (file.frame) AddFrame(file, out);
            arrays.AddTo(out);
        });
        AddNew(m_done.arrays, arrays.Names());
        AddNew(m_done.fromPoints, arrays.NamesFromPoints());
        AddNew(m_done.notes, arrays.Notes());
        ++m_written;
    }
    Done Finish() {
        m_progress.Clear();
        if (!m_done.fromPoints.empty()) m_done.notes.push_back(PointsNote(m_done.fromPoints));
        return m_done;
    }

  private:
    void AddFrame(File const& file, VtuWriter& out) const {
        ResultStep const& step = m_results.Steps()[file.frame->step];
        out.AddTexts("StepName", {step.name});
        if (file.frame->frame == 0) return;
        FrameHead const head = DocumentResults::ReadFrame(step.Frame(file.frame->frame));
        out.AddNumber("TimeValue", file.time);
        out.AddNumber("FrameNumber", file.frame->frame);
        out.AddNumber("Increment", head.increment);
        if (std::isfinite(head.value)) out.AddNumber("FrameValue", head.value);
        if (!head.text.empty()) out.AddTexts("FrameText", {head.text});
    }

    KOVObjDocument m_document;
    DocumentResults& m_results;
    std::vector<File> const& m_files;
    Progress m_progress;
    std::size_t m_written = 0;
    VtuExport m_mesh;
    ArrayNames m_names;
    Done m_done;
};

void MakeFolder(std::string const& path, std::string const& target) {
    if (mkdir(path.c_str(), 0777) != 0) {
        throw Failure(target + ": cannot be made: " + std::generic_category().message(errno));
    }
}

// ------------------------------------------------------------------------------------- summary

std::string FramesText(DocumentResults const& results, std::vector<File> const& files,
                       std::vector<std::string> const& arrays) {
    std::string text;
    FrameNumber const number = *files[0].frame;
    if (files.size() > 1) {
        text = CountText(static_cast<long>(files.size()), "frame") + ", times " +
               NumberText(files.front().time) + " to " + NumberText(files.back().time);
    } else {
        ResultStep const& step = results.Steps()[number.step];
        text = "step " + NameText(step.name);
        if (number.frame > 0) {
            text += ", frame " + std::to_string(number.frame) + " of " +
                    std::to_string(step.frames.size()) + ", " + FrameValueName(step.value) + " " +
                    NumberText(files[0].time);
        }
    }
    std::string names;
    for (std::string const& array : arrays) names += (names.empty() ? "" : ", ") + NameText(array);
    return text + ": " + (names.empty() ? "no fields" : names) + "\n";
}

std::string Text(Options const& options, DocumentResults const& results,
                 std::vector<File> const& files, Done const& done) {
    std::string text = options.document + " -> " + options.output + "\n" +
                       CountText(done.mesh.points, "point") + ", " +
                       CountText(done.mesh.cells, "cell") + ", " +
                       CountText(static_cast<long>(done.mesh.nodeSets), "node set") + ", " +
                       CountText(static_cast<long>(done.mesh.elementSets), "element set") + "\n";
    if (files[0].frame) text += FramesText(results, files, done.arrays);
    for (std::string const& note : done.notes) text += "note: " + note + "\n";
    return text;
}

std::string JsonText(Options const& options, DocumentResults const& results,
                     std::vector<File> const& files, Done const& done, double seconds) {
    Json json;
    json.BeginObject().Member("document", options.document).Member("file", options.output);
    json.Member("points", done.mesh.points).Member("cells", done.mesh.cells);
    json.Member("nodeSets", static_cast<long>(done.mesh.nodeSets));
    json.Member("elementSets", static_cast<long>(done.mesh.elementSets));
    json.Key("fields").OneLine().BeginArray();
    for (std::string const& array : done.arrays) json.Value(array);
    json.EndArray().Key("frames").BeginArray();
    for (File const& file : files) {
        if (!file.frame) continue;
        json.OneLine().BeginObject();
        if (!file.name.empty()) json.Member("file", file.name);
        json.Member("step", results.Steps()[file.frame->step].name).Key("frame");
        file.frame->frame == 0 ? json.Null() : json.Value(file.frame->frame);
        json.Key("time");
        file.frame->frame == 0 ? json.Null() : json.Value(file.time);
        json.EndObject();
    }
    json.EndArray().Key("notes").BeginArray();
    for (std::string const& note : done.notes) json.Value(note);
    json.EndArray().Member("seconds", seconds).EndObject();
    return json.Text();
}

// ------------------------------------------------------------------------------------- command

int Export(Options const& options) {
    auto const start = std::chrono::steady_clock::now();
    if (!options.IsSeries() && !options.frame.empty() &&
        ReadFrameChoice(options.frame).kind == FrameChoice::Kind::All) {
        throw Failure(options.output + ": holds one frame; expected -o FILE.pvd for all of them");
    }
    OutputPlace place(options.output);
    // The files of a series stand in a folder of their own, which is made whole as well.
    std::optional<OutputPlace> folder;
    if (options.IsSeries()) folder.emplace(fs::path(options.output).replace_extension().string());
    KOVObjDocument const document = OpenForReading(options.document);
    std::string const summary = WhileReading(options.document, [&] {
        DocumentResults results(document);
        bool counted = false;
        std::vector<File> files = ChooseFiles(results, options, counted);
        std::string const stem = fs::path(options.output).stem().string();
        if (folder) {
            NameFiles(files, stem);
            std::vector<double> times;
            std::vector<std::string> names;
            for (File& file : files) {
                file.name = stem + "/" + file.name;
                times.push_back(file.time);
                names.push_back(file.name);
            }
            WriteTextFile(place.Path(), options.output, PvdText(times, names));
            MakeFolder(folder->Path(), folder->Target());
        }
        Exporter exporter(document, results, options, files);
        for (File const& file : files) {
            exporter.Write(file,
                           folder ? folder->Path() + file.name.substr(stem.size()) : place.Path());
        }
        if (folder) SyncFolder(folder->Path());
        Done done = exporter.Finish();
        if (folder && counted) {
            done.notes.emplace_back(
                "the times of the frames do not ascend, or are of several sorts: the series "
                "counts its frames from 1");
        }
        std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
        return options.json ? JsonText(options, results, files, done, seconds.count())
                            : Text(options, results, files, done);
    });
    document.Close();
    if (folder) folder->Publish();
    try {
        place.Publish();
    } catch (...) {
        std::error_code ignored;
        if (folder) fs::remove_all(folder->Target(), ignored);
        throw;
    }
    PrintAbout(options.output, summary);
    return 0;
}

}  // namespace

void AddExport(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("export", "Write the mesh and its results as VTU files for viewers");
    command->add_option("MODEL", options->document, "The document")->required();
    command
        ->add_option("-o,--output", options->output,
                     "The file to make: FILE.vtu with one frame, or FILE.pvd with a series of them")
        ->required();
    command->add_option("--step", options->step, "Frames of this step: its name, or its number");
    command->add_option("--frame", options->frame,
                        "A number, last, all, or none for fields outside of frames");
    CLI::Option* const fields =
        command
            ->add_option("--fields", options->fields,
                         "These fields alone: names, or labels of variables, such as U,S")
            ->delimiter(',');
    command->add_flag("--no-fields", options->noFields, "Leave out the fields")->excludes(fields);
    command->add_flag("--no-sets", options->noSets, "Leave out the arrays of the sets");
    command->add_flag("--json", options->json, "Print the summary as JSON");
    command->footer(
        "Points carry NodeLabel, cells ElementLabel and ElementType (an index into "
        "ElementTypeNames);\n"
        "each set is an array of its name, 1 for its members and 0 for all others. Fields are "
        "arrays by the\n"
        "labels of their variables: of the last frame in a VTU file, of all frames in a series, "
        "whose files\n"
        "stand in a folder FILE. Values at integration points are carried to the nodes and "
        "averaged there.");
    command->callback([options, &action] { action = [options] { return Export(*options); }; });
}

}  // namespace kov::tool
