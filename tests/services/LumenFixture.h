// A certified document to change a little, and what the checker says then.
#pragma once

#include "KOVSrvLumenChecker.h"
#include "services/LumenDocument.h"

namespace kov::test {

inline std::vector<std::string> Texts(KOVSrvLumenChecker const& checker) {
    std::vector<std::string> texts;
    for (KOVString const& finding : checker.GetFindings()) {
        texts.emplace_back(finding.TextOrEmpty());
    }
    return texts;
}

inline std::vector<std::string> FindingsOf(KOVObjDocument const& document) {
    KOVSrvLumenChecker checker(document);
    checker.Check_Lumen();
    return Texts(checker);
}

class LumenEdges : public testing::TestWithParam<Medium> {
  protected:
    template <class Work>
    void Write(Work work) {
        auto const transaction = d.Write();
        work();
        transaction->Commit();
        d.Reopen();
    }
    LumenDocument d{GetParam()};
};
}  // namespace kov::test
