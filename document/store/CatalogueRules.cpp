#include "document/store/CatalogueRules.h"

#include <exception>

#include "document/store/Catalogue.h"

namespace kov::store {

namespace {

constexpr int ToldRows = 20;

struct Rule {
    char const* query;  // rows of one or two numbers
    char const* text;   // '#' stands for them in turn
};

// References are taken apart as Reference.h puts them together. Set 0 is the empty set of a
// collection, which has no row.
#define KOV_MISSING(column)                                                   \
    "(CASE " column                                                           \
    " & 7 "                                                                   \
    "WHEN 0 THEN NOT EXISTS(SELECT 1 FROM collections WHERE number = " column \
    " >> 35 "                                                                 \
    "AND space > ((" column                                                   \
    " >> 3) & 4294967295)) "                                                  \
    "WHEN 5 THEN NOT EXISTS(SELECT 1 FROM sets WHERE number = ((" column      \
    " >> 3) & 4294967295)) "                                                  \
    "AND (((" column                                                          \
    " >> 3) & 4294967295) <> 0 "                                              \
    "OR NOT EXISTS(SELECT 1 FROM collections WHERE number = " column          \
    " >> 35)) "                                                               \
    "WHEN 6 THEN NOT EXISTS(SELECT 1 FROM drawers WHERE number = ((" column   \
    " >> 3) & 4294967295)) "                                                  \
    "ELSE NOT EXISTS(SELECT 1 FROM objects WHERE number = ((" column          \
    " >> 3) & 4294967295) "                                                   \
    "AND category = " column " & 7) END)"

constexpr Rule Rules[] = {
    {"SELECT target, owner FROM links WHERE " KOV_MISSING("target"),
     "a link names an object # that does not exist (owner #)"},
    {"SELECT owner, member FROM links WHERE " KOV_MISSING("owner"),
     "a link stands on an object # that does not exist (member #)"},
    {"SELECT owner, field FROM fields WHERE " KOV_MISSING("owner"),
     "a field stands on an object # that does not exist (field #)"},
    {"SELECT number FROM collections WHERE number NOT IN (SELECT number FROM objects WHERE "
     "category = 4)",
     "collection # is no object"},
    {"SELECT number FROM datasets WHERE number NOT IN (SELECT number FROM objects WHERE category = "
     "3)",
     "dataset # is no object"},
    {"SELECT number FROM distributions WHERE number NOT IN (SELECT number FROM objects WHERE "
     "category = 2)",
     "distribution # is no object"},
    {"SELECT number FROM tables WHERE number NOT IN (SELECT number FROM objects WHERE category = "
     "7)",
     "function table # is no object"},
    {"SELECT number, collection FROM sets WHERE collection NOT IN (SELECT number FROM collections)",
     "set # is over a collection # that does not exist"},
    {"SELECT member, collection FROM members WHERE collection NOT IN (SELECT number FROM "
     "collections)",
     "member # is of a collection # that does not exist"},
    {"SELECT member, members.collection FROM members JOIN collections ON number = "
     "members.collection "
     "WHERE member < 0 OR member >= space",
     "member # is outside its collection #"},
    {"SELECT number FROM collections WHERE space < 0 OR space > 2147483647",
     "collection # has an impossible size"},
    {"SELECT number, distribution FROM datasets WHERE distribution IS NOT NULL AND "
     "distribution NOT IN (SELECT number FROM distributions)",
     "dataset # is over a distribution # that does not exist"},
    {"SELECT dataset, place FROM compartments WHERE dataset NOT IN (SELECT number FROM datasets)",
     "a compartment is of a dataset # that does not exist (place #)"},
    {"SELECT number, dim0 FROM distributions WHERE dim0 NOT IN (SELECT number FROM collections)",
     "distribution # is over a collection # that does not exist"},
    {"SELECT number, dim1 FROM distributions WHERE dim1 IS NOT NULL AND dim1 NOT IN (SELECT number "
     "FROM collections)",
     "distribution # is over a collection # that does not exist"},
    {"SELECT number, distribution FROM drawers WHERE distribution NOT IN (SELECT number FROM "
     "distributions)",
     "drawer # is of a distribution # that does not exist"},
    {"SELECT number, set0 FROM drawers WHERE set0 NOT IN (SELECT number FROM sets)",
     "drawer # is over a set # that does not exist"},
    {"SELECT number, set1 FROM drawers WHERE set1 IS NOT NULL AND set1 NOT IN (SELECT number FROM "
     "sets)",
     "drawer # is over a set # that does not exist"},
    {"SELECT DISTINCT drawer FROM extents WHERE drawer NOT IN (SELECT number FROM drawers)",
     "extents belong to a drawer # that does not exist"},
    {"SELECT DISTINCT drawer FROM blocks WHERE drawer NOT IN (SELECT number FROM drawers)",
     "blocks belong to a drawer # that does not exist"},
    {"SELECT drawer, segment FROM blocks WHERE segment NOT IN (SELECT number FROM segments)",
     "a block of drawer # lies in a segment # that does not exist"},
    {"SELECT n, value FROM (SELECT max(ifnull((SELECT max(number) FROM objects), 0), "
     "ifnull((SELECT max(number) FROM sets), 0), ifnull((SELECT max(number) FROM drawers), 0)) AS "
     "n), meta "
     "WHERE name = 'next_number' AND n >= value",
     "number # is given out, but the next to give is #"},
    {"SELECT value FROM meta WHERE name = 'focus' AND value <> 0 AND "
     "value NOT IN (SELECT number FROM objects WHERE category = 1)",
     "the focus # is no record"},
    {"SELECT number FROM (SELECT number FROM objects UNION ALL SELECT number FROM sets "
     "UNION ALL SELECT number FROM drawers) GROUP BY number HAVING count(*) > 1",
     "number # names more than one thing"},
};
#undef KOV_MISSING

std::string Told(char const* text, Statement const& row) {
    std::string told;
    int column = 0;
    for (; *text; ++text) {
        if (*text == '#') {
            told += std::to_string(row.Int(column++));
        } else {
            told += *text;
        }
    }
    return told;
}

}  // namespace

void CheckCatalogueRules(Catalogue& catalogue,
                         std::function<void(std::string const&)> const& finding) {
    for (Rule const& rule : Rules) {
        try {
            Statement broken(catalogue, rule.query);
            for (int told = 0; told < ToldRows && broken.Step(); ++told)
                finding(Told(rule.text, broken));
        } catch (std::exception const& e) {
            finding(e.what());
        }
    }
}

}  // namespace kov::store
