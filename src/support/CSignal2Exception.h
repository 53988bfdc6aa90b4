// The guard that, where a platform offers it, turns processor faults into exceptions.
#pragma once

/// Stands around the phases of a compilation, on the stack of the driver.
///
/// On this platform it does nothing: a processor fault stays what it is, since the signal that
/// reports one leaves no state from which an exception could be thrown with meaning.
class CSignal2Exception {
public:
    CSignal2Exception() noexcept {}
    ~CSignal2Exception() {}
    CSignal2Exception(const CSignal2Exception&) = delete;
    CSignal2Exception& operator=(const CSignal2Exception&) = delete;
};
