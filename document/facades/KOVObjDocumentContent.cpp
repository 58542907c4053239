// KOVObjDocument: what stands where in a document.
#include <string>

#include "KOVObjDocument.h"
#include "KOVSimContext.h"
#include "KOVSimException.h"
#include "KOVSimGrid.h"
#include "KOVSimRangeType.h"
#include "KOVSimSchema.h"
#include "document/records/Identity.h"
#include "document/records/Members.h"
#include "document/store/Context.h"

using namespace kov;

namespace {

/// The record of the shared collections; a document that has none gets one.
KOVSimPosition SharedToWrite(KOVSimPosition const& focus) {
    KOVSimPosition shared = focus.GetPosition(::schema::Focus_sharedCollections());
    if (shared.IsNull()) {
        shared = focus.CreateDataRecord(::schema::SharedCollections()).Pos();
        focus.SetPosition(::schema::Focus_sharedCollections(), shared);
    }
    return shared;
}

}  // namespace

KOVSimPosition KOVObjDocument::Focus() const {
    if (!m_database.Share()) return {};
    // Any identity of the document leads to its focus; that of a closed document says so.
    KOVSimDynamicID any;
    any.category = KOVSimCategoryRecord;
    any.context = m_database.Share()->ID();
    return KOVSimPosition(any).Focus();
}

KOVSimPosition KOVObjDocument::GetModel() const {
    return Focus().GetPosition(::schema::Focus_model());
}
void KOVObjDocument::SetModel(KOVSimPosition const& position) const {
    Focus().SetPosition(::schema::Focus_model(), position);
}

KOVSimPosition KOVObjDocument::GetMesh() const {
    return GetModel().GetPosition(::schema::Model_mesh());
}
void KOVObjDocument::SetMesh(KOVSimPosition const& position) const {
    GetModel().SetPosition(::schema::Model_mesh(), position);
}

KOVSimPosition KOVObjDocument::GetResults() const {
    return Focus().GetPosition(::schema::Focus_results());
}
void KOVObjDocument::SetResults(KOVSimPosition const& position) const {
    Focus().SetPosition(::schema::Focus_results(), position);
}

KOVSimPosition KOVObjDocument::GetComponentCollection() const {
    return Focus().GetPosition(::schema::Focus_components());
}
void KOVObjDocument::SetComponentCollection(KOVSimPosition const& position) const {
    Focus().SetPosition(::schema::Focus_components(), position);
}

KOVSimPosition KOVObjDocument::GetDofTypeCollection() const {
    return Focus().GetPosition(::schema::Focus_dofTypes());
}
void KOVObjDocument::SetDofTypeCollection(KOVSimPosition const& position) const {
    Focus().SetPosition(::schema::Focus_dofTypes(), position);
}

KOVSimPosition KOVObjDocument::GetShapeCollection() const {
    return Focus().GetPosition(::schema::Focus_shapes());
}
void KOVObjDocument::SetShapeCollection(KOVSimPosition const& position) const {
    Focus().SetPosition(::schema::Focus_shapes(), position);
}

KOVSimPosition KOVObjDocument::GetElementSpecCollection() const {
    return Focus()
        .GetPosition(::schema::Focus_sharedCollections())
        .GetPosition(::schema::FocusShared_elementSpecs());
}
void KOVObjDocument::SetElementSpecCollection(KOVSimPosition const& position) const {
    SharedToWrite(Focus()).SetPosition(::schema::FocusShared_elementSpecs(), position);
}

KOVSimPosition KOVObjDocument::GetMaterialCollection() const {
    return Focus().GetPosition(::schema::Focus_materials());
}
void KOVObjDocument::SetMaterialCollection(KOVSimPosition const& position) const {
    Focus().SetPosition(::schema::Focus_materials(), position);
}

KOVSimPosition KOVObjDocument::GetPointCollection() const {
    return Focus().GetPosition(::schema::Focus_points());
}
void KOVObjDocument::SetPointCollection(KOVSimPosition const& position) const {
    Focus().SetPosition(::schema::Focus_points(), position);
}

KOVSimDataRecord KOVObjDocument::CreateDataRecord(int type) const {
    return Focus().CreateDataRecord(type);
}

KOVSimDistributionID KOVObjDocument::CreateDistribution(KOVSimGrid const& grid,
                                                        KOVSimRangeType const& range,
                                                        KOVSimTypeID type) const {
    return KOVSimContext(ContextID()).CreateDistribution(grid, range, type);
}

KOVSimDynamicID KOVObjDocument::GetRecord(KOVSimCollectionID const& collection, int index) const {
    return KOVSimContext(ContextID()).GetRecord(collection, index);
}

int KOVObjDocument::GetCMemberIndex(KOVSimPosition const& record) const {
    return KOVSimContext(ContextID()).GetCMemberIndex(record.ID());
}

KOVSimDynamicID KOVObjDocument::GetSymbol(int type, KOVString const& name,
                                          KOVSimCollectionID const& collection) const {
    records::Asked const asked{"get a symbol"};
    store::Context* const context = records::ToRead(collection);
    if (!context) records::Refuse(asked, "the collection is null");
    KOVSimDynamicID const symbol =
        records::FindSymbol(*context, collection, type,
                            {name.TextOrEmpty(), static_cast<std::size_t>(name.GetLengthInByte())});
    if (symbol.IsNull()) {
        std::string const ofType = type < 0 ? "" : " of type " + records::NameOfIndex(type);
        records::Refuse(asked, collection,
                        std::string("it has no symbol \"") + name.TextOrEmpty() + "\"" + ofType);
    }
    return symbol;
}
