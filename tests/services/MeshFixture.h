// A document with the skeleton's mesh, in memory or on disk, grown to some nodes and elements, and
// the sets and transfers that the tests of the mesh services need.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "KOVSimDocument.h"
#include "KOVSimSchema.h"
#include "support/TempFolder.h"

namespace kov::test {

enum class Medium { Memory, Disk };

inline std::string MediumName(testing::TestParamInfo<Medium> const& info) {
    return info.param == Medium::Memory ? "Memory" : "Disk";
}

inline std::vector<int> Members(KOVSimCSet const& set) {
    std::vector<int> members(static_cast<std::size_t>(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

inline std::vector<int> Range(int first, int count) {
    std::vector<int> members(static_cast<std::size_t>(count));
    std::iota(members.begin(), members.end(), first);
    return members;
}

using Descriptions =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;
using Ints = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;

class MeshDocument {
  public:
    explicit MeshDocument(Medium medium = Medium::Memory, int nodeCount = 1000,
                          int elementCount = 1000)
        : m_medium(medium) {
        if (medium == Medium::Disk) {
            m_folder = std::make_unique<TempFolder>();
            m_path = *m_folder / "model.ksd";
            document = KOVObjDocument::Create(m_path.c_str());
        } else {
            document = KOVObjDocument::CreateInMemory();
        }
        Look();
        auto const transaction = Write();
        nodes.ExtendSpace(nodeCount);
        elements.ExtendSpace(elementCount);
        transaction->Commit();
    }
    ~MeshDocument() { document.Close(); }
    MeshDocument(MeshDocument const&) = delete;
    MeshDocument& operator=(MeshDocument const&) = delete;

    /// What a later process would see; in memory nothing happens.
    void Reopen(KOVObjDocument::Access access = KOVObjDocument::ReadWrite) {
        if (m_medium == Medium::Memory) return;
        document.Close();
        document = KOVObjDocument::Open(m_path.c_str(), access);
        Look();
    }
    /// Where it lies; empty in memory.
    std::string const& Path() const { return m_path; }
    std::unique_ptr<KOVSimTransaction> Write() const {
        return std::make_unique<KOVSimTransaction>(document.ContextID());
    }

    KOVObjMesh Mesh() const { return KOVObjMesh(document.GetMesh()); }
    KOVSimPosition Coordinates() const { return Mesh().GetCoordinates(); }
    KOVSimPosition Connectivity() const { return Mesh().GetConnectivity(); }
    KOVSimDistribution CoordinatesDistribution() const {
        return KOVSimDistribution(Coordinates().GetDistribution());
    }
    KOVSimDistribution ConnectivityDistribution() const {
        return KOVSimDistribution(KOVSimDSet(Connectivity()).GetRelationalDistributionID());
    }

    /// Temporary sets: ascending, and in the order given.
    static KOVSimCSetID Set(KOVSimCollection collection, std::vector<int> const& members) {
        return collection.CreateTempCSet(members.data(), static_cast<int>(members.size()), false);
    }
    static KOVSimCSetID Ordered(KOVSimCollection collection, std::vector<int> const& members) {
        return collection.CreateTempOrderedCSet(members.data(), static_cast<int>(members.size()));
    }
    KOVSimCSetID Nodes(std::vector<int> const& members) const { return Set(nodes, members); }
    KOVSimCSetID Elements(std::vector<int> const& members) const { return Set(elements, members); }
    KOVSimCSetID Components(std::vector<int> const& members) const {
        return Set(components, members);
    }
    /// Connectivity positions 0 to count - 1.
    KOVSimCSetID Positions(int count) const { return Set(positions, Range(0, count)); }

    /// A new distribution over two collections. In a transaction.
    KOVSimDistributionID NewDistribution(KOVSimCollection const& rows,
                                         KOVSimCollection const& columns,
                                         KOVSimRangeType const& range) const {
        KOVSimGrid::CollectionArray grid(2, 0);
        grid.Get(0) = rows.ID();
        grid.Get(1) = columns.ID();
        return document.CreateDistribution(KOVSimGrid(grid), range, -1);
    }
    /// Makes a drawer of a distribution by hand and fills it. In a transaction.
    template <class Number>
    static KOVSimDrawerID NewDrawer(KOVSimDistributionID const& distribution,
                                    KOVSimCSetID const& rows, KOVSimCSetID const& columns,
                                    std::vector<Number> const& data) {
        Ints chunks(2, 0);
        chunks.Get(0) = 100;
        chunks.Get(1) = std::max(KOVSimCSet(columns).Size(), 1);
        KOVSimTransfer make{KOVSimDistribution(distribution)};
        make.SetMakeNewDrawerChunked(chunks).SetBufferPadding(false).SetExtendableDim(0);
        make.SetDim(0, rows).SetDim(1, columns).CheckView().ExecMake();
        KOVSimDrawerID const drawer = make.DrawerID();
        KOVSimTransfer write{KOVSimDistribution(distribution)};
        write.SetWrite().SetBufferPadding(false).SetDrawer(drawer);
        write.SetDim(0, rows).SetDim(1, columns).CheckView();
        write.SetBuffer(0, data.data(), data.size() * sizeof(Number)).ExecWrite();
        write.RelinquishBuffers();
        return drawer;
    }
    static Descriptions Drawers(KOVSimDistribution const& distribution) {
        Descriptions drawers;
        distribution.QueryDrawers(drawers);
        return drawers;
    }
    static std::vector<int> ChunkSizes(KOVSimDrawerDescription const& drawer) {
        Ints sizes;
        drawer.ChunkSizes(sizes);
        return std::vector<int>(sizes.begin(), sizes.end());
    }

    KOVObjDocument document;
    KOVSimCollection nodes, elements, components, positions;

  private:
    void Look() {
        nodes = KOVSimCollection(Mesh().GetNodeCollection().GetCollection());
        elements = KOVSimCollection(Mesh().GetElementCollection().GetCollection());
        components = KOVSimCollection(document.GetComponentCollection().GetCollection());
        positions = KOVSimCollection(ConnectivityDistribution().Grid().Collections().ConstGet(1));
    }

    Medium m_medium;
    std::unique_ptr<TempFolder> m_folder;
    std::string m_path;
};

class OnEachMedium : public testing::TestWithParam<Medium> {
  protected:
    MeshDocument mesh{GetParam()};
};

/// `work` ends the process with status 1 after a report of the condition and of the source, without
/// its extension.
template <class Work>
void ExpectCheckedAssertion(std::string const& condition, std::string const& source, Work work) {
    EXPECT_EXIT(
        work(), testing::ExitedWithCode(1),
        testing::AllOf(testing::HasSubstr("Assertion failed: " + condition + ", at "),
                       testing::HasSubstr("KOVSrvSimServices/KOVSrvFsm.m/src/" + source + ",")));
}

/// `work` aborts the process after a message that begins with the fatal form's mark.
template <class Work>
void ExpectFatalAssertion(std::string const& condition, std::string const& source, Work work) {
    EXPECT_EXIT(
        work(), testing::KilledBySignal(SIGABRT),
        testing::AllOf(testing::HasSubstr("AssertionFailed:" + condition + ","),
                       testing::HasSubstr("KOVSrvSimServices/KOVSrvFsm.m/src/" + source + ",")));
}

}  // namespace kov::test
