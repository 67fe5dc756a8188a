#include "imaging/large_pages.h"

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    useLargePagesForPictures(); // as the application does
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
