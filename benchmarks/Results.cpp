// SPDX-License-Identifier: MIT
#include "Results.h"

#include <algorithm>
#include <cstdio>

namespace benchmarks {

std::optional<double> Results::value(const Key& key, int fragments) const
{
    const auto row = m_values.find(key);
    if (row == m_values.end())
        return std::nullopt;
    const auto found = row->second.find(fragments);
    if (found == row->second.end())
        return std::nullopt;
    return found->second;
}

std::optional<double> Results::ratio(const Key& a, int fragmentsA, const Key& b, int fragmentsB) const
{
    const auto valueA = value(a, fragmentsA);
    const auto valueB = value(b, fragmentsB);
    if (!valueA || !valueB || *valueB == 0)
        return std::nullopt;
    return *valueA / *valueB;
}

std::vector<Key> Results::rows(const std::vector<Key>& added) const
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

std::string text(const std::optional<double>& value, int decimals)
{
    if (!value)
        return "";
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, *value);
    return buffer;
}

namespace {

// The operations of the first table.
struct Group
{
    const char* title;
    const char* operation;
};

constexpr Group groups[] = {
    {"XML, written (`GetXmlString`)", "GetXmlString"},
    {"XML, read (`SetXmlString`)", "SetXmlString"},
    {"XML file, written (`SaveXml` without the disk)", "SaveXml without the disk"},
    {"XML file, read (`LoadXml` without the disk)", "LoadXml without the disk"},
    {"binary, written (`GetBinary`)", "GetBinary"},
    {"binary, read (`SetBinary`)", "SetBinary"},
    {"built", "build"},
    {"built, written, read, destroyed, as XML", "message as XML"},
    {"built, written, read, destroyed, as binary", "message in binary"},
};

} // namespace

void printMessages(const Results& results, const std::vector<Key>& rows)
{
    std::puts("| a message | by | small, in µs | records : this | 1 000 fragments, in µs | records : this |");
    std::puts("|---|---|---:|---:|---:|---:|");
    for (const Group& group : groups) {
        const char* title = group.title;
        for (const Key& row : rows) {
            // The settings of the records stand in the large table.
            if (row.operation != group.operation || row.contender.find(", ") != std::string::npos)
                continue;
            std::printf("| %s | %s |", title, row.contender.c_str());
            for (const int fragments : {1, 1000}) {
                auto value = results.value(row, fragments);
                if (value)
                    value = *value * fragments / 1000;
                const auto ratio = row.contender == own
                                       ? std::nullopt
                                       : results.ratio({row.operation, own}, fragments, row, fragments);
                std::printf(" %s | %s |", text(value, fragments == 1 ? 2 : 0).c_str(),
                            text(ratio, 2).c_str());
            }
            std::puts("");
            title = "";
        }
    }
}

void printCosts(const Results& results, const std::vector<Key>& rows)
{
    std::puts("| operation | contender | 1 | 1 000 | 100 000 | 100 000 : 1 000 | records : contender at 1 "
              "| at 1 000 | at 100 000 |");
    std::puts("|---|---|---:|---:|---:|---:|---:|---:|---:|");
    std::string last;
    for (const Key& row : rows) {
        std::printf("| %s | %s |", row.operation == last ? "" : row.operation.c_str(), row.contender.c_str());
        for (const int fragments : {1, 1000, 100000}) {
            const auto value = results.value(row, fragments);
            std::printf(" %s |", text(value, value && *value < 10 ? 1 : 0).c_str());
        }
        std::printf(" %s |", text(results.ratio(row, 100000, row, 1000), 2).c_str());
        for (const int fragments : {1, 1000, 100000}) {
            const auto ratio = row.contender == own
                                   ? std::nullopt
                                   : results.ratio({row.operation, own}, fragments, row, fragments);
            std::printf(" %s |", text(ratio, 2).c_str());
        }
        std::puts("");
        last = row.operation;
    }
}

} // namespace benchmarks
