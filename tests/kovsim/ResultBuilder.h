// Puts results into a document, record by record, so that odd ones can be made as well as sound
// ones.
#pragma once

#include <map>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVObjMesh.h"
#include "KOVObjMeshedField.h"
#include "KOVSimCollection.h"
#include "KOVSimDataRecord.h"
#include "KOVSimDistribution.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "zdm_AlgebraicTypes.h"
#include "zdm_ComponentSymbols.h"

namespace kov::test {

/// In a transaction of the caller's.
class ResultBuilder {
  public:
    explicit ResultBuilder(KOVObjDocument const& document) : m_document(document) {}

    KOVObjDocument const& Document() const { return m_document; }
    KOVSimPosition New(int type) const { return m_document.CreateDataRecord(type).Pos(); }

    KOVSimPosition Step(char const* name, int type = schema::Step_Gen_Static()) {
        KOVSimPosition const step = New(type);
        KOVSimPosition const model = m_document.GetModel();
        step.SetName(name);
        model.GetVector(schema::Model_stepSequence()).PushBack(step);
        model.GetMap(schema::Model_steps()).Insert(name, step);
        m_document.Focus().GetSet(schema::Focus_externalTaskIds()).Insert(step);
        return step;
    }
    KOVSimPosition Frame(KOVSimPosition const& step, int increment, double value, double total,
                         char const* text = "") {
        KOVSimPosition const frame = New(schema::Frame());
        KOVSimDataRecord const record = frame.GetDataRecord();
        record.SetInt(0, increment);
        record.SetDouble(1, value);
        record.SetDouble(2, total);
        record.SetString(3, text);
        step.GetVector(schema::Task_frames()).PushBack(frame);
        return frame;
    }
    /// A field of that name without serial fields; in no frame where `frame` is null.
    KOVSimPosition Field(KOVSimPosition const& step, KOVSimPosition const& frame, char const* name,
                         int algebraic, int grid) {
        KOVSimPosition const field = New(schema::Field_Meshed());
        field.GetDataRecord().SetTypeID(0, grid);
        field.SetPosition(schema::Field_fieldType(), FieldType(name, algebraic));
        step.GetSet(schema::Task_fieldResults()).Insert(field);
        if (!frame.IsNull()) frame.GetSet(schema::Frame_fields()).Insert(field);
        return field;
    }
    KOVSimPosition FieldType(char const* name, int algebraic) {
        KOVSimMap const map = m_document.Focus()
                                  .GetPosition(schema::Focus_fieldTypes())
                                  .GetMap(schema::zdm_FieldTypeLib_fieldTypes());
        KOVSimPosition type = map.Find(name);
        if (!type.IsNull()) return type;
        type = New(schema::FieldTypePrimary());
        if (algebraic >= 0) type.GetDataRecord().SetSymb(0, algebraic);
        map.Insert(name, type);
        return type;
    }
    KOVSimPosition Serial(KOVSimPosition const& field, int point = 0) {
        KOVSimPosition const serial = New(schema::SerialField());
        if (point > 0) serial.GetDataRecord().SetInt(0, point);
        field.GetSet(schema::Field_serialFields()).Insert(serial);
        return serial;
    }
    /// A drawer under a serial field of a field: values by item and component, row by row.
    void Drawer(KOVSimPosition const& field, KOVSimPosition const& serial,
                std::vector<int> const& items, std::vector<int> const& components,
                std::vector<double> const& values) {
        KOVObjMeshedField const meshed(field);
        if (meshed.GetDistribution().IsNull()) {
            int const grid = meshed.GetGridType();
            KOVObjMesh const mesh(m_document.GetMesh());
            KOVSimGrid::CollectionArray collections(2);
            collections.Get(0) = grid == schema::Grid_Node()
                                     ? mesh.GetNodeCollection().GetCollection()
                                     : mesh.GetElementCollection().GetCollection();
            collections.Get(1) = m_document.GetComponentCollection().GetCollection();
            meshed.SetDistribution(m_document.CreateDistribution(
                KOVSimGrid(collections), KOVSimRangeType(KOVSimTypeKeyDouble), grid));
        }
        KOVSimDistribution const distribution(meshed.GetDistribution().GetDistribution());
        Drawer(distribution, serial, items, components, values);
    }
    void Drawer(KOVSimDistribution const& distribution, KOVSimPosition const& serial,
                std::vector<int> const& items, std::vector<int> const& components,
                std::vector<double> const& values) {
        KOVSimTransfer transfer(distribution);
        transfer.SetWrite().SetMakeNewDrawer();
        transfer.SetDim(0, SetOf(distribution, 0, items));
        if (distribution.NumDimensions() == 2)
            transfer.SetDim(1, SetOf(distribution, 1, components));
        transfer.CheckView();
        transfer.SetBuffer(0, values.data(), sizeof(double) * values.size());
        transfer.ExecWrite().RelinquishBuffers();
        serial.GetSet(schema::SerialField_drawers()).Insert(transfer.DrawerID());
    }
    /// A whole field at nodes or elements: one serial field with one drawer.
    KOVSimPosition Whole(KOVSimPosition const& step, KOVSimPosition const& frame, char const* name,
                         int algebraic, int grid, std::vector<int> const& items,
                         std::vector<int> const& components, std::vector<double> const& values) {
        KOVSimPosition const field = Field(step, frame, name, algebraic, grid);
        Drawer(field, Serial(field), items, components, values);
        return field;
    }

    static std::vector<int> Vector() {
        return {zdm_Component_C_1, zdm_Component_C_2, zdm_Component_C_3};
    }
    static std::vector<int> Tensor() {
        return {zdm_Component_C_11, zdm_Component_C_12, zdm_Component_C_13,
                zdm_Component_C_22, zdm_Component_C_23, zdm_Component_C_33};
    }
    static std::vector<int> Scalar() { return {zdm_Component_C_SCALAR}; }

  private:
    static KOVSimCSetID SetOf(KOVSimDistribution const& distribution, int dimension,
                              std::vector<int> const& members) {
        KOVSimCollection collection(distribution.Grid().Collections().ConstGet(dimension));
        return collection.CreateTempOrderedCSet(members.data(), static_cast<int>(members.size()));
    }

    KOVObjDocument m_document;
};

}  // namespace kov::test
