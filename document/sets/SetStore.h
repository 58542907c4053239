// SetStore: the registered sets of one open document, by number. A part of the context.
//
//   0            the empty set of every collection; always there
//   1, 2, ...    persistent: rows of the table `sets`, read when they are asked for; those read
//   last are kept, within a
//                bound of bytes. Rows of size -1 are sets that belong to a drawer and grow with it:
//                the room of the drawers answers their members as they are at present
//   -2, -3, ...  temporary: in memory until the context closes, whatever becomes of transactions
//
// Members of a registered set never change, those of a drawer's growing set apart.
#pragma once

#include <functional>
#include <string>
#include <unordered_map>

#include "KOVSimTypedIDs.h"
#include "document/sets/IndexSet.h"
#include "document/sets/SetCache.h"
#include "document/sets/TwinIndex.h"
#include "document/store/Context.h"

namespace kov::sets {

/// Gives the present members of a drawer's growing set.
using GrowingMembers = std::function<IndexSetPtr(int setNumber)>;

class SetStore : public store::ContextPart {
  public:
    explicit SetStore(store::Context& context);
    static SetStore& Of(store::Context& context) { return context.Part<SetStore>(); }

    /// The members of a set of any kind. Throws if there is no such set, if it belongs to another
    /// collection, if its bytes are damaged, and if it names members that its collection does not
    /// have.
    IndexSetPtr Members(KOVSimCSetID const& id);
    /// The members of a persistent set. Throws as `Members` does.
    IndexSetPtr Load(int number);

    /// A new persistent set; gives its number. In a transaction. Throws on members outside the
    /// collection.
    int Create(int collection, IndexSetPtr const& members);
    /// A new persistent set whose members are asked for through `SetGrowingMembers`.
    int CreateGrowing(int collection);
    /// A new temporary set.
    int CreateTemporary(int collection, IndexSetPtr const& members);
    /// The number of an ascending set of the collection with exactly these members: a persistent
    /// one, the oldest first, then a temporary one; -1 if there is none.
    int Seek(int collection, IndexSet const& members);
    /// Whether a set belongs to a drawer and grows with it.
    bool IsGrowing(int number);
    /// Throws if `members` reach beyond the collection's space. `what` is asked of it.
    void RequireWithin(int collection, IndexSet const& members, char const* what);

    void SetGrowingMembers(GrowingMembers members) { m_growingMembers = std::move(members); }

    void AfterRollback() override { Forget(); }
    void AfterRefresh() override { Forget(); }
    void Verify(std::function<void(std::string const&)> const& finding) override;

  private:
    struct Stored {
        int collection;
        IndexSetPtr members;
    };
    Stored LoadStored(int number);
    IndexSetPtr Growing(int number);
    void BuildTwins();
    void VerifySets(std::function<void(std::string const&)> const& finding);
    void VerifyCompartments(std::function<void(std::string const&)> const& finding);
    void Forget();

    store::Context& m_context;
    GrowingMembers m_growingMembers;
    SetCache m_cache;
    std::unordered_map<int, int> m_growing;  // those met: number -> collection
    std::unordered_map<int, Stored> m_temporary;
    TwinIndex m_twins;
    std::string m_encoded;  // room for the bytes of the set that is being written
};

}  // namespace kov::sets
