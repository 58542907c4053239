// kovsim classes MODEL.ksd

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "Json.h"
#include "KOVObjElementClass.h"
#include "KOVObjElementClassification.h"
#include "KOVSimCtation.h"
#include "KOVSimDSet.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "MemberList.h"
#include "MeshLabels.h"
#include "Names.h"
#include "ObjectContent.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    bool json = false;
};

// A class of elements, or, of a document without classes, one group of the assignment.
struct ElementsShown {
    std::string shape;  ///< empty where it is not given
    std::string first;  ///< the first specification
    std::vector<std::string> specifications;
    KOVSimCSet elements;
};

std::string SpecificationName(KOVSimPosition const& specification) {
    return Plain(specification.Name(-1));
}

std::string ShapeName(KOVSimPosition const& specification) {
    KOVSimPosition const shape = specification.GetPosition(schema::ElementSpec_shape());
    std::string const name = Plain(shape.GetSymbolName());
    if (!name.empty() || shape.GetSymbolPosition() < 0) return name;
    return std::to_string(shape.GetSymbolPosition());
}

// The elements of a class stand at the class, or in the compartment of the membership that has it.
KOVSimCSet ElementsOf(KOVSimPosition const& elementClass, KOVSimPosition const& membership,
                      KOVSimCollectionID const& elements) {
    KOVSimPosition const own = KOVObjElementClass(elementClass).GetElementCSet();
    if (KOVSimCSetID::CanBeConverted(own.ID())) return KOVSimCSet(own);
    KOVSimDSet const relation(membership);
    if (relation.IsNull()) return {};
    KOVSimDynamicID const id = elementClass.ID();
    for (KOVSimCompartment const& compartment : relation.GetCtation().Compartments()) {
        int const at = compartment.Position(elements);
        if (compartment.Size() != 2 || at < 0 || id.category != KOVSimCategoryMember) continue;
        KOVSimCSet const& classes = compartment.CSet(1 - at);
        if (classes.CollectionID().Minor() == id.data.parent && classes.Contains(id.data.minor))
            return compartment.CSet(at);
    }
    return {};
}

bool Meet(KOVSimCSet const& a, KOVSimCSet const& b) {
    return a.CollectionID() == b.CollectionID() && !a.Intersection(b).IsEmpty();
}

std::vector<ElementsShown> Classes(KOVObjDocument const& document,
                                   KOVSimPosition const& classification) {
    std::vector<ElementsShown> shown;
    KOVSimPosition const membership = KOVObjElementClassification(classification).GetMembership();
    KOVSimCollectionID const elements =
        KOVObjMesh(document.GetMesh()).GetElementCollection().GetCollection();
    std::vector<ElementGroup> const groups = ElementGroups(document);
    KOVSimSet const classes = classification.GetSet(schema::ElementClassification_elementClasses());
    for (KOVSimSetiterator at = classes.Begin(); at.NotDone(); ++at) {
        KOVSimPosition const first = (*at).GetPosition(schema::ElementClass_elementSpec());
        ElementsShown& entry = shown.emplace_back();
        entry.shape = ShapeName(first);
        entry.first = SpecificationName(first);
        entry.elements = ElementsOf(*at, membership, elements);
        for (ElementGroup const& group : groups) {
            if (Meet(group.elements, entry.elements)) entry.specifications.push_back(group.name);
        }
    }
    return shown;
}

std::vector<ElementsShown> Assignment(KOVObjDocument const& document) {
    std::vector<ElementsShown> shown;
    KOVSimCollection const shapes = CollectionAt(document.GetShapeCollection());
    for (ElementGroup const& group : ElementGroups(document)) {
        std::string shape;
        if (group.shape >= 0 && shapes.IsPresent() && group.shape < shapes.Space()) {
            KOVSimPosition const symbol(document.GetRecord(shapes.ID(), group.shape));
            shape = Plain(symbol.GetSymbolName());
        }
        shown.push_back({shape, group.name, {group.name}, group.elements});
    }
    return shown;
}

// The first and the last of a class's elements, in the order of the mesh.
class Extent {
  public:
    Extent(MeshLabels const& labels, KOVSimCSet const& elements) : m_labels(labels) {
        if (elements.IsEmpty()) return;
        long long const bounds = elements.Bounds();
        m_ordinals = {static_cast<int>(bounds & 0xffffffff)};
        if (bounds >> 32 != m_ordinals[0]) m_ordinals.push_back(static_cast<int>(bounds >> 32));
        m_ends = labels.Look(m_ordinals);
    }

    std::string Text() const {
        if (m_ends.empty()) return "none";
        std::string text = End(0);
        if (m_ends.size() > 1) text += " to " + End(1);
        return text;
    }
    void Add(Json& json) const {
        for (bool const last : {false, true}) {
            json.Key(last ? "last" : "first");
            if (m_ends.empty()) {
                json.Null();
                continue;
            }
            std::size_t const at = last ? m_ends.size() - 1 : 0;
            Labelled const& end = m_ends[at];
            json.OneLine().BeginObject().Key("instance");
            if (end.instance < 0) {
                json.Null().Key("label").Null();
            } else {
                json.Value(m_labels.Names()[static_cast<std::size_t>(end.instance)]);
                json.Member("label", end.label);
            }
            json.Member("ordinal", m_ordinals[at]).EndObject();
        }
    }

  private:
    std::string End(std::size_t at) const {
        Labelled const& end = m_ends[at];
        return InstanceText(m_labels, end.instance) + " " +
               std::to_string(end.instance < 0 ? m_ordinals[at] : end.label);
    }

    MeshLabels const& m_labels;
    std::vector<int> m_ordinals;
    std::vector<Labelled> m_ends;
};

std::string Joined(std::vector<std::string> const& names) {
    std::string text;
    for (std::string const& name : names) text += (text.empty() ? "" : ", ") + NameText(name);
    return text.empty() ? "none" : text;
}

std::string Named(std::string const& name) { return name.empty() ? "none" : NameText(name); }

std::string PlainText(MeshLabels const& labels, bool classified,
                      std::vector<ElementsShown> const& shown) {
    auto const count = static_cast<long>(shown.size());
    std::string text;
    if (classified) {
        text = std::to_string(count) + (count == 1 ? " element class\n" : " element classes\n");
    } else {
        text = "no classification; " + CountText(count, "element specification") + " assigned\n";
    }
    for (ElementsShown const& entry : shown) {
        text += (entry.shape.empty() ? "without shape" : entry.shape) + "\n";
        if (classified) {
            text += "  first specification  " + Named(entry.first) + "\n";
            text += "  specifications       " + Joined(entry.specifications) + "\n";
        } else {
            text += "  specification        " + Named(entry.first) + "\n";
        }
        text += "  elements             " + std::to_string(entry.elements.Size()) + "\n";
        text += "  from                 " + Extent(labels, entry.elements).Text() + "\n";
    }
    return text;
}

std::string JsonText(Options const& options, MeshLabels const& labels, bool classified,
                     std::vector<ElementsShown> const& shown) {
    Json json;
    json.BeginObject().Member("document", options.document).Member("classified", classified);
    json.Key(classified ? "classes" : "assignment").BeginArray();
    for (ElementsShown const& entry : shown) {
        json.BeginObject().Key("shape");
        entry.shape.empty() ? json.Null() : json.Value(entry.shape);
        if (classified) {
            json.Member("firstSpecification", entry.first);
            json.Key("specifications").OneLine().BeginArray();
            for (std::string const& name : entry.specifications) json.Value(name);
            json.EndArray();
        } else {
            json.Member("specification", entry.first);
        }
        json.Member("elements", entry.elements.Size());
        Extent(labels, entry.elements).Add(json);
        json.EndObject();
    }
    json.EndArray().EndObject();
    return json.Text();
}

int ShowClasses(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    return WhileReading(options.document, [&] {
        KOVSimPosition const classification =
            KOVObjMesh(document.GetMesh()).GetElementClassification();
        bool const classified = !classification.IsNull();
        std::vector<ElementsShown> const shown =
            classified ? Classes(document, classification) : Assignment(document);
        MeshLabels const labels(document, KOVObjLabelerElements);
        Print(options.json ? JsonText(options, labels, classified, shown)
                           : PlainText(labels, classified, shown));
        return classified ? 0 : 1;
    });
}

}  // namespace

void AddClasses(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        app.add_subcommand("classes", "Show the element classes, or what there is to classify");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_flag("--json", options->json, "Print them as JSON");
    command->footer("Exit status: 0 classes, 1 no classification, 2 could not be read.");
    command->callback([options, &action] { action = [options] { return ShowClasses(*options); }; });
}

}  // namespace kov::tool
