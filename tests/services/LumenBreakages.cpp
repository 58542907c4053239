#include "services/LumenBreakageParts.h"

namespace kov::test {

std::vector<Breakage> const& Breakages() {
    static std::vector<Breakage> const all = [] {
        std::vector<Breakage> made;
        for (auto const part : {MeshBreakages, RegionBreakages, StepBreakages, HistoryBreakages,
                                FieldBreakages, OutputBreakages, SectionBreakages}) {
            std::vector<Breakage> const more = part();
            made.insert(made.end(), more.begin(), more.end());
        }
        return made;
    }();
    return all;
}

std::vector<std::string> Expected(Breakage const& breakage, LumenDocument const& document) {
    std::vector<std::string> findings = breakage.findings;
    for (std::string& finding : findings) {
        std::size_t const at = finding.find("{id ");
        if (at == std::string::npos) continue;
        std::size_t const end = finding.find('}', at);
        finding.replace(at, end + 1 - at, document.IDOf(finding.substr(at + 4, end - at - 4)));
    }
    return findings;
}

}  // namespace kov::test
