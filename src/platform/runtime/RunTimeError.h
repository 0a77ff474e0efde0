// The run time's error: the one exception of the server.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace pixmora {

/// The numbers of the run time's errors that the program raises or looks at.
enum class ErrorNumber : int {
    InvalidProcedureCall = 5,
    Overflow = 6,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    FileNotFound = 53,
    DeviceIOError = 57,
    DiskFull = 61,
    PermissionDenied = 70,
    PathFileAccessError = 75,
    ObjectNotSet = 91,
    InvalidPattern = 93,
    InvalidUseOfNull = 94,
    MethodNotFound = 438,
    WrongNumberOfArguments = 450,
    NoCurrentRecord = 3021,
    DatabaseError = 3000,         ///< the engine refused; its own words are the message
    DatabaseFailure = 3049,       ///< its file can't be used now: full disk, lock, read-only, input or output, damage
    SyntaxError = 3075,           ///< a statement or criterion that can't be read
    ItemNotFound = 3265,          ///< no such table or field
    AddressInUse = 10048,         ///< Listen on a port that another program holds
    AddressNotAvailable = 10049,  ///< Listen on an address that isn't this machine's
    PictureError = 32000,         ///< the picture engine could not do its work
};

/// An error of the run time. A request's handler turns it into the failure answer; one that reaches an event's guard
/// ends the process (see MessageLoop.h).
class RunTimeError : public std::exception {
public:
    /// With the run time's own message for the number ("Subscript out of range").
    explicit RunTimeError(ErrorNumber number);
    RunTimeError(ErrorNumber number, std::string message);

    /// The same error with what it is about behind its message: "Type mismatch (Setup, FilesPerRow)".
    RunTimeError About(std::string_view subject) const;

    ErrorNumber Number() const { return number_; }
    const std::string &Message() const { return message_; }
    /// Whether a file or the disk under it refused, which is nobody's mistake and may pass.
    bool IsStorageFailure() const;
    const char *what() const noexcept override { return message_.c_str(); }

private:
    ErrorNumber number_;
    std::string message_;
};

template <typename Call>
concept HasResult = !std::is_void_v<std::invoke_result_t<Call>>;

/// Calls. @return what came of it; none where that was an error
template <HasResult Call>
std::optional<std::invoke_result_t<Call>> Try(const Call &call) try {
    return call();
} catch (const RunTimeError &) {
    return std::nullopt;
}

/// The same for what has no result. @return whether it went without an error
template <typename Call>
bool Try(const Call &call) try {
    call();
    return true;
} catch (const RunTimeError &) {
    return false;
}

/// Calls, and lets an error out with what it is about behind its message.
template <typename Call>
auto Naming(std::string_view subject, const Call &call) {
    try {
        return call();
    } catch (const RunTimeError &error) {
        throw error.About(subject);
    }
}

}  // namespace pixmora
