// What becomes of the running website's own records while their file can't be written.
#include "store/RecordKeeping.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "platform/runtime/Clock.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr Tick tellingInterval = 60000;  // ms

/// One kind of record and what is the matter with it.
struct Keeping {
    const char *What;
    std::optional<Tick> LastTold = std::nullopt;
    bool OwnerWorries = false;  ///< told of a refusal, and not yet that it is over
    std::int64_t Dropped = 0;   ///< since the owner was last told that all is well
};

struct Keeper {
    std::function<void(const std::string &)> Tell;
    /// In the order of Record.
    std::array<Keeping, 4> Keepings{{{"what your visitors see and download"},
                                     {"the figures of the last hour"},
                                     {"the time when your website was last online"},
                                     {"the database's log"}}};
};

Keeper gRecordKeeper;

bool IsTimeToTell(const Keeping &keeping) {
    return !keeping.LastTold || !IsWithin(*keeping.LastTold, tellingInterval - 1);
}

void TellOwner(const std::string &text) {
    if (gRecordKeeper.Tell) gRecordKeeper.Tell(text);
}

void HandleRefusal(Keeping &keeping, const std::string &reason) {
    ++keeping.Dropped;
    if (!IsTimeToTell(keeping)) return;
    keeping.LastTold = GetTickCount();
    keeping.OwnerWorries = true;
    TellOwner(std::string("Unable to save ") + keeping.What + ": " + reason + "! Your website goes on without.");
}

void HandleSuccess(Keeping &keeping) {
    if (!keeping.OwnerWorries) return;
    keeping.OwnerWorries = false;
    TellOwner(std::string("Able to save ") + keeping.What +
              " again. Lost meanwhile: " + std::to_string(std::exchange(keeping.Dropped, 0)) + ".");
}

}  // namespace

void KeepRecord(Record record, const std::function<void()> &write) {
    Keeping &keeping = gRecordKeeper.Keepings[static_cast<std::size_t>(record)];
    try {
        write();
    } catch (const RunTimeError &error) {
        if (!error.IsStorageFailure()) throw;
        HandleRefusal(keeping, error.Message());
        return;
    }
    HandleSuccess(keeping);
}

void SetRecordTeller(std::function<void(const std::string &text)> tell) {
    gRecordKeeper = {};
    gRecordKeeper.Tell = std::move(tell);
}

}  // namespace pixmora
