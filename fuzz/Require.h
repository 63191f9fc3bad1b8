#pragma once

#include <cstdlib>

/// Ends the run, so that the fuzzer keeps the input, when what must always hold does not.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}
