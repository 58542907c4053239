// One store of layer data under making: a distribution over the layer slots and a second collection
// with one drawer for each layer, and the meshed field through which readers reach numbers.
//
// A drawer holds one layer of all the sections or elements that have it, so that sections with
// fewer layers take no room in the drawers above. Everything here runs in the caller's transaction.
#pragma once

#include <vector>

#include "KOVBasMap.h"
#include "KOVObjDocument.h"
#include "KOVSimCSet.h"
#include "KOVSimCollection.h"
#include "KOVSimContext.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"

template <class Number>
using ShellLayerNumbers = std::vector<Number, KOVBasStandardAllocator<Number>>;

class ShellLayerStore {
  public:
    /// Creates the distribution.
    ShellLayerStore(KOVSimPosition const& bulkRecord, KOVSimPosition const& layerSlots,
                    KOVSimPosition const& columns, int type, KOVSimRangeType const& range)
        : m_layers(layerSlots.GetCollection()), m_columns(columns.GetCollection()), m_type(type) {
        KOVSimGrid::CollectionArray grid(2, 0);
        grid.Get(0) = m_layers.ID();
        grid.Get(1) = m_columns.ID();
        m_distribution =
            KOVSimDistribution(bulkRecord.CreateTypedDistribution(KOVSimGrid(grid), type, range));
    }

    KOVSimPosition Distribution() const { return m_distribution.ID(); }

    /// Creates the meshed field that drawers made from now on are linked to, with the field type of
    /// that name; without one where the document's catalogue has no such name.
    KOVSimPosition MakeField(KOVObjDocument const& document, char const* label) {
        KOVSimPosition const field = document.CreateDataRecord(schema::Field_Meshed()).Pos();
        field.DataRecord().SetTypeID(0, field.Context().Schema().TypeID(m_type));
        KOVSimPosition const catalogue = field.Focus().GetPosition(schema::Focus_fieldTypes());
        field.SetPosition(schema::Field_fieldType(),
                          catalogue.GetMap(schema::zdm_FieldTypeLib_fieldTypes()).Find(label));
        KOVSimPosition const serial = document.CreateDataRecord(schema::SerialField()).Pos();
        field.GetSet(schema::Field_serialFields()).Insert(serial);
        m_drawers = serial.GetSet(schema::SerialField_drawers());
        m_hasField = true;
        return field;
    }

    /// Makes and writes the drawer of one layer. `members`: ascending indices of the second
    /// collection; `values`: one for each of them. `check` is called with the bytes that the view
    /// takes, before anything is moved.
    template <class Number, class Check>
    void WriteLayer(int layer, ShellLayerNumbers<int> const& members,
                    ShellLayerNumbers<Number> const& values, Check const& check) {
        KOVSimCSet const layerSet(m_layers.CreateCSet(&layer, 1, false));
        KOVSimCSet const columnSet(
            m_columns.CreateCSet(members.data(), static_cast<int>(members.size()), false));

        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(2, 0);
        chunks.Get(0) = 1;
        chunks.Get(1) = columnSet.Size();
        KOVSimTransfer make(m_distribution);
        make.SetMakeNewDrawerChunked(chunks).SetBufferPadding(false).SetExtendableDim(1);
        make.SetDim(0, layerSet).SetDim(1, columnSet).CheckView().ExecMake();
        KOVSimDrawerID const drawer = make.DrawerID();
        if (m_hasField) m_drawers.Insert(drawer);

        KOVSimTransfer write(m_distribution);
        write.SetWrite().SetAutoExtend().SetBufferPadding(false).SetDrawer(drawer);
        write.SetDim(0, layerSet).SetDim(1, columnSet).CheckView();
        auto const len = static_cast<unsigned long>(write.RequiredBufferSize(0));
        check(len);
        write.SetBuffer(0, values.data(), len).ExecWrite().RelinquishBuffers();
    }

  private:
    KOVSimCollection m_layers;
    KOVSimCollection m_columns;
    int m_type;
    KOVSimDistribution m_distribution;
    bool m_hasField = false;
    KOVSimSet m_drawers;
};
