// The start of every program of benchmarks: an application object for the loop, a fixed zone and locale.
#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdlib>

#include "platform/loop/Application.h"

int main(int argc, char **argv) {
    setenv("TZ", "UTC", 1);
    const pixmora::Application application(argc, argv);
    std::setlocale(LC_ALL, "C");
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
