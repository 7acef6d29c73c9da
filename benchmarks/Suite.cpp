// SPDX-License-Identifier: MIT
// Runs all benchmarks at once and prints the results and their ratios as Markdown:
//
//     benchmarks [--runs=NUMBER] [OPTION OF GOOGLE BENCHMARK]...

#include "Suite.h"

#include "HeapCounter.h"
#include "Results.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

namespace benchmarks {

namespace {

// What a value is added to the results as.
struct Measured
{
    Key key;
    int fragments;
};

// The benchmarks in the order in which they were added. Google Benchmark knows them by their numbers.
std::vector<Measured> added;

std::string note(const std::string& operation, const char* contender, int fragments)
{
    added.push_back({{operation, contender}, fragments});
    return std::to_string(added.size() - 1) + '/' + operation + '/' + contender + '/'
           + std::to_string(fragments);
}

const Measured& measuredOf(const std::string& name) { return added.at(std::stoul(name)); }

std::vector<Key> allRows()
{
    std::vector<Key> rows;
    for (const Measured& measured : added)
        if (std::none_of(rows.begin(), rows.end(), [&measured](const Key& row) {
                return !(row < measured.key) && !(measured.key < row);
            }))
            rows.push_back(measured.key);
    return rows;
}

void time(benchmark::State& state, const Prepare& prepare, int fragments)
{
    const Operation operation = prepare(fragments);
    for ([[maybe_unused]] auto _ : state) {
        std::shared_ptr<void> result = operation();
        benchmark::DoNotOptimize(result);
    }
}

// A document of that many fragments takes milliseconds.
constexpr int most = 100000;

double leastOf(const std::vector<double>& values) { return *std::min_element(values.begin(), values.end()); }

class Collector : public benchmark::BenchmarkReporter
{
public:
    explicit Collector(Results& results) : m_results(results) {}

    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const std::string& name = run.run_name.function_name;
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
                failed = true;
                continue;
            }
            const Measured& measured = measuredOf(name);
            const auto value = run.counters.find("value");
            if (value != run.counters.end()) {
                m_results.add(measured.key, measured.fragments, value->second);
            } else if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "least") {
                m_results.add(measured.key, measured.fragments,
                              run.GetAdjustedCPUTime() / measured.fragments);
                std::fputc('.', stderr);
            }
        }
    }

    bool failed = false;

private:
    Results& m_results;
};

} // namespace

void addTime(const char* operation, const char* contender, const Prepare& prepare,
             const std::vector<int>& sizes)
{
    for (const int fragments : sizes) {
        const auto run = [prepare, fragments](benchmark::State& state) {
            try {
                time(state, prepare, fragments);
            } catch (const std::exception& exception) {
                state.SkipWithError(exception.what());
            }
        };
        auto* const registered =
            benchmark::RegisterBenchmark(note(operation, contender, fragments).c_str(), run);
        registered->Repetitions(fragments == most ? 4 : 7)
            ->ComputeStatistics("least", leastOf)
            ->ReportAggregatesOnly();
        // Preparing takes longer than once through such a document, and is done anew for each attempt.
        if (fragments == most)
            registered->Iterations(1);
    }
}

void addValue(const char* operation, const char* contender, int fragments,
              const std::function<double(int fragments)>& measure)
{
    const auto run = [measure, fragments](benchmark::State& state) {
        try {
            double value = 0;
            for ([[maybe_unused]] auto _ : state)
                value = measure(fragments);
            state.counters["value"] = value;
        } catch (const std::exception& exception) {
            state.SkipWithError(exception.what());
        }
    };
    benchmark::RegisterBenchmark(note(operation, contender, fragments).c_str(), run)
        ->Iterations(1)
        ->Repetitions(1);
}

void addMemory(const char* operation, const char* contender, const Prepare& prepare)
{
    const auto add = [&](const char* what, long long (*gauge)()) {
        const auto measure = [=](int fragments) {
            const Operation work = prepare(fragments);
            const HeapCounter counter;
            const std::shared_ptr<void> result = work();
            return static_cast<double>(gauge()) / fragments;
        };
        for (const int fragments : {1000, 100000})
            addValue((std::string(what) + " of a " + operation).c_str(), contender, fragments, measure);
    };
    add("heap", HeapCounter::bytes);
    add("allocations", HeapCounter::allocations);
}

} // namespace benchmarks

int main(int argc, char** argv)
{
    using namespace benchmarks;
    if (argc == 4 && std::strcmp(argv[1], "--peak-memory") == 0)
        return measurePeakMemory(argv[2], argv[3]);
    int numberOfRuns = 1;
    if (argc > 1 && std::strncmp(argv[1], "--runs=", 7) == 0) {
        numberOfRuns = std::max(std::atoi(argv[1] + 7), 1);
        argv[1] = argv[0];
        ++argv;
        --argc;
    }
    addRecords();
    addPlainLoops();
#ifdef HAVE_QT_NETWORK
    addLinks();
#endif
#ifdef HAVE_PROTOBUF
    addProtobuf();
#endif
#ifdef HAVE_PUGIXML
    addPugixml();
#endif
#ifdef HAVE_XSD
    addXsd();
#endif
#ifdef HAVE_GSOAP
    addGsoap();
#endif
#ifdef HAVE_KDSOAP
    addKdSoap();
#endif
    addPeakMemory();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    std::vector<Results> runs(static_cast<std::size_t>(numberOfRuns));
    bool failed = false;
    for (Results& results : runs) {
        Collector collector(results);
        benchmark::RunSpecifiedBenchmarks(&collector);
        std::fputc('\n', stderr);
        failed |= collector.failed;
    }
    const std::vector<Key> rows = allRows();
    std::puts("<!-- messages -->");
    printMessages(runs.front(), runs.front().rows(rows));
    std::puts("<!-- end of messages -->\n\n### Targets\n");
    printTargets(runs, rows);
    for (std::size_t run = 0; run < runs.size(); ++run) {
        std::printf("\n### Run %zu\n\n", run + 1);
        printCosts(runs[run], runs[run].rows(rows));
    }
    return failed ? 1 : 0;
}
