#include "DistributionCopy.h"

#include <algorithm>
#include <cstring>

#include "AscendingSets.h"
#include "Interrupt.h"
#include "KOVSimCSetIterator.h"

namespace kov::tool {
namespace {

// Gives out the members of an ascending set in blocks.
class Blocks {
  public:
    explicit Blocks(KOVSimCSet const& set) : m_collection(set.CollectionID()), m_at(set) {
        m_at.First();
    }
    bool IsDone() const { return m_at.IsDone(); }
    KOVSimCSet Next(int most) {
        m_members.clear();
        for (; !m_at.IsDone() && static_cast<int>(m_members.size()) < most; m_at.Next()) {
            m_members.push_back(m_at.CurrentValue());
        }
        return SetOf(m_collection, m_members);
    }

  private:
    KOVSimCollection m_collection;
    KOVSimCSetIterator m_at;
    std::vector<int> m_members;
};

}  // namespace

std::vector<KOVSimCSet> PartOfDrawer(KOVSimDrawerDescription const& drawer,
                                     std::vector<Renumbering const*> const& dimensions) {
    std::vector<KOVSimCSet> parts;
    for (std::size_t i = 0; i < dimensions.size(); ++i) {
        KOVSimCSet const set = drawer.compartment.CSet(static_cast<int>(i));
        parts.push_back(dimensions[i]->Part(set));
        if (parts.back().IsEmpty() && !set.IsEmpty()) return {};
    }
    return parts;
}

DistributionCopy::DistributionCopy(KOVSimDistribution const& from, KOVSimDistribution const& to,
                                   std::vector<Renumbering const*> const& dimensions,
                                   Renumbering const& entries, int block)
    : m_from(from), m_to(to), m_dimensions(dimensions), m_entries(entries), m_block(block) {
    for (int i = 0; i < from.NumDimensions(); ++i) {
        m_sources.emplace_back(from.Grid().Collections().ConstGet(i));
        m_targets.emplace_back(to.Grid().Collections().ConstGet(i));
    }
}

KOVSimDrawerID DistributionCopy::Make(KOVSimPersistentDrawerDesc const& drawer,
                                      std::vector<KOVSimCSet> const& mapped) {
    KOVSimTransfer make(m_to);
    make.SetBufferPadding(false);
    if (drawer.IsChunked()) {
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks;
        drawer.ChunkSizes(chunks);
        make.SetMakeNewDrawerChunked(chunks);
        if (drawer.extendableDim >= 0) make.SetExtendableDim(drawer.extendableDim);
    } else {
        make.SetMakeNewDrawer();
    }
    for (std::size_t i = 0; i < mapped.size(); ++i) make.SetDim(static_cast<int>(i), mapped[i]);
    make.CheckView().ExecMake();
    return make.DrawerID();
}

void DistributionCopy::CopyBlock(KOVSimDrawerID const& drawer, KOVSimDrawerID const& made,
                                 std::vector<KOVSimCSet> const& view) {
    ThrowIfInterrupted();
    KOVSimTransfer read(m_from);
    read.SetRead().SetBufferPadding(false).SetDrawer(drawer);
    KOVSimTransfer write(m_to);
    write.SetWrite().SetBufferPadding(false).SetDrawer(made);
    for (std::size_t i = 0; i < view.size(); ++i) {
        read.SetDim(static_cast<int>(i), view[i]);
        write.SetDim(static_cast<int>(i), m_dimensions[i]->Map(view[i], m_targets[i]));
    }
    read.CheckView();
    write.CheckView();
    auto const bytes = static_cast<std::size_t>(read.RequiredBufferSize(0));
    m_buffer.assign(bytes, 0);
    read.SetBuffer(0, static_cast<void*>(m_buffer.data()), bytes).ExecRead().RelinquishBuffers();
    if (!m_entries.IsIdentity()) {
        for (std::size_t at = 0; at + sizeof(int) <= bytes; at += sizeof(int)) {
            int entry = 0;
            std::memcpy(&entry, m_buffer.data() + at, sizeof entry);
            if (entry < 0) continue;
            entry = m_entries.NewIndex(entry);
            std::memcpy(m_buffer.data() + at, &entry, sizeof entry);
        }
    }
    write.SetBuffer(0, static_cast<void const*>(m_buffer.data()), bytes);
    write.ExecWrite().RelinquishBuffers();
}

KOVSimDrawerID DistributionCopy::Copy(KOVSimPersistentDrawerDesc const& drawer) {
    std::vector<KOVSimCSet> const parts = PartOfDrawer(drawer, m_dimensions);
    if (parts.empty()) return {};
    std::vector<KOVSimCSet> mapped;
    bool entries = true;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        mapped.push_back(m_dimensions[i]->Map(parts[i], m_targets[i]));
        if (parts[i].IsEmpty()) entries = false;
    }
    KOVSimDrawerID const made = Make(drawer, mapped);
    if (!entries) return made;
    // Rows are stored in the order in which they are written: whole rows, where one fits a block.
    std::size_t const row = drawer.extendableDim == 1 ? 1 : 0;
    std::size_t const other = 1 - row;
    int const columns = parts.size() == 1 ? 1 : parts[other].Size();
    int const columnsAtOnce = std::min(columns, m_block);
    for (Blocks rows(parts[row]); !rows.IsDone();) {
        std::vector<KOVSimCSet> view(parts.size());
        view[row] = rows.Next(std::max(1, m_block / columnsAtOnce));
        if (parts.size() == 1) {
            CopyBlock(drawer.drawerID, made, view);
            continue;
        }
        for (Blocks part(parts[other]); !part.IsDone();) {
            view[other] = part.Next(columnsAtOnce);
            CopyBlock(drawer.drawerID, made, view);
        }
    }
    return made;
}

KOVSimDrawerID DistributionCopy::MakeEmpty(KOVSimPersistentDrawerDesc const& drawer) {
    std::vector<KOVSimCSet> mapped;
    for (std::size_t i = 0; i < m_dimensions.size(); ++i) {
        KOVSimCSet const part = m_dimensions[i]->Part(drawer.compartment.CSet(static_cast<int>(i)));
        mapped.push_back(m_dimensions[i]->Map(part, m_targets[i]));
    }
    return Make(drawer, mapped);
}

}  // namespace kov::tool
