/// @file
/// How a device wants its credentials.
#pragma once

namespace koine::platform {

/// What a client has learned about the device's authentication.
///
/// libcurl keeps the nonce but sends it unasked only when it is told exactly one scheme. So the first request
/// goes without credentials; from the first challenge on every request carries them at once.
class AuthMemory {
public:
    /// The one scheme to use, as libcurl's bit; 0 while none is known.
    long scheme() const noexcept { return scheme_; }

    /// Takes note of the schemes that the device offered, as libcurl's bits.
    /// @return whether a refusal in that answer may be owed to what was known before, so that the same
    ///         request is worth another try
    bool learn(long offered) noexcept;

    void forget() noexcept { scheme_ = 0; }

private:
    long scheme_ = 0;
};

} // namespace koine::platform
