// Scoped names resolved among many: each form of key on its own, beside the same look-ups in the
// map without anything around them.
//
//   --names 100000
#include <functional>
#include <random>

#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSrvGetCSetIDFromScopedName.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"

namespace {

constexpr char const* kModel = "Model-1";

// A form of name: how number i is written by the user, and the keys that are tried for it. The last
// of them is the one that is stored, unless nothing is.
struct Form {
    char const* name;
    std::function<std::string(std::string const&)> written;
    std::function<std::vector<std::string>(std::string const&)> tried;
    char const* instance = "";
    bool stored = true;
};

std::vector<Form> Forms() {
    using Text = std::string const&;
    using Keys = std::vector<std::string>;
    return {
        {"plain", [](Text i) { return "Part-1_Set-" + i; },
         [](Text i) { return Keys{"Part-1_Set-" + i}; }},
        {"instance", [](Text i) { return "Set-" + i; },
         [](Text i) { return Keys{"Model-1_Part-1-1_Set-" + i}; }, "Part-1-1"},
        {"joined", [](Text i) { return "Part-2.Set-" + i; },
         [](Text i) {
             return Keys{"Part-2.Set-" + i, "Part-2_Set-" + i};
         }},
        {"model", [](Text i) { return "Set-" + i; },
         [](Text i) {
             return Keys{"Set-" + i, "Model-1_Set-" + i};
         }},
        {"bare", [](Text i) { return "Model-1.Bare-" + i; },
         [](Text i) {
             return Keys{"Model-1.Bare-" + i, "Model-1_Bare-" + i, "Model-1_Model-1_Bare-" + i,
                         "Bare-" + i};
         }},
        {"elset", [](Text i) { return "Model-1.Top-" + i; },
         [](Text i) {
             return Keys{"Model-1.Top-" + i, "Model-1_Top-" + i, "Model-1_Model-1_Top-" + i,
                         "Top-" + i, "INP2SIM_ELSET_Top-" + i};
         }},
        {"nset", [](Text i) { return "Model-1.Low-" + i; },
         [](Text i) {
             return Keys{"Model-1.Low-" + i, "Model-1_Low-" + i,       "Model-1_Model-1_Low-" + i,
                         "Low-" + i,         "INP2SIM_ELSET_Low-" + i, "INP2SIM_NSET_Low-" + i};
         }},
        {"quoted", [](Text i) { return "Part-3.\"Set " + i + "\""; },
         [](Text i) {
             return Keys{"Part-3.\"Set " + i + "\"", "Part-3_\"Set " + i + "\"",
                         "Model-1_Part-3_\"Set " + i + "\"", "Part-3_Set " + i};
         }},
        {"absent", [](Text i) { return "Part-4.None-" + i; },
         [](Text i) {
             return Keys{"Part-4.None-" + i, "Part-4_None-" + i, "Model-1_Part-4_None-" + i};
         },
         "", false},
    };
}

KOVSimMap Regions(KOVObjDocument const& document) {
    return document.GetModel().GetMap(schema::Model_regions());
}

// The stored forms in turn, `count` names together.
void Write(std::string const& path, std::vector<Form> const& forms, int count) {
    KOVObjDocument const document = KOVObjDocument::Create(path.c_str());
    bench::Mesh mesh(document);
    KOVSimTransaction transaction(document.ContextID());
    mesh.Extend(1, 1);
    int const member = 0;
    KOVSimCSetID const set = mesh.nodes.CreateCSet(&member, 1, false);
    document.GetModel().GetDataRecord().SetString(0, kModel);
    KOVSimMap const regions = Regions(document);
    for (int named = 0, i = 0; named < count; ++i) {
        for (Form const& form : forms) {
            if (!form.stored || named == count) continue;
            regions.Insert(form.tried(std::to_string(i)).back().c_str(), set);
            ++named;
        }
    }
    transaction.Commit();
    document.Close();
}

// Names of one form, and the keys that are tried for each.
struct Sample {
    KOVObjDocument const& document;
    Form const& form;
    std::vector<KOVString> names;
    std::vector<std::vector<KOVString>> keys;

    // Numbers below `last` in random order, so that neighbours in the map do not help.
    Sample(KOVObjDocument const& document_, Form const& form_, int last, unsigned seed)
        : document(document_), form(form_) {
        std::mt19937 random(seed);
        for (int n = 0; n < 100; ++n) {
            int const number = std::uniform_int_distribution<int>(0, last - 1)(random);
            std::string const i = std::to_string(number);
            names.emplace_back(form.written(i).c_str());
            keys.emplace_back();
            for (std::string const& key : form.tried(i)) keys.back().emplace_back(key.c_str());
        }
    }
    // Seconds for each of the names.
    double Resolve() const {
        KOVSimPosition const focus = document.Focus();
        std::size_t found = 0;
        double const seconds = bench::Seconds([&] {
            for (KOVString const& name : names) {
                found +=
                    !KOVSrvGetSurfaceIDFromScopedName(focus, name, ".", form.instance).IsNull();
            }
        });
        return Checked(seconds, found);
    }
    double LookUp() const {
        KOVSimMap const regions = Regions(document);
        std::size_t found = 0;
        double const seconds = bench::Seconds([&] {
            for (auto const& tried : keys) {
                for (KOVString const& key : tried) found += !regions.Find(key).IsNull();
            }
        });
        return Checked(seconds, found);
    }
    double Checked(double seconds, std::size_t found) const {
        if (found != (form.stored ? names.size() : 0)) {
            throw std::runtime_error(std::string("scoped names: wrong answers for ") + form.name);
        }
        return seconds / static_cast<double>(names.size());
    }
};

// For a few names at a time the best of many turns, taken one after the other, so that all three
// have the same machine; a turn is too short to be interrupted often.
void Measure(KOVObjDocument const* documents, Form const& form, int const* last) {
    constexpr int kBlocks = 30;
    double ours = 0, ofFew = 0, alone = 0;
    for (unsigned block = 0; block < kBlocks; ++block) {
        Sample const few(documents[0], form, last[0], block);
        Sample const many(documents[1], form, last[1], block);
        double best[3] = {1e9, 1e9, 1e9};
        for (int turn = 0; turn < 30; ++turn) {
            best[0] = std::min(best[0], many.Resolve());
            best[1] = std::min(best[1], few.Resolve());
            best[2] = std::min(best[2], many.LookUp());
        }
        ours += best[0] / kBlocks;
        ofFew += best[1] / kBlocks;
        alone += best[2] / kBlocks;
    }
    std::string const row = std::string("names.") + form.name;
    bench::Report(row, "ours", ours);
    bench::Report(row, "ours, of 1,000", ofFew);
    bench::Report(row, "look-ups alone", alone);
}

}  // namespace

int main(int argc, char** argv) {
    bench::Options const options(argc, argv);
    std::vector<Form> const forms = Forms();
    int const counts[2] = {1'000, options.Int("names", 100'000)};
    std::string paths[2];
    KOVObjDocument documents[2];
    int last[2];
    try {
        for (int i = 0; i < 2; ++i) {
            paths[i] = bench::FreshPath(options, "names" + std::to_string(i) + ".ksd");
            Write(paths[i], forms, counts[i]);
            documents[i] = KOVObjDocument::Open(paths[i].c_str(), KOVObjDocument::ReadOnly);
            last[i] = counts[i] / static_cast<int>(forms.size() - 1);
        }
        for (Form const& form : forms) Measure(documents, form, last);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    for (int i = 0; i < 2; ++i) {
        documents[i].Close();
        std::filesystem::remove_all(paths[i]);
    }
    return 0;
}
