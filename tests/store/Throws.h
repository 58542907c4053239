// What a call throws, as text: for tests that look at what an exception tells the user.
#pragma once

#include <string>

#include "KOVSimException.h"

namespace kov::test {

/// The text of the KOVSimException that `call` throws; "nothing thrown" otherwise. Other exceptions
/// pass.
template <class F>
std::string Thrown(F const& call) {
    try {
        call();
    } catch (KOVSimException const& e) {
        return e.what();
    }
    return "nothing thrown";
}

}  // namespace kov::test
