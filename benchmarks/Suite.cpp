// SPDX-License-Identifier: MIT
// Runs all benchmarks at once and prints the results and their ratios as Markdown.

#include "Suite.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include <malloc.h>

namespace {

long long allocations = 0;

} // namespace

// Counts all allocations of Qt and the library.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}
}

namespace benchmarks {

namespace {

const char* const own = "records";

long long heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long long>(info.uordblks + info.hblkhd);
}

struct Key
{
    std::string operation;
    std::string contender;

    bool operator<(const Key& other) const
    {
        return operation != other.operation ? operation < other.operation : contender < other.contender;
    }
};

// The benchmarks in the order in which they were added.
std::vector<Key> added;

void note(const std::string& operation, const char* contender)
{
    const Key key{operation, contender};
    if (std::none_of(added.begin(), added.end(),
                     [&key](const Key& known) { return !(known < key) && !(key < known); }))
        added.push_back(key);
}

std::string nameOf(const char* operation, const char* contender, int fragments)
{
    return std::string(operation) + '|' + contender + '|' + std::to_string(fragments);
}

void time(benchmark::State& state, const Prepare& prepare, int fragments)
{
    const Operation operation = prepare(fragments);
    const bool stopClock = fragments >= 1000;
    for ([[maybe_unused]] auto _ : state) {
        std::shared_ptr<void> result = operation();
        benchmark::DoNotOptimize(result);
        if (!stopClock)
            continue;
        state.PauseTiming();
        result.reset();
        state.ResumeTiming();
    }
}

void addMemoryRow(const std::string& operation, const char* contender, const Prepare& prepare, int fragments,
                  long long (*gauge)())
{
    note(operation, contender);
    const auto measure = [=](benchmark::State& state) {
        const Operation work = prepare(fragments);
        long long taken = 0;
        for ([[maybe_unused]] auto _ : state) {
            const long long before = gauge();
            const std::shared_ptr<void> result = work();
            taken = gauge() - before;
        }
        state.counters["taken"] = static_cast<double>(taken);
    };
    benchmark::RegisterBenchmark(nameOf(operation.c_str(), contender, fragments).c_str(), measure)
        ->Iterations(1)
        ->Repetitions(1);
}

// --- the table

// Values per fragment.
class Results
{
public:
    void add(const std::string& name, double total)
    {
        const auto first = name.find('|');
        const auto second = name.find('|', first + 1);
        const Key key{name.substr(0, first), name.substr(first + 1, second - first - 1)};
        const int fragments = std::atoi(name.c_str() + second + 1);
        m_values[key][fragments] = total / fragments;
    }

    std::optional<double> value(const Key& key, int fragments) const
    {
        const auto row = m_values.find(key);
        if (row == m_values.end())
            return std::nullopt;
        const auto found = row->second.find(fragments);
        if (found == row->second.end())
            return std::nullopt;
        return found->second;
    }

    std::optional<double> ratio(const Key& a, int fragmentsA, const Key& b, int fragmentsB) const
    {
        const auto valueA = value(a, fragmentsA);
        const auto valueB = value(b, fragmentsB);
        if (!valueA || !valueB || *valueB == 0)
            return std::nullopt;
        return *valueA / *valueB;
    }

    // The rows that have values, grouped by operation, in the order in which they were added.
    std::vector<Key> rows() const
    {
        std::vector<Key> sorted;
        std::vector<std::string> operations;
        for (const Key& row : added)
            if (std::find(operations.begin(), operations.end(), row.operation) == operations.end())
                operations.push_back(row.operation);
        for (const std::string& operation : operations)
            for (const Key& row : added)
                if (row.operation == operation && m_values.find(row) != m_values.end())
                    sorted.push_back(row);
        return sorted;
    }

private:
    std::map<Key, std::map<int, double>> m_values;
};

class Collector : public benchmark::BenchmarkReporter
{
public:
    explicit Collector(Results& results) : m_results(results) {}

    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(),
                             run.error_message.c_str());
                failed = true;
                continue;
            }
            const auto taken = run.counters.find("taken");
            if (taken != run.counters.end()) {
                m_results.add(run.run_name.function_name, taken->second);
            } else if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                m_results.add(run.run_name.function_name, run.GetAdjustedCPUTime());
                std::fputc('.', stderr);
            }
        }
    }

    bool failed = false;

private:
    Results& m_results;
};

std::string number(const std::optional<double>& value, const char* format)
{
    if (!value)
        return "";
    char text[32];
    std::snprintf(text, sizeof text, format, *value);
    return text;
}

void printCosts(const Results& results)
{
    std::puts(
        "CPU time in nanoseconds per fragment, median of the repetitions; heap in bytes and allocations\n"
        "per fragment. The last three columns relate 100 000 fragments to 1 000, and the records to the\n"
        "contender: below 1 the records are ahead.\n");
    std::puts(
        "| operation | contender | 1 | 7 | 1 000 | 100 000 | 100 000 : 1 000 | records : contender at 1 000 "
        "| at 100 000 |");
    std::puts("|---|---|---:|---:|---:|---:|---:|---:|---:|");
    std::string last;
    for (const Key& row : results.rows()) {
        const Key records{row.operation, own};
        const bool isOwn = row.contender == own;
        std::printf("| %s | %s |", row.operation == last ? "" : row.operation.c_str(), row.contender.c_str());
        for (const int fragments : {1, 7, 1000, 100000})
            std::printf(" %s |", number(results.value(row, fragments), "%.0f").c_str());
        std::printf(" %s |", number(results.ratio(row, 100000, row, 1000), "%.2f").c_str());
        for (const int fragments : {1000, 100000})
            std::printf(" %s |",
                        isOwn ? ""
                              : number(results.ratio(records, fragments, row, fragments), "%.2f").c_str());
        std::puts("");
        last = row.operation;
    }
}

// --- the targets

struct Target
{
    std::string text;
    double limit;
    Key key;
    // The contender whose value divides this one. With an empty name the value itself is compared.
    Key to;
    // Whether the target is about growth: the value for 100 000 fragments divided by that for 1 000.
    bool isGrowth = false;
};

std::vector<Target> targets(const Results& results)
{
    const auto records = [](const char* operation) { return Key{operation, own}; };
    std::vector<Target> all{
        {"XML read : hand-written Qt loop", 1.15, records("XML read"), {"XML read", "Qt loop"}},
        {"XML write : hand-written Qt loop", 1.0, records("XML write"), {"XML write", "Qt loop"}},
        {"binary write : hand-written QDataStream loop",
         0.4,
         records("binary write"),
         {"binary write", "Qt loop"}},
        {"binary read : hand-written QDataStream loop",
         0.8,
         records("binary read"),
         {"binary read", "Qt loop"}},
        {"copy, ns per fragment", 150, records("copy"), {}},
        {"heap of a built document, bytes per fragment", 300, records("heap of a built document"), {}},
        {"heap of a read document, bytes per fragment", 300, records("heap of a read document"), {}},
    };
    for (const char* operation : {"XML write", "XML read", "binary write", "binary read"}) {
        const std::string name(operation);
        all.push_back(
            {name + ": validation on : off", 1.05, records(operation), {name, "records, no validation"}});
        all.push_back({name + ": logger : none", 1.05, {name, "records, logger"}, records(operation)});
    }
    for (const Key& row : results.rows())
        if (row.contender == own && results.ratio(row, 100000, row, 1000))
            all.push_back({row.operation + ": 100 000 : 1 000",
                           row.operation == "binary write" || row.operation == "copy" ? 1.5 : 1.15,
                           row,
                           {},
                           true});
    return all;
}

void printTargets(const Results& results)
{
    std::puts("\n| target | at most | at 1 000 | at 100 000 | |\n|---|---:|---:|---:|---|");
    for (const Target& target : targets(results)) {
        bool holds = true;
        std::printf("| %s | %g |", target.text.c_str(), target.limit);
        for (const int fragments : {1000, 100000}) {
            std::optional<double> measured;
            if (target.isGrowth)
                measured =
                    fragments == 1000 ? std::nullopt : results.ratio(target.key, 100000, target.key, 1000);
            else
                measured = target.to.operation.empty()
                               ? results.value(target.key, fragments)
                               : results.ratio(target.key, fragments, target.to, fragments);
            if (measured && *measured > target.limit)
                holds = false;
            std::printf(" %s |", number(measured, measured.value_or(0) > 10 ? "%.0f" : "%.2f").c_str());
        }
        std::puts(holds ? " |" : " missed |");
    }
}

} // namespace

Prepare untilDestroyed(const Prepare& prepare)
{
    return [=](int fragments) {
        const Operation work = prepare(fragments);
        return [=] {
            work();
            return std::shared_ptr<void>();
        };
    };
}

void addTime(const char* operation, const char* contender, const Prepare& prepare,
             const std::vector<int>& sizes)
{
    note(operation, contender);
    for (const int fragments : sizes) {
        const auto run = [prepare, fragments](benchmark::State& state) {
            try {
                time(state, prepare, fragments);
            } catch (const std::exception& exception) {
                state.SkipWithError(exception.what());
            }
        };
        benchmark::RegisterBenchmark(nameOf(operation, contender, fragments).c_str(), run)
            ->Repetitions(5)
            ->ReportAggregatesOnly();
    }
}

void addMemory(const char* operation, const char* contender, const Prepare& prepare)
{
    for (const int fragments : {1000, 100000}) {
        addMemoryRow(std::string("heap of a ") + operation, contender, prepare, fragments, heapInUse);
        addMemoryRow(std::string("allocations of a ") + operation, contender, prepare, fragments,
                     [] { return allocations; });
    }
}

void require(bool correct)
{
    if (!correct)
        throw std::logic_error("the document did not come back as it was");
}

} // namespace benchmarks

int main(int argc, char** argv)
{
    using namespace benchmarks;
    addRecords();
    addPlainLoops();
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
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    Results results;
    Collector collector(results);
    benchmark::RunSpecifiedBenchmarks(&collector);
    std::fputc('\n', stderr);
    printCosts(results);
    printTargets(results);
    return collector.failed ? 1 : 0;
}
