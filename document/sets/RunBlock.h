// How a set hands its runs to a sink: in blocks, so that the call through a pointer is paid once
// for many runs. Private to the sets.
#pragma once

#include <array>
#include <cstddef>

#include "document/sets/Run.h"

namespace kov::sets {

/// Gathers runs into blocks for a sink, and joins those that meet across containers.
class RunBlock {
  public:
    RunBlock(RunSink sink, void* context) : sink_(sink), context_(context) {}

    /// REQUIRES: runs come ascending. False once the sink has stopped the visit.
    bool Add(int first, int end) {
        if (first == end_) {
            end_ = end;
            return true;
        }
        bool const goOn = Push();
        first_ = first;
        end_ = end;
        return goOn;
    }
    /// Hands the rest over.
    bool Finish() { return Push() && Flush(); }

  private:
    bool Push() {
        if (end_ < 0) return true;
        block_[count_++] = {first_, end_};
        return count_ < block_.size() || Flush();
    }
    bool Flush() {
        size_t const count = count_;
        count_ = 0;
        return count == 0 || sink_(context_, block_.data(), count);
    }

    RunSink sink_;
    void* context_;
    int first_ = 0;
    int end_ = -1;
    size_t count_ = 0;
    std::array<Run, 256> block_;
};

}  // namespace kov::sets
