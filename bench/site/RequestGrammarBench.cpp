// What every request's address goes through.
#include "core/site/RequestGrammar.h"

#include <benchmark/benchmark.h>

namespace pixmora::bench {

namespace {

void ParseTargetOfAPicture(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(ParseTarget("ShowPicture?1&thumb&/Summer%20at%20the%20lake/a.jpg"));
}
BENCHMARK(ParseTargetOfAPicture);

void GetVisitorPageNameOfAnAlbum(benchmark::State &state) {
    const auto trips = [](std::int32_t) -> std::string {
        return "Trips";
    };
    for (auto _ : state) benchmark::DoNotOptimize(GetVisitorPageName("GET /ShowAlbum?2&thumbs&1&Lake HTTP/1.0", trips));
}
BENCHMARK(GetVisitorPageNameOfAnAlbum);

void EncodeLinkPartOfAName(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(EncodeLinkPart("Summer & autumn at the lake"));
}
BENCHMARK(EncodeLinkPartOfAName);

void DecodeLinkPartOfAName(benchmark::State &state) {
    for (auto _ : state) benchmark::DoNotOptimize(DecodeLinkPart("Summer%20<amp>and<amp>%20autumn%20at%20the%20lake"));
}
BENCHMARK(DecodeLinkPartOfAName);

}  // namespace

}  // namespace pixmora::bench
