// DrawerStore: the distributions and drawers of one open document, loaded when they are first asked
// for, and what writes to them have gathered. A part of the context: saved before its commit,
// forgotten at a rollback or refresh.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

#include "KOVSimTypedIDs.h"
#include "document/bulk/Drawer.h"
#include "document/store/Context.h"

namespace kov::bulk {

/// What a distribution is; fixed when it is made.
struct DistributionInfo {
    int number = 0;
    KOVSimTypeID type = -1;
    int key = 0;
    int range = 0;  // number of the collection of key 7, or 0
    int dimensions = 1;
    int collections[2] = {0, 0};
    int EntryBytes() const { return key == 4 ? 8 : 4; }
};

class DrawerStore : public store::ContextPart {
  public:
    explicit DrawerStore(store::Context& context);
    static DrawerStore& Of(store::Context& context) { return context.Part<DrawerStore>(); }

    /// Throws if there is none of that number.
    DistributionInfo const& Distribution(int number);
    int CreateDistribution(KOVSimTypeID type, int key, int range,
                           std::vector<int> const& collections);

    /// The drawers of a distribution, in order of creation.
    std::vector<int> const& DrawersOf(int distribution) { return DrawerList(distribution); }
    /// The state of a drawer; valid until the next rollback or refresh. Throws if there is none of
    /// that number.
    Drawer& Get(int number);
    /// A new drawer. `sets`: its members in each dimension, ascending. `chunks`: one for each
    /// dimension, or none. A drawer without a growing dimension (-1) is fixed.
    Drawer& Create(int distribution, std::vector<sets::IndexSetPtr> const& members,
                   std::vector<int> const& chunks, int growing);

    void BeforeCommit() override;
    void AfterRollback() override;
    void AfterRefresh() override;
    void Verify(std::function<void(std::string const&)> const& finding) override;

    /// To be called before `drawer` is changed: it takes part in the next commit, and stops it
    /// should the change fail half-way.
    void Writing(Drawer& drawer);
    /// To be called afterwards: keeps what is gathered over all drawers within bounds.
    void Written(Drawer& drawer);

    /// Another number after each rollback and refresh: what was found out before may not hold any
    /// more.
    int Generation() const { return m_generation; }

  private:
    std::unique_ptr<Drawer> Load(int number);
    std::vector<int>& DrawerList(int distribution);
    sets::IndexSetPtr GrowingMembers(int set);

    store::Context& m_context;
    std::unordered_map<int, DistributionInfo> m_distributions;
    std::unordered_map<int, std::vector<int>> m_drawersOf;
    std::map<int, std::unique_ptr<Drawer>>
        m_drawers;  // in order of number, so that a commit writes in order of creation
    std::unordered_map<int, int> m_growingSets;  // set number -> drawer
    struct Gathering {
        Drawer* drawer;
        std::size_t bytes;
    };
    std::map<int, Gathering> m_gathering;  // drawers with work for the commit
    std::size_t m_gatheredBytes = 0;
    int m_generation = 0;
    std::set<int> m_loading;  // drawers; a damaged catalogue may tie one to itself by its sets
};

}  // namespace kov::bulk
