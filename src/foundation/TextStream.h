// A stream into a text that loses nothing.
#pragma once

#include <sstream>

/// Collects what is written to it, for those who then use the text.
///
/// A failing allocation leaves the operation that writes as std::bad_alloc; a plain string stream
/// swallows it and goes on with a gap. Made on the stack for one text.
class TextStream : public std::ostringstream {
public:
    TextStream() { exceptions(std::ios_base::badbit); }
};
