#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "document/store/Errors.h"
#include "document/store/Segment.h"

namespace kov::store {

namespace {

constexpr std::int64_t StepBytes = std::int64_t{64} << 20;
constexpr std::int64_t LeastReserve = std::int64_t{16} << 20;

// Address space is reserved whole, so that a segment never moves; memory is taken as it fills, in
// steps.
class MemorySegment : public Segment {
  public:
    MemorySegment(char* base, std::int64_t reserved) : m_base(base), m_reserved(reserved) {}
    ~MemorySegment() override {
        if (m_base) ::munmap(m_base, static_cast<std::size_t>(m_reserved));
    }

    void Write(std::int64_t offset, void const* data, std::size_t bytes) override {
        Reach(offset + static_cast<std::int64_t>(bytes));
        std::memcpy(m_base + offset, data, bytes);
    }
    void Read(std::int64_t offset, void* out, std::size_t bytes) const override {
        if (offset < 0 || offset + static_cast<std::int64_t>(bytes) > m_usable) {
            Fail("a segment in memory ends inside a block");
        }
        std::memcpy(out, m_base + offset, bytes);
    }
    int TrySync() override { return 0; }
    int TryTruncate(std::int64_t size) override {
        std::int64_t const from = (size + 4095) & ~std::int64_t{4095};
        if (from < m_usable)
            ::madvise(m_base + from, static_cast<std::size_t>(m_usable - from), MADV_DONTNEED);
        return 0;
    }
    void SetPath(std::string) override {}
    void Abandon() override {}

  private:
    void Reach(std::int64_t size) {
        if (size <= m_usable) return;
        std::int64_t const wanted =
            std::min((size + StepBytes - 1) / StepBytes * StepBytes, m_reserved);
        auto const grown = static_cast<std::size_t>(wanted - m_usable);
        if (wanted < size || ::mprotect(m_base + m_usable, grown, PROT_READ | PROT_WRITE) != 0) {
            FailFile("enlarge", "a document in memory", ENOMEM);
        }
        ::madvise(m_base + m_usable, grown, MADV_HUGEPAGE);
        m_usable = wanted;
    }

    char* m_base;
    std::int64_t m_reserved;
    std::int64_t m_usable = 0;
};

}  // namespace

std::unique_ptr<Segment> CreateMemorySegment(std::int64_t& limit) {
    for (std::int64_t reserve = std::max(limit, LeastReserve); reserve >= LeastReserve;
         reserve /= 2) {
        void* const base = ::mmap(nullptr, static_cast<std::size_t>(reserve), PROT_NONE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (base == MAP_FAILED) continue;
        limit = std::min(limit, reserve);
        return std::make_unique<MemorySegment>(static_cast<char*>(base), reserve);
    }
    FailFile("enlarge", "a document in memory", ENOMEM);
}

}  // namespace kov::store
