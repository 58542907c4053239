#include "OutputPlace.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "Failure.h"
#include "support/TempFolder.h"

namespace kov::tool {
namespace {

namespace fs = std::filesystem;

std::set<std::string> Entries(fs::path const& folder) {
    std::set<std::string> names;
    for (auto const& entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

void Fill(std::string const& path, std::string const& text) { std::ofstream(path) << text; }

std::string Content(std::string const& path) {
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string RefusalOf(std::string const& target) {
    try {
        OutputPlace const place(target);
    } catch (Failure const& failure) {
        return failure.what();
    }
    return "";
}

TEST(OutputPlace, PublishesAFileUnderItsName) {
    test::TempFolder folder;
    {
        OutputPlace place(folder / "out");
        Fill(place.Path(), "done");
        EXPECT_FALSE(fs::exists(folder / "out"));
        place.Publish();
        EXPECT_EQ(Content(folder / "out"), "done");
    }
    EXPECT_EQ(Entries(folder.Path()), std::set<std::string>{"out"});
}

TEST(OutputPlace, PublishesAFolder) {
    test::TempFolder folder;
    OutputPlace place((folder / "out") + "///");
    fs::create_directory(place.Path());
    Fill(place.Path() + "/a", "1");
    place.Publish();
    EXPECT_EQ(Content(folder / "out/a"), "1");
    EXPECT_EQ(Entries(folder.Path()), std::set<std::string>{"out"});
}

TEST(OutputPlace, LeavesNothingUnpublished) {
    test::TempFolder folder;
    {
        OutputPlace place(folder / "out");
        fs::create_directory(place.Path());
        Fill(place.Path() + "/a", "1");
    }
    EXPECT_TRUE(Entries(folder.Path()).empty());
}

TEST(OutputPlace, RefusesWhatExists) {
    test::TempFolder folder;
    std::string const target = folder / "out";
    Fill(target, "old");
    EXPECT_EQ(RefusalOf(target), target + ": exists already; remove it, or choose another name");
    fs::remove(target);
    fs::create_symlink("nowhere", target);
    EXPECT_NE(RefusalOf(target), "");
}

TEST(OutputPlace, RefusesAFolderThatIsMissing) {
    test::TempFolder folder;
    std::string const target = folder / "none/out";
    EXPECT_EQ(RefusalOf(target), target + ": there is no folder " + (folder / "none"));
    EXPECT_NE(RefusalOf("."), "");
    EXPECT_NE(RefusalOf(".."), "");
    EXPECT_NE(RefusalOf("/"), "");
}

TEST(OutputPlace, RefusesAPlaceInsideADocument) {
    test::TempFolder folder;
    fs::create_directories(folder / "m.ksd/bulk");
    fs::create_directory(folder / "other");
    Fill(folder / "m.ksd/catalog.sqlite", "");
    fs::create_symlink("m.ksd/bulk", folder / "link");
    for (char const* const name :
         {"m.ksd/x", "m.ksd/bulk/x", "other/../m.ksd/x", "link/x", "link/../x"}) {
        std::string const target = folder / name;
        EXPECT_EQ(RefusalOf(target), target + ": lies inside the document " +
                                         fs::canonical(folder / "m.ksd").string() +
                                         "; expected a place outside of documents");
    }
    EXPECT_EQ(RefusalOf(folder / "m.ksd"),
              (folder / "m.ksd") + ": exists already; remove it, or choose another name");
    EXPECT_EQ(RefusalOf(folder / "m.ksd/../x"), "");
    EXPECT_EQ(Entries(folder / "m.ksd"), (std::set<std::string>{"bulk", "catalog.sqlite"}));
}

TEST(OutputPlace, DoesNotReplaceWhatCameMeanwhile) {
    test::TempFolder folder;
    OutputPlace place(folder / "out");
    Fill(place.Path(), "new");
    Fill(folder / "out", "other");
    EXPECT_THROW(place.Publish(), Failure);
    EXPECT_EQ(Content(folder / "out"), "other");
}

TEST(OutputPlace, TwoMakersOfOneTargetDoNotMeet) {
    test::TempFolder folder;
    OutputPlace first(folder / "out");
    Fill(first.Path(), "first");
    {
        OutputPlace second(folder / "out");
        Fill(second.Path(), "second");
        EXPECT_EQ(Content(first.Path()), "first");
        second.Publish();
    }
    EXPECT_THROW(first.Publish(), Failure);
    EXPECT_EQ(Content(folder / "out"), "second");
}

// Runs `body` in a child process and answers how it ended.
template <class F>
int InChild(F&& body) {
    pid_t const child = fork();
    if (child == 0) {
        body();
        _exit(99);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

TEST(OutputPlace, TheNextRunRemovesWhatAKilledOneLeft) {
    test::TempFolder folder;
    int const status = InChild([&] {
        OutputPlace place(folder / "out");
        fs::create_directory(place.Path());
        Fill(place.Path() + "/a", "1");
        raise(SIGKILL);
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    Fill(folder / ".out.kovsim-user", "not ours");
    fs::create_directory(folder / ".other.kovsim-abcdef");
    ASSERT_EQ(Entries(folder.Path()).size(), 3U);
    { OutputPlace const place(folder / "out"); }
    EXPECT_EQ(Entries(folder.Path()),
              (std::set<std::string>{".out.kovsim-user", ".other.kovsim-abcdef"}));
}

TEST(OutputPlace, AnEndByExitRemovesThePlace) {
    test::TempFolder folder;
    int const status = InChild([&] {
        OutputPlace place(folder / "out");
        Fill(place.Path(), "1");
        std::exit(1);
    });
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_TRUE(Entries(folder.Path()).empty());
}

}  // namespace
}  // namespace kov::tool
