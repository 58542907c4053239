// KOVSimTypeSchemaSnapshot: the schema as one context knows it, which turns type indices into type
// numbers and names. A stateless value; KOVSimContext::Schema() gives one.
//
// Every document of this version holds the same schema, so that type numbers equal type indices.
// Callers keep the two apart all the same: an index is the program's, a type ID the document's.
#pragma once

#include "KOVExport.h"
#include "KOVSimTypes.h"
#include "KOVString.h"

class KOV_EXPORT KOVSimTypeSchemaSnapshot {
  public:
    /// The number under which documents keep the type with this index. A type that the schema does
    /// not name keeps its own index; a negative index is no type and gives -1.
    KOVSimTypeID TypeID(int type) const;

    /// The name of the type with this index, such as "Field_Meshed". Empty if the schema names no
    /// such type, also where the index is that of a member.
    KOVString TypeName(int type) const;
};
