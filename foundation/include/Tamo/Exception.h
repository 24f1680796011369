#ifndef TAMO_EXCEPTION_H
#define TAMO_EXCEPTION_H

/// @file
/// The exception hierarchy of the foundation.
///
/// `LogicException` and its children report a broken program (see Bugcheck.h); `RuntimeException` and its
/// children report a broken document, stream or environment. Exceptions are values: copyable, thrown by
/// value, caught by reference. One object may be read by several threads.

#include "Tamo/Export.h"
#include <atomic>
#include <exception>
#include <memory>
#include <string>

namespace Tamo {

/// Base of every exception of this library. Several threads may read one object.
class TAMO_API Exception : public std::exception {
public:
    /// An exception with a message and an optional application code.
    explicit Exception(const std::string& message, int code = 0);

    /// An exception whose message is "message: argument".
    Exception(const std::string& message, const std::string& argument, int code = 0);

    /// An exception that keeps a copy of the exception that caused it.
    Exception(const std::string& message, const Exception& nested, int code = 0);

    /// An exception with a code and no message.
    explicit Exception(int code);

    Exception(const Exception& other);
    Exception& operator=(const Exception& other);
    ~Exception() override;

    /// The fixed, readable name of the exception's kind.
    virtual const char* name() const noexcept;

    /// The qualified name of the exception's class.
    virtual const char* className() const noexcept;

    /// The same as displayText(), with what a child adds, for code that knows std::exception only; kept in
    /// this exception. Where there is no memory for it, message() or name() alone.
    const char* what() const noexcept override;

    /// The message, followed by ": " and the argument when there is one.
    const std::string& message() const noexcept { return _message; }

    /// The name, ": " and the message; the name alone when there is no message, and the message alone when it
    /// begins with the name.
    std::string displayText() const;

    /// The exception that caused this one, or null. Owned by this exception.
    const Exception* nested() const noexcept { return _pNested.get(); }

    /// The code given at construction, 0 by default.
    int code() const noexcept { return _code; }

    /// A copy of the same class; the caller deletes it.
    virtual Exception* clone() const;

    /// Throws a copy of this exception as its own class.
    [[noreturn]] virtual void rethrow() const;

protected:
    /// What what() says.
    virtual std::string fullText() const { return displayText(); }

    /// Has what() ask fullText() again; nobody may be reading the exception.
    void forgetText() noexcept { delete _pText.exchange(nullptr); }

private:
    std::string _message;
    std::unique_ptr<Exception> _pNested;
    int _code;
    mutable std::atomic<const std::string*> _pText = nullptr; // what() has made it, and it is owned
};

} // namespace Tamo

/// Declares an exception class CLASS derived from BASE; to be followed by TAMO_IMPLEMENT_EXCEPTION in one
/// source.
#define TAMO_DECLARE_EXCEPTION(CLASS, BASE)                                                                  \
    class TAMO_API CLASS : public BASE {                                                                     \
    public:                                                                                                  \
        explicit CLASS(const std::string& message, int code = 0);                                            \
        CLASS(const std::string& message, const std::string& argument, int code = 0);                        \
        CLASS(const std::string& message, const ::Tamo::Exception& nested, int code = 0);                    \
        explicit CLASS(int code);                                                                            \
        const char* name() const noexcept override;                                                          \
        const char* className() const noexcept override;                                                     \
        ::Tamo::Exception* clone() const override;                                                           \
        [[noreturn]] void rethrow() const override;                                                          \
    };

/// Defines an exception class declared by TAMO_DECLARE_EXCEPTION in the namespace QUALIFIER (a string
/// literal).
#define TAMO_IMPLEMENT_EXCEPTION(CLASS, BASE, QUALIFIER, NAME)                                               \
    CLASS::CLASS(const std::string& message, int code) : BASE(message, code) {}                              \
    CLASS::CLASS(const std::string& message, const std::string& argument, int code)                          \
        : BASE(message, argument, code) {}                                                                   \
    CLASS::CLASS(const std::string& message, const ::Tamo::Exception& nested, int code)                      \
        : BASE(message, nested, code) {}                                                                     \
    CLASS::CLASS(int code) : BASE(code) {}                                                                   \
    const char* CLASS::name() const noexcept {                                                               \
        return NAME;                                                                                         \
    }                                                                                                        \
    const char* CLASS::className() const noexcept {                                                          \
        return QUALIFIER #CLASS;                                                                             \
    }                                                                                                        \
    ::Tamo::Exception* CLASS::clone() const {                                                                \
        return new CLASS(*this);                                                                             \
    }                                                                                                        \
    void CLASS::rethrow() const {                                                                            \
        throw *this;                                                                                         \
    }

namespace Tamo {

/// The program is wrong.
TAMO_DECLARE_EXCEPTION(LogicException, Exception)
/// An assertion does not hold.
TAMO_DECLARE_EXCEPTION(AssertionViolationException, LogicException)
/// A null pointer stands where an object is needed.
TAMO_DECLARE_EXCEPTION(NullPointerException, LogicException)
/// An argument that the operation does not accept.
TAMO_DECLARE_EXCEPTION(InvalidArgumentException, LogicException)
/// An operation that the object does not allow.
TAMO_DECLARE_EXCEPTION(InvalidAccessException, LogicException)
/// An operation that is not implemented for this object.
TAMO_DECLARE_EXCEPTION(NotImplementedException, LogicException)

/// Data or environment are wrong.
TAMO_DECLARE_EXCEPTION(RuntimeException, Exception)
/// Something that was looked up does not exist.
TAMO_DECLARE_EXCEPTION(NotFoundException, RuntimeException)
/// A name or scheme that nobody has registered.
TAMO_DECLARE_EXCEPTION(UnknownURISchemeException, RuntimeException)
/// Something that exists already.
TAMO_DECLARE_EXCEPTION(ExistsException, RuntimeException)
/// A fixed-size container is full.
TAMO_DECLARE_EXCEPTION(PoolOverflowException, RuntimeException)
/// Data that does not have the expected form.
TAMO_DECLARE_EXCEPTION(DataException, RuntimeException)
/// Text that breaks the syntax of its format.
TAMO_DECLARE_EXCEPTION(SyntaxException, DataException)
/// A stream or file operation failed.
TAMO_DECLARE_EXCEPTION(IOException, RuntimeException)
/// A file that does not exist.
TAMO_DECLARE_EXCEPTION(FileNotFoundException, IOException)
/// A file that cannot be opened.
TAMO_DECLARE_EXCEPTION(OpenFileException, IOException)

} // namespace Tamo

#endif
