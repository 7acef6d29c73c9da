// SPDX-License-Identifier: MIT
// Memory runs out in the middle of an operation on a whole document: the operation ends with std::bad_alloc
// or a failure, the record can still be reset, filled and written, and a file that is being saved stays as it
// was.
//
// Each allocation with operator new fails once, and in a second round each fails together with all that
// follow. The same is done with malloc, which the containers of Qt use, each time in a new process; not under
// a sanitizer, which does not allow to replace malloc, and not with Qt 6, whose containers do not survive it.

#include "ChildProcess.h"
#include "FailingAllocator.h"
#include "TestSupport.h"

#include "modelkit/LogSinks.h"
#include "modelkit/ReadingReport.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <functional>
#include <new>
#include <utility>
#include <vector>

extern "C" {
// The constructor of Qt's reader leaks two blocks when its last allocation fails. The suppression needs the
// whole stack to find the name of the constructor.
const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }
const char* __lsan_default_suppressions() { return "leak:QXmlStreamReader::QXmlStreamReader\n"; }
}

namespace {

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;

PelLu300RouterInterfaceXml sample(unsigned int id)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(id);
    Fragment server;
    server.GetPelVtConnectServer().SetAddress(QStringLiteral("a&b"));
    message.AppendFragment(server);
    Fragment state;
    state.GetMastershipState().SetState(MastershipState::MasterPresent);
    message.AppendFragment(state);
    return document;
}

const char* const oldFile = "<PelLu300RouterInterfaceXml/>";

// The objects that an operation uses. All are made before memory runs out.
struct Scene
{
    Scene()
    {
        record.SetLogger(std::make_shared<MODELKIT::Logger>(std::make_shared<MODELKIT::MemoryLogSink>()));
        form = other.GetBinaryRepresentationAsQByteArray();
        packed = other.GetCompressedBinaryRepresentationAsQByteArray(9);
        xml = other.GetXmlString();
        path = folder.filePath(QStringLiteral("document"));
        write(oldFile);
    }

    void write(const QByteArray& content)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
    }

    QByteArray fileContent() const
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    PelLu300RouterInterfaceXml record = sample(1);
    PelLu300RouterInterfaceXml other = sample(2);
    QByteArray form;
    QByteArray packed;
    QString xml;
    QByteArray written;
    QString writtenXml;
    QTemporaryDir folder;
    QString path;
    // The function that fails, and whether it has failed.
    Allocator allocator = Allocator::New;
    bool hasFailed = false;
};

// The outcome of an operation.
enum class Outcome
{
    True,
    False,
    OutOfMemory
};

struct Operation
{
    std::function<void(Scene&)> prepare;
    std::function<bool(Scene&)> run;
    // Checks what must be true if memory did not run out, or if that had no effect.
    std::function<void(Scene&)> expectDone;
    // Checks what must be true in all other cases.
    std::function<void(Scene&)> expectNotDone;
};

void nothing(Scene&) {}

// The allocations that fail in an operation.
struct Shortage
{
    Allocator allocator = Allocator::New;
    Extent extent = Extent::Once;
    long successes = 0;
};

// Lets memory run out in the operation. Returns whether it got that far.
bool tryOnce(const Operation& operation, const Shortage& shortage)
{
    SCOPED_TRACE(::testing::Message()
                 << "allocation " << shortage.successes << " by "
                 << (shortage.allocator == Allocator::New ? "new" : "malloc") << " fails"
                 << (shortage.extent == Extent::Once ? " alone" : " and all that follow"));
    Scene scene;
    scene.allocator = shortage.allocator;
    operation.prepare(scene);
    Outcome outcome = Outcome::OutOfMemory;
    {
        const FailingAllocations failing(shortage.successes, shortage.allocator, shortage.extent);
        try {
            outcome = operation.run(scene) ? Outcome::True : Outcome::False;
        } catch (const std::bad_alloc&) {
        }
        scene.hasFailed = failing.hasFailed();
    }
    if (outcome == Outcome::True)
        operation.expectDone(scene);
    else
        operation.expectNotDone(scene);
    if (outcome == Outcome::False) {
        EXPECT_NE(IMKObject::GetLastFailure().kind, Failure::None);
    }
    if (!scene.hasFailed) {
        EXPECT_EQ(outcome, Outcome::True);
    }
    // The record can be used as before.
    scene.record.Reset();
    EXPECT_TRUE(scene.record == PelLu300RouterInterfaceXml());
    EXPECT_TRUE(scene.record.SetXmlString(scene.xml, true));
    EXPECT_TRUE(scene.record == scene.other);
    EXPECT_EQ(scene.record.GetBinaryRepresentationAsQByteArray(), scene.form);
    EXPECT_TRUE(scene.other == sample(2));
    return scene.hasFailed;
}

// Like tryOnce(), in a new process.
bool tryApart(const Operation& operation, const Shortage& shortage)
{
    constexpr int reached = 10;
    constexpr int notReached = 11;
    const ChildEnd end =
        runInChild([&](QByteArray&) { return tryOnce(operation, shortage) ? reached : notReached; });
    EXPECT_TRUE(end.status == reached || end.status == notReached)
        << ::testing::PrintToString(end) << " with allocation " << shortage.successes;
    return end.status == reached;
}

// Lets every allocation fail in turn, until all succeed. Used: the functions that the operation calls.
void expectSurvives(const Operation& operation,
                    const std::vector<Allocator>& used = {Allocator::New, Allocator::Malloc})
{
    for (const Allocator allocator : used) {
        if (!canFail(allocator))
            continue;
        for (const Extent extent : {Extent::Once, Extent::FromThenOn}) {
            Shortage shortage;
            shortage.allocator = allocator;
            shortage.extent = extent;
            const auto attempt = allocator == Allocator::New ? tryOnce : tryApart;
            // After a failure, all further child processes would report it too.
            while (!::testing::Test::HasFailure() && attempt(operation, shortage))
                ++shortage.successes;
            EXPECT_GT(shortage.successes, 0);
        }
    }
}

// A reading operation: the record must be equal to the one that was written.
Operation reading(std::function<bool(Scene&)> run, std::function<void(Scene&)> prepare = nothing)
{
    return {std::move(prepare), std::move(run),
            [](Scene& scene) { EXPECT_TRUE(scene.record == scene.other); }, nothing};
}

// A writing operation: the record must not change, and complete output must contain it.
Operation writing(std::function<bool(Scene&)> run)
{
    const auto expectUnchanged = [](Scene& scene) { EXPECT_TRUE(scene.record == sample(1)); };
    const auto expectWritten = [](Scene& scene) {
        EXPECT_TRUE(scene.record == sample(1));
        PelLu300RouterInterfaceXml read;
        EXPECT_TRUE(read.SetBinaryRepresentation(scene.written));
        EXPECT_TRUE(read == sample(1));
    };
    return {nothing, std::move(run), expectWritten, expectUnchanged};
}

} // namespace

// --- XML ------------------------------------------------------------------------------------------

TEST(OutOfMemory, WhileAnXmlStringIsRead)
{
    expectSurvives(reading([](Scene& scene) { return scene.record.SetXmlString(scene.xml, true); }));
}

TEST(OutOfMemory, WhileAnXmlStringIsReadUnderValidation)
{
    expectSurvives(reading([](Scene& scene) { return scene.record.SetXmlString(scene.xml, true); },
                           [](Scene& scene) { scene.record.SetValidate(true); }));
}

TEST(OutOfMemory, WhileAnXmlStringWithACommentIsRead)
{
    // Qt's reader reads it.
    const auto prepare = [](Scene& scene) { scene.xml += QStringLiteral("<!-- -->"); };
    expectSurvives(reading([](Scene& scene) { return scene.record.SetXmlString(scene.xml, true); }, prepare));
}

TEST(OutOfMemory, WhileAFailureIsExplained)
{
    Operation operation;
    operation.prepare = [](Scene& scene) {
        scene.written = "<PelLu300RouterInterfaceXml><PelLu300RouterMessage>\n<Type>Reply</Typ>";
    };
    operation.run = [](Scene& scene) {
        return !scene.record.SetXmlString(QString::fromUtf8(scene.written), false);
    };
    // The document must be refused.
    operation.expectDone = [](Scene&) {
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
        EXPECT_EQ(IMKObject::GetLastFailure().place.path,
                  QStringLiteral("/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Type"));
    };
    operation.expectNotDone = nothing;
    expectSurvives(operation);
}

TEST(OutOfMemory, WhileAnExceptionIsGivenItsPlace)
{
    Operation operation;
    operation.prepare = [](Scene& scene) {
        scene.xml.replace(QStringLiteral("MasterPresent"), QStringLiteral("Nobody"));
        scene.record.SetValidate(true);
    };
    operation.run = [](Scene& scene) {
        try {
            scene.record.SetXmlString(scene.xml, false);
        } catch (const OutOfRangeException&) {
            return true;
        }
        return false;
    };
    operation.expectDone = [](Scene& scene) { scene.xml = scene.other.GetXmlString(); };
    operation.expectNotDone = operation.expectDone;
    expectSurvives(operation);
}

TEST(OutOfMemory, WhileAReportIsKept)
{
    expectSurvives(reading(
        [](Scene& scene) {
            MODELKIT::ReadingReport report;
            return scene.record.SetXmlString(scene.xml, false);
        },
        [](Scene& scene) {
            scene.xml.replace(QStringLiteral("<MessageID>"), QStringLiteral("<x/><y/><MessageID a='1'>"));
        }));
}

TEST(OutOfMemory, WhileAReportOfABinaryFormIsKept)
{
    expectSurvives(reading(
        [](Scene& scene) {
            MODELKIT::ReadingReport report;
            return scene.record.SetBinaryRepresentation(scene.written);
        },
        [](Scene& scene) {
            // An unknown entry at the end of the document.
            const int length = static_cast<int>(scene.form.size());
            QDataStream stream(&scene.written, QIODevice::WriteOnly);
            stream.writeRawData(scene.form.constData(), 4);
            stream << length;
            stream.writeRawData(scene.form.constData() + 8, length - 8);
            stream << 1 << 0;
        }));
}

TEST(OutOfMemory, WhileAnXmlFileIsLoaded)
{
    const auto prepare = [](Scene& scene) { scene.write(scene.xml.toUtf8()); };
    expectSurvives(reading([](Scene& scene) { return scene.record.LoadXml(scene.path); }, prepare));
    expectSurvives(reading(
        [](Scene& scene) {
            QFile file(scene.path);
            return scene.record.LoadXml(&file);
        },
        prepare));
}

// Write: writes an equal document.
Operation writingAnXmlString(const std::function<QString(Scene&)>& write)
{
    Operation operation = writing([write](Scene& scene) {
        scene.writtenXml = write(scene);
        return !scene.writtenXml.isNull();
    });
    operation.expectDone = [](Scene& scene) {
        EXPECT_TRUE(scene.record == sample(1));
        PelLu300RouterInterfaceXml read;
        EXPECT_TRUE(read.SetXmlString(scene.writtenXml, true));
        EXPECT_TRUE(read == sample(1));
    };
    return operation;
}

TEST(OutOfMemory, WhileAnXmlStringIsWritten)
{
    if (!canFail(Allocator::Malloc))
        GTEST_SKIP() << "Only malloc is called, and it cannot fail here.";
    expectSurvives(writingAnXmlString([](Scene& scene) { return scene.record.GetXmlString(); }),
                   {Allocator::Malloc});
}

TEST(OutOfMemory, WhileAnXmlStringOfADerivedRecordIsWritten)
{
    // Qt's writer writes it.
    struct Derived : PelLu300RouterInterfaceXml
    {
    };
    expectSurvives(writingAnXmlString([](Scene& scene) {
        Derived derived;
        derived.PelLu300RouterInterfaceXml::operator=(scene.record);
        return derived.GetXmlString();
    }));
}

TEST(OutOfMemory, WhileATextThatXmlCannotCarryIsExplained)
{
    for (const char16_t character : {char16_t(1), char16_t(0xD800)}) {
        Operation operation;
        operation.prepare = [character](Scene& scene) {
            scene.record.GetPelLu300RouterMessage().GetFragment()[0].GetPelVtConnectServer().SetAddress(
                QString(QChar(character)));
        };
        operation.run = [](Scene& scene) { return scene.record.GetXmlString().isNull(); };
        operation.expectDone = [](Scene& scene) {
            if (!scene.hasFailed) {
                EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotRepresentable);
            }
        };
        operation.expectNotDone = nothing;
        expectSurvives(operation);
    }
}

TEST(OutOfMemory, WhileAFileIsSavedLeavesTheOldFile)
{
    Operation operation = writing([](Scene& scene) { return scene.record.SaveXml(scene.path); });
    operation.expectDone = [](Scene& scene) {
        EXPECT_TRUE(scene.record == sample(1));
        PelLu300RouterInterfaceXml saved;
        EXPECT_TRUE(saved.LoadXml(scene.path));
        EXPECT_TRUE(saved == sample(1));
    };
    operation.expectNotDone = [](Scene& scene) {
        EXPECT_TRUE(scene.record == sample(1));
        EXPECT_EQ(scene.fileContent(), QByteArray(oldFile));
        // Qt itself may leave its unfinished file beside the old one when malloc fails.
        if (scene.allocator == Allocator::New) {
            EXPECT_EQ(QDir(scene.folder.path()).entryList(QDir::Files | QDir::Hidden),
                      QStringList(QStringLiteral("document")));
        }
    };
    expectSurvives(operation);
}

// --- merging --------------------------------------------------------------------------------------

TEST(OutOfMemory, WhileARecordIsMergedLeavesTheOther)
{
    Operation operation = reading([](Scene& scene) { return scene.record.MergeMKObject(scene.other); },
                                  [](Scene& scene) { scene.record.Reset(); });
    expectSurvives(operation);
}

// --- binary ---------------------------------------------------------------------------------------

TEST(OutOfMemory, WhileABinaryFormIsWritten)
{
    expectSurvives(writing([](Scene& scene) {
        scene.written = scene.record.GetBinaryRepresentationAsQByteArray();
        return !scene.written.isEmpty();
    }));
    expectSurvives(writing([](Scene& scene) {
        QDataStream stream(&scene.written, QIODevice::WriteOnly);
        scene.record.GetBinaryRepresentation(stream);
        return stream.status() == QDataStream::Ok && !scene.written.isEmpty();
    }));
}

TEST(OutOfMemory, WhileACompressedFormIsWritten)
{
    expectSurvives(writing([](Scene& scene) {
        scene.written = scene.record.GetCompressedBinaryRepresentationAsQByteArray(9);
        return !scene.written.isEmpty();
    }));
    expectSurvives(writing([](Scene& scene) {
        QDataStream stream(&scene.written, QIODevice::WriteOnly);
        scene.record.GetCompressedBinaryRepresentation(stream, 9);
        return stream.status() == QDataStream::Ok && !scene.written.isEmpty();
    }));
}

TEST(OutOfMemory, WhileABinaryFormIsRead)
{
    expectSurvives(reading([](Scene& scene) { return scene.record.SetBinaryRepresentation(scene.form); }));
    expectSurvives(reading([](Scene& scene) {
        QDataStream stream(scene.form);
        return scene.record.SetBinaryRepresentation(stream);
    }));
}

TEST(OutOfMemory, WhileACompressedFormIsRead)
{
    expectSurvives(reading([](Scene& scene) { return scene.record.SetBinaryRepresentation(scene.packed); }));
    expectSurvives(reading([](Scene& scene) {
        QDataStream stream(scene.packed);
        return scene.record.SetBinaryRepresentation(stream);
    }));
}

TEST(OutOfMemory, WhileABinaryFileIsLoaded)
{
    for (const bool compressed : {false, true}) {
        expectSurvives(reading(
            [](Scene& scene) {
                QFile file(scene.path);
                return scene.record.LoadBinary(&file);
            },
            [compressed](Scene& scene) { scene.write(compressed ? scene.packed : scene.form); }));
    }
}
