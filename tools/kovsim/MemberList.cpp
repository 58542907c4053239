#include "MemberList.h"

#include "Names.h"

namespace kov::tool {
namespace {

constexpr std::size_t kWidth = 100;

}  // namespace

std::string InstanceText(MeshLabels const& labels, int instance) {
    if (instance < 0) return "(no label)";
    return NameText(labels.Names()[static_cast<std::size_t>(instance)]);
}

void PrintMembers(TextOut& out, std::string const& indent, MeshLabels const& labels,
                  KOVSimCSet const& set) {
    labels.ForInstances(set, [&](int instance, KOVSimCSet const& members) {
        std::string const head = indent + InstanceText(labels, instance) + ": ";
        std::string line = head;
        labels.ForRanges(instance, members, [&](LabelRange const& range) {
            std::string const text = ToText(range);
            if (line.size() > head.size()) {
                if (line.size() + 2 + text.size() > kWidth) {
                    out << line << "\n";
                    line = head;
                } else {
                    line += ", ";
                }
            }
            line += text;
        });
        out << line << "\n";
    });
}

void PrintMembers(TextOut& out, Json& json, MeshLabels const& labels, KOVSimCSet const& set) {
    json.BeginArray();
    labels.ForInstances(set, [&](int instance, KOVSimCSet const& members) {
        json.BeginObject().Key("instance");
        if (instance < 0) {
            json.Null();
        } else {
            json.Value(labels.Names()[static_cast<std::size_t>(instance)]);
        }
        json.Key("ranges").BeginArray();
        labels.ForRanges(instance, members, [&](LabelRange const& range) {
            json.OneLine().BeginArray().Value(range.first).Value(range.last);
            json.Value(range.step).EndArray();
            out << json.Take();
        });
        json.EndArray().EndObject();
    });
    json.EndArray();
}

std::string FirstLabels(MeshLabels const& labels, int instance, KOVSimCSet const& members) {
    constexpr int kMost = 6;
    std::string text;
    int count = 0;
    labels.ForRanges(instance, members, [&](LabelRange const& range) {
        if (++count <= kMost) text += (count == 1 ? "" : ", ") + ToText(range);
    });
    return count > kMost ? text + ", ..." : text;
}

std::string FirstMembers(MeshLabels const& labels, KOVSimCSet const& set) {
    constexpr int kMost = 3;
    std::string text;
    int count = 0;
    labels.ForInstances(set, [&](int instance, KOVSimCSet const& members) {
        if (++count > kMost) return;
        text += (count == 1 ? "" : "; ") + InstanceText(labels, instance) + ": " +
                FirstLabels(labels, instance, members);
    });
    return count > kMost ? text + "; ..." : text;
}

}  // namespace kov::tool
