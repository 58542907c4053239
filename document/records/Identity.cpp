#include "document/records/Identity.h"

#include "KOVSimException.h"
#include "document/schema/SchemaTable.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"
#include "document/store/Reference.h"

namespace kov::records {

namespace {

char const* KindName(int category) {
    switch (category) {
        case KOVSimCategoryRecord:
            return "record";
        case KOVSimCategoryDistribution:
            return "distribution";
        case KOVSimCategoryDSet:
            return "dataset";
        case KOVSimCategoryCollection:
            return "collection";
        case KOVSimCategoryCSet:
            return "set";
        case KOVSimCategoryDrawer:
            return "drawer";
        case KOVSimCategoryFTable:
            return "function table";
        case KOVSimCategoryMember:
            return "member";
        default:
            return "object of an unknown kind";
    }
}

bool HasOwner(int category) {
    return category == KOVSimCategoryCSet || category == KOVSimCategoryDrawer ||
           category == KOVSimCategoryMember;
}

void RequireNumbers(store::Context& context, KOVSimDynamicID const& id) {
    if (HasOwner(id.category)) {
        context.RequireNumber(id.data.parent);
        // Members count from 0 in their collection, 0 is a collection's empty set, negative numbers
        // are temporary sets.
        if (id.category != KOVSimCategoryMember && id.data.minor > 0)
            context.RequireNumber(id.data.minor);
    } else {
        context.RequireNumber(id.data.minor);
    }
}

}  // namespace

std::string NameOfIndex(int index) {
    char const* const name = schema::NameOf(index);
    return name ? name : "number " + std::to_string(index);
}

std::string Asked::Text() const {
    return member < 0 ? what : std::string(what) + ' ' + NameOfIndex(member);
}

std::string Describe(KOVSimDynamicID const& id) {
    if (id.category == KOVSimCategoryNull || id.context.IsNull()) return "a null position";
    std::string text = std::string(KindName(id.category)) + ' ' + std::to_string(id.data.minor);
    if (HasOwner(id.category)) {
        text += id.category == KOVSimCategoryDrawer ? " of distribution " : " of collection ";
        text += std::to_string(id.data.parent);
    }
    return id.type < 0 ? text : text + " (" + NameOfIndex(id.type) + ")";
}

void Refuse(Asked const& asked, std::string const& why) {
    throw KOVSimException(KOVString(("cannot " + asked.Text() + ": " + why).c_str()));
}

void Refuse(Asked const& asked, KOVSimDynamicID const& of, std::string const& why) {
    throw KOVSimException(
        KOVString(("cannot " + asked.Text() + " of " + Describe(of) + ": " + why).c_str()));
}

store::Context* ToRead(KOVSimDynamicID const& id) {
    if (id.IsNull()) return nullptr;
    store::Context& context = store::Context::Of(id.context);
    RequireNumbers(context, id);
    return &context;
}

store::Context& ToWrite(KOVSimDynamicID const& id, Asked const& asked) {
    if (id.category == KOVSimCategoryNull || id.context.IsNull())
        Refuse(asked, "the position is null");
    store::Context& context = store::Context::Of(id.context);
    if (id.data.minor == -1) Refuse(asked, id, "the identity has no number");
    RequireNumbers(context, id);
    if (IsTemporary(id)) Refuse(asked, id, "a temporary set is no part of the stored document");
    RequireTransaction(context, asked);
    return context;
}

void RequireTransaction(store::Context& context, Asked const& asked) {
    if (!context.InTransaction()) context.RequireTransaction(asked.Text().c_str());
}

void RequireTarget(store::Context& context, KOVSimDynamicID const& target, Asked const& asked,
                   KOVSimDynamicID const& owner) {
    if (target.IsNull()) Refuse(asked, owner, "the target is null");
    if (target.context != context.ID()) {
        Refuse(asked, owner, "the target, " + Describe(target) + ", belongs to another document");
    }
    RequireNumbers(context, target);
    if (IsTemporary(target)) {
        Refuse(asked, owner,
               "the target, " + Describe(target) +
                   ", is a temporary set, which ends with the open document");
    }
}

KOVSimTypeID TypeOfNumber(store::Context& context, KOVSimIDMinor number) {
    store::Statement select(context.Cat(), "SELECT type FROM objects WHERE number=?");
    select.Bind(number);
    return select.Step() ? static_cast<KOVSimTypeID>(select.Int(0)) : -1;
}

KOVSimDynamicID IdentityOf(store::Context& context, std::int64_t reference) {
    KOVSimDynamicID id = store::FromReference(reference, context.ID(), -1);
    id.type = TypeOfNumber(context, HasOwner(id.category) ? id.data.parent : id.data.minor);
    return id;
}

KOVSimDynamicID NewObject(store::Context& context, int category, KOVSimTypeID type) {
    KOVSimDynamicDataID data;
    data.parent = 0;
    data.minor = context.NewNumber();
    store::Statement insert(context.Cat(),
                            "INSERT INTO objects(number,category,type) VALUES(?,?,?)");
    insert.Bind(data.minor).Bind(category).Bind(type).Run();
    return {category, context.ID(), data, type, 0};
}

}  // namespace kov::records
