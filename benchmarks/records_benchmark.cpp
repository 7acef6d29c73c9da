// Cost per fragment of building, writing, reading, copying and comparing a document.

#include "CanonicalDocument.h"
#include "Operations.h"
#include "PlainMessage.h"

#include <benchmark/benchmark.h>

#include <optional>

using namespace benchmarks;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;

namespace {

int fragmentsOf(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

void countFragments(benchmark::State& state)
{
    state.counters["per_fragment"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

PelLu300RouterInterfaceXml validatedDocument(const benchmark::State& state)
{
    PelLu300RouterInterfaceXml document = canonicalDocument(fragmentsOf(state));
    document.SetValidate(true);
    return document;
}

// Reads into a new document each time. Destroying a large one is left out of the time; stopping the
// clock would take longer than destroying a small one.
template <class Read>
void timeReading(benchmark::State& state, const Read& read)
{
    const bool isLarge = state.range(0) >= 1000;
    std::optional<PelLu300RouterInterfaceXml> document;
    for ([[maybe_unused]] auto _ : state) {
        document.emplace();
        document->SetValidate(true);
        read(*document);
        benchmark::DoNotOptimize(document);
        if (isLarge)
            state.PauseTiming();
        document.reset();
        if (isLarge)
            state.ResumeTiming();
    }
}

void build(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(canonicalDocument(fragmentsOf(state)));
    countFragments(state);
}

void writeXml(benchmark::State& state)
{
    const auto document = validatedDocument(state);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(xmlOf(document));
    countFragments(state);
}

void readXml(benchmark::State& state)
{
    const auto document = validatedDocument(state);
    const QByteArray xml = xmlOf(document);
    PelLu300RouterInterfaceXml check;
    parseXml(check, xml);
    require(check == document);
    timeReading(state, [&xml](PelLu300RouterInterfaceXml& read) { parseXml(read, xml); });
    countFragments(state);
}

void writeBinary(benchmark::State& state)
{
    const auto document = validatedDocument(state);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(frameOf(document));
    countFragments(state);
}

void readBinary(benchmark::State& state)
{
    const auto document = validatedDocument(state);
    const QByteArray frame = frameOf(document);
    PelLu300RouterInterfaceXml check;
    readFrame(check, frame);
    require(check == document);
    timeReading(state, [&frame](PelLu300RouterInterfaceXml& read) { readFrame(read, frame); });
    countFragments(state);
}

void copyDocument(benchmark::State& state)
{
    const auto document = validatedDocument(state);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(copyAndTouch(document));
    countFragments(state);
}

void compareDocuments(benchmark::State& state)
{
    const auto document = validatedDocument(state);
    const PelLu300RouterInterfaceXml copy(document);
    require(copy == document);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(copy == document);
    countFragments(state);
}

// The same work by hand. The results are compared with those of the records before they are timed.

void plainWriteXml(benchmark::State& state)
{
    const auto message = benchmarks::plainMessage(fragmentsOf(state));
    require(benchmarks::plainXml(message) == xmlOf(validatedDocument(state)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(benchmarks::plainXml(message));
    countFragments(state);
}

void plainReadXml(benchmark::State& state)
{
    const QByteArray xml = xmlOf(validatedDocument(state));
    require(benchmarks::readPlainXml(xml) == benchmarks::plainMessage(fragmentsOf(state)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(benchmarks::readPlainXml(xml));
    countFragments(state);
}

void plainWriteBinary(benchmark::State& state)
{
    const auto message = benchmarks::plainMessage(fragmentsOf(state));
    require(benchmarks::plainStream(message) == frameOf(validatedDocument(state)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(benchmarks::plainStream(message));
    countFragments(state);
}

void plainReadBinary(benchmark::State& state)
{
    const QByteArray frame = frameOf(validatedDocument(state));
    require(benchmarks::readPlainStream(frame) == benchmarks::plainMessage(fragmentsOf(state)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(benchmarks::readPlainStream(frame));
    countFragments(state);
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(7)->Arg(1000)->Arg(100000)->ArgName("fragments");
}

BENCHMARK(build)->Apply(sizes);
BENCHMARK(writeXml)->Apply(sizes);
BENCHMARK(plainWriteXml)->Apply(sizes);
BENCHMARK(readXml)->Apply(sizes);
BENCHMARK(plainReadXml)->Apply(sizes);
BENCHMARK(writeBinary)->Apply(sizes);
BENCHMARK(plainWriteBinary)->Apply(sizes);
BENCHMARK(readBinary)->Apply(sizes);
BENCHMARK(plainReadBinary)->Apply(sizes);
BENCHMARK(copyDocument)->Apply(sizes);
BENCHMARK(compareDocuments)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
