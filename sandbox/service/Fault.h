#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sandbox {

/// \brief One thing that goes wrong with a request or its answer, as the fault language names it.
///
/// A value; any thread. The language is described in the sandbox's README.
struct Fault {
    enum class Effect { none, close, reset, halfClose, stall, drip, cut, garbage, endless };
    enum class Moment { accept, request, before, head, body, after };

    std::string text; ///< as written; empty: nothing goes wrong
    Effect effect = Effect::none; ///< of a fault of the wire
    Moment moment = Moment::before;
    std::optional<std::size_t> bytes; ///< how far into the moment; nothing: its middle

    std::string kind; ///< "status", "json" and so on; empty for a fault of the wire
    std::string value; ///< what stands behind the kind

    /// \throws FaultError
    static Fault parse(const std::string &text);

    explicit operator bool() const { return !text.empty(); }
    /// What the console adds to the line of a request: the beginning of the text.
    std::string note() const { return text.empty() ? "" : " (fault " + text.substr(0, 200) + ")"; }
    bool is(const char *ofKind) const { return kind == ofKind; }
    /// Made by the front, on the bytes of the answer; every other where the answer is made.
    bool isOfFront() const;
    /// Needs to be known once the head of the request is there.
    bool isWithinRequest() const { return effect != Effect::none && moment == Moment::request; }
    bool isOnAccept() const { return effect != Effect::none && moment == Moment::accept; }
    /// Needs an answer that is encrypted.
    bool isOfCipher() const;
    /// The number that \ref value is; it was tested when read.
    long long number() const;
};

/// Says what a text of the language lacks, and what was expected in its place.
class FaultError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The faults of random weather: one of each sort that a real network and a real service bring.
const std::vector<Fault> &commonWeather();

}
