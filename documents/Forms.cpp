#include "documents/Forms.h"

#include "Session.h"
#include "documents/JsonForm.h"
#include "documents/Text.h"

#include "modelkit/BinaryForm.h"
#include "modelkit/Limits.h"
#include "modelkit/ReplaceFile.h"
#include "modelkit/XmlPlaces.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QtEndian>

#include <csignal>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace routermsg {

using PELLU300ROUTERINTERFACEXML::RecordInfo;

// --- telling forms apart --------------------------------------------------------------------

namespace {

struct Ending
{
    const char* text;
    Form form;
};

constexpr Ending endings[] = {
    {".xml", Form::Xml}, {".bin", Form::Binary}, {".binz", Form::Compressed}, {".json", Form::Json}};

// The class whose whole-object form the bytes begin as; null when it is none.
const RecordInfo* classOfFrame(const QByteArray& bytes)
{
    return bytes.size() < 4 ? nullptr : RecordInfo::FindByFrameId(qFromBigEndian<quint32>(bytes.constData()));
}

bool isTextByte(char byte)
{
    return static_cast<unsigned char>(byte) >= 0x20 || byte == '\t' || byte == '\n' || byte == '\r';
}

// UTF-16 and UTF-32, with and without a mark.
bool beginsAsWideXml(const QByteArray& bytes)
{
    static const QByteArray beginnings[] = {QByteArray("\xFE\xFF"),        QByteArray("\xFF\xFE"),
                                            QByteArray("\0\0\xFE\xFF", 4), QByteArray("\0<", 2),
                                            QByteArray("<\0", 2),          QByteArray("\0\0\0<", 4)};
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&bytes](const QByteArray& beginning) { return bytes.startsWith(beginning); });
}

bool beginsAsJson(const QByteArray& bytes)
{
    const int mark = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    const auto first = std::find_if(bytes.begin() + mark, bytes.end(),
                                    [](char byte) { return std::strchr(" \t\r\n", byte) == nullptr; });
    return first != bytes.end() && (*first == '{' || *first == '[');
}

} // namespace

const QStringList& formNames()
{
    static const QStringList names = {QStringLiteral("xml"), QStringLiteral("binary"),
                                      QStringLiteral("compressed"), QStringLiteral("json")};
    return names;
}

QString nameOf(Form form) { return formNames().at(static_cast<int>(form)); }

std::optional<Form> formByName(const QString& name)
{
    const auto index = formNames().indexOf(name);
    return index < 0 ? std::nullopt : std::make_optional(static_cast<Form>(index));
}

std::optional<Form> formOfFileName(const QString& path)
{
    for (const Ending& ending : endings)
        if (path.endsWith(QLatin1String(ending.text), Qt::CaseInsensitive))
            return ending.form;
    return std::nullopt;
}

QString knownEndings()
{
    QStringList texts;
    for (const Ending& ending : endings)
        texts += QLatin1String(ending.text);
    return texts.join(QStringLiteral(", "));
}

Form formOfContent(const QByteArray& bytes)
{
    constexpr int beginning = 256;
    if (MODELKIT::IsCompressedForm(bytes))
        return Form::Compressed;
    if (classOfFrame(bytes))
        return Form::Binary;
    if (beginsAsWideXml(bytes))
        return Form::Xml;
    if (beginsAsJson(bytes))
        return Form::Json;
    const QByteArray begin = bytes.left(beginning);
    return std::all_of(begin.begin(), begin.end(), isTextByte) ? Form::Xml : Form::Binary;
}

namespace {

// Does what fails without knowing the file.
template <class Action>
auto withFileName(const QString& name, const Action& action) -> decltype(action())
{
    try {
        return action();
    } catch (const ModelKitException& exception) {
        throw Refusal(Finding::of(exception, name));
    } catch (const Refusal& refusal) {
        Finding finding = refusal.finding();
        finding.place.file = name;
        throw Refusal(finding);
    }
}

} // namespace

// --- reading --------------------------------------------------------------------------------

namespace {

bool isStandardStream(const QString& path) { return path == QLatin1String("-"); }

[[noreturn]] void refuseToRead(const QString& path, const QString& reason)
{
    throw Refusal(
        Finding::ofFile(inputName(path), QStringLiteral("The file cannot be read: %1.").arg(reason)));
}

MODELKIT::Place placeIn(const QString& name)
{
    MODELKIT::Place place;
    place.file = name;
    return place;
}

QByteArray readAll(QFile& file, const QString& path)
{
    constexpr qint64 step = qint64(1) << 20;
    const qint64 limit = MODELKIT::Limits::Get().inputSize;
    QByteArray bytes;
    while (true) {
        const QByteArray more = file.read(step);
        if (file.error() != QFileDevice::NoError)
            refuseToRead(path, file.errorString());
        if (more.isEmpty())
            return bytes;
        bytes += more;
        if (bytes.size() > limit)
            throw Refusal({Finding::Error, Found,
                           QStringLiteral("The input is larger than the limit of %1 bytes.").arg(limit),
                           placeIn(inputName(path))});
    }
}

// The class that the bytes are of, which the library has found not to be the document's.
const RecordInfo* classOf(const QByteArray& bytes, Form form)
{
    if (form == Form::Xml)
        return RecordInfo::Find(MODELKIT::RootNameOfXml(bytes));
    if (form == Form::Binary)
        return classOfFrame(bytes);
    QByteArray plain;
    MODELKIT::Failure failure;
    MODELKIT::InflateForm(bytes, plain, failure);
    return classOfFrame(plain);
}

// The record; null, with the failure explained, when the bytes are none of the class.
std::unique_ptr<MODELKIT::IMKObject> readAs(const RecordInfo& info, const QByteArray& bytes, Form form,
                                            bool validate)
{
    auto record = info.Create();
    record->SetValidate(validate);
    const bool isRead =
        form == Form::Xml ? record->SetXmlBytes(bytes) : record->SetBinaryRepresentation(bytes);
    return isRead ? std::move(record) : nullptr;
}

std::unique_ptr<MODELKIT::IMKObject> readByLibrary(const QByteArray& bytes, const QString& name, Form form,
                                                   bool validate)
{
    using MODELKIT::Failure;
    auto record = readAs(RecordInfo::Document(), bytes, form, validate);
    // Whatever it is, the document's class says best what it is not.
    const Failure failure = MODELKIT::IMKObject::GetLastFailure();
    if (failure.kind == Failure::WrongRoot || failure.kind == Failure::WrongClass)
        if (const RecordInfo* info = classOf(bytes, form))
            record = readAs(*info, bytes, form, validate);
    if (!record)
        throw Refusal(Finding::of(MODELKIT::IMKObject::GetLastFailure(), name));
    return record;
}

// Applies the rules to a record that has been read.
void check(const MODELKIT::IMKObject& record, const QByteArray& bytes, Form form)
{
    try {
        record.Check();
    } catch (ModelKitException& exception) {
        if (form == Form::Xml)
            exception.SetPlace(MODELKIT::FindInXml(bytes, exception.GetPlace().path));
        throw;
    }
}

std::unique_ptr<MODELKIT::IMKObject> read(const QByteArray& bytes, const QString& name, Form form,
                                          bool validate)
{
    return withFileName(name, [&] {
        auto record =
            form == Form::Json ? fromJson(bytes, validate) : readByLibrary(bytes, name, form, validate);
        if (validate)
            check(*record, bytes, form);
        return record;
    });
}

} // namespace

QString inputName(const QString& path) { return isStandardStream(path) ? QStringLiteral("<stdin>") : path; }

QString outputName(const QString& path) { return isStandardStream(path) ? QStringLiteral("<stdout>") : path; }

QByteArray readInput(const QString& path)
{
    QFile file(path);
    if (isStandardStream(path)) {
        if (!file.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered))
            refuseToRead(path, file.errorString());
        return readAll(file, path);
    }
    if (QFileInfo(path).isDir())
        refuseToRead(
            path,
            QStringLiteral("it is a folder without documents, whose names end in %1").arg(knownEndings()));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        refuseToRead(path, file.errorString());
    return readAll(file, path);
}

Loaded load(const QString& path, const ReadingOptions& options)
{
    return parse(readInput(path), inputName(path), options);
}

Loaded parse(const QByteArray& bytes, const QString& name, const ReadingOptions& options)
{
    Loaded loaded;
    loaded.form = options.form.value_or(formOfContent(bytes));
    loaded.size = bytes.size();
    loaded.record = read(bytes, name, loaded.form, options.validate);
    loaded.info = &RecordInfo::Of(*loaded.record);
    return loaded;
}

// --- writing --------------------------------------------------------------------------------

namespace {

// Empty when the form cannot carry the record.
QByteArray encodeUnchecked(MODELKIT::IMKObject& record, Form form)
{
    constexpr int usualLevel = -1;
    switch (form) {
    case Form::Xml:
        return record.GetXmlBytes();
    case Form::Binary:
        return record.GetBinaryRepresentationAsQByteArray();
    case Form::Compressed:
        return record.GetCompressedBinaryRepresentationAsQByteArray(usualLevel);
    case Form::Json:
        break;
    }
    return toJson(record);
}

void writeToTerminal(const QByteArray& bytes, Form form, Output& out)
{
    if (form == Form::Binary || form == Form::Compressed)
        throw Refusal(Finding::ofFile(
            outputName(QStringLiteral("-")),
            QStringLiteral("The %1 form is not written to a terminal. Name a file or redirect the output.")
                .arg(nameOf(form))));
    const QString text = QString::fromUtf8(bytes);
    out.write(form == Form::Xml ? showableXml(text) : showableJson(text));
}

// Holds back the signals that end the program, so that they do not leave half of something behind.
class Uninterrupted
{
public:
    Uninterrupted()
    {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
            sigaddset(&ending, signal);
        pthread_sigmask(SIG_BLOCK, &ending, &m_before);
    }
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    ~Uninterrupted() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

void writeToFile(const QByteArray& bytes, const QString& path)
{
    const Uninterrupted uninterrupted;
    MODELKIT::Failure failure;
    if (!MODELKIT::ReplaceFile(path, bytes, failure))
        throw Refusal(Finding::of(failure, path));
}

} // namespace

QByteArray encode(MODELKIT::IMKObject& record, Form form, const QString& name)
{
    return withFileName(name, [&] {
        if (record.GetValidate() && !record.HasData())
            throw IncompleteDefinitionException(
                QStringLiteral("%1 holds no data.").arg(record.GetObjectName()));
        const QByteArray bytes = encodeUnchecked(record, form);
        if (bytes.isEmpty())
            throw Refusal(Finding::of(MODELKIT::IMKObject::GetLastFailure(), name));
        return bytes;
    });
}

void writeDocument(const QByteArray& bytes, Form form, const QString& path, Session& session)
{
    if (!isStandardStream(path))
        return writeToFile(bytes, path);
    if (session.out().isTerminal())
        writeToTerminal(bytes, form, session.out());
    else
        session.out().writeBytes(bytes);
    session.out().flush();
}

// --- folders --------------------------------------------------------------------------------

namespace {

void addFilesIn(const QString& folder, QStringList& files)
{
    const QDir dir(folder);
    // Names only: there may be many.
    const QStringList names = dir.entryList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const QString path = dir.filePath(name);
        const QFileInfo entry(path);
        if (entry.isDir() && !entry.isSymLink())
            addFilesIn(path, files);
        else if (entry.isFile() && formOfFileName(name))
            files += path;
    }
}

} // namespace

QStringList filesAmong(const QStringList& paths)
{
    QStringList files;
    for (const QString& path : paths) {
        const auto before = files.size();
        if (QFileInfo(path).isDir())
            addFilesIn(path, files);
        // A folder that holds nothing is left for reading to complain about.
        if (files.size() == before)
            files += path;
    }
    return files;
}

} // namespace routermsg
