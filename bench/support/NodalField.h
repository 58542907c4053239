// A vector field at nodes as results bring it: in a frame of a step, with a distribution over nodes
// by components and one serial field that names the drawers.
#pragma once

#include "KOVObjDocument.h"
#include "KOVSimCollection.h"
#include "KOVSimDistribution.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "KOVSimTransaction.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "bench/support/Mesh.h"

namespace bench {

class NodalField {
  public:
    /// A field without drawers. `growing`: one drawer takes all blocks; otherwise each has its own.
    static NodalField Create(KOVObjDocument const& document, KOVSimTransaction const&,
                             bool growing) {
        Mesh mesh(document);
        NodalField made(document.CreateDataRecord(schema::Field_Meshed()).Pos(), growing);
        KOVSimPosition const step = document.CreateDataRecord(schema::Step()).Pos();
        KOVSimPosition const frame = document.CreateDataRecord(schema::Frame()).Pos();
        KOVSimPosition(document.GetModel()).GetVector(schema::Model_stepSequence()).PushBack(step);
        step.GetVector(schema::Task_frames()).PushBack(frame);
        frame.GetSet(schema::Frame_fields()).Insert(made.m_field);

        KOVSimGrid::CollectionArray grid(2, 0);
        grid.Get(0) = mesh.nodes.ID();
        grid.Get(1) = mesh.components.ID();
        made.m_field.SetPosition(
            schema::Field_distribution(),
            made.m_field.CreateTypedDistribution(KOVSimGrid(grid), schema::Grid_Node(),
                                                 KOVSimRangeType(KOVSimTypeKeyDouble)));
        int const axes[3] = {0, 12, 20};
        made.m_components = mesh.components.CreateCSet(axes, 3, false);
        KOVSimPosition const serial = document.CreateDataRecord(schema::SerialField()).Pos();
        serial.SetPosition(schema::SerialField_components(), KOVSimPosition(made.m_components));
        made.m_field.GetSet(schema::Field_serialFields()).Insert(serial);
        made.m_drawers = serial.GetSet(schema::SerialField_drawers());
        return made;
    }
    /// The field of a document that has one.
    static NodalField Find(KOVObjDocument const& document) {
        KOVSimPosition const step =
            *KOVSimPosition(document.GetModel()).GetVector(schema::Model_stepSequence()).Begin();
        KOVSimPosition const frame = *step.GetVector(schema::Task_frames()).Begin();
        return {*frame.GetSet(schema::Frame_fields()).Begin(), false};
    }

    KOVSimDistribution Values() const {
        return KOVSimDistribution(
            m_field.GetPosition(schema::Field_distribution()).GetDistribution());
    }
    /// `values`: (nodes, 3).
    void Append(KOVSimCSetID const& nodes, double const* values) {
        KOVSimTransfer write(Values());
        write.SetWrite().SetBufferPadding(false);
        if (m_drawer.IsNull()) {
            if (m_growing) {
                KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> chunks(2, 0);
                chunks.Get(0) = KOVSimCSet(nodes).Size();
                chunks.Get(1) = 3;
                write.SetMakeNewDrawerChunked(chunks).SetExtendableDim(0);
            } else {
                write.SetMakeNewDrawer();
            }
            write.SetDim(0, nodes).SetDim(1, m_components);
        } else {
            write.SetDrawer(m_drawer).SetDimExtension(nodes);
        }
        write.CheckView();
        write.SetBuffer(0, values, static_cast<unsigned long>(write.RequiredBufferSize(0)));
        write.ExecWrite().RelinquishBuffers();
        if (!m_drawer.IsNull()) return;
        m_drawers.Insert(KOVSimPosition(write.DrawerID()));
        if (m_growing) m_drawer = write.DrawerID();
    }

  private:
    NodalField(KOVSimPosition const& field, bool growing) : m_field(field), m_growing(growing) {}

    KOVSimPosition m_field;
    bool m_growing;
    KOVSimSet m_drawers;
    KOVSimCSetID m_components;
    KOVSimDrawerID m_drawer;
};

}  // namespace bench
