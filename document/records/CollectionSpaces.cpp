#include "document/records/CollectionSpaces.h"

#include <climits>
#include <string>

#include "KOVSimException.h"
#include "document/store/Catalogue.h"

namespace kov::records {

int CollectionSpaces::Space(KOVSimIDMinor collection) {
    auto const known = m_spaces.find(collection);
    if (known != m_spaces.end()) return known->second;
    store::Statement select(m_context.Cat(), "SELECT space FROM collections WHERE number=?");
    select.Bind(collection);
    if (!select.Step()) {
        KOVSimException::ThrowText(
            ("there is no collection " + std::to_string(collection)).c_str());
    }
    std::int64_t const space = select.Int(0);
    if (space < 0 || space > INT_MAX) {
        KOVSimException::ThrowText(("collection " + std::to_string(collection) +
                                    " is damaged: it has " + std::to_string(space) + " members")
                                       .c_str());
    }
    return m_spaces[collection] = static_cast<int>(space);
}

void CollectionSpaces::Create(KOVSimIDMinor collection, int space) {
    store::Statement insert(m_context.Cat(), "INSERT INTO collections(number,space) VALUES(?,?)");
    insert.Bind(collection).Bind(space).Run();
    m_spaces[collection] = space;
}

void CollectionSpaces::Extend(KOVSimIDMinor collection, int space) {
    store::Statement update(m_context.Cat(), "UPDATE collections SET space=? WHERE number=?");
    update.Bind(space).Bind(collection).Run();
    m_spaces[collection] = space;
}

}  // namespace kov::records
