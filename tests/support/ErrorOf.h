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

}  // namespace pixmora
