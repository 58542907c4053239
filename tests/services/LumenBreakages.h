// What may be broken in the certified document, and what the checker says of it.
#pragma once

#include <string>
#include <vector>

#include "services/LumenDocument.h"

namespace kov::test {

struct Breakage {
    char const* name;
    /// Breakages of one place hide or change each other's findings: at most one of them is made. A
    /// breakage of the place "" is made alone: it hides much, or its findings lie apart.
    char const* place;
    void (*make)(LumenDocument& document);
    /// {id NAME} stands for the numbers of the field type NAME.
    std::vector<std::string> findings;
};

/// One thing each, in the order in which the checker meets them.
std::vector<Breakage> const& Breakages();
/// The findings with the numbers of this document.
std::vector<std::string> Expected(Breakage const& breakage, LumenDocument const& document);

/// Each text that the checker can give, {} for what is filled in.
std::vector<std::string> const& AllMessages();

}  // namespace kov::test
