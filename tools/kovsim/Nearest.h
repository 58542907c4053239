// Nearest: what a user may have meant by a name that is not there, for hints in messages.
//
// The distance is the least number of letters to put in, take out, replace or swap with their
// neighbour, without regard to case. Only names within a third of the wanted name's length count,
// so that a hint is a likely one or none at all; and the comparison of two names ends as soon as it
// is beyond the best that is known, so that 100,000 names take some milliseconds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kov::tool {

/// Gathers the nearest of the names that it is shown.
class NearestSearch {
  public:
    static constexpr std::size_t kMost = 3;

    explicit NearestSearch(std::string_view wanted);

    void Look(std::string_view name);
    /// Up to 3 names, the nearest first, among equally near ones by the alphabet; each once.
    std::vector<std::string> Names() const;

  private:
    struct Found {
        int distance;
        std::string name;
    };

    std::string m_wanted;  ///< in lower case
    int m_most;            ///< names further away do not count
    std::vector<Found> m_found;
    std::string m_lower;
    std::vector<int> m_rows;
};

/// The up to 3 nearest of a range of names, the nearest first; empty if none is near. `names` holds
/// texts.
template <class Names>
std::vector<std::string> NearestNames(std::string_view wanted, Names const& names) {
    NearestSearch search(wanted);
    for (auto const& name : names) search.Look(name);
    return search.Names();
}

/// "; did you mean 'a', 'b' or 'c'?" for the end of a message; empty without names.
std::string NearestHint(std::vector<std::string> const& names);

}  // namespace kov::tool
