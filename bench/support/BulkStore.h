// The bulk work of the table, the same for every store: coordinates, connectivity and a vector
// field at nodes written in blocks and made lasting, read back in blocks, the field as a whole too;
// nodes picked at random and one in ten; and opening.
//
// Each store implements `BulkStore` in its own natural way, as its users would for speed, and its
// program's main calls RunBulk. Creating the file and the caller's buffers are outside the time.
#pragma once

#include <string>

#include "bench/support/Measure.h"

namespace bench {

constexpr int kBlock = 100'000;  ///< nodes or elements in a block

class BulkStore {
  public:
    virtual ~BulkStore() = default;
    virtual std::string Name() const = 0;
    /// What stands in the rows of picked nodes.
    virtual std::string GatherName() const { return Name(); }
    virtual void Create(std::string const& path, int nodes, int elements) = 0;
    /// A block of `n` nodes from node `first`. `xyz`: (n, 3), or by component if WantsComponents.
    virtual void WriteCoordinates(int first, int n, double const* xyz) = 0;
    virtual bool WantsComponents() const { return false; }
    /// `nodes`: (n, 8), from 0, or from 1 if WantsOneBased.
    virtual void WriteConnectivity(int first, int n, int const* nodes) = 0;
    virtual bool WantsOneBased() const { return false; }
    /// A vector at each node, as a field of results. To most stores these are numbers like those
    /// of coordinates.
    virtual void WriteField(int first, int n, double const* values) {
        WriteCoordinates(first, n, values);
    }
    virtual void ReadField(int first, int n, double* values) { ReadCoordinates(first, n, values); }
    /// When it has returned, all that was written is lasting.
    virtual void Commit() = 0;
    virtual void Close() = 0;
    virtual void Open(std::string const& path) = 0;
    virtual void ReadCoordinates(int first, int n, double* xyz) = 0;
    virtual void ReadConnectivity(int first, int n, int* nodes) = 0;
    /// The given nodes in one call, as (n, 3). False if the store cannot.
    virtual bool Gather(int const* nodes, int n, double* xyz) = 0;
    /// Nodes 0, stride, 2 * stride, ..., in one call.
    virtual bool ReadStrided(int n, int stride, double* xyz) = 0;
};

/// Runs one of the cases that `--case` names: coordinates, connectivity, fields, gather, open.
int RunBulk(int argc, char** argv, BulkStore& store);

}  // namespace bench
