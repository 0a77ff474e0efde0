// Text functions that run for each file of a listing or each statement.
#include "platform/runtime/Text.h"

#include <benchmark/benchmark.h>

#include "platform/database/StatementTranslator.h"

namespace pixmora::bench {

namespace {

void PathMatchSpecOfAPicture(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(PathMatchSpec("IMG_20040301_1204.JPG", "*.jpg;*.gif;*.bmp"));
}
BENCHMARK(PathMatchSpecOfAPicture);

void PathMatchSpecOfAnotherFile(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(PathMatchSpec("Notes on the trip.txt", "*.jpg;*.gif;*.bmp"));
}
BENCHMARK(PathMatchSpecOfAnotherFile);

void LikeOfARestrictedWord(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(Like("Summer at the lake", "Private*"));
}
BENCHMARK(LikeOfARestrictedWord);

void TranslateCriteriaOfACounter(benchmark::State &state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(TranslateCriteria("AlbumName='Trips' and WhichDay=#3/10/2004# and WhichHour=12"));
}
BENCHMARK(TranslateCriteriaOfACounter);

}  // namespace

}  // namespace pixmora::bench
