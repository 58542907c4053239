// A command that is asked about a small model with results: three nodes and two bars in each of two
// instances, or a deck of the test's own.
#pragma once

#include <functional>
#include <string>

#include "CommandFixture.h"
#include "KOVSimTransaction.h"
#include "ResultBuilder.h"

namespace kov::test {

class ResultCommandTest : public CommandTest {
  protected:
    using CommandTest::CommandTest;

    inline static std::string const kBars =
        "*NODE\n10, 0, 0, 0\n20, 1, 0, 0\n30, 2, 0, 0\n"
        "*ELEMENT, TYPE=T3D2\n7, 10, 20\n8, 20, 30\n";
    inline static std::string const kTwice =
        "*PART, NAME=P\n" + kBars +
        "*END PART\n*ASSEMBLY\n*INSTANCE, NAME=Left, PART=P\n*END INSTANCE\n"
        "*INSTANCE, NAME=Right, PART=P\n*END INSTANCE\n*END ASSEMBLY\n";

    /// Makes m.ksd of the deck, with the results that `build` adds.
    void Build(std::string const& deck, std::function<void(ResultBuilder&)> const& build) const {
        std::filesystem::remove_all(work / "m.ksd");
        WriteFile(work / "d.inp", deck);
        Workshop::Result const made = work.Run({"translate", "d.inp", "-o", "m.ksd"});
        ASSERT_EQ(made.status, 0) << made.errors;
        KOVObjDocument const document =
            KOVObjDocument::Open((work / "m.ksd").c_str(), KOVObjDocument::ReadWrite);
        {
            KOVSimTransaction transaction(document.ContextID());
            ResultBuilder builder(document);
            build(builder);
            transaction.Commit();
        }
        document.Close();
    }
};

}  // namespace kov::test
