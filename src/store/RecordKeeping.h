// What becomes of the running website's own records while their file can't be written.
#pragma once

#include <functional>
#include <string>

namespace pixmora {

/// The records that the website keeps of itself.
enum class Record { Counts, LastHour, LastOnline, Checkpoint };

/// Runs what writes a record. When a disk, a file or another program's lock refuses, the record is dropped, the owner
/// is told, and the website goes on; every other error goes out. The owner is told of the first refusal, at most once a
/// minute for each kind of record, and when it is over.
void KeepRecord(Record record, const std::function<void()> &write);

/// Who tells the owner; nobody when empty. It must neither wait nor turn the message loop.
void SetRecordTeller(std::function<void(const std::string &text)> tell);

}  // namespace pixmora
