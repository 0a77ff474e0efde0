// Statistics: every event leaves its mark in five tables at once.
#include "store/Statistics.h"

#include <array>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "platform/runtime/Clock.h"
#include "platform/runtime/Numbers.h"
#include "platform/runtime/RunTimeError.h"
#include "store/Globals.h"
#include "store/RecordKeeping.h"
#include "store/Rows.h"
#include "store/Schema.h"

namespace pixmora {

namespace {

constexpr std::int32_t recentWindow = 3600000;  // ms
constexpr std::size_t mostCounterRows = 1000;   // of the past hours and days they are of no use any more

/// The row that an event belongs to in one of the tables, and its counter there.
struct Counter {
    std::string Table;
    std::vector<std::pair<std::string, FieldValue>> Keys;
    std::string Criteria;
    int Ordinal;
    bool MayOutgrowLong;
};

/// As the tables have it.
std::int16_t NumberOf(Stat kind) {
    return static_cast<std::int16_t>(kind);
}

std::string OfKind(std::string_view field, Stat kind) {
    return std::string(field) + "=" + std::to_string(NumberOf(kind));
}

void RecordRecent(Stat kind, std::int32_t value) {
    const auto rows = gDatabase->OpenRecordset("StatsRecent", RecordsetType::Dynaset);
    rows->AddNew();
    rows->Set("WhatTime", GetTickCount());
    rows->Set("WhatStat", NumberOf(kind));
    rows->Set("StatValue", value);
    rows->Update();
}

/// Deliberate: a row's first event stores 1 whatever its value.
void AddRow(Recordset &rows, const Counter &counter) {
    rows.AddNew();
    for (const auto &[field, value] : counter.Keys) rows.Set(field, value);
    rows.Set(counter.Ordinal, 1);
    rows.Update();
}

bool IsLong(const Counter &counter) {
    return gDatabase->Fields(counter.Table)[static_cast<std::size_t>(counter.Ordinal)].Type == FieldType::Long;
}

void RememberRow(const std::string &key, std::int64_t row) {
    if (gCounterRows.size() >= mostCounterRows) gCounterRows.clear();
    gCounterRows[key] = row;
}

void Add(const Counter &counter, std::int32_t value) {
    const std::string key = counter.Table + counter.Criteria;
    const auto known = gCounterRows.find(key);
    if (known != gCounterRows.end() &&
        gDatabase->AddTo(counter.Table, known->second, counter.Criteria, counter.Ordinal, value)) {
        return;
    }
    const auto rows = gDatabase->OpenRecordset(counter.Table, RecordsetType::Dynaset);
    rows->FindFirst(counter.Criteria);
    if (rows->NoMatch()) {
        AddRow(*rows, counter);
        return;
    }
    RememberRow(key, rows->Bookmark());
    rows->Edit();
    const FieldValue old = rows->Value(counter.Ordinal);
    const double sum = (IsNull(old) ? 0 : AsDouble(old)) + value;
    if (sum > std::numeric_limits<std::int32_t>::max() && counter.MayOutgrowLong && IsLong(counter)) {
        const std::string field = gDatabase->Fields(counter.Table)[static_cast<std::size_t>(counter.Ordinal)].Name;
        WidenToDouble(counter.Table, field);
        Add(counter, value);
        return;
    }
    rows->Set(counter.Ordinal, sum);
    rows->Update();
}

Counter TotalCounter(Stat kind) {
    return {"StatsTotal", {{"Stat", NumberOf(kind)}}, OfKind("Stat", kind), 1, true};
}

Counter HourlyCounter(Stat kind, const std::string &album, DateTime now, DateTime today) {
    const int hour = HourOf(now);
    return {"StatsHourly",
            {{"AlbumName", album}, {"WhichDay", today}, {"WhichHour", hour}},
            "AlbumName=" + QuotedText(album) + " and WhichDay=" + QuotedDate(today) +
                " and WhichHour=" + std::to_string(hour),
            NumberOf(kind) + 3,
            kind == Stat::Bandwidth};
}

Counter DailyCounter(Stat kind, const std::string &album, DateTime today) {
    return {"StatsDaily",
            {{"AlbumName", album}, {"WhichDay", today}},
            "AlbumName=" + QuotedText(album) + " and WhichDay=" + QuotedDate(today),
            NumberOf(kind) + 2,
            kind == Stat::Bandwidth};
}

Counter MonthlyCounter(Stat kind, const std::string &album, DateTime today) {
    const int year = YearOf(today);
    const int month = MonthOf(today);
    return {"StatsMonthly",
            {{"AlbumName", album}, {"WhichYear", year}, {"WhichMonth", month}},
            "AlbumName=" + QuotedText(album) + " and WhichYear=" + std::to_string(year) +
                " and WhichMonth=" + std::to_string(month),
            NumberOf(kind) + 3,
            kind == Stat::Bandwidth};
}

/// When the last hour began, and the tick count behind the present one.
std::pair<Tick, std::int64_t> LastHour() {
    return {TickAfter(GetTickCount(), -recentWindow), std::int64_t{GetTickCount()} + 1};
}

/// Of the rows' ticks, which wrap: the last hour lies between two of them, or, in the hour after the wrap, outside.
std::string InLastHour() {
    const auto [begin, end] = LastHour();
    return "(WhatTime > " + std::to_string(begin) + (begin < end ? " and" : " or") + " WhatTime < " +
           std::to_string(end) + ")";
}

std::string BeforeLastHour() {
    const auto [begin, end] = LastHour();
    return "WhatTime < " + std::to_string(begin) + (begin < end ? " or" : " and") + " WhatTime > " +
           std::to_string(end - 1);
}

void PurgeDaysBefore(const std::string &table, int days) {
    DeleteRows(table, "WhichDay < " + QuotedDate(AddDays(Today(), -days)));
}

}  // namespace

void RecordStat(Stat kind, std::string_view albumName, std::int32_t value) {
    const std::string album(albumName);
    // Read once, so that an event at midnight falls on one day in all tables.
    const DateTime now = Now();
    const DateTime today = std::chrono::floor<std::chrono::days>(now);
    const std::array counters = {TotalCounter(kind), HourlyCounter(kind, album, now, today),
                                 DailyCounter(kind, album, today), MonthlyCounter(kind, album, today)};

    KeepRecord(Record::Counts, [&] {
        Transaction transaction(*gDatabase);
        RecordRecent(kind, value);
        for (const Counter &counter : counters) Add(counter, value);
        transaction.Commit();
    });
}

double ReadStatTotal(Stat kind) {
    const auto rows = gDatabase->OpenRecordset("StatsTotal", RecordsetType::Dynaset);
    rows->FindFirst(OfKind("Stat", kind));
    return rows->NoMatch() ? 0 : AsDouble(rows->Value("TotalCount"));
}

std::int32_t ReadRecentSum(Stat kind) {
    const auto sum = gDatabase->OpenRecordset(
        "SELECT SUM(StatValue) as s FROM StatsRecent WHERE " + InLastHour() + " and " + OfKind("WhatStat", kind),
        RecordsetType::Snapshot);
    const FieldValue value = sum->Value("s");
    return IsNull(value) ? 0 : RoundToLong(AsDouble(value));
}

void PurgeRecent() {
    DeleteRows("StatsRecent", BeforeLastHour());
}

void PurgeHourly() {
    PurgeDaysBefore("StatsHourly", 2);
}

void PurgeDaily() {
    PurgeDaysBefore("StatsDaily", 15);
}

}  // namespace pixmora
