// Scoped names against a plain model: a std::map of keys, and the rules written out over
// std::string. Random models, keys and names from few pieces, so that every form is met. The seed
// is printed with a failure; KOV_SEED sets it.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>

#include "services/ScopedNamesFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

// The way on which an answer was come by; Retry is a bit beside the others.
enum Way { None, Instance, AsIs, Joined, WithModel, WithoutModel, ElementSet, NodeSet, Retry = 16 };

struct Answer {
    std::string key = kNothing;
    int way = None;
    bool Found() const { return way != None; }
};

class PlainModel {
  public:
    std::string name;
    bool regions = false;
    std::set<std::string> keys;

    Answer Resolve(std::string const& given, std::string const& separator,
                   std::string const& givenInstance, bool retry) const {
        if (given.empty()) return {};
        std::string n = Unquoted(given);
        std::string const instance = Unquoted(givenInstance);
        if (!instance.empty()) {
            std::string key = instance + "_" + n;
            if (!name.empty()) key = name + "_" + key;
            return Look(key, Instance);
        }
        Answer answer = Look(n, AsIs);
        if (answer.Found()) return answer;
        if (!separator.empty()) n = Replaced(n, separator);
        answer = Look(n, Joined);
        if (answer.Found() || name.empty()) return answer;
        answer = Look(name + "_" + n, WithModel);
        if (answer.Found()) return answer;
        if (n.compare(0, name.size() + 1, name + "_") == 0) {
            std::string const k = n.substr(name.size() + 1);
            answer = Look(k, WithoutModel);
            if (!answer.Found() && regions) answer = Look("INP2SIM_ELSET_" + k, ElementSet);
            if (!answer.Found() && regions) answer = Look("INP2SIM_NSET_" + k, NodeSet);
            if (answer.Found()) return answer;
        }
        if (!retry) return answer;
        std::string const rebuilt = Rebuilt(n);
        if (rebuilt == n) return answer;
        answer = Resolve(rebuilt, separator, givenInstance, false);
        if (answer.Found()) answer.way |= Retry;
        return answer;
    }

  private:
    Answer Look(std::string const& key, int way) const {
        return keys.count(key) != 0 ? Answer{key, way} : Answer{};
    }
    static std::string Unquoted(std::string const& text) {
        if (text.empty() || text[0] != '"') return text;
        std::string inside;
        for (std::size_t i = 1; i < text.size(); ++i) {
            if (text[i] == '"') return inside + std::string(text, i + 1);
            inside += text[i];
        }
        return text;
    }
    static std::string Replaced(std::string const& text, std::string const& sought) {
        std::string out;
        for (std::size_t i = 0; i < text.size();) {
            bool const here = text.compare(i, sought.size(), sought) == 0;
            out += here ? '_' : text[i];
            i += here ? sought.size() : 1;
        }
        return out;
    }
    static std::string Rebuilt(std::string const& text) {
        std::vector<std::string> pieces(1);
        for (char c : text) {
            if (c == '_') {
                pieces.emplace_back();
            } else {
                pieces.back() += c;
            }
        }
        std::string out = Unquoted(pieces[0]);
        for (std::size_t i = 1; i < pieces.size(); ++i) out += "_" + Unquoted(pieces[i]);
        return out;
    }
};

class ScopedNamesAgainstModel : public ScopedNamesTest {
  protected:
    ScopedNamesAgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    std::string Pick(std::vector<std::string> const& words) {
        return words[static_cast<std::size_t>(Below(static_cast<int>(words.size())))];
    }
    std::string Pieces(int most) {
        static std::vector<std::string> const pieces = {"a",  "b", "M", "I",  "_",  ".",
                                                        "\"", " ", "_", "::", "\"", "\xc3\xa9"};
        std::string text;
        for (int count = Below(most + 1); count > 0; --count) text += Pick(pieces);
        return text;
    }
    std::string ModelKey(PlainModel const& model) {
        switch (Below(8)) {
            case 0:
            case 1:
                return model.name + "_" + Pieces(2);
            case 2:
                return model.name + "_I_" + Pieces(2);
            case 3:
                return "I_" + Pieces(2);
            case 4:
                return "INP2SIM_ELSET_" + Pieces(2);
            case 5:
                return "INP2SIM_NSET_" + Pieces(2);
            default:
                return Pieces(4);
        }
    }
    std::string Name(PlainModel const& model) {
        switch (Below(5)) {
            case 0:
                return model.name + "_" + Pieces(4);
            case 1:
                return model.name + "_" + Pieces(1);
            case 2:
                return Pieces(2) + "_\"" + Pieces(2) + "\"" + Pieces(1);
            default:
                return Pieces(7);
        }
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
};
KOV_DOCUMENT_TESTS(ScopedNamesAgainstModel);

TEST_P(ScopedNamesAgainstModel, EveryAnswerIsThatOfTheModel) {
    std::vector<std::string> const separators = {"", ".", ".", "::", "_", "\"", "a", "\xc3\xa9"};
    std::vector<std::string> const instances = {"", "", "", "", "I", "\"I\"", "\"\"", "\"I"};
    std::map<int, int> ways;
    for (int round = 0; round < 40; ++round) {
        PlainModel model;
        // Half of the rounds ask for surfaces, all of these of a model with a name.
        model.regions = round % 2 != 0;
        model.name =
            model.regions ? Pick({"M", "M", "a_b", "M.a", "\"M\""}) : Pick({"", "M", "M", "a_b"});
        int const map = model.regions ? schema::Model_regions() : schema::Model_nodeSets();
        for (int i = 0; i < 150; ++i) model.keys.insert(ModelKey(model));
        Write([&] {
            SetModelName(Document(), model.name);
            KOVSimMap const stored = Document().GetModel().GetMap(map);
            for (auto at = stored.Begin(); at.NotDone(); ++at) stored.Remove(at.Key());
            Put(Document(), map, {model.keys.begin(), model.keys.end()});
        });
        Reopen(round % 2 ? KOVObjDocument::ReadOnly : KOVObjDocument::ReadWrite);
        for (int i = 0; i < 2500; ++i) {
            std::string const name = Name(model);
            std::string const separator = Pick(separators);
            std::string const instance = Pick(instances);
            bool const retry = Below(4) != 0;
            Answer const expected = model.Resolve(name, separator, instance, retry);
            ASSERT_EQ(FindIn(map, name, separator.c_str(), instance.c_str(), retry), expected.key)
                << "model '" << model.name << "', name '" << name << "', separator '" << separator
                << "', instance '" << instance << "', " << (retry ? "retry" : "no retry")
                << ", round " << round;
            ++ways[expected.way];
        }
        Reopen();
    }
    for (int way : {+None, +Instance, +AsIs, +Joined, +WithModel, +WithoutModel, +ElementSet,
                    +NodeSet, AsIs | Retry, WithModel | Retry, WithoutModel | Retry}) {
        EXPECT_GT(ways[way], 0) << "way " << way << " was never met";
    }
}

}  // namespace
}  // namespace kov::test
