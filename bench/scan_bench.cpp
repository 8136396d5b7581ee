// The processor time of one scan, children included: ours, the same through ps and lsof, and a bare
// loop that only opens, reads and closes each command line.
#include "agents/ProcessTableReader.h"
#include "bench/Allocations.h"
#include "bench/Crowd.h"
#include "platform/linux/processes/ProcfsProcessTable.h"
#include "platform/linux/processes/PsProcessTable.h"

#include <array>
#include <cctype>
#include <string>

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Used so far by this process and by the children it has waited for.
double processorTime() {
    rusage own{};
    rusage children{};
    getrusage(RUSAGE_SELF, &own);
    getrusage(RUSAGE_CHILDREN, &children);
    return seconds(own.ru_utime) + seconds(own.ru_stime) + seconds(children.ru_utime) +
           seconds(children.ru_stime);
}

void measure(benchmark::State& state, const auto& scan) {
    const vigilo::bench::Crowd crowd(static_cast<std::size_t>(state.range(0)),
                                     static_cast<std::size_t>(state.range(1)));
    std::size_t found = scan(); // once for the caches, as it is when it is done every three seconds
    const std::size_t before = vigilo::bench::allocationCount();
    for (auto _ : state) {
        const double start = processorTime();
        found = scan();
        state.SetIterationTime(processorTime() - start);
    }
    state.counters["found"] = static_cast<double>(found);
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(vigilo::bench::allocationCount() - before),
                           benchmark::Counter::kAvgIterations);
}

void ours(benchmark::State& state) {
    vigilo::platform::ProcfsProcessTable table;
    vigilo::ProcessTableReader reader(table);
    measure(state, [&] { return reader.readAgentProcesses().size(); });
}

void psAndLsof(benchmark::State& state) {
    vigilo::platform::PsProcessTable table;
    vigilo::ProcessTableReader reader(table);
    measure(state, [&] { return reader.readAgentProcesses().size(); });
}

void bareLoop(benchmark::State& state) {
    measure(state, [] {
        std::size_t count = 0;
        std::array<char, 4096> buffer{};
        const int proc = open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        DIR* const folder = fdopendir(proc);
        while (const dirent* const entry = readdir(folder)) {
            if (std::isdigit(static_cast<unsigned char>(entry->d_name[0])) == 0) {
                continue;
            }
            const std::string path = std::string(entry->d_name) + "/cmdline";
            const int file = openat(proc, path.c_str(), O_RDONLY | O_CLOEXEC);
            count += file >= 0 && read(file, buffer.data(), buffer.size()) > 0 ? 1 : 0;
            close(file);
        }
        closedir(folder);
        return count;
    });
}

void sizes(benchmark::internal::Benchmark* of, int iterations) {
    for (const int processes : {300, 2000, 10000}) {
        for (const int agents : {0, 5, 20}) {
            of->Args({processes, agents});
        }
    }
    of->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(iterations);
}

} // namespace

BENCHMARK(ours)->Apply([](auto* of) { sizes(of, 50); });
BENCHMARK(bareLoop)->Apply([](auto* of) { sizes(of, 50); });
BENCHMARK(psAndLsof)->Apply([](auto* of) { sizes(of, 5); });
BENCHMARK_MAIN();
