// SPDX-License-Identifier: MIT
// What was measured, and the tables that are printed of it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace benchmarks {

inline const char* const own = "records";

// Operations on connections, per message. The same message, built beforehand, is sent again and again.
inline const char* const binaryThroughSockets = "binary message through sockets";
inline const char* const xmlThroughSockets = "XML message through sockets";
inline const char* const thereAndBack = "binary message there and back";

// A row of the table.
struct Key
{
    std::string operation;
    std::string contender;

    bool operator<(const Key& other) const
    {
        return operation != other.operation ? operation < other.operation : contender < other.contender;
    }
};

// The values of one run, mostly per fragment.
class Results
{
public:
    void add(const Key& key, int fragments, double value) { m_values[key][fragments] = value; }

    std::optional<double> value(const Key& key, int fragments) const;
    std::optional<double> ratio(const Key& a, int fragmentsA, const Key& b, int fragmentsB) const;

    // The rows that have values, grouped by operation. Added: all rows in the order of the table.
    std::vector<Key> rows(const std::vector<Key>& added) const;

private:
    std::map<Key, std::map<int, double>> m_values;
};

// Empty if there is no value.
std::string text(const std::optional<double>& value, int decimals);

// How long a message takes, in one run.
void printMessages(const Results& results, const std::vector<Key>& rows);
// Everything that was measured in one run.
void printCosts(const Results& results, const std::vector<Key>& rows);
// Which targets are held in all runs.
void printTargets(const std::vector<Results>& runs, const std::vector<Key>& rows);

} // namespace benchmarks
