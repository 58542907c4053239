// kovsim info MODEL.ksd

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "ConditionContent.h"
#include "Conventions.h"
#include "DocumentReader.h"
#include "DocumentResults.h"
#include "ElementClasses.h"
#include "InstanceList.h"
#include "JobRecords.h"
#include "Json.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "MaterialContent.h"
#include "Names.h"
#include "ObjectContent.h"
#include "Table.h"

namespace kov::tool {
namespace {

// So many instances are shown one by one.
constexpr std::size_t kMostInstances = 20;

struct Options {
    std::string document;
    bool json = false;
};

struct SetOverview {
    std::size_t count = 0;
    int internal = 0;
    std::string biggest;
    int biggestSize = 0;
};

struct Overview {
    std::string heading;
    int nodes = 0;
    int elements = 0;
    std::vector<ElementGroup> groups;
    SetOverview nodeSets;
    SetOverview elementSets;
    std::vector<InstanceEntry> instances;
    int surfaces = 0;
    int orientations = 0;
    int materials = 0;
    int behaviors = 0;
    int sections = 0;
    int plies = 0;
    int tableFields = 0;
    int initialConditions = 0;
    int classes = 0;
    std::vector<JobStep> steps;
    long frames = 0;
    long fields = 0;
    bool hasStatus = false;
    int status = 0;
    KOVObjDocumentStatistics sizes;
};

SetOverview LookAtSets(KOVObjDocument const& document, int map, int internalMap) {
    SetOverview overview;
    overview.internal = document.GetModel().GetMap(internalMap).Size();
    for (DocumentSet const& set : DocumentSets(document, map)) {
        int const size = set.set.Size();
        if (overview.count++ == 0 || size > overview.biggestSize) {
            overview.biggest = set.name;
            overview.biggestSize = size;
        }
    }
    return overview;
}

Overview LookAt(KOVObjDocument const& document) {
    Overview overview;
    KOVSimPosition const model = document.GetModel();
    if (!model.IsNull()) {
        KOVString heading;
        model.GetDataRecord().GetString(kHeadingField, heading);
        overview.heading = Plain(heading);
    }
    KOVObjMesh const mesh(document.GetMesh());
    overview.nodes = SpaceAt(mesh.GetNodeCollection());
    overview.elements = SpaceAt(mesh.GetElementCollection());
    overview.groups = ElementGroups(document);
    overview.nodeSets =
        LookAtSets(document, schema::Model_nodeSets(), schema::Model_otherNodeSets());
    overview.elementSets =
        LookAtSets(document, schema::Model_elementSets(), schema::Model_otherElementSets());
    overview.instances = ListInstances(document, MeshLabels(document, KOVObjLabelerNodes),
                                       MeshLabels(document, KOVObjLabelerElements));
    overview.surfaces = CountSurfaces(document);
    overview.orientations = model.GetMap(schema::Model_orientationsByName()).Size();
    overview.materials =
        document.GetMaterialCollection().GetMap(schema::MaterialLib_materials()).Size();
    overview.behaviors = CountBehaviors(document);
    overview.sections = model.GetMap(schema::Model_sections()).Size();
    overview.plies = model.GetMap(schema::Model_plies()).Size();
    overview.tableFields = model.GetMap(schema::Model_distributions()).Size();
    overview.initialConditions = CountInitialConditions(document);
    overview.classes = CountElementClasses(document);
    overview.steps = JobSteps(document);
    DocumentResults const results(document);
    for (ResultStep const& step : results.Steps()) {
        overview.frames += static_cast<long>(step.frames.size());
    }
    overview.fields = static_cast<long>(results.CountFields());
    overview.hasStatus = ReadJobStatus(document, overview.status);
    overview.sizes = document.Statistics();
    return overview;
}

void AddSets(Json& json, char const* name, SetOverview const& sets) {
    json.Key(name).BeginObject().Member("count", static_cast<long>(sets.count));
    if (sets.count > 0)
        json.Member("biggest", sets.biggest).Member("biggestSize", sets.biggestSize);
    json.Member("internal", sets.internal);
    json.EndObject();
}

std::string JsonText(Options const& options, Overview const& overview) {
    Json json;
    json.BeginObject().Member("document", options.document).Member("heading", overview.heading);
    json.Member("nodes", overview.nodes).Member("elements", overview.elements);
    json.Key("elementTypes").BeginArray();
    for (ElementGroup const& group : overview.groups) {
        json.BeginObject().Member("type", group.name).Member("elements", group.elements.Size());
        if (group.type != nullptr) json.Member("family", FamilyName(group.type->family));
        json.EndObject();
    }
    json.EndArray();
    AddSets(json, "nodeSets", overview.nodeSets);
    AddSets(json, "elementSets", overview.elementSets);
    json.Key("instances").BeginArray();
    for (InstanceEntry const& instance : overview.instances) {
        json.BeginObject().Member("name", instance.name).Member("part", instance.part);
        json.Member("nodes", instance.nodes).Member("elements", instance.elements).EndObject();
    }
    json.EndArray();
    json.Member("surfaces", overview.surfaces).Member("orientations", overview.orientations);
    json.Member("materials", overview.materials).Member("behaviors", overview.behaviors);
    json.Member("sections", overview.sections);
    json.Member("plies", overview.plies).Member("tableFields", overview.tableFields);
    json.Member("initialConditions", overview.initialConditions);
    json.Member("elementClasses", overview.classes);
    json.Key("steps").BeginArray();
    for (JobStep const& step : overview.steps) {
        json.BeginObject()
            .Member("name", step.name)
            .Member("conditions", step.conditions)
            .EndObject();
    }
    json.EndArray();
    json.Member("frames", overview.frames).Member("fields", overview.fields);
    json.Key("jobStatus");
    overview.hasStatus ? json.Value(overview.status) : json.Null();
    KOVObjDocumentStatistics const& sizes = overview.sizes;
    auto const number = [&json](char const* name, std::int64_t value) {
        json.Member(name, static_cast<long>(value));
    };
    number("distributions", sizes.distributions);
    number("drawers", sizes.drawers);
    number("records", sizes.records);
    number("collections", sizes.collections);
    number("sets", sizes.sets);
    number("datasets", sizes.datasets);
    number("tables", sizes.tables);
    number("links", sizes.links);
    number("commits", sizes.commits);
    json.Key("bytes").BeginObject();
    number("catalogue", sizes.catalogueBytes);
    number("bulk", sizes.bulkBytes);
    number("live", sizes.liveBulkBytes);
    number("superseded", sizes.supersededBytes);
    json.EndObject();
    number("segments", sizes.segments);
    number("blocks", sizes.blocks);
    json.EndObject();
    return json.Text();
}

void AddInstances(Table& table, std::vector<InstanceEntry> const& instances) {
    table.Line("instances", static_cast<long>(instances.size()));
    std::size_t shown = 0;
    for (InstanceEntry const& instance : instances) {
        if (shown == kMostInstances) {
            table.Line("  and", std::to_string(instances.size() - shown) + " more");
            break;
        }
        ++shown;
        table.Line("  " + NameText(instance.name), InstanceText(instance));
    }
}

std::string PlainText(Options const& options, Overview const& overview) {
    Table table;
    table.Line("document", options.document);
    std::size_t begin = 0;
    while (begin < overview.heading.size()) {
        std::size_t const end =
            std::min(overview.heading.find('\n', begin), overview.heading.size());
        table.Line(begin == 0 ? "heading" : "", overview.heading.substr(begin, end - begin));
        begin = end + 1;
    }
    table.Line("nodes", overview.nodes);
    table.Line("elements", overview.elements);
    for (ElementGroup const& group : overview.groups) {
        table.Line("  " + (group.name.empty() ? "(no name)" : group.name), group.elements.Size(),
                   group.type == nullptr ? "" : FamilyName(group.type->family));
    }
    auto const sets = [&table](char const* name, SetOverview const& of) {
        std::string remark;
        if (of.count > 0)
            remark = "biggest " + NameText(of.biggest) + " with " + std::to_string(of.biggestSize);
        if (of.internal > 0) {
            remark +=
                (remark.empty() ? "" : ", ") + std::to_string(of.internal) + " internal beside";
        }
        table.Line(name, static_cast<long>(of.count), remark);
    };
    sets("node sets", overview.nodeSets);
    sets("element sets", overview.elementSets);
    AddInstances(table, overview.instances);
    table.Line("surfaces", overview.surfaces);
    table.Line("orientations", overview.orientations);
    table.Line("materials", overview.materials,
               overview.behaviors > 0 ? "with " + CountText(overview.behaviors, "behaviour") : "");
    table.Line("sections", overview.sections);
    table.Line("plies", overview.plies);
    table.Line("table fields", overview.tableFields);
    table.Line("initial conditions", overview.initialConditions);
    table.Line("element classes", overview.classes);
    table.Line("steps", static_cast<long>(overview.steps.size()));
    for (JobStep const& step : overview.steps) {
        table.Line("  " + step.name, step.conditions,
                   step.conditions == 1 ? "condition" : "conditions");
    }
    table.Line("frames", overview.frames);
    table.Line("result fields", overview.fields);
    if (overview.hasStatus) table.Line("job status", overview.status);
    KOVObjDocumentStatistics const& sizes = overview.sizes;
    table.Line("distributions", sizes.distributions);
    table.Line("drawers", sizes.drawers);
    table.Line("records", sizes.records);
    table.Line("stored sets", sizes.sets);
    table.Line("commits", sizes.commits);
    table.Line("bytes", sizes.catalogueBytes + sizes.bulkBytes,
               std::to_string(sizes.catalogueBytes) + " catalogue, " +
                   std::to_string(sizes.bulkBytes) + " bulk");
    table.Line("superseded bytes", sizes.supersededBytes);
    return table.Text();
}

int Info(Options const& options) {
    KOVObjDocument const document = OpenForReading(options.document);
    Overview const overview = LookAt(document);
    Print(options.json ? JsonText(options, overview) : PlainText(options, overview));
    return 0;
}

}  // namespace

void AddInfo(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand("info", "Show what is in a document");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_flag("--json", options->json, "Print it as JSON");
    command->callback([options, &action] { action = [options] { return Info(*options); }; });
}

}  // namespace kov::tool
