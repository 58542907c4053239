// A scripted document for the tests of the store: a skeleton with one drawer of 8-byte rows, and
// transactions of known content, numbered from 1. From the number of transactions that a document
// holds follows all of its content, so that a document can be checked to hold a whole number of
// them and nothing else.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/store/BlockStore.h"
#include "document/store/Catalogue.h"
#include "document/store/Context.h"

namespace kov::test {

class Script {
  public:
    /// The first transaction: a focus, a collection, a distribution over it, a set and a drawer.
    static void Fill(store::Context& context);
    /// What transaction `i` writes; the caller opens and commits it.
    static void Write(store::Context& context, int i);
    /// Begins, writes and commits transaction `i`.
    static void Commit(store::Context& context, int i);
    /// How many transactions the document holds. Throws std::runtime_error naming what is not as it
    /// must be.
    static int Check(store::Context& context);
    /// The texts of Context::Verify, one a line.
    static std::string Findings(store::Context& context);

    static std::int64_t RowsOf(int i);
    static std::int64_t Row(int i, std::int64_t at) { return i * 1000003 + at * 17; }

    static constexpr int Distribution = 3;
    static constexpr int Drawer = 5;
};

/// The blocks of the scripted drawer.
std::vector<store::Block> BlocksOf(store::Context& context);

}  // namespace kov::test
