// kovsim info MODEL.ksd

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Conventions.h"
#include "DocumentReader.h"
#include "JobRecords.h"
#include "Json.h"
#include "KOVObjLabeler.h"
#include "KOVSimDataRecord.h"
#include "KOVSimSchema.h"
#include "Names.h"
#include "Table.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    bool json = false;
};

struct SetOverview {
    std::size_t count = 0;
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
    std::vector<std::string> instances;
    std::vector<JobStep> steps;
    bool hasStatus = false;
    int status = 0;
    KOVObjDocumentStatistics sizes;
};

SetOverview LookAtSets(KOVObjDocument const& document, int map) {
    SetOverview overview;
    for (DocumentSet const& set : DocumentSets(document, map)) {
        int const size = set.set.Size();
        if (overview.count++ == 0 || size > overview.biggestSize) {
            overview.biggest = set.name;
            overview.biggestSize = size;
        }
    }
    return overview;
}

// Instances of nodes and of elements, each name once. The model's own labels stand under the empty
// name.
std::vector<std::string> Instances(KOVObjDocument const& document) {
    std::vector<std::string> names;
    for (auto const type : {KOVObjLabelerNodes, KOVObjLabelerElements}) {
        KOVObjLabeler labeler(document, type);
        labeler.Read();
        for (KOVString const& name : labeler.Occurrences()) {
            std::string const plain = Plain(name);
            if (std::find(names.begin(), names.end(), plain) == names.end()) names.push_back(plain);
        }
    }
    return names;
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
    overview.nodeSets = LookAtSets(document, schema::Model_nodeSets());
    overview.elementSets = LookAtSets(document, schema::Model_elementSets());
    overview.instances = Instances(document);
    overview.steps = JobSteps(document);
    overview.hasStatus = ReadJobStatus(document, overview.status);
    overview.sizes = document.Statistics();
    return overview;
}

void AddSets(Json& json, char const* name, SetOverview const& sets) {
    json.Key(name).BeginObject().Member("count", static_cast<long>(sets.count));
    if (sets.count > 0)
        json.Member("biggest", sets.biggest).Member("biggestSize", sets.biggestSize);
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
    for (std::string const& name : overview.instances) json.Value(name);
    json.EndArray();
    json.Key("steps").BeginArray();
    for (JobStep const& step : overview.steps) {
        json.BeginObject()
            .Member("name", step.name)
            .Member("conditions", step.conditions)
            .EndObject();
    }
    json.EndArray();
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
        std::string const remark =
            of.count == 0 ? ""
                          : "biggest '" + of.biggest + "' with " + std::to_string(of.biggestSize);
        table.Line(name, static_cast<long>(of.count), remark);
    };
    sets("node sets", overview.nodeSets);
    sets("element sets", overview.elementSets);
    std::string named;
    for (std::string const& name : overview.instances) {
        if (!name.empty()) named += (named.empty() ? "" : ", ") + name;
    }
    table.Line("instances", static_cast<long>(overview.instances.size()), named);
    table.Line("steps", static_cast<long>(overview.steps.size()));
    for (JobStep const& step : overview.steps) {
        table.Line("  " + step.name, step.conditions,
                   step.conditions == 1 ? "condition" : "conditions");
    }
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
