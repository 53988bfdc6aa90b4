// Which allocations of a thread are to fail.
#pragma once

#include "rw/RWCRegexp.h"

/// Counts the allocations of a thread down to the one that fails; none inside the pattern engine
/// does. Stands in a thread-local of whoever replaces the allocation, and allocates nothing.
struct FailureCountdown {
    long untilFailure = -1;     // how many succeed before; negative for all
    bool failsForGood = false;  // and all that follow fail as well
    bool hasFailed = false;

    /// Whether the next allocation is to fail.
    bool take() noexcept {
        if (untilFailure < 0 || RWCRegexp::isInEngine()) {
            return false;
        }
        if (untilFailure > 0) {
            --untilFailure;
            return false;
        }
        hasFailed = true;
        untilFailure = failsForGood ? 0 : -1;
        return true;
    }
};
