// Labels of one instance are a record under its name in a map of the focus, and a distribution of
// one dimension over the nodes or elements: one drawer that holds the label of each ordinal of the
// instance. The drawer's own set thus tells which ordinals belong to the instance, and one entry is
// read for one label.
#include "KOVObjLabeler.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimTransaction.h"
#include "KOVSimTransfer.h"
#include "document/facades/LabelCheck.h"
#include "document/facades/LabelledInstance.h"
#include "document/facades/NameTable.h"
#include "document/facades/OrdinalOwners.h"
#include "document/records/Identity.h"

using namespace kov;
using facades::LabelledInstance;
using facades::NameTable;
using facades::OrdinalOwners;
using records::Asked;

namespace {

constexpr int Block = 1 << 20;  // labels in one transfer
// So many ordinals are sought in one instance after the other; whoever asks oftener gets an index.
constexpr int FewLookups = 4;
// So many names are sought by halving, and further ones in a table.
constexpr int ManyNames = 64;

int MapMember(KOVObjLabelerType type) {
    return type == KOVObjLabelerNodes ? ::schema::Focus_nodeLabels()
                                      : ::schema::Focus_elementLabels();
}

/// The nodes or elements of the document's mesh.
KOVSimPosition LabelledCollection(KOVSimPosition const& focus, KOVObjLabelerType type) {
    KOVObjMesh const mesh(
        focus.GetPosition(::schema::Focus_model()).GetPosition(::schema::Model_mesh()));
    return type == KOVObjLabelerNodes ? mesh.GetNodeCollection() : mesh.GetElementCollection();
}

/// The places of `ordinals` in ascending order of these. Throws on one that stands twice.
std::vector<int> AscendingPlaces(KOVBasVector<int> const& ordinals, Asked const& asked) {
    std::vector<int> places(static_cast<std::size_t>(ordinals.Size()));
    std::iota(places.begin(), places.end(), 0);
    std::sort(places.begin(), places.end(),
              [&](int a, int b) { return ordinals[a] < ordinals[b]; });
    auto const twice = std::adjacent_find(places.begin(), places.end(),
                                          [&](int a, int b) { return ordinals[a] == ordinals[b]; });
    if (twice != places.end()) {
        records::Refuse(asked, "ordinal " + std::to_string(ordinals[*twice]) + " is given twice");
    }
    return places;
}

/// Writes labels to a drawer that grows with them; the first block makes it.
class LabelWriter {
  public:
    LabelWriter(KOVSimDistribution const& distribution, KOVSimCollection const& collection)
        : m_distribution(distribution), m_collection(collection) {}

    void Write(int const* ordinals, int const* labels, int n) {
        KOVSimTransfer transfer(m_distribution);
        transfer.SetWrite().SetBufferPadding(false);
        if (m_drawer.IsNull()) {
            KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(1);
            chunks.Get(0) = Block;
            transfer.SetMakeNewDrawerChunked(chunks).SetExtendableDim(0);
        } else {
            transfer.SetAutoExtend().SetDrawer(m_drawer);
        }
        transfer.SetDim(0, m_collection.CreateVolatileCSet(ordinals, n, false)).CheckView();
        transfer.SetBuffer(0, static_cast<void const*>(labels),
                           sizeof(int) * static_cast<unsigned long>(n));
        transfer.ExecWrite().RelinquishBuffers();
        m_drawer = transfer.DrawerID();
    }

  private:
    KOVSimDistribution m_distribution;
    KOVSimCollection m_collection;
    KOVSimDrawerID m_drawer;
};

}  // namespace

// All instances, as they were when they were read; each is opened when it is first asked.
struct KOVObjLabeler::Instances {
    std::vector<LabelledInstance> all;  // ascending by name
    NameTable names;                    // made when one has been sought often
    int nameLookups = 0;
    LabelledInstance* last = nullptr;  // the one that was found by name last
    std::optional<OrdinalOwners> owners;
    int ownerLookups = 0;

    LabelledInstance* Find(KOVString const& name) {
        if (last && last->Name() == name) return last;
        LabelledInstance* const found = nameLookups < ManyNames ? Search(name) : names.Find(name);
        if (nameLookups < ManyNames) {
            if (nameLookups + 1 == ManyNames) names.Build(all);
            ++nameLookups;
        }
        if (found) last = found;
        return found;
    }

    LabelledInstance* Search(KOVString const& name) {
        auto const at =
            std::lower_bound(all.begin(), all.end(), name,
                             [](LabelledInstance const& instance, KOVString const& sought) {
                                 return instance.Name() < sought;
                             });
        return at != all.end() && at->Name() == name ? &*at : nullptr;
    }

    LabelledInstance* OwnerOf(int ordinal) {
        if (ownerLookups < FewLookups) {
            ++ownerLookups;
            auto const has = [=](LabelledInstance& i) { return i.Ordinals().Contains(ordinal); };
            auto const owner = std::find_if(all.begin(), all.end(), has);
            return owner != all.end() ? &*owner : nullptr;
        }
        if (!owners) {
            std::vector<sets::IndexSetPtr> sets;
            for (LabelledInstance& instance : all) sets.push_back(instance.Ordinals().Storage());
            owners.emplace(std::move(sets));
        }
        int const owner = owners->Find(ordinal);
        if (owner < 0) return nullptr;
        LabelledInstance& found = all[static_cast<std::size_t>(owner)];
        found.Ordinals();  // throws for one of a transaction that was dropped since
        return &found;
    }
};

KOVObjLabeler::KOVObjLabeler(KOVObjDocument const& document, KOVObjLabelerType type)
    : m_focus(document.Focus()), m_type(type) {}

KOVObjLabeler::KOVObjLabeler(KOVSimPosition const& position, KOVObjLabelerType type)
    : m_focus(position.Focus()), m_type(type) {}

void KOVObjLabeler::Read() {
    auto instances = std::make_shared<Instances>();
    for (KOVSimMapiterator at = m_focus.GetMap(MapMember(m_type)).Begin(); at.NotDone(); ++at) {
        KOVSimPosition const distribution = at.Value().GetPosition(::schema::Labels_distribution());
        instances->all.emplace_back(at.Key(), distribution.GetDistribution());
    }
    m_instances = std::move(instances);
}

KOVObjLabeler::NameArray KOVObjLabeler::Occurrences() const {
    NameArray names;
    if (!m_instances) return names;
    names.SetSize(static_cast<int>(m_instances->all.size()));
    for (int i = 0; i < names.Size(); ++i)
        names.Get(i) = m_instances->all[static_cast<std::size_t>(i)].Name();
    return names;
}

bool KOVObjLabeler::IsInstanceValid(KOVString const& name) const {
    return m_instances && m_instances->Find(name);
}

KOVSimCSet KOVObjLabeler::GetInstanceOrdinals(KOVString const& name) const {
    LabelledInstance* const instance = m_instances ? m_instances->Find(name) : nullptr;
    return instance ? instance->Ordinals() : KOVSimCSet();
}

void KOVObjLabeler::GetInstanceLabelsAndOrdinals(KOVString const& name, KOVBasVector<int>& labels,
                                                 KOVBasVector<int>& ordinals) const {
    labels.Resize(0);
    ordinals.Resize(0);
    if (LabelledInstance* const instance = m_instances ? m_instances->Find(name) : nullptr)
        instance->Read(labels, ordinals);
}

bool KOVObjLabeler::GetOccurrenceForFlatMeshOrdinal(int ordinal, KOVString& name) const {
    // Of a document that was closed nothing is answered.
    if (!records::ToRead(m_focus.ID()) || !m_instances) return false;
    LabelledInstance const* const owner = m_instances->OwnerOf(ordinal);
    if (owner) name = owner->Name();
    return owner != nullptr;
}

int KOVObjLabeler::GetInstanceLabel(KOVString const& name, int ordinal) const {
    LabelledInstance* const instance = m_instances ? m_instances->Find(name) : nullptr;
    return instance ? instance->LabelAt(ordinal) : -1;
}

int KOVObjLabeler::GetInstanceOrdinal(KOVString const& name, int label) const {
    LabelledInstance* const instance = m_instances ? m_instances->Find(name) : nullptr;
    return instance ? instance->OrdinalAt(label) : -1;
}

void KOVObjLabeler::SetInstance(KOVString const& name, KOVBasVector<int> const& labels,
                                KOVBasVector<int> const& ordinals) {
    Asked const asked{m_type == KOVObjLabelerNodes ? "record node labels"
                                                   : "record element labels"};
    records::ToWrite(m_focus.ID(), asked);
    if (labels.Size() != ordinals.Size()) {
        records::Refuse(asked, std::to_string(labels.Size()) + " labels were given for " +
                                   std::to_string(ordinals.Size()) + " ordinals");
    }
    KOVSimPosition const labelled = LabelledCollection(m_focus, m_type);
    if (labelled.GetCollection().IsNull())
        records::Refuse(asked, "the document has no mesh to label");
    KOVSimCollection const collection(labelled.GetCollection());
    for (int const ordinal : ordinals) {
        if (ordinal >= 0 && ordinal < collection.Space()) continue;
        records::Refuse(asked, labelled.ID(),
                        "ordinal " + std::to_string(ordinal) + " is outside [0, " +
                            std::to_string(collection.Space()) + ")");
    }
    if (auto const twice = facades::FindDuplicate(labels)) {
        records::Refuse(asked, "label " + std::to_string(*twice) + " is given twice");
    }
    std::vector<int> places;
    if (!facades::IsStrictlyAscending(ordinals)) places = AscendingPlaces(ordinals, asked);

    KOVSimGrid::CollectionArray grid(1);
    grid.Get(0) = collection.ID();
    KOVSimDistributionID const distribution = m_focus.CreateTypedDistribution(
        KOVSimGrid(grid), ::schema::LabelDistribution(), KOVSimRangeType(KOVSimTypeKeyInt));
    LabelWriter writer{KOVSimDistribution(distribution), collection};
    std::vector<int> blockOrdinals;
    std::vector<int> blockLabels;
    for (int first = 0; first < ordinals.Size();) {
        int const count = std::min(Block, ordinals.Size() - first);
        if (places.empty()) {
            writer.Write(ordinals.Data() + first, labels.Data() + first, count);
        } else {
            blockOrdinals.clear();
            blockLabels.clear();
            for (int i = first; i < first + count; ++i) {
                int const place = places[static_cast<std::size_t>(i)];
                blockOrdinals.push_back(ordinals[place]);
                blockLabels.push_back(labels[place]);
            }
            writer.Write(blockOrdinals.data(), blockLabels.data(), count);
        }
        first += count;
    }

    KOVSimMap const instances = m_focus.GetMap(MapMember(m_type));
    KOVSimPosition record = instances.Find(name);
    if (record.IsNull()) {
        record = m_focus.CreateDataRecord(::schema::Labels()).Pos();
        instances.Insert(name, record);
    }
    record.SetPosition(::schema::Labels_distribution(), distribution);
}
