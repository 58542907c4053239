// KOVSimTransfer: one bulk read, write or making of a drawer, through a buffer of the caller's. A
// working object on the stack, used once:
//
//     built -> direction and mode set -> view set -> CheckView -> buffer set -> executed ->
//     relinquished
//
// Buffer layout: dimension 0 runs slowest. With n1 members in the view's dimension 1, entry (i, j)
// lies at i * n1 + j, where i and j are locations in the two sets of the view, in their order; a
// transfer thus permutes when it is given an ordered set. An entry of a read view that no drawer
// holds keeps what the caller put there; an entry that a drawer holds but that was never written
// reads as zero. Where drawers overlap, the one made last serves the entry. Making and writing need
// an open transaction. Whatever is refused throws KOVSimException with the dimension and the
// members in question.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimArray.h"
#include "KOVSimCSet.h"
#include "KOVSimDistribution.h"
#include "KOVSimTypedIDs.h"

class KOV_EXPORT KOVSimTransfer {
  public:
    explicit KOVSimTransfer(KOVSimDistribution distribution);
    ~KOVSimTransfer();
    KOVSimTransfer(KOVSimTransfer const&) = delete;
    KOVSimTransfer& operator=(KOVSimTransfer const&) = delete;

    /// Direction: from the store to a buffer, or from a buffer to the store.
    KOVSimTransfer& SetRead();
    KOVSimTransfer& SetWrite();
    /// Always false: entries that no drawer holds are left alone. True is refused.
    KOVSimTransfer& SetBufferPadding(bool padding);
    /// Restricts the transfer to one drawer.
    KOVSimTransfer& SetDrawer(KOVSimDrawerID const& drawer);
    /// The view: which members of dimension `dim`.
    KOVSimTransfer& SetDim(int dim, KOVSimCSet const& members);
    KOVSimTransfer& SetDim(int dim, KOVSimCSetID const& members);
    /// New members by which a write extends the drawer's extendable dimension; stands for `SetDim`
    /// on that dimension.
    KOVSimTransfer& SetDimExtension(KOVSimCSetID const& members);
    /// The write may name members that the drawer does not have yet in its extendable dimension: it
    /// grows to hold them.
    KOVSimTransfer& SetAutoExtend();
    /// Creates a new drawer on execution: unchunked, or chunked with one chunk size for each
    /// dimension.
    KOVSimTransfer& SetMakeNewDrawer();
    KOVSimTransfer& SetMakeNewDrawerChunked(
        KOVSimArray<int, KOVSimArrayBuiltinPolicy<int>> const& chunks);
    /// The dimension in which a new chunked drawer may grow.
    KOVSimTransfer& SetExtendableDim(int dim);
    /// The entry type of the buffer. Integers are read into a buffer of doubles (key 4) on request;
    /// any other difference from the distribution's own type is refused.
    KOVSimTransfer& SetBufferType(KOVSimTypeKey key);

    /// Checks what was set; call it after the last setter and before the buffer. Throws if the view
    /// is refused.
    KOVSimTransfer& CheckView();
    /// The bytes that the view takes: the product of the sizes of its sets and of the entry size.
    /// `buffer` is always 0.
    int RequiredBufferSize(int buffer = 0) const;
    /// The caller's buffer of exactly that many bytes; it stays the caller's. `buffer` is always 0.
    KOVSimTransfer& SetBuffer(int buffer, void* data, unsigned long bytes);
    KOVSimTransfer& SetBuffer(int buffer, void const* data, unsigned long bytes);
    KOVSimTransfer& ExecRead();
    KOVSimTransfer& ExecWrite();
    /// Creates the drawer and moves no data.
    KOVSimTransfer& ExecMake();
    /// The drawer that was made or written; null before.
    KOVSimDrawerID DrawerID() const;
    /// Ends the transfer's hold on the caller's buffer.
    KOVSimTransfer& RelinquishBuffers();

    struct Plan;

  private:
    std::unique_ptr<Plan> m_plan;
};
