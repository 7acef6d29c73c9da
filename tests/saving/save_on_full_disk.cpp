// SPDX-License-Identifier: MIT
// save_on_full_disk FOLDER: replaces a file on a small file system by documents of every size around the room
// that is left, in every form and with every way to save. Each time the new file must be whole, or the
// failure must be reported with the system's reason. After a failure the old file must be unchanged if the
// way to save promises it.

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <QtCore/QStorageInfo>

#include <cstdio>
#include <random>
#include <vector>

using namespace PELLU300ROUTERINTERFACEXML;
using MODELKIT::Failure;
using MODELKIT::IMKObject;

namespace {

using Document = PelLu300RouterInterfaceXml;

// A document of many fragments with so many characters in all, which hardly compress.
Document documentOf(int characters)
{
    constexpr int fragments = 100;
    std::mt19937 random;
    const auto text = [&random](int size) {
        static const char signs[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+-";
        QString result(size, QLatin1Char(' '));
        for (QChar& sign : result)
            sign = QLatin1Char(signs[random() % 64]);
        return result;
    };
    Document document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    for (int i = 0; i < fragments; ++i) {
        Fragment fragment;
        fragment.GetPelVtConnectServer().SetAddress(
            text(characters / fragments + (i < characters % fragments)));
        message.AppendFragment(fragment);
    }
    return document;
}

// --- ways to save ---------------------------------------------------------------------------------

// The result of a way to save.
struct Outcome
{
    bool isSaved = false;
    // Whether the status of the stream, if there is one, agrees.
    bool isStreamRight = true;
};

bool hasFailed() { return IMKObject::GetLastFailure().kind != Failure::None; }

Outcome outcomeOf(const QDataStream& stream)
{
    return {!hasFailed(), stream.status() == (hasFailed() ? QDataStream::WriteFailed : QDataStream::Ok)};
}

void writeBinary(const Document& document, QDataStream& stream) { document.GetBinaryRepresentation(stream); }
void writeCompressed(const Document& document, QDataStream& stream)
{
    document.GetCompressedBinaryRepresentation(stream, -1);
}

template <void write(const Document&, QDataStream&)>
Outcome saveFile(const Document& document, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    QDataStream stream(&file);
    write(document, stream);
    Outcome outcome = outcomeOf(stream);
    if (outcome.isSaved)
        outcome.isSaved = file.commit();
    return outcome;
}

template <void write(const Document&, QDataStream&)>
Outcome plainFile(const Document& document, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    QDataStream stream(&file);
    write(document, stream);
    Outcome outcome = outcomeOf(stream);
    const bool isFlushed = file.flush();
    file.close();
    if (outcome.isSaved)
        outcome.isSaved = isFlushed && file.error() == QFileDevice::NoError;
    return outcome;
}

Outcome saveXml(const Document& document, const QString& path) { return {document.SaveXml(path)}; }
Outcome saveBinary(const Document& document, const QString& path) { return {document.SaveBinary(path)}; }
Outcome saveCompressed(const Document& document, const QString& path)
{
    return {document.SaveCompressed(path)};
}

// --- forms ----------------------------------------------------------------------------------------

struct Form
{
    qint64 (*sizeOf)(Document& document);
    bool (*load)(Document& document, const QString& path);
};

bool loadBinary(Document& document, const QString& path)
{
    QFile file(path);
    try {
        return document.LoadBinary(&file);
    } catch (const ModelKitException&) {
        return false;
    }
}

const Form xml{[](Document& document) -> qint64 { return document.GetXmlString().toUtf8().size(); },
               [](Document& document, const QString& path) { return document.LoadXml(path); }};
const Form binary{
    [](Document& document) -> qint64 { return document.GetBinaryRepresentationAsQByteArray().size(); },
    loadBinary};
const Form compressed{[](Document& document) -> qint64 {
                          return document.GetCompressedBinaryRepresentationAsQByteArray(-1).size();
                      },
                      loadBinary};

struct Way
{
    const char* name;
    const Form& form;
    Outcome (*save)(const Document& document, const QString& path);
    bool keepsOldFile;
};

const Way ways[] = {
    {"SaveXml", xml, saveXml, true},
    {"SaveBinary", binary, saveBinary, true},
    {"SaveCompressed", compressed, saveCompressed, true},
    {"binary to QSaveFile", binary, saveFile<writeBinary>, true},
    {"compressed to QSaveFile", compressed, saveFile<writeCompressed>, true},
    {"binary to QFile", binary, plainFile<writeBinary>, false},
    {"compressed to QFile", compressed, plainFile<writeCompressed>, false},
};

// --- trying ---------------------------------------------------------------------------------------

// The fewest characters with which a document has at least that size.
int charactersFor(const Form& form, qint64 size)
{
    int few = 0;
    int many = 1 << 17;
    while (few < many) {
        const int middle = (few + many) / 2;
        Document document = documentOf(middle);
        if (form.sizeOf(document) < size)
            few = middle + 1;
        else
            many = middle;
    }
    return few;
}

// Sizes from well below to well above the room, with every size close to it.
std::vector<int> sizesAround(const Form& form, qint64 room)
{
    constexpr int steps = 173;
    constexpr int close = 8;
    const int least = charactersFor(form, room * 7 / 10);
    const int most = charactersFor(form, room * 12 / 10);
    const int exact = charactersFor(form, room);
    std::vector<int> sizes;
    for (int i = 0; i < steps; ++i)
        sizes.push_back(least + (most - least) * i / (steps - 1));
    for (int i = -close; i <= close; ++i)
        sizes.push_back(exact + i);
    return sizes;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class Trial
{
public:
    explicit Trial(const QString& folder)
        : m_folder(folder), m_path(m_folder.filePath(QStringLiteral("document")))
    {}

    bool run(const Way& way)
    {
        prepare();
        const qint64 room = QStorageInfo(m_folder).bytesAvailable();
        int saved = 0;
        int wrong = 0;
        const std::vector<int> sizes = sizesAround(way.form, room);
        for (const int characters : sizes) {
            Document document = documentOf(characters);
            prepare();
            const Outcome outcome = way.save(document, m_path);
            saved += outcome.isSaved;
            const char* complaint = complaintOf(way, outcome, document);
            if (complaint && wrong++ < 3)
                std::printf("%s, %lld bytes for %lld: %s %s\n", way.name, way.form.sizeOf(document), room,
                            complaint, qPrintable(IMKObject::GetLastFailure().GetSentence()));
        }
        const int tried = static_cast<int>(sizes.size());
        std::printf("%s: %d sizes, %d saved, %d refused, %d wrong\n", way.name, tried, saved, tried - saved,
                    wrong);
        return wrong == 0 && saved > 0 && saved < tried;
    }

private:
    // Puts the old file into the folder, and nothing else.
    void prepare()
    {
        for (const QString& name : files())
            m_folder.remove(name);
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(m_old) != m_old.size() || !file.flush())
            qFatal("The old file cannot be written.");
    }

    QStringList files() const { return m_folder.entryList(QDir::Files | QDir::Hidden); }

    const char* complaintOf(const Way& way, const Outcome& outcome, const Document& document) const
    {
        const Failure failure = IMKObject::GetLastFailure();
        if (files() != QStringList(QStringLiteral("document")))
            return "There is more than the one file.";
        if (!outcome.isStreamRight)
            return "The status of the stream does not fit.";
        if (outcome.isSaved) {
            Document read;
            if (failure.kind != Failure::None)
                return "There is a failure, but the file was saved.";
            return way.form.load(read, m_path) && read == document ? nullptr : "The new file is not whole.";
        }
        if (way.keepsOldFile && contentOf(m_path) != m_old)
            return "The old file is not as it was.";
        if (failure.kind != Failure::InputOutput)
            return "The failure is not told.";
        return failure.GetSentence().endsWith(QLatin1String("No space left on device."))
                   ? nullptr
                   : "The reason is not the system's.";
    }

    QDir m_folder;
    QString m_path;
    QByteArray m_old = "the old file";
};

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2)
        return 2;
    Trial trial(QString::fromLocal8Bit(argv[1]));
    bool isRight = true;
    for (const Way& way : ways)
        isRight = trial.run(way) && isRight;
    return isRight ? 0 : 1;
}
