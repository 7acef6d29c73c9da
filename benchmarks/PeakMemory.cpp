// SPDX-License-Identifier: MIT
// The most memory that LoadXml() and SaveXml() need beside the record, in multiples of the file. Each
// measurement has a process of its own, because memory that was used before would hide what is used.

#include "HeapCounter.h"
#include "Operations.h"
#include "Suite.h"

#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include <malloc.h>

namespace benchmarks {

namespace {

// A value of /proc/self/status, in bytes.
double ofProcess(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, name.size() + 1, name + ':') == 0)
            return std::stod(line.substr(name.size() + 1)) * 1024;
    throw std::runtime_error("the system does not tell how much memory the process has");
}

double residentBytes()
{
    malloc_trim(0);
    return ofProcess("VmRSS");
}

void forgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << '5' << std::flush;
    require(ofProcess("VmHWM") <= ofProcess("VmRSS") * 1.05);
}

QString ownProgram() { return QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget(); }

// The numbers that the process prints: resident memory and heap.
QStringList measured(const char* operation, const QString& path)
{
    QProcess process;
    process.start(ownProgram(), {QStringLiteral("--peak-memory"), QString::fromLatin1(operation), path});
    require(process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit
            && process.exitCode() == 0);
    return QString::fromLatin1(process.readAllStandardOutput()).simplified().split(QLatin1Char(' '));
}

double multiplesOfFile(const char* operation, int which, int fragments)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("message.xml"));
    require(canonicalDocument(fragments).SaveXml(path));
    return measured(operation, path).value(which).toDouble();
}

} // namespace

int measurePeakMemory(const char* operation, const char* path)
{
    const bool isLoading = std::strcmp(operation, "load") == 0;
    const QString file = QString::fromLocal8Bit(path);
    Document document;
    document.SetValidate(true);
    if (!isLoading)
        require(document.LoadXml(file));
    residentBytes();
    forgetPeak();
    const double before = residentBytes();
    const HeapCounter counter;
    require(isLoading ? document.LoadXml(file) : document.SaveXml(file));
    const double ofRecord = isLoading ? static_cast<double>(HeapCounter::bytes()) : 0;
    const double heap = static_cast<double>(HeapCounter::mostBytes()) - ofRecord;
    const double peak = ofProcess("VmHWM");
    const double resident = peak - (isLoading ? residentBytes() : before);
    const auto size = static_cast<double>(QFileInfo(file).size());
    std::printf("%.4f %.4f\n", resident / size, heap / size);
    return 0;
}

void addPeakMemory()
{
    const auto add = [](const char* row, const char* operation, int which) {
        addValue(row, "records", 100000,
                 [=](int fragments) { return multiplesOfFile(operation, which, fragments); });
    };
    add("peak memory of LoadXml", "load", 0);
    add("peak heap of LoadXml", "load", 1);
    add("peak memory of SaveXml", "save", 0);
    add("peak heap of SaveXml", "save", 1);
}

} // namespace benchmarks
