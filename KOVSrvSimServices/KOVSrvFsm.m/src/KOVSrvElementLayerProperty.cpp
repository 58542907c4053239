#include "KOVSrvElementLayerProperty.h"

#include <cstddef>
#include <vector>

#include "KOVAssert.h"
#include "KOVBasMap.h"
#include "KOVObjMesh.h"
#include "KOVObjModel.h"
#include "KOVSimContext.h"
#include "KOVSimDSet.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"

namespace {

using Drawers =
    KOVSimArray<KOVSimPersistentDrawerDesc, KOVSimArrayClassPolicy<KOVSimPersistentDrawerDesc>>;

Drawers DrawersOf(KOVSimDistributionID const& distribution) {
    Drawers drawers;
    KOVSimDistribution(distribution).QueryDrawers(drawers);
    return drawers;
}

// A table may stand with its dimensions either way round.
int ElementDimension(KOVSimPersistentDrawerDesc const& drawer, KOVSimCollectionID const& elements) {
    return drawer.compartment.CSet(0).CollectionID().Equal(elements) ? 0 : 1;
}

omi_BlkBitVect KeyOf(KOVSimCSet const& layers) {
    omi_BlkBitVect bits;
    layers.AsBitVector(bits);
    return bits;
}

std::size_t NumberOfPairs(KOVSimCSet const& elements, KOVSimCSet const& layers) {
    return static_cast<std::size_t>(elements.Size()) * static_cast<std::size_t>(layers.Size());
}

}  // namespace

KOVSrvElementLayerProperty::KOVSrvElementLayerProperty(KOVSimPosition const& focus,
                                                       KOVSimCollectionID const& valueCollection,
                                                       int dsetType, int linkType, int linkMember,
                                                       int elementChunkSize)
    : m_focus(focus),
      m_valueCollection(valueCollection),
      m_dsetType(dsetType),
      m_linkType(linkType),
      m_linkMember(linkMember),
      m_elementChunkSize(elementChunkSize) {
    KOVSimPosition const saved = Mesh().Follow(m_linkType, m_linkMember);
    if (saved.IsNull()) return;
    KOVSimCollectionID const elements = KOVSrvElementLayerProperty::GetElementCollection();
    m_distribution = KOVSimDSet(saved.GetDSet()).GetRelationalDistributionID();
    for (KOVSimPersistentDrawerDesc const& drawer : DrawersOf(m_distribution)) {
        int const layerDimension = ElementDimension(drawer, elements) == 0 ? 1 : 0;
        m_drawersByLayers.Insert(KeyOf(drawer.compartment.CSet(layerDimension)), drawer.drawerID);
    }
}

KOVSrvElementLayerProperty::~KOVSrvElementLayerProperty() = default;

KOVSimPosition KOVSrvElementLayerProperty::Mesh() const {
    return KOVObjModel(m_focus.GetPosition(schema::Focus_model())).GetMesh();
}

KOVSimCollectionID KOVSrvElementLayerProperty::GetElementCollection() const {
    return KOVObjMesh(Mesh()).GetElementCollection().GetCollection();
}

KOVSimCollectionID KOVSrvElementLayerProperty::GetSectionLayerCollection() const {
    return m_focus.GetPosition(schema::Focus_sharedCollections())
        .GetPosition(schema::SharedCollections_sectionLayers())
        .GetCollection();
}

KOVSimDistributionID KOVSrvElementLayerProperty::CreateDistribution(
    KOVSimCollectionID const& first, KOVSimCollectionID const& second) {
    KOVSimGrid::CollectionArray collections(2, 0);
    collections.Get(0) = first;
    collections.Get(1) = second;
    return m_focus.CreateTypedDistribution(KOVSimGrid(collections),
                                           schema::Field_ElementLayerProperty(),
                                           KOVSimRangeType(KOVSimTypeKeyMember, m_valueCollection));
}

KOVSimDrawerID KOVSrvElementLayerProperty::CreateDrawer(KOVSimCSetID const& elements,
                                                        KOVSimCSetID const& layers) {
    KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(2, 0);
    chunks.Get(0) = m_elementChunkSize;
    chunks.Get(1) = KOVSimCSet(layers).Size();
    KOVSimTransfer make{KOVSimDistribution(m_distribution)};
    make.SetMakeNewDrawerChunked(chunks).SetBufferPadding(false).SetExtendableDim(0);
    make.SetDim(0, elements).SetDim(1, layers).CheckView().ExecMake();
    return make.DrawerID();
}

void KOVSrvElementLayerProperty::Add(KOVSimCSetID const& elsetID, KOVSimCSetID const& layersID,
                                     KOVSimDynamicID const& value) {
    KOV_UTT_ASSERT(KOVSimCSet(elsetID).IsAscending());
    KOV_UTT_ASSERT(KOVSimCSet(layersID).IsAscending());
    KOVSimCSet const elements(elsetID);
    KOVSimCSet const layers(layersID);
    omi_BlkBitVect const key = KeyOf(layers);

    if (m_distribution.IsNull()) {
        m_distribution = CreateDistribution(elsetID.CollectionID(), layersID.CollectionID());
    }
    auto const* const known =
        m_drawersByLayers.Root() ? m_drawersByLayers.Root()->Find(key) : nullptr;
    KOVSimDrawerID drawer;
    if (known) {
        drawer = KOVSimDrawerID(known->Value());
    } else {
        drawer = CreateDrawer(elsetID, layersID);
        m_drawersByLayers.Insert(key, drawer);
    }

    KOVSimTransfer write{KOVSimDistribution(m_distribution)};
    write.SetWrite().SetAutoExtend().SetBufferPadding(false).SetDrawer(drawer);
    write.SetDim(0, elements).SetDim(1, layers).CheckView();
    int const index = m_focus.Context().GetCMemberIndex(value);
    std::size_t const n = NumberOfPairs(elements, layers);
    std::vector<int, KOVBasStandardAllocator<int>> const indices(n, index);
    auto const len = static_cast<std::size_t>(write.RequiredBufferSize(0));
    // clang-format off
    KOV_UTT_ASSERT(n*sizeof(int) == len);
    // clang-format on
    write.SetBuffer(0, indices.data(), len).ExecWrite().RelinquishBuffers();
}

int KOVSrvElementLayerProperty::Lookup(KOVSimCSet const& elements, KOVSimCSet const& layers,
                                       int* values) const {
    KOVSimTransfer read{KOVSimDistribution(m_distribution)};
    read.SetRead().SetBufferPadding(false).SetDim(0, elements).SetDim(1, layers).CheckView();
    std::size_t const n = NumberOfPairs(elements, layers);
    auto const len = static_cast<std::size_t>(read.RequiredBufferSize(0));
    // clang-format off
    KOV_UTT_ASSERT(n*sizeof(int) == len);
    // clang-format on
    read.SetBuffer(0, values, len).ExecRead().RelinquishBuffers();
    return static_cast<int>(n);
}

KOVSimCSet KOVSrvElementLayerProperty::GetElementLayers(KOVSimCSetID const& elements) const {
    KOVSimCSet const asked(elements);
    KOVSimCSet layers(GetSectionLayerCollection());
    for (KOVSimPersistentDrawerDesc const& drawer : DrawersOf(m_distribution)) {
        int const elementDimension = ElementDimension(drawer, elements.CollectionID());
        KOVSimCSet const& held = drawer.compartment.CSet(elementDimension);
        if (asked.Intersection(held).IsEmpty()) continue;
        layers = layers.Union(drawer.compartment.CSet(1 - elementDimension));
    }
    return layers;
}

void KOVSrvElementLayerProperty::Save(KOVSimTransaction&) {
    if (m_distribution.IsNull()) return;
    KOVSimPosition const mesh = Mesh();
    KOVSimPosition saved = mesh.Follow(m_linkType, m_linkMember);
    if (saved.IsNull()) {
        KOVSimContext const context = m_focus.Context();
        saved = context.CreateDSet(m_distribution, context.Schema().TypeID(m_dsetType));
        mesh.Associate(m_linkType, m_linkMember, saved);
    }
    saved.Context().UpdateDSet(saved.GetDSet(), m_distribution);
}
