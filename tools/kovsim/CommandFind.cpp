// kovsim find MODEL.ksd node|element INSTANCE LABEL...
// kovsim find MODEL.ksd node|element --ordinal N...

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "InstanceQuestion.h"
#include "Json.h"
#include "KOVObjLabeler.h"
#include "MemberList.h"
#include "MeshLabels.h"
#include "MeshRows.h"
#include "Names.h"
#include "NumberInput.h"
#include "ObjectContent.h"
#include "TextOut.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string kind;
    std::vector<std::string> words;
    bool byOrdinal = false;
    bool json = false;

    bool Nodes() const { return kind == "node"; }
};

// One question: what was asked for, and what it is. An ordinal of -1: it is not there.
struct Answer {
    int ordinal = -1;
    Labelled labelled;
};

class Finder {
  public:
    Finder(Options const& options, KOVObjDocument const& document)
        : m_options(options),
          m_document(document),
          m_type(options.Nodes() ? KOVObjLabelerNodes : KOVObjLabelerElements),
          m_labels(document, m_type) {
        KOVObjMesh const mesh(document.GetMesh());
        m_space = SpaceAt(options.Nodes() ? mesh.GetNodeCollection() : mesh.GetElementCollection());
    }

    /// 0 if all that was asked for is there, else 1.
    int Run() {
        std::vector<std::string> words = m_options.words;
        if (!m_options.byOrdinal) {
            SetInstance(words.front());
            words.erase(words.begin());
        }
        NumberInput input(std::move(words), m_options.byOrdinal ? "ordinal" : "label",
                          m_options.byOrdinal ? 0 : std::numeric_limits<int>::min());
        if (m_options.json) {
            m_json.BeginObject().Member("document", m_options.document);
            m_json.Member("kind", m_options.kind).Key("answers").BeginArray();
        }
        std::vector<int> numbers;
        while (input.Next(numbers)) {
            std::vector<Answer> const answers =
                m_options.byOrdinal ? ByOrdinal(numbers) : ByLabel(numbers);
            m_options.Nodes() ? ShowNodes(answers) : ShowElements(answers);
        }
        if (m_options.json) {
            m_json.EndArray().EndObject();
            m_out << m_json.Text();
        }
        m_out.Flush();
        return m_missing ? 1 : 0;
    }

  private:
    void SetInstance(std::string const& word) {
        m_name = InstanceName(word);
        m_instance = InstanceNumber(m_document, m_labels, m_type, m_name,
                                    "; ask for ordinals with --ordinal");
        if (m_instance < 0) return;
        m_labeler.emplace(m_document, m_type);
        m_labeler->Read();
    }

    std::vector<Answer> ByLabel(std::vector<int> const& labels) const {
        std::vector<Answer> answers;
        answers.reserve(labels.size());
        KOVString const name = ToKOVString(m_name);
        for (int const label : labels) {
            int const ordinal = m_labeler ? m_labeler->GetInstanceOrdinal(name, label) : -1;
            answers.push_back({ordinal < m_space ? ordinal : -1, {m_instance, label}});
        }
        return answers;
    }

    std::vector<Answer> ByOrdinal(std::vector<int> const& ordinals) const {
        std::vector<int> there;
        for (int const ordinal : ordinals) {
            if (ordinal < m_space) there.push_back(ordinal);
        }
        SortOut(there);
        std::vector<Labelled> const found = m_labels.Look(there);
        std::vector<Answer> answers;
        answers.reserve(ordinals.size());
        for (int const ordinal : ordinals) {
            bool const is = ordinal < m_space;
            answers.push_back({ordinal, is ? found[PlaceOf(there, ordinal)] : Labelled()});
        }
        return answers;
    }

    static void SortOut(std::vector<int>& numbers) {
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }
    static std::size_t PlaceOf(std::vector<int> const& ascending, int number) {
        return static_cast<std::size_t>(
            std::lower_bound(ascending.begin(), ascending.end(), number) - ascending.begin());
    }

    bool IsThere(Answer const& answer) const {
        return answer.ordinal >= 0 && answer.ordinal < m_space;
    }
    std::vector<int> Ordinals(std::vector<Answer> const& answers) const {
        std::vector<int> ordinals;
        for (Answer const& answer : answers) {
            if (IsThere(answer)) ordinals.push_back(answer.ordinal);
        }
        SortOut(ordinals);
        return ordinals;
    }

    void ShowNodes(std::vector<Answer> const& answers) {
        if (!m_coordinates) m_coordinates.emplace(m_document);
        std::vector<int> const ordinals = Ordinals(answers);
        std::vector<double> const xyz = m_coordinates->Read(ordinals);
        for (Answer const& answer : answers) {
            if (!Begin(answer)) continue;
            double const* const at = xyz.data() + 3 * PlaceOf(ordinals, answer.ordinal);
            m_options.json ? AddCoordinates(m_json, at) : AddCoordinates(at);
            End();
        }
    }

    void AddCoordinates(double const* xyz) {
        char const* before = ", at ";
        for (int i = 0; i < 3; ++i) {
            if (NodeCoordinates::IsAbsent(xyz[i])) continue;
            m_out << before << NumberText(xyz[i]);
            before = ", ";
        }
        if (*before == ',' && before[2] == 'a') m_out << ", without coordinates";
    }
    static void AddCoordinates(Json& json, double const* xyz) {
        json.Key("coordinates").BeginArray();
        for (int i = 0; i < 3; ++i) {
            NodeCoordinates::IsAbsent(xyz[i]) ? json.Null() : json.Value(xyz[i]);
        }
        json.EndArray();
    }

    void ShowElements(std::vector<Answer> const& answers) {
        if (!m_elements) m_elements.emplace(m_document);
        if (!m_nodeLabels) m_nodeLabels.emplace(m_document, KOVObjLabelerNodes);
        std::vector<int> const ordinals = Ordinals(answers);
        ElementRows::Rows const rows = m_elements->Read(ordinals);
        std::vector<int> nodes = rows.nodes;
        SortOut(nodes);
        std::vector<Labelled> const labels = m_nodeLabels->Look(nodes);
        for (Answer const& answer : answers) {
            if (!Begin(answer)) continue;
            std::size_t const place = PlaceOf(ordinals, answer.ordinal);
            std::string const type = m_elements->TypeName(rows.group[place]);
            if (m_options.json) {
                m_json.Key("type");
                type.empty() ? m_json.Null() : m_json.Value(type);
                m_json.Key("nodes").BeginArray();
            } else {
                m_out << ", " << (type.empty() ? "without type" : NameText(type));
                m_out << (rows.start[place] == rows.start[place + 1] ? ", without nodes"
                                                                     : ", nodes ");
            }
            m_lastInstance.reset();
            for (std::size_t k = rows.start[place]; k < rows.start[place + 1]; ++k) {
                AddNode(rows.nodes[k], labels[PlaceOf(nodes, rows.nodes[k])]);
            }
            if (m_options.json) m_json.EndArray();
            End();
        }
    }

    // Nodes of one instance that follow each other are told under one name.
    void AddNode(int ordinal, Labelled const& node) {
        if (m_options.json) {
            m_json.BeginObject();
            AddLabel(*m_nodeLabels, node);
            m_json.Member("ordinal", ordinal).EndObject();
            return;
        }
        if (m_lastInstance == node.instance) {
            m_out << ", ";
        } else {
            m_out << (m_lastInstance ? "; " : "") << InstanceText(*m_nodeLabels, node.instance)
                  << ": ";
        }
        m_lastInstance = node.instance;
        m_out << (node.instance < 0 ? ordinal : node.label);
    }

    void AddLabel(MeshLabels const& labels, Labelled const& labelled) {
        m_json.Key("instance");
        if (labelled.instance < 0) {
            m_json.Null().Key("label").Null();
        } else {
            m_json.Value(labels.Names()[static_cast<std::size_t>(labelled.instance)]);
            m_json.Member("label", labelled.label);
        }
    }

    // What was asked for, and whether it is there.
    bool Begin(Answer const& answer) {
        bool const there = IsThere(answer);
        m_missing = m_missing || !there;
        if (m_options.json) {
            m_json.OneLine().BeginObject();
            if (m_options.byOrdinal) {
                AddLabel(m_labels, answer.labelled);
            } else {
                m_json.Member("instance", m_name).Member("label", answer.labelled.label);
            }
            m_json.Key("ordinal");
            there || m_options.byOrdinal ? m_json.Value(answer.ordinal) : m_json.Null();
            m_json.Member("found", there);
            if (!there) End();
            return there;
        }
        m_out << m_options.kind << " ";
        if (!m_options.byOrdinal) {
            m_out << NameText(m_name) << " " << answer.labelled.label << ": ";
        } else if (answer.labelled.instance >= 0) {
            m_out << InstanceText(m_labels, answer.labelled.instance) << " "
                  << answer.labelled.label << ": ";
        } else if (there) {
            m_out << "(no label): ";
        }
        if (there) {
            m_out << "ordinal " << answer.ordinal;
        } else if (m_options.byOrdinal) {
            m_out << "ordinal " << answer.ordinal << ": none\n";
        } else {
            m_out << "none\n";
        }
        return there;
    }
    void End() {
        if (m_options.json) {
            m_json.EndObject();
            m_out << m_json.Take();
        } else {
            m_out << "\n";
        }
    }

    Options const& m_options;
    KOVObjDocument m_document;
    KOVObjLabelerType m_type;
    MeshLabels m_labels;
    int m_space = 0;
    std::string m_name;
    int m_instance = -1;
    std::optional<KOVObjLabeler> m_labeler;
    std::optional<NodeCoordinates> m_coordinates;
    std::optional<ElementRows> m_elements;
    std::optional<MeshLabels> m_nodeLabels;
    std::optional<int> m_lastInstance;
    bool m_missing = false;
    TextOut m_out;
    Json m_json;
};

int Find(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    return WhileReading(options.document, [&] { return Finder(options, document).Run(); });
}

}  // namespace

void AddFind(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("find", "Find nodes or elements by instance and label, or by ordinal");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_option("KIND", options->kind, "node or element")
        ->required()
        ->check(CLI::IsMember({"node", "element"}));
    command
        ->add_option("INSTANCE LABEL", options->words,
                     "The instance (\"\" in a model without instances) and labels in it; - reads "
                     "them from standard input")
        ->required();
    command->add_flag("--ordinal", options->byOrdinal,
                      "Only ordinals are given, which count from 0 over the whole mesh");
    command->add_flag("--json", options->json, "Print it as JSON");
    command->footer("Exit status: 0 all are there, 1 some are not, 2 could not be answered.");
    command->callback([options, &action] {
        if (!options->byOrdinal && options->words.size() < 2)
            throw CLI::ValidationError("find", "expected an instance and one or more labels");
        action = [options] { return Find(*options); };
    });
}

}  // namespace kov::tool
