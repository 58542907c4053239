// The tables of a catalogue, as SQL: the document format's single source. docs/format.md describes
// them. A change of any table is a new format version.
//
// Numbers: objects, sets and drawers share one counter, so a number names one thing of a document
// for ever; it is kept in `meta` and never handed out twice. References are 64-bit integers, see
// Reference.h.
#pragma once

namespace kov::store {

inline constexpr int FormatVersion = 1;

inline constexpr char CatalogueTables[] = R"sql(
CREATE TABLE meta(
    name TEXT PRIMARY KEY,           -- 'format', 'uuid', 'next_number', 'focus', 'commits'
    value
) WITHOUT ROWID;
CREATE TABLE objects(                -- records, collections, datasets, distributions, function tables
    number INTEGER PRIMARY KEY,
    category INTEGER NOT NULL,       -- KOVSimCategory
    type INTEGER NOT NULL,           -- type index; -1 for none
    name TEXT
);
CREATE TABLE collections(
    number INTEGER PRIMARY KEY,
    space INTEGER NOT NULL           -- count of members
);
CREATE TABLE members(                -- members that are records or symbols
    collection INTEGER NOT NULL,
    member INTEGER NOT NULL,
    type INTEGER NOT NULL,
    symbol INTEGER,                  -- number of the symbol, or null
    name TEXT,
    PRIMARY KEY(collection, member)
) WITHOUT ROWID;
CREATE TABLE sets(
    number INTEGER PRIMARY KEY,
    collection INTEGER NOT NULL,
    size INTEGER NOT NULL,           -- -1: the members of dimension of a drawer that grows; see drawers
    hash INTEGER NOT NULL,           -- of the members, for look-up of stored twins
    members BLOB NOT NULL,           -- encoded index set; of a drawer's growing set: empty
    name TEXT
);
CREATE TABLE links(
    owner INTEGER NOT NULL,          -- reference
    member INTEGER NOT NULL,         -- member index; associations: (type + 1) << 32 | member
    key NOT NULL,                    -- 0 link to one; 1.. place in a vector; text key of a map; blob (8 bytes, target) in a set
    target INTEGER NOT NULL,         -- reference
    target_type INTEGER NOT NULL,
    PRIMARY KEY(owner, member, key)
) WITHOUT ROWID;
CREATE TABLE fields(
    owner INTEGER NOT NULL,          -- reference
    field INTEGER NOT NULL,
    kind INTEGER NOT NULL,           -- 'i' integer, 'd' reals (blob of little-endian doubles), 's' symbol, 't' text, 'y' type
    value,
    PRIMARY KEY(owner, field)
) WITHOUT ROWID;
CREATE TABLE datasets(
    number INTEGER PRIMARY KEY,
    distribution INTEGER             -- number of the relational distribution, or null
);
CREATE TABLE compartments(
    dataset INTEGER NOT NULL,
    place INTEGER NOT NULL,
    sets BLOB NOT NULL,              -- for each domain 12 bytes, little-endian: collection, set number, type
    PRIMARY KEY(dataset, place)
) WITHOUT ROWID;
CREATE TABLE distributions(
    number INTEGER PRIMARY KEY,
    key INTEGER NOT NULL,            -- 2 int, 4 double, 7 member index
    range INTEGER,                   -- collection of key 7
    dim0 INTEGER NOT NULL,           -- collections of the grid
    dim1 INTEGER
);
CREATE TABLE drawers(
    number INTEGER PRIMARY KEY,
    distribution INTEGER NOT NULL,
    growing INTEGER NOT NULL,        -- extendable dimension, -1 none
    chunk0 INTEGER, chunk1 INTEGER,  -- chunk sizes as given; null for an unchunked drawer
    set0 INTEGER NOT NULL,           -- numbers of the drawer's own sets
    set1 INTEGER,
    row_bytes INTEGER NOT NULL,      -- bytes of one row: entries of one member of the row dimension (growing, or 0)
    rows INTEGER NOT NULL,           -- rows stored, see extents
    unwritten BLOB NOT NULL          -- of a growing drawer: encoded index set of its members without a row; empty: none
);
CREATE INDEX drawers_of ON drawers(distribution, number);
CREATE TABLE extents(                -- which members the rows of a drawer belong to, in order of arrival
    drawer INTEGER NOT NULL,
    first_row INTEGER NOT NULL,
    runs BLOB NOT NULL,              -- pairs of varints: zigzag (first member - end of the run before), count
    PRIMARY KEY(drawer, first_row)
) WITHOUT ROWID;
CREATE TABLE blocks(                 -- where the rows of a drawer lie
    drawer INTEGER NOT NULL,
    first_row INTEGER NOT NULL,
    rows INTEGER NOT NULL,
    skip INTEGER NOT NULL,           -- rows of the stored block in front of first_row that are superseded
    segment INTEGER NOT NULL,
    offset INTEGER NOT NULL,         -- of the stored block
    bytes INTEGER NOT NULL,          -- of the stored block, whole
    sums BLOB NOT NULL,              -- XXH3 of each 64 KiB page, 8 bytes little-endian each
    PRIMARY KEY(drawer, first_row)
) WITHOUT ROWID;
CREATE TABLE segments(
    number INTEGER PRIMARY KEY,
    bytes INTEGER NOT NULL           -- committed length, header included
);
CREATE TABLE tables(                 -- function tables
    number INTEGER PRIMARY KEY,
    rows INTEGER NOT NULL,
    columns INTEGER NOT NULL,
    labels BLOB NOT NULL,            -- texts: varint length and bytes each; the table's labels
    column_labels BLOB NOT NULL,
    data BLOB NOT NULL               -- little-endian doubles, row by row
);
)sql";

}  // namespace kov::store
