// What is left of the calling thread's stack, for everything that recurses.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tells recursive code whether it may go one level deeper.
///
/// The bounds of a thread's stack are read once a thread and kept in a thread-local number. A part
/// of the stack is held back, for the calls that a level makes and for reporting the refusal. On a
/// stack that the system did not make (a coroutine's) there is always room as far as this class
/// can tell; callers count levels as well.
///
/// The system allocates when it is asked for the bounds. Where there is no memory for that, the
/// call throws std::bad_alloc, and the next one asks again. Where the system cannot tell for
/// another reason (the first thread's bounds stand in /proc, which may be out of sight), a thread
/// may go 256 KiB below the frame that asked first, until the system can tell.
class __attribute__((visibility("default"))) OrvStack {
public:
    /// True while the current frame leaves more than the reserve.
    static bool hasRoom();

    /// The lowest address that a frame of this thread may reach, 0 on a foreign stack. Loops that
    /// ask often compare with it themselves: isBelow(limit()).
    static std::uintptr_t limit();

    /// True when the current frame has gone below `limit`.
    static bool isBelow(std::uintptr_t limit) noexcept {
        return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) < limit;
    }
};
