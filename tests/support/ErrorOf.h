// What a call fails with.
#pragma once

#include "platform/runtime/RunTimeError.h"

namespace pixmora {

/// The run-time error that the call ends with, ErrorNumber{} when it ends well.
template <typename Call>
ErrorNumber ErrorOf(Call call) {
    try {
        call();
    } catch (const RunTimeError &error) {
        return error.Number();
    }
    return {};
}

/// What it says; empty when the call ends well.
template <typename Call>
std::string MessageOf(Call call) {
    try {
        call();
    } catch (const RunTimeError &error) {
        return error.Message();
    }
    return {};
}

}  // namespace pixmora
