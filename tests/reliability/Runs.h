// How long the harnesses run, and from which seed. The counts given in the tests are those of a
// plain run; KOV_SOAK makes the harnesses repeat themselves thousands of times, the sanitizers make
// them shorter. KOV_SEED moves every random choice to another place; it is printed where a test
// fails.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

namespace reliability {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool Sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool Sanitized = true;
#else
inline constexpr bool Sanitized = false;
#endif
#else
inline constexpr bool Sanitized = false;
#endif

inline bool IsSoak() { return std::getenv("KOV_SOAK") != nullptr; }

/// How often to do something.
inline int Count(int plain, int sanitized, int soak) {
    if (char const* const given = std::getenv("KOV_RELIABILITY_COUNT")) return std::atoi(given);
    return IsSoak() ? soak : Sanitized ? sanitized : plain;
}

inline std::uint64_t Seed() {
    char const* const given = std::getenv("KOV_SEED");
    return given ? std::strtoull(given, nullptr, 0) : 20261;
}

/// The generator of one test: tests do not disturb each other's numbers.
class Random {
  public:
    explicit Random(std::uint64_t salt) : m_engine(Seed() * 1000003 + salt) {}
    /// A whole number in [0, limit).
    std::uint64_t Below(std::uint64_t limit) {
        return std::uniform_int_distribution<std::uint64_t>(0, limit - 1)(m_engine);
    }
    int Int(int limit) { return static_cast<int>(Below(static_cast<std::uint64_t>(limit))); }
    bool OneIn(int n) { return Int(n) == 0; }

  private:
    std::mt19937_64 m_engine;
};

inline std::string SeedText() { return "KOV_SEED=" + std::to_string(Seed()) + " repeats it"; }

}  // namespace reliability
