#include "platform/runtime/RunTimeError.h"

#include <utility>

namespace pixmora {

namespace {

std::string MessageOf(ErrorNumber number) {
    switch (number) {
        case ErrorNumber::InvalidProcedureCall:
            return "Invalid procedure call or argument";
        case ErrorNumber::Overflow:
            return "Overflow";
        case ErrorNumber::SubscriptOutOfRange:
            return "Subscript out of range";
        case ErrorNumber::DivisionByZero:
            return "Division by zero";
        case ErrorNumber::TypeMismatch:
            return "Type mismatch";
        case ErrorNumber::FileNotFound:
            return "File not found";
        case ErrorNumber::DeviceIOError:
            return "Device I/O error";
        case ErrorNumber::DiskFull:
            return "Disk full";
        case ErrorNumber::PermissionDenied:
            return "Permission denied";
        case ErrorNumber::PathFileAccessError:
            return "Path/File access error";
        case ErrorNumber::ObjectNotSet:
            return "Object variable or With block variable not set";
        case ErrorNumber::InvalidPattern:
            return "Invalid pattern string";
        case ErrorNumber::InvalidUseOfNull:
            return "Invalid use of Null";
        case ErrorNumber::MethodNotFound:
            return "Object doesn't support this property or method";
        case ErrorNumber::WrongNumberOfArguments:
            return "Wrong number of arguments or invalid property assignment";
        case ErrorNumber::NoCurrentRecord:
            return "No current record.";
        case ErrorNumber::DatabaseError:
        case ErrorNumber::DatabaseFailure:
            return "Database error";
        case ErrorNumber::SyntaxError:
            return "Syntax error in query expression";
        case ErrorNumber::ItemNotFound:
            return "Item not found in this collection.";
        case ErrorNumber::AddressInUse:
            return "Address in use";
        case ErrorNumber::AddressNotAvailable:
            return "Address is not available from the local machine";
        case ErrorNumber::PictureError:
            return "Picture error";
    }
    return "Application-defined or object-defined error";
}

}  // namespace

RunTimeError::RunTimeError(ErrorNumber number) : RunTimeError(number, MessageOf(number)) {}

RunTimeError::RunTimeError(ErrorNumber number, std::string message) : number_(number), message_(std::move(message)) {}

bool RunTimeError::IsStorageFailure() const {
    switch (number_) {
        case ErrorNumber::DatabaseFailure:
        case ErrorNumber::DeviceIOError:
        case ErrorNumber::DiskFull:
        case ErrorNumber::PermissionDenied:
        case ErrorNumber::PathFileAccessError:
            return true;
        default:
            return false;
    }
}

}  // namespace pixmora
