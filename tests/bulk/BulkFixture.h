// A document with two collections and a distribution over them, in memory or on disk; Reopen() is a
// commit away from what a later process would see. In memory it does nothing.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "KOVSimDocument.h"
#include "KOVSimSchema.h"
#include "support/TempFolder.h"

enum class Where { Memory, Disk };

inline std::string WhereName(testing::TestParamInfo<Where> const& info) {
    return info.param == Where::Memory ? "Memory" : "Disk";
}

class BulkFixture : public testing::TestWithParam<Where> {
  protected:
    using Chunks = KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>>;
    using Descriptions =
        KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

    void SetUp() override {
        if (GetParam() == Where::Disk) {
            m_path = m_folder / "model.ksd";
            document = KOVObjDocument::Create(m_path.c_str());
        } else {
            document = KOVObjDocument::CreateInMemory();
        }
        KOVSimTransaction transaction(document.ContextID());
        rows = document.Focus().CreateTypedCollection(kRows, schema::MeshNodeCollection());
        columns = document.Focus().CreateTypedCollection(kColumns, schema::MeshElementCollection());
        doubles = Make({rows, columns}, KOVSimRangeType(KOVSimTypeKeyDouble));
        transaction.Commit();
    }

    KOVSimDistributionID Make(std::vector<KOVSimCollectionID> const& grid,
                              KOVSimRangeType const& range) {
        KOVSimGrid::CollectionArray collections(static_cast<int>(grid.size()), 0);
        for (std::size_t i = 0; i < grid.size(); ++i)
            collections.Get(static_cast<int>(i)) = grid[i];
        return document.CreateDistribution(KOVSimGrid(collections), range, -1);
    }

    /// Closes the document and opens it again; identities are carried over.
    void Reopen(KOVObjDocument::Access access = KOVObjDocument::ReadWrite) {
        if (GetParam() == Where::Memory) return;
        document.Close();
        document = KOVObjDocument::Open(m_path.c_str(), access);
        rows = KOVSimCollectionID(Renew(rows));
        columns = KOVSimCollectionID(Renew(columns));
        doubles = KOVSimDistributionID(Renew(doubles));
    }
    KOVSimDynamicID Renew(KOVSimDynamicID id) const {
        id.context = document.ContextID();
        return id;
    }

    KOVSimCSet Rows(std::vector<int> const& members) const {
        return KOVSimCollection(rows).CreateVolatileOrderedCSet(members.data(),
                                                                static_cast<int>(members.size()));
    }
    KOVSimCSet Columns(std::vector<int> const& members) const {
        return KOVSimCollection(columns).CreateVolatileOrderedCSet(
            members.data(), static_cast<int>(members.size()));
    }
    KOVSimCSet RowRange(int first, int count) const {
        return KOVSimCollection(rows).CreateVolatileCSetStrided(first, count, 1, 1);
    }
    static Chunks Sizes(int a, int b) {
        Chunks chunks(2, 0);
        chunks.Get(0) = a;
        chunks.Get(1) = b;
        return chunks;
    }
    KOVSimDistribution Doubles() const { return KOVSimDistribution(doubles); }

    KOVSimDrawerID MakeDrawer(KOVSimCSet const& d0, KOVSimCSet const& d1, int growing) const {
        KOVSimTransfer make(Doubles());
        make.SetMakeNewDrawerChunked(Sizes(16, 4)).SetBufferPadding(false);
        if (growing >= 0) make.SetExtendableDim(growing);
        make.SetDim(0, d0).SetDim(1, d1).CheckView().ExecMake();
        return make.DrawerID();
    }
    void Write(KOVSimDrawerID const& drawer, KOVSimCSet const& d0, KOVSimCSet const& d1,
               std::vector<double> const& values) const {
        KOVSimTransfer write(Doubles());
        write.SetWrite()
            .SetAutoExtend()
            .SetBufferPadding(false)
            .SetDrawer(drawer)
            .SetDim(0, d0)
            .SetDim(1, d1)
            .CheckView();
        write.SetBuffer(0, values.data(), values.size() * sizeof(double))
            .ExecWrite()
            .RelinquishBuffers();
    }
    std::vector<double> Read(KOVSimCSet const& d0, KOVSimCSet const& d1,
                             double preset = -1.0) const {
        std::vector<double> values(
            static_cast<std::size_t>(d0.Size()) * static_cast<std::size_t>(d1.Size()), preset);
        KOVSimTransfer read(Doubles());
        read.SetRead().SetBufferPadding(false).SetDim(0, d0).SetDim(1, d1).CheckView();
        EXPECT_EQ(static_cast<std::size_t>(read.RequiredBufferSize(0)),
                  values.size() * sizeof(double));
        read.SetBuffer(0, values.data(), values.size() * sizeof(double))
            .ExecRead()
            .RelinquishBuffers();
        return values;
    }

    static constexpr int kRows = 5000;
    static constexpr int kColumns = 8;
    KOVObjDocument document;
    KOVSimCollectionID rows;
    KOVSimCollectionID columns;
    KOVSimDistributionID doubles;

  private:
    kov::test::TempFolder m_folder;
    std::string m_path;
};
