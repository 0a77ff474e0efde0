// The cost of one event, however many the last hour has seen.
#include "store/Statistics.h"

#include <benchmark/benchmark.h>

#include <string>

#include "support/OpenStore.h"
#include "support/RawDatabase.h"

namespace pixmora::bench {

namespace {

void RecordStatWithRecentRows(benchmark::State &state) {
    const OpenStore store;
    CreateStatsRecent();
    gDatabase->SetSynchronousFull(false);  // as while the website runs
    if (state.range(0) > 0)
        RunSql(store.FilePath(), "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                                     std::to_string(state.range(0)) +
                                     ") INSERT INTO StatsRecent (WhatTime, WhatStat, StatValue) SELECT i, 2, 1 FROM n");
    for (auto _ : state) RecordStat(Stat::Thumbs, "Trips", 1);
}
// So many events that the log's checkpoints are among them.
BENCHMARK(RecordStatWithRecentRows)->Arg(0)->Arg(10'000)->Arg(1'000'000)->Iterations(20'000)->UseRealTime();

}  // namespace

}  // namespace pixmora::bench
