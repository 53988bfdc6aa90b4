// What is left of the calling thread's stack, for everything that recurses.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tells recursive code whether it may go one level deeper.
///
/// The bounds of a thread's stack are read once a thread and kept in a thread-local number. A part
/// of the stack is held back, for the calls that a level makes and for reporting the refusal. On a
/// stack that the host made (a fiber's), whose bounds nobody tells, a recursion may go 256 KiB
/// below the frame that asked for the limit; with what is held back, such a stack needs 512 KiB.
///
/// The system allocates when it is asked for the bounds. Where there is no memory for that, the
/// call throws std::bad_alloc, and the next one asks again. Where the system cannot tell for
/// another reason (the first thread's bounds stand in /proc, which may be out of sight), a thread
/// may go 256 KiB below the frame that asked first, until the system can tell.
class __attribute__((visibility("default"))) OrvStack {
public:
    /// True while the current frame leaves more than the reserve; on a host's own stack always, so
    /// that what may be deep there has to ask for the limit once, where it begins.
    static bool hasRoom();

    /// The lowest address that a frame of what begins here may reach. A recursion asks once and
    /// compares with it at every level: isBelow(limit()).
    static std::uintptr_t limit();

    /// True when the current frame has gone below `limit`.
    static bool isBelow(std::uintptr_t limit) noexcept {
        return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) < limit;
    }
};
