// What a call fails with.
#pragma once

#include "platform/RunTimeError.h"

namespace pixmora {

/// The number of the run-time error that the call ends with, 0 when it ends well.
template <typename Call>
int ErrorOf(Call call) {
    try {
        call();
    } catch (const RunTimeError &error) {
        return static_cast<int>(error.Number());
    }
    return 0;
}

constexpr int CodeOf(ErrorNumber number) {
    return static_cast<int>(number);
}

}  // namespace pixmora
