// A reader's view from one commit to the next, with the writer in a process of its own: what the
// reader keeps in memory must neither change before Refresh() nor outlive it.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>

#include "KOVObjMesh.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "support/DocumentFixture.h"

namespace {

/// A process that writes when it is told to. It is forked off before this process opens the
/// document, since a child may not open what its parent held.
class Writer {
  public:
    template <class Body>
    Writer(KOVString const& path, Body const& body) {
        EXPECT_EQ(0, pipe(signal_));
        child_ = fork();
        if (child_ != 0) return;
        char go = 0;
        int status = 1;
        if (read(signal_[0], &go, 1) == 1) {
            try {
                KOVObjDocument const document =
                    KOVObjDocument::Open(path, KOVObjDocument::ReadWrite);
                KOVSimTransaction transaction(document.ContextID());
                body(document);
                transaction.Commit();
                document.Close();
                status = 0;
            } catch (std::exception const& refusal) {
                std::fprintf(stderr, "the writer: %s\n", refusal.what());
            }
        }
        _exit(status);
    }
    ~Writer() {
        close(signal_[0]);
        close(signal_[1]);
    }
    Writer(Writer const&) = delete;
    Writer& operator=(Writer const&) = delete;

    /// Lets it write, and waits for its commit.
    void Go() {
        ASSERT_EQ(1, write(signal_[1], "", 1));
        int status = 0;
        ASSERT_EQ(child_, waitpid(child_, &status, 0));
        ASSERT_TRUE(WIFEXITED(status));
        ASSERT_EQ(0, WEXITSTATUS(status));
    }

  private:
    int signal_[2] = {-1, -1};
    pid_t child_ = -1;
};

KOVSimCollection Nodes(KOVObjDocument const& document) {
    return KOVSimCollection(KOVObjMesh(document.GetMesh()).GetNodeCollection().GetCollection());
}

TEST(Refresh, AReaderStandsOnItsCommitUntilItRefreshes) {
    kov::test::TempFolder const folder;
    KOVString const path((folder / "model.ksd").c_str());
    {
        KOVObjDocument const document = KOVObjDocument::Create(path);
        KOVSimTransaction transaction(document.ContextID());
        Nodes(document).ExtendSpace(10);
        transaction.Commit();
        document.Close();
    }
    static constexpr int members[] = {2, 3, 7};
    Writer writer(path, [](KOVObjDocument const& document) {
        Nodes(document).ExtendSpace(20);
        document.GetModel().GetMap(schema::Model_steps()).Insert("s", document.GetMesh());
        Nodes(document).CreateCSet(members, 3, false);
        document.GetMesh().DataRecord().SetInt(5, 6);
    });
    KOVObjDocument const reader = KOVObjDocument::Open(path, KOVObjDocument::ReadOnly);
    KOVSimMap const steps = reader.GetModel().GetMap(schema::Model_steps());
    KOVSimPosition const mesh = reader.GetMesh();
    KOVSimCSet const sought = Nodes(reader).CreateVolatileCSet(members, 3, false);
    auto const expectOld = [&] {
        EXPECT_EQ(10, Nodes(reader).Space());
        EXPECT_EQ(0, steps.Size());
        EXPECT_TRUE(mesh.ReferrersSet(schema::Model_steps()).Empty());
        EXPECT_TRUE(Nodes(reader).SeekCSet(sought, false).IsNull());
    };
    expectOld();
    EXPECT_FALSE(reader.Refresh());

    writer.Go();
    expectOld();

    EXPECT_TRUE(reader.Refresh());
    EXPECT_EQ(20, Nodes(reader).Space());
    EXPECT_EQ(1, steps.Size());
    EXPECT_EQ("s", mesh.GetReferenceKey(schema::Model_steps()));
    EXPECT_EQ(3, KOVSimCSet(Nodes(reader).SeekCSet(sought, false)).Size());
    int value = 0;
    mesh.DataRecord().GetInt(5, value);
    EXPECT_EQ(6, value);
    EXPECT_FALSE(reader.Refresh());
}

TEST(Refresh, AChildOfAForkMayNotUseItsParentsDocument) {
    KOVObjDocument const document = KOVObjDocument::CreateInMemory();
    KOVSimPosition const focus = document.Focus();
    pid_t const child = fork();
    ASSERT_NE(-1, child);
    if (child == 0) {
        bool const refused =
            !kov::test::RefusalOf([&] { focus.GetPosition(schema::Focus_model()); }).empty();
        _exit(refused && document.IsClosed() ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, WEXITSTATUS(status));
    EXPECT_FALSE(focus.GetPosition(schema::Focus_model()).IsNull());
}

}  // namespace
