// Measures every family of the library against its peers in one process. Refuses to run when a
// column's answers differ from the reference's.

#include <sched.h>

#include <cstdlib>
#include <ctime>
#include <vector>

#include "Zem/Os/ZemTimeInline.h"
#include "harness.h"

namespace bench {

bool g_failed = false;

void ReportMismatch(const std::string& job, const std::string& column, std::size_t value)
{
    std::fprintf(stderr, "%s/%s: wrong answer for value %zu\n", job.c_str(), column.c_str(), value);
    g_failed = true;
}

const std::uint16_t* Order()
{
    static const std::vector<std::uint16_t> order = [] {
        std::mt19937 random(20240301);
        std::vector<std::uint16_t> drawn(kDraws);
        for (auto& index : drawn) {
            index = static_cast<std::uint16_t>(random() % kValues);
        }
        return drawn;
    }();
    return order.data();
}

void PinThread(int n)
{
    static const std::vector<std::size_t> processors = [] {
        std::vector<std::size_t> usable;
        cpu_set_t set;
        sched_getaffinity(0, sizeof set, &set);
        for (std::size_t i = 0; i < CPU_SETSIZE; ++i) {
            if (CPU_ISSET(i, &set)) {
                usable.push_back(i);
            }
        }
        return usable;
    }();
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(processors[static_cast<std::size_t>(n) % processors.size()], &one);
    sched_setaffinity(0, sizeof one, &one);
}

void SetZone(const char* zone)
{
    if (zone == nullptr) {
        unsetenv("TZ");
    } else {
        setenv("TZ", zone, 1);
    }
    tzset();
}

}  // namespace bench

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    // The list of processors is taken here, before any thread is moved.
    bench::PinThread(0);
    if (!ZemTimeInitialize()) {
        return 1;
    }
    bench::SetZone("Europe/Berlin");
    bench::RegisterParse();
    bench::RegisterPrint();
    bench::RegisterBreakdown();
    bench::RegisterComposition();
    bench::RegisterLocal();
    bench::RegisterZones();
    bench::RegisterClocks();
    bench::RegisterCompact();
    bench::RegisterRanges();
    bench::RegisterRangeSets();
    bench::RegisterVector();
    bench::RegisterNtp();
    if (bench::g_failed) {
        return 1;
    }
    benchmark::AddCustomContext("compiler", BENCH_COMPILER);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
