// What may be wrong with the regions of surface output, and with sections.
#include "services/LumenBreakageParts.h"

namespace kov::test {

using D = LumenDocument;

std::vector<Breakage> OutputBreakages() {
    return {
        {"an output surface with elements alone",
         "SURF",
         [](D& d) {
             d.Unlink("SURF", schema::Region_elementsFacesCluster());
             d.At("SURF").SetPosition(schema::Region_elementsCluster(),
                                      d.PersistentSet(d.elements, {1}));
         },
         {"Region \"SURF\" for output surface contribution has no elementsFacesCluster or "
          "elementsEdgesCluster DSet, or nodesCluster CSet."}},
        {"an output surface of no nodes",
         "NODES",
         [](D& d) {
             d.Unlink("NODES", schema::Region_nodesCluster());
             d.At("NODES").SetPosition(schema::Region_elementsCluster(),
                                       d.PersistentSet(d.elements, {1}));
         },
         {"Region \"NODES\" for output surface contribution has no elementsFacesCluster or "
          "elementsEdgesCluster DSet, or nodesCluster CSet."}},
    };
}

std::vector<Breakage> SectionBreakages() {
    return {
        {"a section that the focus does not know",
         "SKIN focus",
         [](D& d) {
             RemoveFromSet(d.At("focus"), schema::Focus_externalSectionIds(), d.At("SKIN"));
         },
         {"Section \"SKIN\" is not linked to Focus (Focus_externalSectionIds)."}},
        {"a shell without layers",
         "SKIN layers",
         [](D& d) { d.At("SKIN").DataRecord().SetInt(0, 0); },
         {"Shell section \"SKIN\" has no Layers (Section_layers)."}},
        {"a ply that the model does not have",
         "",
         [](D& d) { d.Model().GetMap(schema::Model_plies()).Remove("PLY-1"); },
         {"Ply is not linked to Model, \"SKIN\", 0."}},
        {"segments that are no table field",
         "segments",
         [](D& d) {
             d.At("layer.1").SetPosition(schema::Layer_Beam_Arbitrary_segments(), SomeRecord(d));
         },
         {"Layer_Beam_Arbitrary_segments is not of type Field_FTable, \"SKIN\", 1."}},
        {"segments without a table",
         "segments",
         [](D& d) { d.Unlink("segments", schema::FieldFTable_table()); },
         {"Layer_Beam_Arbitrary_segments has no an FTable, \"SKIN\", 1."}},
        {"an assignment without a section",
         "assignment 1",
         [](D& d) { d.Unlink("assignment.1", schema::SectionAssignment_section()); },
         {"SectionAssignment  #1 has no Section link."}},
        {"an assignment without a region",
         "assignment 1",
         [](D& d) { d.Unlink("assignment.1", schema::SectionAssignment_region()); },
         {"SectionAssignment  #1 has no Region link."}},
        {"an assignment with neither",
         "assignment 1",
         [](D& d) {
             d.Unlink("assignment.1", schema::SectionAssignment_section());
             d.Unlink("assignment.1", schema::SectionAssignment_region());
         },
         {"SectionAssignment  #1 has no Section link.",
          "SectionAssignment  #1 has no Region link."}},
        {"a region without elements",
         "assignment 1",
         [](D& d) { d.Unlink("assignment.1.region", schema::Region_elementsCluster()); },
         {"Region referred by SectionAssignemt #SectionAssignment  #1 has no elementsCluster "
          "CSet."}},
    };
}

}  // namespace kov::test
