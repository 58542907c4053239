// What may be wrong with history and with fields.
#include "services/LumenBreakageParts.h"

namespace kov::test {

namespace {

using D = LumenDocument;

std::string Misfit(char const* name, int field, char const* type) {
    return "OutputRequest #1; Field: #" + std::to_string(field) + "; FieldType: \"" + name +
           "\"; SerFld: #0; id: {id " + name +
           "} components are not consistent with algebraicType " + type + ".";
}

void RetypeField(D& d, char const* name, int algebraicType) {
    d.At(std::string("type.") + name).DataRecord().SetSymb(0, algebraicType);
}

}  // namespace

std::vector<Breakage> HistoryBreakages() {
    return {
        {"a history field without a field type",
         "U",
         [](D& d) { d.Unlink("U", schema::Field_fieldType()); },
         {"Step \"Static\"; Field: #0 has no Field_fieldType link."}},
        {"a history field whose type has no name",
         "U",
         [](D& d) {
             d.At("focus")
                 .GetPosition(schema::Focus_fieldTypes())
                 .GetMap(schema::zdm_FieldTypeLib_fieldTypes())
                 .Remove("U");
         },
         {"Step \"Static\"; Field: #0; FieldType: -MISSING-; FieldTypePrimary, has no "
          "zdm_FieldTypeLib_fieldTypes parent link."}},
        {"a history field whose type has no name and does not fit",
         "U",
         [](D& d) {
             d.At("focus")
                 .GetPosition(schema::Focus_fieldTypes())
                 .GetMap(schema::zdm_FieldTypeLib_fieldTypes())
                 .Remove("U");
             RetypeField(d, "U", 6);
         },
         {"Step \"Static\"; Field: #0; FieldType: -MISSING-; FieldTypePrimary, has no "
          "zdm_FieldTypeLib_fieldTypes parent link.",
          "Step \"Static\"; Field: #0; FieldType: -MISSING-; SerFld: #0; id: {id U} components "
          "are not consistent with algebraicType TENSOR4."}},
        {"a whole-model field that is a vector without components",
         "ENERGY",
         [](D& d) { RetypeField(d, "ENERGY", 9); },
         {"Step \"Static\"; Field: #1; FieldType: \"ENERGY\"; SerFld: #0; id: {id ENERGY} "
          "\"FieldTypePrimary\"; Drawer component CSets are empty but algebraicType is not "
          "SCALAR."}},
        {"a history field that is not meshed",
         "ENERGY",
         [](D& d) {
             KOVSimPosition const other = d.Record(schema::Field_UniformScalar());
             d.At("Static").GetSet(schema::Task_historyResults()).Insert(other);
         },
         {"Step \"Static\", History field #3 is not a MeshedField."}},
        {"a surface vector without a field type",
         "CF",
         [](D& d) { d.Unlink("CF", schema::Field_fieldType()); },
         {"Step \"Riks\"; Field: #0 has no Field_fieldType link."}},
        {"a history field without a request",
         "WORK",
         [](D& d) {
             RemoveFromSet(d.At("request.history"), schema::OutputRequest_field(), d.At("WORK"));
         },
         {"Step \"Riks\", History field #1 is not referred to by an OutputRequest "
          "(OutputRequest_field)."}},
        {"a request that no user made",
         "WORK",
         [](D& d) { d.Unlink("user", schema::OutputRequest_elaboratedRequest()); },
         {"OutputRequest for Step \"Riks\", History field #1 is not referred to by "
          "UserOutputRequest (OutputRequest_elaboratedRequest)."}},
        {"a user request without a region",
         "",
         [](D& d) { EmptySet(d.At("user"), schema::UserOutputRequest_outputRegions()); },
         {"Step \"Static\", History field #0, UserOutputRequest \"USER-1\" has no Region link "
          "(UserOutputRequest_outputRegions).",
          "Step \"Static\", History field #2, UserOutputRequest \"USER-1\" has no Region link "
          "(UserOutputRequest_outputRegions).",
          "Step \"Riks\", History field #1, UserOutputRequest \"USER-1\" has no Region link "
          "(UserOutputRequest_outputRegions)."}},
        {"a user request with two regions without a cluster",
         "",
         [](D& d) {
             for (int i = 0; i < 2; ++i) {
                 d.At("user")
                     .GetSet(schema::UserOutputRequest_outputRegions())
                     .Insert(d.Record(schema::Region()));
             }
         },
         {"Step \"Static\", History field #0, UserOutputRequest \"USER-1\" has no cluster link.",
          "Step \"Static\", History field #0, UserOutputRequest \"USER-1\" has no cluster link.",
          "Step \"Static\", History field #2, UserOutputRequest \"USER-1\" has no cluster link.",
          "Step \"Static\", History field #2, UserOutputRequest \"USER-1\" has no cluster link.",
          "Step \"Riks\", History field #1, UserOutputRequest \"USER-1\" has no cluster link.",
          "Step \"Riks\", History field #1, UserOutputRequest \"USER-1\" has no cluster link."}},
    };
}

std::vector<Breakage> FieldBreakages() {
    return {
        {"a position with a scalar's component",
         "COORD",
         [](D& d) { d.SetComponents("COORD", {34}); },
         {Misfit("COORD", 0, "POSITION")}},
        {"a result field without a task",
         "COORD",
         [](D& d) { RemoveFromSet(d.At("Static"), schema::Task_fieldResults(), d.At("COORD")); },
         {"For OutputRequest #1; Field #0; fieldtype: \"COORD\"; has content but has no "
          "Task_fieldResults parent link."}},
        {"a result field without a task and without a field type",
         "COORD",
         [](D& d) {
             RemoveFromSet(d.At("Static"), schema::Task_fieldResults(), d.At("COORD"));
             d.Unlink("COORD", schema::Field_fieldType());
         },
         {"For OutputRequest #1; Field #0; fieldtype: \"\"; has content but has no "
          "Task_fieldResults parent link.",
          "OutputRequest #1; Field: #0 has no Field_fieldType link."}},
        {"a scalar with the component of a vector",
         "T",
         [](D& d) { d.SetComponents("T", {0}); },
         {"OutputRequest #1; Field: #1; FieldType: \"T\"; SerFld: #0; id: {id T}; "
          "componentSymbol Size: #1; componentSymbol[0]: #0; zdm_Component_C_SCALAR: #34; "
          "components are not consistent with algebraicType SCALAR."}},
        {"a scalar with two components",
         "T",
         [](D& d) {
             d.SetComponents("T", {20, 34});
         },
         {"OutputRequest #1; Field: #1; FieldType: \"T\"; SerFld: #0; id: {id T}; "
          "componentSymbol Size: #2; componentSymbol[0]: #20; zdm_Component_C_SCALAR: #34; "
          "components are not consistent with algebraicType SCALAR."}},
        {"a general tensor with nine entries",
         "GEN",
         [](D& d) {
             d.SetComponents("GEN", {1, 5, 10, 13, 14, 18, 21, 22, 23});
         },
         {Misfit("GEN", 2, "TENSOR2_GENERAL")}},
        {"an orthogonal tensor with entries",
         "ORTH",
         [](D& d) {
             d.SetComponents("ORTH", {1, 14, 23});
         },
         {" components are not consistent with algebraicType TENSOR2_ORTHOGONAL.OutputRequest #1; "
          "Field: #3; FieldType: \"ORTH\"; SerFld: #0; id: {id ORTH}."}},
        {"a symmetric tensor whose two serial fields do not fit",
         "SYM",
         [](D& d) { RetypeField(d, "SYM", 9); },
         {"OutputRequest #1; Field: #4; FieldType: \"SYM\"; SerFld: #0; id: {id SYM} components "
          "are not consistent with algebraicType VECTOR.",
          "OutputRequest #1; Field: #4; FieldType: \"SYM\"; SerFld: #1; id: {id SYM} components "
          "are not consistent with algebraicType VECTOR."}},
        {"a symmetric tensor with a quaternion",
         "SYM",
         [](D& d) {
             d.SetComponents("SYM", {27, 28});
         },
         {Misfit("SYM", 4, "TENSOR2_SYMMETRIC")}},
        {"a tensor of four indices with two",
         "T4",
         [](D& d) { d.SetComponents("T4", {1}); },
         {Misfit("T4", 5, "TENSOR4")}},
        {"a vector with directions and rotations",
         "ROT",
         [](D& d) {
             d.SetComponents("ROT", {0, 31});
         },
         {Misfit("ROT", 6, "VECTOR")}},
        {"a field type that is not supported",
         "ROT",
         [](D& d) { RetypeField(d, "ROT", 5); },
         {"algebraicType index# 5 is not supported; field: OutputRequest #1; Field: #6; "
          "FieldType: \"ROT\"; SerFld: #0; id: {id ROT} subtype: FieldTypePrimary."}},
        {"a field type of no algebraic type",
         "",
         [](D& d) {
             KOVSimPosition const bare = d.Know("type.BARE", d.Record(schema::FieldTypePrimary()));
             d.At("focus")
                 .GetPosition(schema::Focus_fieldTypes())
                 .GetMap(schema::zdm_FieldTypeLib_fieldTypes())
                 .Insert("BARE", bare);
             d.At("ROT").SetPosition(schema::Field_fieldType(), bare);
         },
         {"algebraicType index# -1 is not supported; field: OutputRequest #1; Field: #6; "
          "FieldType: \"BARE\"; SerFld: #0; id: {id BARE} subtype: FieldTypePrimary."}},
        {"a field type without a name that may be anything, and fits nothing",
         "ODD",
         [](D& d) { RetypeField(d, "ODD", 0); },
         {"OutputRequest #1; Field: #7; FieldType: -MISSING-; SerFld: #0; id: {id ODD} components "
          "are not consistent with algebraicType POSITION."}},
        {"a requested field that is not meshed",
         "request 1",
         [](D& d) {
             d.At("request.field")
                 .GetSet(schema::OutputRequest_field())
                 .Insert(d.Record(schema::Field_UniformScalar()));
         },
         {"OutputRequest #1; Field #8 is not a MeshedField."}},
        {"a field of the fourth request",
         "request 3",
         [](D& d) {
             d.At("request.empty")
                 .GetSet(schema::OutputRequest_field())
                 .Insert(d.Record(schema::Field_UniformScalar()));
         },
         {"OutputRequest #3; Field #1 is not a MeshedField."}},
    };
}

}  // namespace kov::test
