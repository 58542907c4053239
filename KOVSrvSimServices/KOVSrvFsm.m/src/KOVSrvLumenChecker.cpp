// The frame of the checker: the order of the checks, the texts, and what several checks ask.
#include "KOVSrvLumenChecker.h"

#include <cstring>

#include "KOVObjMesh.h"
#include "KOVSimDrawer.h"
#include "KOVSimSchema.h"
#include "KOVSimSet.h"
#include "LumenFindings.h"

namespace kov::fsm {

KOVString LumenText(char const* pattern, std::initializer_list<LumenValue> values) {
    KOVString text;
    for (LumenValue const& value : values) {
        char const* const gap = std::strstr(pattern, "{}");
        if (!gap) break;
        KOVString before;
        before.BuildFromUTF8(pattern, static_cast<int>(gap - pattern));
        text.Append(before).Append(value.Text());
        pattern = gap + 2;
    }
    return text.Append(pattern);
}

}  // namespace kov::fsm

KOVSrvLumenChecker::KOVSrvLumenChecker(KOVObjDocument const& document) : m_document(document) {}

void KOVSrvLumenChecker::Check_Lumen() {
    m_model = m_document.Focus().GetPosition(schema::Focus_model());
    Check_Mesh();
    Check_Regions();
    Check_Ply();
    Check_Steps();
    Check_History();
    Check_FocusResults();
    Check_sectionAssignments();
}

bool KOVSrvLumenChecker::HasNodeOrElementDim(KOVSimPosition field) const {
    if (!field.IsA(schema::Field_Meshed())) return false;
    KOVSimSetiterator const serial = field.GetSet(schema::Field_serialFields()).Begin();
    if (serial.Done()) return false;
    KOVSimSetiterator const first = (*serial).GetSet(schema::SerialField_drawers()).Begin();
    if (first.Done()) return false;
    KOVSimDrawer const drawer(*first);
    if (!drawer.Description()) return false;
    KOVObjMesh const mesh(m_document.GetMesh());
    KOVSimOCompartment const& domain = drawer.Description()->compartment;
    return domain.Position(mesh.GetNodeCollection().GetCollection()) != -1 ||
           domain.Position(mesh.GetElementCollection().GetCollection()) != -1;
}
