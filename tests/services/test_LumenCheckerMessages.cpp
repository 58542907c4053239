// One thing broken in a certified document, and exactly what is said of it.
#include <algorithm>
#include <regex>

#include "services/LumenBreakages.h"

namespace kov::test {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

class LumenCertified : public testing::TestWithParam<Medium> {};

TEST_P(LumenCertified, NothingIsFound) {
    LumenDocument document(GetParam());
    EXPECT_THAT(document.Findings(), IsEmpty());
    document.ReopenForReading();
    EXPECT_THAT(document.Findings(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Documents, LumenCertified, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

struct Case {
    Breakage const* breakage;
    Medium medium;
};

void PrintTo(Case const& one, std::ostream* out) { *out << one.breakage->name; }

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (Breakage const& breakage : Breakages()) {
        cases.push_back({&breakage, Medium::Memory});
        cases.push_back({&breakage, Medium::Disk});
    }
    return cases;
}

class LumenBreakage : public testing::TestWithParam<Case> {};

TEST_P(LumenBreakage, IsFound) {
    Breakage const& breakage = *GetParam().breakage;
    LumenDocument document(GetParam().medium);
    auto const transaction = document.Write();
    breakage.make(document);
    transaction->Commit();
    document.ReopenForReading();
    EXPECT_THAT(document.Findings(), ElementsAreArray(Expected(breakage, document)));
}

std::string CaseName(testing::TestParamInfo<Case> const& info) {
    std::string name = info.param.breakage->name;
    for (char& letter : name) {
        if (!isalnum(static_cast<unsigned char>(letter))) letter = '_';
    }
    return name + (info.param.medium == Medium::Memory ? "_InMemory" : "_OnDisk");
}

INSTANTIATE_TEST_SUITE_P(Each, LumenBreakage, testing::ValuesIn(Cases()), CaseName);

// The message with anything in its gaps.
std::regex PatternOf(std::string const& message) {
    std::string pattern;
    for (std::size_t i = 0; i < message.size(); ++i) {
        if (message.compare(i, 2, "{}") == 0) {
            pattern += ".*";
            ++i;
        } else if (isalnum(static_cast<unsigned char>(message[i])) || message[i] == ' ') {
            pattern += message[i];
        } else {
            pattern += std::string("\\") + message[i];
        }
    }
    return std::regex(pattern);
}

// All findings of the table, with some numbers for those of a document.
std::vector<std::string> AllFindings() {
    std::vector<std::string> all;
    for (Breakage const& breakage : Breakages()) {
        for (std::string finding : breakage.findings) {
            std::size_t const at = finding.find("{id ");
            if (at != std::string::npos) {
                finding.replace(at, finding.find('}', at) + 1 - at, "0/1");
            }
            all.push_back(finding);
        }
    }
    return all;
}

TEST(LumenMessages, EachHasABreakageThatGivesIt) {
    std::vector<std::string> const findings = AllFindings();
    for (std::string const& message : AllMessages()) {
        std::regex const pattern = PatternOf(message);
        EXPECT_TRUE(std::any_of(findings.begin(), findings.end(), [&](std::string const& finding) {
            return std::regex_match(finding, pattern);
        })) << message;
    }
}

TEST(LumenMessages, EachFindingIsOneOfThem) {
    std::vector<std::regex> patterns;
    for (std::string const& message : AllMessages()) patterns.push_back(PatternOf(message));
    for (std::string const& finding : AllFindings()) {
        EXPECT_TRUE(std::any_of(patterns.begin(), patterns.end(), [&](std::regex const& pattern) {
            return std::regex_match(finding, pattern);
        })) << finding;
    }
}

}  // namespace
}  // namespace kov::test
