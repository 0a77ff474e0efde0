#include "platform/runtime/RunTimeError.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace pixmora {

namespace {

constexpr std::pair<ErrorNumber, const char *> messages[] = {
    {ErrorNumber::InvalidProcedureCall, "Invalid procedure call or argument"},
    {ErrorNumber::Overflow, "Overflow"},
    {ErrorNumber::SubscriptOutOfRange, "Subscript out of range"},
    {ErrorNumber::DivisionByZero, "Division by zero"},
    {ErrorNumber::TypeMismatch, "Type mismatch"},
    {ErrorNumber::FileNotFound, "File not found"},
    {ErrorNumber::DeviceIOError, "Device I/O error"},
    {ErrorNumber::DiskFull, "Disk full"},
    {ErrorNumber::PermissionDenied, "Permission denied"},
    {ErrorNumber::PathFileAccessError, "Path/File access error"},
    {ErrorNumber::ObjectNotSet, "Object variable or With block variable not set"},
    {ErrorNumber::InvalidPattern, "Invalid pattern string"},
    {ErrorNumber::InvalidUseOfNull, "Invalid use of Null"},
    {ErrorNumber::MethodNotFound, "Object doesn't support this property or method"},
    {ErrorNumber::WrongNumberOfArguments, "Wrong number of arguments or invalid property assignment"},
    {ErrorNumber::NoCurrentRecord, "No current record."},
    {ErrorNumber::DatabaseError, "Database error"},
    {ErrorNumber::DatabaseFailure, "Database error"},
    {ErrorNumber::SyntaxError, "Syntax error in query expression"},
    {ErrorNumber::ItemNotFound, "Item not found in this collection."},
    {ErrorNumber::AddressInUse, "Address in use"},
    {ErrorNumber::AddressNotAvailable, "Address is not available from the local machine"},
    {ErrorNumber::PictureError, "Picture error"},
};

std::string MessageOf(ErrorNumber number) {
    for (const auto &[known, message] : messages) {
        if (known == number) return message;
    }
    return "Application-defined or object-defined error";
}

}  // namespace

RunTimeError::RunTimeError(ErrorNumber number) : RunTimeError(number, MessageOf(number)) {}

RunTimeError::RunTimeError(ErrorNumber number, std::string message) : number_(number), message_(std::move(message)) {}

RunTimeError RunTimeError::About(std::string_view subject) const {
    return {number_, message_ + " (" + std::string(subject) + ")"};
}

bool RunTimeError::IsStorageFailure() const {
    constexpr ErrorNumber failures[] = {ErrorNumber::DatabaseFailure, ErrorNumber::DeviceIOError, ErrorNumber::DiskFull,
                                        ErrorNumber::PermissionDenied, ErrorNumber::PathFileAccessError};
    return std::ranges::find(failures, number_) != std::end(failures);
}

}  // namespace pixmora
