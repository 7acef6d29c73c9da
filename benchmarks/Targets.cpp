// SPDX-License-Identifier: MIT
// What the records are to reach.

#include "Results.h"

#include <algorithm>
#include <cstdio>

namespace benchmarks {

namespace {

constexpr int few = 1;
constexpr int many = 1000;
constexpr int most = 100000;

struct Target
{
    std::string text;
    int fragments;
    double limit;
    std::optional<double> (*measure)(const Results& results, const Target& target);
    Key key;
    // What it is compared with.
    Key to = {};
};

std::optional<double> itself(const Results& results, const Target& target)
{
    return results.value(target.key, target.fragments);
}

std::optional<double> ratio(const Results& results, const Target& target)
{
    return results.ratio(target.key, target.fragments, target.to, target.fragments);
}

std::optional<double> difference(const Results& results, const Target& target)
{
    const auto more = results.value(target.key, target.fragments);
    const auto less = results.value(target.to, target.fragments);
    return more && less ? std::optional(*more - *less) : std::nullopt;
}

std::optional<double> growth(const Results& results, const Target& target)
{
    return results.ratio(target.key, most, target.key, many);
}

Key records(const char* operation) { return {operation, own}; }

void addRatios(std::vector<Target>& all, const char* operation, const char* contender, double limit,
               std::initializer_list<int> sizes = {many, most})
{
    for (const int fragments : sizes)
        all.push_back({std::string(operation) + " : " + contender,
                       fragments,
                       limit,
                       ratio,
                       records(operation),
                       {operation, contender}});
}

std::vector<Target> targets(const std::vector<Key>& rows)
{
    std::vector<Target> all;
    addRatios(all, "GetXmlString", "Qt loop", 0.4);
    addRatios(all, "SaveXml without the disk", "Qt loop", 0.4);
    addRatios(all, "SetXmlString", "Qt loop", 0.7);
    addRatios(all, "LoadXml without the disk", "Qt loop", 0.7);
    addRatios(all, "GetXml", "Qt loop", 1);
    addRatios(all, "ProcessXml", "Qt loop", 1.15);
    addRatios(all, "GetBinary", "Qt loop", 0.4);
    addRatios(all, "SetBinary", "Qt loop", 0.7);
    addRatios(all, "SetBinaryRepresentation", "Qt loop", 0.7);
    addRatios(all, "message in binary", "Qt loop", 0.8, {few});
    addRatios(all, "message as XML", "Qt loop", 0.9, {few});
    // At least 0.9 of the messages of the loop in the same time.
    addRatios(all, binaryThroughSockets, "Qt loop", 1 / 0.9, {many});
    all.push_back({"MessageReader, binary: finding messages, ns per message",
                   many,
                   1500,
                   difference,
                   records("MessageReader, binary"),
                   {"MessageReader, binary", "records, found by hand"}});
    addRatios(all, "build", "protobuf", 2.5, {many});
    addRatios(all, "build", "protobuf", 3, {most});
    for (const int fragments : {many, most})
        all.push_back({"copy, ns per fragment", fragments, 150, itself, records("copy")});
    for (const char* heap : {"heap of a built document", "heap of a read document"})
        for (const int fragments : {many, most})
            all.push_back(
                {std::string(heap) + ", bytes per fragment", fragments, 258, itself, records(heap)});
    for (const char* peak :
         {"peak memory of LoadXml", "peak heap of LoadXml", "peak memory of SaveXml", "peak heap of SaveXml"})
        all.push_back({std::string(peak) + " : file", most, 2.5, itself, records(peak)});
    for (const char* operation : {"GetXmlString", "SetXmlString", "GetXml", "ProcessXml"})
        for (const int fragments : {many, most})
            all.push_back({std::string(operation) + ": validation on : off",
                           fragments,
                           1.05,
                           ratio,
                           records(operation),
                           {operation, "records, no validation"}});
    for (const char* operation : {"GetBinary", "SetBinary"})
        for (const int fragments : {many, most})
            all.push_back({std::string(operation) + ": validation, ns per fragment",
                           fragments,
                           20,
                           difference,
                           records(operation),
                           {operation, "records, no validation"}});
    for (const char* operation : {"GetXml", "ProcessXml", "GetBinary", "SetBinary"})
        for (const int fragments : {many, most})
            all.push_back({std::string(operation) + ": logger : none",
                           fragments,
                           1.05,
                           ratio,
                           {operation, "records, logger"},
                           records(operation)});
    for (const Key& row : rows) {
        if (row.contender != own)
            continue;
        const bool isSpread =
            row.operation == "build" || row.operation == "copy" || row.operation == "compare";
        all.push_back({row.operation + ": 100 000 : 1 000", most, isSpread ? 1.5 : 1.15, growth, row});
    }
    return all;
}

} // namespace

void printTargets(const std::vector<Results>& runs, const std::vector<Key>& rows)
{
    std::printf("| target | fragments | at most |");
    for (std::size_t run = 1; run <= runs.size(); ++run)
        std::printf(" run %zu |", run);
    std::printf(" |\n|---|---:|---:|");
    for (std::size_t run = 0; run < runs.size(); ++run)
        std::printf("---:|");
    std::puts("---|");
    int held = 0;
    int measured = 0;
    for (const Target& target : targets(rows)) {
        std::vector<double> values;
        for (const Results& results : runs)
            if (const auto value = target.measure(results, target))
                values.push_back(*value);
        if (values.empty())
            continue;
        const auto misses = std::count_if(values.begin(), values.end(),
                                          [&target](double value) { return value > target.limit; });
        ++measured;
        held += misses == 0;
        std::printf("| %s | %d | %g |", target.text.c_str(), target.fragments, target.limit);
        for (const double value : values)
            std::printf(" %s |", text(value, value < 10 ? 2 : 0).c_str());
        std::puts(misses == 0 ? " |" : " **missed** |");
    }
    std::printf("\n%d of %d targets were held in every run.\n", held, measured);
}

} // namespace benchmarks
