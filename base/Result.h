#pragma once

#include <QString>

#include <utility>
#include <variant>

/// What went wrong, for programs.
enum class ErrorCode {
    NotFound,      ///< no such file or resource
    NotReadable,   ///< it exists and can't be read
    NotWritable,   ///< it can't be created, written or replaced
    NotAPath,      ///< the text can't name a file (NUL byte, invalid UTF-8, empty)
    UnknownFormat, ///< the bytes are of no format known here
    Unsupported,   ///< a known format in a variant that is not read or written here
    Damaged,       ///< truncated or otherwise broken data
    TooLarge,      ///< more pixels or bytes than the limit
    TakesTooLong,  ///< more time than the limit
    Malformed,     ///< well-formed data of the wrong shape
    EmptySize,     ///< a size without a single pixel
    OutOfMemory,   ///< not enough memory
    DiskFull,      ///< no room on the disk, or the user's quota is used up
};

/// A failure: a code for programs and a sentence for people (no full stop, no file name unless it is part
/// of the cause).
struct Error {
    ErrorCode code;
    QString sentence;
};

/// The same error with `subject` put before its sentence: a file, or another thing that the error is about.
inline Error about(const QString& subject, const Error& error) {
    return {error.code, QStringLiteral("%1: %2").arg(subject, error.sentence)};
}

/// A value, or an Error in its place. Check with `if (result)` before taking either.
template <typename T>
class [[nodiscard]] Result {
  public:
    // NOLINTBEGIN(google-explicit-constructor): a function returns a value or an Error as it is.
    Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : m_state(std::in_place_index<1>, std::move(error)) {}
    // NOLINTEND(google-explicit-constructor)

    explicit operator bool() const { return m_state.index() == 0; }

    T& operator*() { return *std::get_if<0>(&m_state); }
    const T& operator*() const { return *std::get_if<0>(&m_state); }
    T* operator->() { return std::get_if<0>(&m_state); }
    const T* operator->() const { return std::get_if<0>(&m_state); }
    const Error& error() const { return *std::get_if<1>(&m_state); }

    /// The value, or `otherwise` if there is none: for operations that promise a fallback value.
    T valueOr(T otherwise) && { return *this ? std::move(**this) : std::move(otherwise); }

  private:
    std::variant<T, Error> m_state;
};

/// The value of a Result that has nothing to return.
struct Done {};
