#include "MappedMembers.h"

#include <algorithm>

#include "KOVSimCSetIterator.h"
#include "LabelRanges.h"
#include "MemberList.h"

namespace kov::tool {
namespace {

// Ordered members whose labels are looked up at once.
constexpr int kBlock = 1'000'000;

// Calls `begin(instance)` at each stretch, `range` for its ranges, and `end` behind it.
template <class Begin, class Range, class End>
void ForStretches(MeshLabels const& labels, KOVSimCSet const& set, Begin begin, Range range,
                  End end) {
    RangeFolder folder(range);
    bool open = false;
    int instance = -1;
    int last = 0;
    std::vector<int> members;
    std::vector<int> ordinals;
    KOVSimCSetIterator at(set);
    for (at.First(); !at.IsDone();) {
        members.clear();
        for (; !at.IsDone() && static_cast<int>(members.size()) < kBlock; at.Next()) {
            members.push_back(at.CurrentValue());
        }
        ordinals = members;
        std::sort(ordinals.begin(), ordinals.end());
        ordinals.erase(std::unique(ordinals.begin(), ordinals.end()), ordinals.end());
        std::vector<Labelled> const found = labels.Look(ordinals);
        for (int const member : members) {
            auto const place = std::lower_bound(ordinals.begin(), ordinals.end(), member);
            Labelled const& of = found[static_cast<std::size_t>(place - ordinals.begin())];
            // Members without a label are shown by their ordinals.
            int const shown = of.instance < 0 ? member : of.label;
            if (open && (of.instance != instance || shown <= last)) {
                folder.Finish();
                end();
                open = false;
            }
            if (!open) begin(of.instance);
            open = true;
            instance = of.instance;
            last = shown;
            folder.Add(shown);
        }
    }
    folder.Finish();
    if (open) end();
}

void AddRange(Json& json, LabelRange const& range) {
    json.OneLine().BeginArray().Value(range.first).Value(range.last).Value(range.step).EndArray();
}

// Ranges of ascending pieces of the set's sequence.
template <class Range>
void ForOrdinalRanges(KOVSimCSet const& set, Range range) {
    RangeFolder folder(range);
    int last = -1;
    KOVSimCSetIterator at(set);
    for (at.First(); !at.IsDone(); at.Next()) {
        if (at.CurrentValue() <= last) folder.Finish();
        last = at.CurrentValue();
        folder.Add(last);
    }
    folder.Finish();
}

}  // namespace

void PrintSequence(TextOut& out, std::string const& indent, MeshLabels const& labels,
                   KOVSimCSet const& set) {
    if (set.IsAscending()) {
        PrintMembers(out, indent, labels, set);
        return;
    }
    bool first = true;
    ForStretches(
        labels, set,
        [&](int instance) {
            out << indent << InstanceText(labels, instance) << ": ";
            first = true;
        },
        [&](LabelRange const& range) {
            out << (first ? "" : ", ") << ToText(range);
            first = false;
        },
        [&] { out << "\n"; });
}

void PrintSequence(TextOut& out, Json& json, MeshLabels const& labels, KOVSimCSet const& set) {
    if (set.IsAscending()) {
        PrintMembers(out, json, labels, set);
        return;
    }
    json.BeginArray();
    ForStretches(
        labels, set,
        [&](int instance) {
            json.BeginObject().Key("instance");
            if (instance < 0) {
                json.Null();
            } else {
                json.Value(labels.Names()[static_cast<std::size_t>(instance)]);
            }
            json.Key("ranges").BeginArray();
        },
        [&](LabelRange const& range) { AddRange(json, range); },
        [&] {
            json.EndArray().EndObject();
            out << json.Take();
        });
    json.EndArray();
}

void PrintOrdinals(TextOut& out, std::string const& head, KOVSimCSet const& set) {
    bool first = true;
    ForOrdinalRanges(set, [&](LabelRange const& range) {
        out << (first ? head : std::string(", ")) << ToText(range);
        first = false;
    });
    if (!first) out << "\n";
}

void PrintOrdinals(TextOut& out, Json& json, KOVSimCSet const& set) {
    json.BeginArray();
    ForOrdinalRanges(set, [&](LabelRange const& range) {
        AddRange(json, range);
        out << json.Take();
    });
    json.EndArray();
}

}  // namespace kov::tool
