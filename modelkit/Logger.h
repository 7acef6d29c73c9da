// SPDX-License-Identifier: MIT
/// \file
/// The logger that objects hold and pass on to the objects that they own.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

namespace MODELKIT {

class LogSink;

/// Takes log entries and passes them to a sink.
///
/// Objects share a logger through `std::shared_ptr`. Records only hold it; entries are written by
/// the whole-document operations of the base object and by the program itself. A logger may be used
/// from several threads: entries reach the sink one at a time.
class MODELKIT_EXPORT Logger
{
public:
    /// How serious an entry is; the number is the index into GetLevelNames().
    enum Level : int
    {
        Info = 0,    ///< for your own entries; the library writes none
        Warning = 1, ///< for your own entries; the library writes none
        Error = 2    ///< an operation has failed
    };

    /// A logger without a sink drops its entries.
    explicit Logger(std::shared_ptr<LogSink> sink = nullptr);
    /// Not copied: objects share it through pointers.
    Logger(const Logger&) = delete;
    /// Not copied: objects share it through pointers.
    Logger& operator=(const Logger&) = delete;
    /// Releases the sink.
    virtual ~Logger();

    /// Passes an entry with that level and text to the sink, if there is one. Exceptions of the sink are
    /// passed on. An entry that the sink itself causes, for example by a failing operation on an object with
    /// the same logger, is dropped.
    void Log(Level level, const QString& text);

    /// The names "INFO", "WARNING" and "ERROR", in the order of the levels.
    static const QStringList& GetLevelNames();

private:
    std::mutex m_mutex;
    // The thread that is in the sink.
    std::atomic<std::thread::id> m_writer{};
    std::shared_ptr<LogSink> m_sink;
};

/// Receives the entries of a logger. Derive from it to write them wherever you need them.
class MODELKIT_EXPORT LogSink
{
public:
    /// A sink has no state of its own.
    LogSink() = default;
    /// Not copied: loggers share it through pointers.
    LogSink(const LogSink&) = delete;
    /// Not copied: loggers share it through pointers.
    LogSink& operator=(const LogSink&) = delete;
    /// The last logger that holds the sink destroys it.
    virtual ~LogSink();

    /// Receives one entry, the unchanged text and its level. Each logger calls it from one thread at a time.
    virtual void Write(Logger::Level level, const QString& text) = 0;
};

} // namespace MODELKIT
