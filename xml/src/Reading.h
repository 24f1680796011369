#ifndef TAMO_XML_READING_H
#define TAMO_XML_READING_H

#include "Tamo/Types.h"
#include <cstddef>
#include <exception>
#include <string_view>

namespace Tamo::XML {

/// Which of Expat's callbacks are executed.
///
/// A document that is here as a whole is first given to an Expat that knows nothing of namespaces, which are
/// resolved here: that is faster. Whatever is then unusual (an error, a name or a declaration that could be
/// wrong, an internal subset) leaves the verdict to an Expat with namespaces, which reads the document again
/// from its beginning; the callbacks up to that point are passed over:
///
///     RAW -> rejected -> passing over -> passing ends -> RESOLVED
///
/// All other documents are RESOLVED from the start. From every state an exception leads to FAILED. Owned by
/// one parse.
class Reading {
public:
    /// What a callback is about. The first Expat knows no namespaces and has no callbacks for them.
    enum class Callback { COMMON, NAMESPACE_START, NAMESPACE_END };

    /// Which Expat is the first one.
    enum class First { RAW, RESOLVED };

    explicit Reading(First first) noexcept : _state(first == First::RAW ? State::RAW : State::RESOLVED) {}

    /// Whether this is the first reading: Expat knows nothing of namespaces, names are raw.
    bool isRaw() const noexcept { return _state == State::RAW; }

    /// Whether the first reading has found something for the second one to decide.
    bool isRejected() const noexcept { return _state == State::REJECTED; }

    /// Whether a callback is to be executed, which is then counted.
    bool takes(Callback callback) noexcept {
        if (_state > State::RESOLVED && !takesOnWay(callback)) [[unlikely]] {
            return false;
        }
        ++_reported;
        return true;
    }

    /// Whether there is text to be executed, which text becomes, and which is counted by its octets: Expat
    /// cuts it where its pieces end, too.
    bool takes(std::string_view& text) noexcept {
        if (_state > State::RESOLVED && !takesOnWay(text)) [[unlikely]] {
            return false;
        }
        _reported += text.size();
        return true;
    }

    /// The callback that is being executed does nothing; the second reading is to decide about it.
    void reject() noexcept {
        --_reported;
        _state = State::REJECTED;
    }

    /// Begins the second reading where the first one has executed callbacks.
    void passOver() noexcept {
        _passOver = _reported;
        _state = _passOver != 0 ? State::PASSING_OVER : State::PASSING_ENDS;
    }

    /// Begins the second reading where the first one has not taken place.
    void skipFirst() noexcept { _state = State::RESOLVED; }

    /// The exception that is being handled ends the reading.
    void fail() noexcept {
        _pException = std::current_exception();
        _state = State::FAILED;
    }

    bool hasFailed() const noexcept { return _state == State::FAILED; }

    /// Throws what has ended the reading, if anything has.
    void rethrow() const {
        if (hasFailed()) {
            std::rethrow_exception(_pException);
        }
    }

private:
    enum class State : unsigned char {
        RAW,
        RESOLVED,     // up to here all callbacks are executed
        REJECTED,     // Expat may deliver a few more before it stops
        PASSING_OVER, // what the first reading has executed
        PASSING_ENDS, // of the last element's declarations, which have been reported with its end
        FAILED
    };

    bool takesOnWay(Callback callback) noexcept;
    bool takesOnWay(std::string_view& text) noexcept;

    State _state;
    UInt64 _reported = 0; // octets of text, and callbacks but those of text
    UInt64 _passOver = 0; // how many of these have been here before
    std::exception_ptr _pException;
};

} // namespace Tamo::XML

#endif
