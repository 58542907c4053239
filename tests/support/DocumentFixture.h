// Documents for tests, each body run twice: on a document in memory, and on one on disk that is
// closed and opened again between writing and looking.
//
//     class Links : public kov::test::DocumentTest {};
//     KOV_DOCUMENT_TESTS(Links);
//
//     TEST_P(Links, AnUnsetLinkIsNull) {
//         Write([&] { ... });      // in a transaction of its own
//         Reopen();                // nothing in memory
//         EXPECT_TRUE(Document().Focus()...);
//     }
//
// Identities do not survive Reopen(): take them anew from the document, or with Again(position).
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "KOVObjDocument.h"
#include "KOVSimException.h"
#include "KOVSimTransaction.h"
#include "support/TempFolder.h"

namespace kov::test {

enum class Place { Memory, Disk };

class DocumentTest : public ::testing::TestWithParam<Place> {
  public:
    static std::string PlaceName(::testing::TestParamInfo<Place> const& info) {
        return info.param == Place::Memory ? "InMemory" : "OnDisk";
    }

  protected:
    void SetUp() override {
        if (OnDisk()) {
            folder_ = std::make_unique<TempFolder>();
            path_ = *folder_ / "model.ksd";
            document_ = KOVObjDocument::Create(path_.c_str());
        } else {
            document_ = KOVObjDocument::CreateInMemory();
        }
    }
    void TearDown() override { document_.Close(); }

    bool OnDisk() const { return GetParam() == Place::Disk; }
    KOVObjDocument const& Document() const { return document_; }
    std::string const& Path() const { return path_; }

    /// Closes the document and opens it again, where it lies on disk.
    void Reopen(KOVObjDocument::Access access = KOVObjDocument::ReadWrite) {
        if (!OnDisk()) return;
        document_.Close();
        document_ = KOVObjDocument::Open(path_.c_str(), access);
    }
    /// The position that the same numbers name in the document as it is open now.
    KOVSimPosition Again(KOVSimPosition const& position) const {
        KOVSimDynamicID id = position.ID();
        id.context = document_.ContextID();
        return id;
    }

    /// Runs `body` in a transaction and commits it.
    void Write(std::function<void()> const& body) const {
        KOVSimTransaction transaction(document_.ContextID());
        body();
        transaction.Commit();
    }
    /// Runs `body` in a transaction that is dropped.
    void WriteAndDrop(std::function<void()> const& body) const {
        KOVSimTransaction transaction(document_.ContextID());
        body();
    }
    KOVSimPosition NewRecord(int type) const { return document_.CreateDataRecord(type).Pos(); }

  private:
    std::unique_ptr<TempFolder> folder_;
    std::string path_;
    KOVObjDocument document_;
};

/// The text with which `body` was refused; empty if it was not.
inline std::string RefusalOf(std::function<void()> const& body) {
    try {
        body();
    } catch (KOVSimException const& refusal) {
        return refusal.what();
    }
    return {};
}

}  // namespace kov::test

#define KOV_DOCUMENT_TESTS(suite)                                                                 \
    INSTANTIATE_TEST_SUITE_P(Documents, suite,                                                    \
                             ::testing::Values(kov::test::Place::Memory, kov::test::Place::Disk), \
                             kov::test::DocumentTest::PlaceName)
