#include "KOVSimTypeSchemaSnapshot.h"

#include "document/schema/SchemaTable.h"

KOVSimTypeID KOVSimTypeSchemaSnapshot::TypeID(int type) const { return type < 0 ? -1 : type; }

KOVString KOVSimTypeSchemaSnapshot::TypeName(int type) const {
    return kov::schema::IsType(type) ? KOVString(kov::schema::NameOf(type)) : KOVString();
}
