// What docs/format.md says to the letter: bytes that stand in every document.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "document/store/CatalogueTables.h"
#include "document/store/CatalogueVfs.h"
#include "document/store/PageSums.h"
#include "document/store/Reference.h"
#include "document/store/Segment.h"
#include "store/Script.h"
#include "support/TempFolder.h"

namespace kov::test {
namespace {

std::string Content(std::string const& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(Format, TheHeaderOfASegmentIsAsDescribed) {
    TempFolder folder;
    store::Uuid uuid;
    for (std::size_t i = 0; i < 16; ++i) uuid[i] = static_cast<unsigned char>(i * 0x11);
    store::CreateFileSegment(folder / "000001.seg", 1, uuid);
    unsigned char const described[64] = {
        0x4b, 0x4f, 0x56, 0x53, 0x45, 0x47, 0x0d, 0x0a, 0x01, 0x00, 0x00, 0x00, 0x01,
        0x00, 0x00, 0x00, 0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99,
        0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
        0x00, 0x00, 0x00, 0x00, 0x55, 0x6c, 0x50, 0x26, 0xc6, 0xd5, 0xc4, 0x09};
    EXPECT_EQ(Content(folder / "000001.seg"),
              std::string(reinterpret_cast<char const*>(described), 64));
}

TEST(Format, TheSumOfACataloguePageIsAsDescribed) {
    char page[8184];
    for (int i = 0; i < 8184; ++i) page[i] = static_cast<char>(i);
    EXPECT_EQ(store::SeededSum(page, sizeof page, 7), 0xe0a27abf4d09338du);
    EXPECT_EQ(store::Sum("", 0), 0x2d06800538d394c2u);
}

TEST(Format, TheCatalogueHasTheSettingsDescribed) {
    TempFolder folder;
    store::Context::Create(folder / "a.ksd", Script::Fill)->Close();
    std::string const file = Content(folder / "a.ksd/catalog.sqlite");
    ASSERT_GE(file.size(), 8192u);
    EXPECT_EQ(file.substr(0, 16), std::string("SQLite format 3\0", 16));
    EXPECT_EQ(file.substr(16, 2), std::string("\x20\0", 2));
    EXPECT_EQ(file.substr(18, 2), "\x02\x02");
    EXPECT_EQ(file[20], 8);
    EXPECT_EQ(file.substr(60, 4), std::string("\0\0\0\x01", 4));
    EXPECT_EQ(file.substr(68, 4), "KOVD");
    for (std::size_t page = 0; page < file.size() / 8192; ++page) {
        EXPECT_TRUE(store::IsSoundCataloguePage(file.data() + page * 8192,
                                                static_cast<std::int64_t>(page) + 1))
            << page;
    }
}

TEST(Format, ReferencesAreAsDescribed) {
    auto const reference = [](int category, int parent, int minor) {
        return store::ToReference({category, {}, {0, parent, minor}, -1, 0});
    };
    EXPECT_EQ(reference(KOVSimCategoryRecord, 0, 1), 9);
    EXPECT_EQ(reference(KOVSimCategoryMember, 2, 5), 0x1000000028);
    EXPECT_EQ(reference(KOVSimCategoryCSet, 2, 7), (std::int64_t{2} << 35) | 7 << 3 | 5);
    KOVSimDynamicID const member = store::FromReference(0x1000000028, {}, 4);
    EXPECT_EQ(member.category, KOVSimCategoryMember);
    EXPECT_EQ(member.data.parent, 2);
    EXPECT_EQ(member.data.minor, 5);
    EXPECT_EQ(member.type, 4);
    std::int64_t const last =
        reference(KOVSimCategoryMember, static_cast<int>(store::MaxParent), INT32_MAX);
    EXPECT_GT(last, 0);
    EXPECT_EQ(store::FromReference(last, {}, 0).data.parent, store::MaxParent);
    EXPECT_EQ(store::FromReference(last, {}, 0).data.minor, INT32_MAX);
}

TEST(Format, TheTablesHaveNotChangedWithoutANewVersion) {
    // Whoever changes a table changes the version, docs/format.md, and then these two.
    EXPECT_EQ(store::FormatVersion, 1);
    std::string bare;
    bool comment = false;
    for (char const* c = store::CatalogueTables; *c; ++c) {
        comment = *c != '\n' && (comment || (c[0] == '-' && c[1] == '-'));
        if (!comment && !isspace(static_cast<unsigned char>(*c))) bare += *c;
    }
    EXPECT_EQ(store::Sum(bare.data(), bare.size()), 17253837067804016369u) << bare;
}

}  // namespace
}  // namespace kov::test
