// SPDX-License-Identifier: MIT
// Checking what records log.
#pragma once

#include "modelkit/IMKObject.h"
#include "modelkit/LogSinks.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <gtest/gtest.h>

#include <memory>

namespace testing_support {

// Collects what a record logs.
class Log
{
public:
    explicit Log(const MODELKIT::IMKObject& record)
    {
        record.SetLogger(std::make_shared<MODELKIT::Logger>(m_sink));
    }

    void clear() { m_sink->Clear(); }

    QStringList texts() const
    {
        QStringList all;
        for (const auto& entry : m_sink->GetEntries())
            all += entry.text;
        return all;
    }

    void expectNothing() const { EXPECT_TRUE(texts().isEmpty()) << texts().join('\n').toStdString(); }

    // Expects that this is the only entry in the log.
    void expectOneError(const QString& sentence) const
    {
        ASSERT_EQ(m_sink->GetEntries().size(), 1) << texts().join('\n').toStdString();
        EXPECT_EQ(m_sink->GetEntries().first().level, MODELKIT::Logger::Error);
        EXPECT_EQ(m_sink->GetEntries().first().text, sentence);
    }

private:
    std::shared_ptr<MODELKIT::MemoryLogSink> m_sink = std::make_shared<MODELKIT::MemoryLogSink>();
};

} // namespace testing_support
