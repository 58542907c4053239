// What the tests of names, symbols and mappers share: failed assertions in documents that lie in
// memory or on disk.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "KOVSimCollection.h"
#include "support/DocumentFixture.h"

namespace kov::test {

inline std::vector<int> MembersOf(KOVSimCSet const& set) {
    std::vector<int> members(static_cast<std::size_t>(set.Size()));
    set.OrderedMembers(members.data());
    return members;
}

class NamesTest : public DocumentTest {
  protected:
    using DocumentWork = std::function<void(KOVObjDocument const&)>;

    /// `act`, on a document that `build` filled, ends the process with status 1 after a report of
    /// the condition and of the source below KOVSrvSimServices/, and, before it ends, of what
    /// matches `also`. Closes this test's document.
    void ExpectAssertion(std::string const& condition, std::string const& source,
                         DocumentWork const& build, DocumentWork const& act,
                         testing::Matcher<std::string const&> const& also = testing::_) {
        if (OnDisk()) Write([&] { build(Document()); });
        Document().Close();
        // A document is of no use behind a fork: the child makes or opens one of its own.
        auto const work = [&] {
            if (OnDisk()) {
                act(KOVObjDocument::Open(Path().c_str(), KOVObjDocument::ReadWrite));
                return;
            }
            KOVObjDocument const document = KOVObjDocument::CreateInMemory();
            {
                KOVSimTransaction transaction(document.ContextID());
                build(document);
                transaction.Commit();
            }
            act(document);
        };
        EXPECT_EXIT(
            work(), testing::ExitedWithCode(1),
            testing::AllOf(testing::HasSubstr("Assertion failed: " + condition + ", at "),
                           testing::HasSubstr("KOVSrvSimServices/" + source + ", line "), also));
    }
};

}  // namespace kov::test
