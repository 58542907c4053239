#include "document/facades/Skeleton.h"

#include <cstddef>

#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVSimContext.h"
#include "KOVSimDataRecord.h"
#include "KOVSimGrid.h"
#include "KOVSimMap.h"
#include "KOVSimRangeType.h"
#include "KOVSimSchema.h"
#include "document/records/Identity.h"
#include "document/schema/Symbols.h"
#include "document/store/Context.h"
#include "zdm_AlgebraicTypes.h"

namespace kov::facades {

namespace {

namespace names = ::schema;

constexpr int ConnectivityPositions = 128;
constexpr int FieldColumns = 64;
constexpr int Points = 128;

template <class Entry>
KOVSimPosition SymbolCollection(KOVSimPosition const& focus, int type, int memberType,
                                std::span<Entry const> symbols) {
    KOVSimPosition const collection = focus.CreateTypedCollection(0, type);
    int number = 0;
    for (Entry const& symbol : symbols) collection.AddSymbol(symbol.name, number++, memberType);
    return collection;
}

KOVSimGrid Grid(KOVSimPosition const& first, KOVSimPosition const& second) {
    KOVSimGrid::CollectionArray collections(2);
    collections.Get(0) = first.GetCollection();
    collections.Get(1) = second.GetCollection();
    return KOVSimGrid(collections);
}

void MakeMesh(KOVSimPosition const& focus, KOVObjMesh const& mesh,
              KOVSimPosition const& components) {
    KOVSimPosition const nodes = focus.CreateTypedCollection(0, names::MeshNodeCollection());
    KOVSimPosition const elements = focus.CreateTypedCollection(0, names::MeshElementCollection());
    mesh.SetNodeCollection(nodes);
    mesh.SetElementCollection(elements);
    mesh.SetCoordinates(focus.CreateTypedDistribution(
        Grid(nodes, components), names::MeshCoordinates(), KOVSimRangeType(KOVSimTypeKeyDouble)));

    KOVSimPosition const places =
        focus.CreateTypedCollection(ConnectivityPositions, names::ConnectivityPositionCollection());
    focus.SetPosition(names::Focus_connectivityPositions(), places);
    KOVSimDistributionID const relation =
        focus.CreateTypedDistribution(Grid(elements, places), names::MeshConnectivityDistribution(),
                                      KOVSimRangeType(KOVSimTypeKeyMember, nodes.GetCollection()));
    mesh.SetConnectivity(
        focus.Context().CreateDSet(relation, records::TypeNumber(names::MeshConnectivity())));
}

void MakeSharedCollections(KOVSimPosition const& focus) {
    KOVSimPosition const shared = focus.CreateDataRecord(names::SharedCollections()).Pos();
    focus.SetPosition(names::Focus_sharedCollections(), shared);
    shared.SetPosition(names::FocusShared_elementSpecs(),
                       focus.CreateTypedCollection(0, names::ElementSpecCollection()));
    shared.SetPosition(names::SharedCollections_sectionLayers(),
                       focus.CreateTypedCollection(0, names::SectionLayerCollection()));
    shared.SetPosition(names::SharedCollections_fieldColumns(),
                       focus.CreateTypedCollection(FieldColumns, names::FieldColumnCollection()));
}

void MakeFieldTypes(KOVSimPosition const& focus) {
    KOVSimPosition const catalogue = focus.CreateDataRecord(names::FieldTypeLib()).Pos();
    focus.SetPosition(names::Focus_fieldTypes(), catalogue);
    for (char const* const name : {"ANGLE", "STH"}) {
        KOVSimDataRecord const type = focus.CreateDataRecord(names::FieldTypePrimary());
        type.SetSymb(0, zdm_Algebraic_SCALAR);
        catalogue.GetMap(names::zdm_FieldTypeLib_fieldTypes()).Insert(name, type.Pos());
    }
}

}  // namespace

void MakeFocus(store::Context& context) {
    context.SetFocus(
        records::NewObject(context, KOVSimCategoryRecord, names::FocusRecord()).data.minor);
}

void MakeSkeleton(store::Context& context) {
    MakeFocus(context);
    KOVSimDynamicDataID data;
    data.parent = 0;
    data.minor = context.Focus();
    KOVSimPosition const focus(
        KOVSimDynamicID(KOVSimCategoryRecord, context.ID(), data, names::FocusRecord(), 0));

    KOVSimDataRecord const model = focus.CreateDataRecord(names::Model());
    model.SetString(0, KOVString());
    focus.SetPosition(names::Focus_model(), model.Pos());
    KOVSimPosition const mesh = focus.CreateDataRecord(names::Mesh()).Pos();
    model.Pos().SetPosition(names::Model_mesh(), mesh);

    KOVSimPosition const components = SymbolCollection(
        focus, names::ComponentCollection(), names::ComponentSymbol(), schema::ComponentSymbols());
    focus.SetPosition(names::Focus_components(), components);
    focus.SetPosition(names::Focus_dofTypes(),
                      SymbolCollection(focus, names::DofTypeCollection(), names::DofSymbol(),
                                       schema::DofSymbols()));
    focus.SetPosition(names::Focus_shapes(),
                      SymbolCollection(focus, names::ShapeCollection(), names::ShapeSymbol(),
                                       schema::ShapeSymbols()));
    focus.SetPosition(names::Focus_materials(),
                      focus.CreateTypedCollection(0, names::MaterialCollection()));
    focus.SetPosition(names::Focus_points(),
                      focus.CreateTypedCollection(Points, names::PointCollection()));
    MakeSharedCollections(focus);
    MakeFieldTypes(focus);
    MakeMesh(focus, mesh, components);
}

}  // namespace kov::facades
