// The mesh services against plain maps: random blocks in random order, overwrites, several drawers,
// commits, dropped transactions and reopening. The seed is printed with a failure; KOV_SEED sets
// it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "KOVSrvElementConnectivity.h"
#include "KOVSrvInverseConnectivity.h"
#include "KOVSrvNodalCoordinates.h"
#include "services/MeshFixture.h"

namespace kov::test {
namespace {

unsigned Seed() {
    char const* const text = std::getenv("KOV_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device()();
}

class AgainstModel : public testing::TestWithParam<Medium> {
  protected:
    AgainstModel() : trace(__FILE__, __LINE__, "KOV_SEED=" + std::to_string(seed)) {}

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    // Different members below `space`, in random order; often neighbours.
    std::vector<int> Pick(int space, int most) {
        int const count = 1 + Below(std::min(most, space));
        std::vector<int> members;
        if (Below(2)) {
            members = Range(Below(space - count + 1), count);
        } else {
            std::vector<int> all = Range(0, space);
            std::sample(all.begin(), all.end(), std::back_inserter(members), count, random);
        }
        if (Below(2)) std::shuffle(members.begin(), members.end(), random);
        return members;
    }
    KOVSimCSetID Set(KOVSimCollection const& collection, std::vector<int> const& members) {
        return std::is_sorted(members.begin(), members.end())
                   ? MeshDocument::Set(collection, members)
                   : MeshDocument::Ordered(collection, members);
    }

    unsigned const seed = Seed();
    testing::ScopedTrace const trace;
    std::mt19937 random{seed};
};
INSTANTIATE_TEST_SUITE_P(Media, AgainstModel, testing::Values(Medium::Memory, Medium::Disk),
                         MediumName);

TEST_P(AgainstModel, CoordinatesReadAsLastWritten) {
    constexpr int kNodes = 400;
    using Model = std::map<int, std::array<double, 3>>;
    MeshDocument mesh(GetParam(), kNodes, 10);
    Model model;
    std::array<int, 3> const axes = {0, 12, 20};
    for (int step = 0; step < 60; ++step) {
        std::vector<int> const nodes = Pick(kNodes, 60);
        std::vector<double> data;
        Model next = model;
        for (int node : nodes) {
            for (int c = 0; c < 3; ++c) {
                data.push_back(std::uniform_real_distribution<double>(-1, 1)(random));
                next[node][static_cast<std::size_t>(c)] = data.back();
            }
        }
        auto transaction = mesh.Write();
        KOVSrvNodalCoordinates service(mesh.Coordinates(), 32);
        service.Append(*transaction, Set(mesh.nodes, nodes), mesh.Components({0, 12, 20}),
                       data.data());
        if (Below(6) != 0) {
            transaction->Commit();
            model = std::move(next);
        }
        transaction.reset();
        if (Below(5) == 0) mesh.Reopen();
        if (model.empty()) continue;

        KOVSrvNodalCoordinates const reader(mesh.Coordinates(), 0);
        std::vector<int> present;
        for (auto const& entry : model) present.push_back(entry.first);
        ASSERT_EQ(Members(reader.Nodes()), present) << "step " << step;
        std::vector<int> const asked = Pick(kNodes, 100);
        std::vector<int> columns = Pick(3, 3);
        std::vector<int> components;
        for (int c : columns) components.push_back(axes[static_cast<std::size_t>(c)]);
        std::vector<double> out(asked.size() * columns.size(), -9);
        reader.Read(Set(mesh.nodes, asked), Set(mesh.components, components), out.data());
        auto at = out.begin();
        for (int node : asked) {
            auto const row = model.find(node);
            for (int c : columns) {
                double const expected =
                    row == model.end() ? 0 : row->second[static_cast<std::size_t>(c)];
                ASSERT_EQ(*at++, expected) << "step " << step << ", node " << node;
            }
        }
    }
}

// Connectivity by drawer, as it was appended: what both services must give.
class Relation {
  public:
    void Append(int key, std::vector<int> const& elements, std::vector<int> const& data) {
        auto const place = std::find(m_keys.begin(), m_keys.end(), key);
        auto const drawer = static_cast<std::size_t>(place - m_keys.begin());
        if (place == m_keys.end()) {
            m_keys.push_back(key);
            m_drawers.emplace_back();
        }
        std::size_t const np = data.size() / elements.size();
        for (std::size_t e = 0; e < elements.size(); ++e) {
            auto const row = data.begin() + static_cast<std::ptrdiff_t>(e * np);
            m_drawers[drawer][elements[e]].assign(row, row + static_cast<std::ptrdiff_t>(np));
        }
    }
    // The row of an element, and how many of its entries a drawer holds: the last drawer wins.
    int Entry(int element, int position, int otherwise) const {
        for (auto drawer = m_drawers.rbegin(); drawer != m_drawers.rend(); ++drawer) {
            auto const row = drawer->find(element);
            if (row != drawer->end() && position < static_cast<int>(row->second.size())) {
                return row->second[static_cast<std::size_t>(position)];
            }
        }
        return otherwise;
    }
    using Entries = std::vector<std::pair<int, int>>;
    using Inverse = std::map<int, Entries>;
    // By drawer, element and position. As the store serves it: of overlapping drawers the last.
    Inverse Invert(std::vector<int> const& chosen) const {
        Inverse inverse;
        for (auto const& drawer : m_drawers) {
            for (auto const& [element, row] : drawer) {
                if (!std::binary_search(chosen.begin(), chosen.end(), element)) continue;
                for (int k = 0; k < static_cast<int>(row.size()); ++k) {
                    inverse[Entry(element, k, -1)].emplace_back(element, k);
                }
            }
        }
        return inverse;
    }

  private:
    std::vector<int> m_keys;
    std::vector<std::map<int, std::vector<int>>> m_drawers;
};

void ExpectInverse(KOVSrvInverseConnectivity const& inverse, Relation::Inverse const& expected) {
    using Entries = Relation::Entries;
    std::size_t total = 0;
    for (int node = 0; node < inverse.NumberNodes(); ++node) {
        Entries entries;
        for (int at = inverse.Offsets()[node]; at < inverse.Offsets()[node + 1]; ++at) {
            entries.emplace_back(inverse.Element(at), inverse.Position(at));
        }
        auto const at = expected.find(node);
        Entries const wanted = at == expected.end() ? Entries() : at->second;
        ASSERT_EQ(entries, wanted) << "node " << node;
        total += entries.size();
    }
    ASSERT_EQ(static_cast<std::size_t>(inverse.Total()), total);
}

TEST_P(AgainstModel, ConnectivityAndItsInverseFollowTheAppends) {
    constexpr int kNodes = 200, kElements = 300, kKeys = 4;
    MeshDocument mesh(GetParam(), kNodes, kElements);
    KOVSrvElementConnectivity service(mesh.Connectivity(), 16);
    Relation relation;
    for (int step = 0; step < 30; ++step) {
        int const key = Below(kKeys), np = 2 + 2 * key;
        std::vector<int> const elements = Pick(kElements, 50);
        std::vector<int> data;
        for (std::size_t i = 0; i < elements.size() * static_cast<std::size_t>(np); ++i) {
            data.push_back(Below(kNodes));
        }
        auto const transaction = mesh.Write();
        int const bytes =
            service.Append(*transaction, mesh.document.GetRecord(mesh.elements.ID(), key),
                           Set(mesh.elements, elements), mesh.Positions(np), data.data());
        ASSERT_EQ(static_cast<std::size_t>(bytes), data.size() * sizeof(int));
        transaction->Commit();
        relation.Append(key, elements, data);

        std::vector<int> const asked = Pick(kElements, 80);
        int const width = 1 + Below(9);
        std::vector<int> out(asked.size() * static_cast<std::size_t>(width), -5);
        service.Read(Set(mesh.elements, asked), mesh.Positions(width), out.data());
        for (std::size_t i = 0; i < out.size(); ++i) {
            int const element = asked[i / static_cast<std::size_t>(width)];
            int const position = static_cast<int>(i % static_cast<std::size_t>(width));
            ASSERT_EQ(out[i], relation.Entry(element, position, -5))
                << "step " << step << ", element " << element << ", position " << position;
        }
    }
    mesh.Reopen(KOVObjDocument::ReadOnly);
    KOVSrvInverseConnectivity inverse(mesh.document.GetMesh());
    inverse.Invert();
    ASSERT_NO_FATAL_FAILURE(ExpectInverse(inverse, relation.Invert(Range(0, kElements))));
    for (int round = 0; round < 10; ++round) {
        std::vector<int> chosen = Pick(kElements, kElements);
        std::sort(chosen.begin(), chosen.end());
        inverse.Invert(mesh.Elements(chosen));
        ASSERT_NO_FATAL_FAILURE(ExpectInverse(inverse, relation.Invert(chosen)));
    }
}

// Large enough, and numbered so, that both ways of going over a block are taken.
TEST_P(AgainstModel, LargeMeshesInvertAlikeInOrderAndScattered) {
    constexpr int kNodes = 60'000, kElements = 5'000;
    for (bool scattered : {false, true}) {
        for (int np : {1, 3, 8}) {
            for (bool contiguous : {false, true}) {
                MeshDocument mesh(GetParam(), kNodes, 2 * kElements + 10);
                std::vector<int> elements = Range(5, kElements);
                if (!contiguous) {
                    for (int& element : elements) element = 2 * element;
                }
                std::vector<int> data;
                for (int e = 0; e < kElements; ++e) {
                    for (int k = 0; k < np; ++k) {
                        data.push_back(scattered ? Below(kNodes) : 2 * e + k);
                    }
                }
                auto const transaction = mesh.Write();
                KOVSrvElementConnectivity(mesh.Connectivity(), 1000)
                    .Append(*transaction, mesh.document.GetMesh().ID(), mesh.Elements(elements),
                            mesh.Positions(np), data.data());
                transaction->Commit();
                Relation relation;
                relation.Append(0, elements, data);
                KOVSrvInverseConnectivity inverse(mesh.document.GetMesh());
                inverse.Invert();
                ASSERT_NO_FATAL_FAILURE(ExpectInverse(inverse, relation.Invert(elements)));
            }
        }
    }
}

}  // namespace
}  // namespace kov::test
