// SPDX-License-Identifier: MIT
// measure_peaks --list: prints the names of the hostile inputs.
// measure_peaks CASE [N]: makes one of them with N parts, reads it and prints, separated by tabs: the case,
//   the form, the size of the input, CPU seconds, peak bytes, and the outcome.
// measure_peaks --table: measures all of them with N and 2N parts, each in a new process, and prints a table
// in
//   Markdown. A case that takes more than two minutes of CPU is stopped.
// measure_peaks --about: prints the versions of what is measured.
//
// The peak is the largest resident memory while reading minus the resident memory before. It includes the
// bytes of a file, which the library takes into memory, but not a string or byte array, which belongs to the
// caller.

#include "DocumentParts.h"
#include "FailureKinds.h"

#include "modelkit/ReadingReport.h"
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtCore/QTemporaryFile>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace PELLU300ROUTERINTERFACEXML;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using namespace testing_support;

namespace {

// --- the inputs -------------------------------------------------------------------------------

QByteArray repeated(const QByteArray& part, int count) { return part.repeated(count); }

QByteArray numbered(const QByteArray& before, int count, const QByteArray& behind)
{
    QByteArray result;
    for (int i = 0; i < count; ++i)
        result += before + QByteArray::number(i, 36) + behind;
    return result;
}

QByteArray inText(const QByteArray& content)
{
    return inMessage("<Fragment><PelVtConnectServer><Address>" + content
                     + "</Address></PelVtConnectServer></Fragment>");
}

QByteArray nested(int depth, const QByteArray& content)
{
    QByteArray before;
    QByteArray behind;
    for (int i = 0; i < depth; ++i) {
        const QByteArray name = "n" + QByteArray::number(i);
        before += '<' + name + '>';
        behind.prepend("</" + name + '>');
    }
    return before + content + behind;
}

QByteArray utf16Of(const QByteArray& utf8, Mark mark = Mark::With)
{
    return utf16(QString::fromUtf8(utf8), ByteOrder::Little, mark);
}

QByteArray utf32Of(const QByteArray& utf8)
{
    return utf32(QString::fromUtf8(utf8), ByteOrder::Big, Mark::Without);
}

QByteArray declared(const QByteArray& encoding)
{
    return "<?xml version='1.0' encoding='" + encoding + "'?>";
}

// As many attributes as the limit admits, each with the given texts around its name.
QByteArray mostAttributes(const QByteArray& before = " a", const QByteArray& behind = "=''")
{
    return numbered(before, 256, behind);
}

QByteArray form(const QByteArray& messageContent)
{
    return word(documentId) + sized(entry(messageTag, messageContent));
}

QByteArray listOf(const QByteArray& item, int count)
{
    return form(entry(fragmentTag, word(static_cast<quint32>(count)) + repeated(item, count)));
}

QByteArray allPayloads()
{
    QByteArray content;
    for (const quint32 tag :
         {mastershipStateTag, acquireMastershipTag, releaseMastershipTag, ostraInterfacePortTag,
          pelVtConnectServerTag, routerVtServerPortTag, dfParamsTag})
        content += entry(tag, QByteArray());
    return sized(content);
}

QByteArray compressed(const QByteArray& plain, int pieceSize = 65536)
{
    QByteArray pieces;
    for (int at = 0; at < static_cast<int>(plain.size()); at += pieceSize)
        pieces += sized(qCompress(plain.mid(at, pieceSize), 9));
    return compressedForm(pieces);
}

// --- the cases --------------------------------------------------------------------------------

enum class Form
{
    XmlFile,
    XmlString,
    CheckedString,
    BinaryFile,
    BinaryBytes,
    BinaryStream
};

struct Case
{
    const char* name;
    const char* what;
    Form form;
    bool reports;
    int parts;
    QByteArray (*make)(int parts);
};

QByteArray emptyItems(int n) { return inMessage(repeated("<Fragment/>", n)); }

QByteArray fullItems(int n)
{
    return inMessage(
        repeated("<Fragment><MastershipState/><AcquireMastership/><ReleaseMastership/><OstraInterfacePort/>"
                 "<PelVtConnectServer/><RouterVtServerPort/><DF_Params/></Fragment>",
                 n));
}

QByteArray distinctNames(int n) { return inMessage(numbered("<x", n, "/>")); }

QByteArray distinctNamesCutOff(int n)
{
    QByteArray xml = distinctNames(n);
    xml.chop(1);
    return xml;
}

const Case cases[] = {
    // With so many items the list has just grown, while its old memory was still allocated.
    {"xml-empty-items", "`<Fragment/>`", Form::XmlFile, false, 1200000, emptyItems},
    {"xml-string-empty-items", "`<Fragment/>`", Form::XmlString, false, 1200000, emptyItems},
    {"xml-items-with-payload", "`<Fragment><DF_Params/></Fragment>`", Form::XmlFile, false, 500000,
     [](int n) { return inMessage(repeated("<Fragment><DF_Params/></Fragment>", n)); }},
    {"xml-items-with-all-payloads", "fragments that touch all seven payloads", Form::XmlFile, false, 100000,
     fullItems},
    {"xml-empty-members", "`<Type/>` again and again", Form::XmlFile, false, 1000000,
     [](int n) { return inMessage(repeated("<Type/>", n)); }},
    {"xml-distinct-names", "unknown elements, each of another name", Form::XmlFile, false, 1000000,
     distinctNames},
    {"xml-distinct-names-and-error", "the same, then cut off", Form::XmlFile, false, 1000000,
     distinctNamesCutOff},
    {"xml-distinct-names-reported", "the same, kept a report of", Form::XmlFile, true, 1000000,
     distinctNames},
    {"xml-long-paths-reported", "unknown elements below long names, kept a report of", Form::XmlFile, true, 1,
     [](int n) {
         QByteArray before;
         QByteArray behind;
         // Skipping the first element of each pair stops at the second, which has the same name.
         for (int i = 0; i < 10 * n; ++i) {
             const QByteArray name = QByteArray(4000, 'n') + QByteArray::number(i);
             before += '<' + name + "><" + name + '>';
             behind.prepend("</" + name + "></" + name + '>');
         }
         return inMessage(before + repeated("<x/>", 10000) + behind);
     }},
    {"xml-long-paths-checked", "the same in front of a message that its check refuses", Form::CheckedString,
     false, 50000,
     [](int n) {
         QByteArray before;
         QByteArray behind;
         for (int i = 0; i < 60; ++i) {
             const QByteArray name = QByteArray(n / 50, 'n') + QByteArray::number(i);
             before += '<' + name + '>';
             behind.prepend("</" + name + '>');
         }
         return "<PelLu300RouterInterfaceXml>" + before + repeated("<x/>", n / 2) + behind
                + "<PelLu300RouterMessage/></PelLu300RouterInterfaceXml>";
     }},
    {"xml-utf16-empty-items", "`<Fragment/>` in UTF-16", Form::XmlFile, false, 1200000,
     [](int n) { return utf16Of(emptyItems(n)); }},
    {"xml-utf16-distinct-names-and-error", "unknown elements in UTF-16, each of another name, then cut off",
     Form::XmlFile, false, 500000, [](int n) { return utf16Of(distinctNamesCutOff(n)); }},
    {"xml-utf32-distinct-names-and-error", "the same in UTF-32", Form::XmlFile, false, 500000,
     [](int n) { return utf32Of(distinctNamesCutOff(n)); }},
    {"xml-declared-utf8-and-error", "the same, declared as `UTF8`", Form::XmlFile, false, 500000,
     [](int n) { return declared("UTF8") + distinctNamesCutOff(n); }},
    {"xml-mentioning-and-error", "the same behind an instruction that mentions an encoding", Form::XmlFile,
     false, 500000, [](int n) { return "<?x encoding='EUC-JP'?>" + distinctNamesCutOff(n); }},
    {"xml-euc-jp-and-error", "the same in EUC-JP", Form::XmlFile, false, 500000,
     [](int n) { return declared("EUC-JP") + "<!--\xC6\xFC-->" + distinctNamesCutOff(n); }},
    {"xml-shift-jis-and-error", "the same in Shift_JIS", Form::XmlFile, false, 500000,
     [](int n) { return declared("Shift_JIS") + "<!--\x95\x5C-->" + distinctNamesCutOff(n); }},
    {"xml-gb18030-and-error", "the same in GB18030", Form::XmlFile, false, 500000,
     [](int n) { return declared("GB18030") + "<!--\xD6\xD0-->" + distinctNamesCutOff(n); }},
    {"xml-big5-and-error", "the same in Big5", Form::XmlFile, false, 500000,
     [](int n) { return declared("Big5") + "<!--\xA5\x5C-->" + distinctNamesCutOff(n); }},
    {"xml-iso-2022", "the same in ISO-2022-JP", Form::XmlFile, false, 500000,
     [](int n) { return declared("ISO-2022-JP") + distinctNamesCutOff(n); }},
    {"xml-badly-encoded", "the same, the last byte no UTF-8", Form::XmlFile, false, 500000,
     [](int n) { return distinctNamesCutOff(n) + '\xFF'; }},
    {"xml-utf32-attributes-on-one", "attributes on one element, in UTF-32", Form::XmlFile, false, 1000000,
     [](int n) { return utf32Of(inMessage("<Type" + numbered(" a", n, "=''") + "/>")); }},
    {"xml-turning-utf16", "the same in UTF-16 that changes its order behind the declaration", Form::XmlFile,
     false, 1000000,
     [](int n) {
         const QByteArray turned =
             utf16Of(inMessage("<Type" + numbered(" a", n, "=''") + "/>"), Mark::Without);
         return utf16Of(declared("UTF-16BE")) + turned.mid(1) + ' ';
     }},
    {"xml-attributes-on-one", "attributes on one element", Form::XmlFile, false, 1000000,
     [](int n) { return inMessage("<Type" + numbered(" a", n, "=''") + "/>"); }},
    {"xml-utf16-attributes-on-one", "attributes on one element, in UTF-16", Form::XmlFile, false, 1000000,
     [](int n) { return utf16Of(inMessage("<Type" + numbered(" a", n, "=''") + "/>")); }},
    {"xml-utf16-hidden-attributes",
     "the same without a byte order mark, behind a sign with an apostrophe in it", Form::XmlFile, false,
     1000000,
     [](int n) {
         // Half of this character is an apostrophe.
         return utf16Of(inMessage("<Type z='\xE2\x9C\x80'" + numbered(" a", n, "=''") + "/>"), Mark::Without);
     }},
    {"xml-attributes-on-many", "ten attributes on each element", Form::XmlFile, false, 200000,
     [](int n) { return inMessage(repeated("<x a='' b='' c='' d='' e='' f='' g='' h='' i='' j=''/>", n)); }},
    {"xml-attributes-to-the-limit", "256 attributes on each element", Form::XmlFile, false, 6000,
     [](int n) { return inMessage(repeated("<x" + mostAttributes() + "/>", n)); }},
    {"xml-long-attributes-to-the-limit", "the same, their names long and different at the end only",
     Form::XmlFile, false, 10,
     [](int n) { return inMessage(repeated("<x" + mostAttributes(' ' + QByteArray(3900, 'a')) + "/>", n)); }},
    {"xml-namespaces", "60 times 256 namespaces, and elements that use one", Form::XmlFile, false, 500000,
     [](int n) {
         QByteArray before;
         QByteArray behind;
         for (int i = 0; i < 60; ++i) {
             const QByteArray name = "x" + QByteArray::number(i);
             before += '<' + name + mostAttributes(" xmlns:" + name + 'a', "='u'") + '>';
             behind.prepend("</" + name + '>');
         }
         return inMessage(before + repeated("<x0a0:z/>", n) + behind);
     }},
    {"xml-text", "one long text", Form::XmlFile, false, 20000000,
     [](int n) { return inText(QByteArray(n, 'x')); }},
    {"xml-text-of-entities", "one long text of `&lt;`", Form::XmlFile, false, 4000000,
     [](int n) { return inText(repeated("&lt;", n)); }},
    {"xml-text-in-pieces", "one long text of `x<!---->`", Form::XmlFile, false, 2000000,
     [](int n) { return inText(repeated("x<!---->", n)); }},
    {"xml-comments", "comments", Form::XmlFile, false, 2000000,
     [](int n) { return inMessage(repeated("<!---->", n)); }},
    {"xml-instructions", "processing instructions", Form::XmlFile, false, 2000000,
     [](int n) { return inMessage(repeated("<?x?>", n)); }},
    {"xml-nested-to-the-limit", "chains of elements 62 deep", Form::XmlFile, false, 30000,
     [](int n) { return inMessage(repeated(nested(62, QByteArray()), n)); }},
    {"xml-nested-above-the-limit", "nested tags", Form::XmlFile, false, 1000000,
     [](int n) { return inMessage(repeated("<a>", n)); }},
    {"xml-billion-laughs", "entities of entities", Form::XmlFile, false, 20,
     [](int n) {
         QByteArray dtd = "<!DOCTYPE x [<!ENTITY e0 'ha'>";
         for (int i = 1; i <= n; ++i)
             dtd += "<!ENTITY e" + QByteArray::number(i) + " '"
                    + repeated("&e" + QByteArray::number(i - 1) + ';', 10) + "'>";
         return dtd + "]>" + inText("&e" + QByteArray::number(n) + ';');
     }},
    {"xml-quadratic-entities", "one long entity, used often", Form::XmlFile, false, 1000000,
     [](int n) {
         return "<!DOCTYPE x [<!ENTITY e '" + QByteArray(n, 'x') + "'>]>" + inText(repeated("&e;", n));
     }},
    {"xml-doctype-attributes", "a DOCTYPE that declares attributes", Form::XmlFile, false, 10000,
     [](int n) {
         return "<!DOCTYPE x [<!ATTLIST x" + numbered(" a", n, " CDATA #IMPLIED") + ">]>"
                + inMessage(QByteArray());
     }},
    {"binary-empty-items", "items of length 0", Form::BinaryFile, false, 1000000,
     [](int n) { return listOf(word(0), n); }},
    {"binary-bytes-empty-items", "items of length 0", Form::BinaryBytes, false, 1000000,
     [](int n) { return listOf(word(0), n); }},
    {"binary-stream-empty-items", "items of length 0", Form::BinaryStream, false, 1000000,
     [](int n) { return listOf(word(0), n); }},
    {"binary-empty-items-in-two-lists", "the same, the first of them in a list of its own", Form::BinaryFile,
     false, 1200000,
     [](int n) {
         return form(entry(fragmentTag, word(1) + word(0))
                     + entry(fragmentTag, word(static_cast<quint32>(n) - 1) + repeated(word(0), n - 1)));
     }},
    {"binary-items-with-payload", "items with an empty payload", Form::BinaryFile, false, 500000,
     [](int n) { return listOf(sized(entry(dfParamsTag, QByteArray())), n); }},
    {"binary-items-with-all-payloads", "items that touch all seven payloads", Form::BinaryFile, false, 100000,
     [](int n) { return listOf(allPayloads(), n); }},
    {"binary-empty-messages", "the message again and again", Form::BinaryFile, false, 1000000,
     [](int n) { return word(documentId) + sized(repeated(entry(messageTag, QByteArray()), n)); }},
    {"binary-unknown-entries", "unknown entries of length 0", Form::BinaryFile, false, 2000000,
     [](int n) { return form(repeated(entry(1, QByteArray()), n)); }},
    {"binary-unknown-entries-reported", "the same, kept a report of", Form::BinaryFile, true, 2000000,
     [](int n) { return form(repeated(entry(1, QByteArray()), n)); }},
    {"binary-text", "one long text", Form::BinaryFile, false, 20000000,
     [](int n) {
         return form(entry(
             fragmentTag,
             word(1) + sized(entry(pelVtConnectServerTag, entry(addressTag, sized(QByteArray(n, 'x')))))));
     }},
    {"binary-announced-items", "a list that announces 2147483647 items", Form::BinaryFile, false, 4000000,
     [](int n) { return form(entry(fragmentTag, word(0x7FFFFFFF) + QByteArray(4 * n, '\xFF'))); }},
    {"binary-zeros", "a list of so many items of length 0 as no container holds", Form::BinaryBytes, false,
     20000000, [](int n) { return listOf(word(0), n); }},
    {"compressed-empty-items", "items of length 0", Form::BinaryBytes, false, 1000000,
     [](int n) { return compressed(listOf(word(0), n)); }},
    {"compressed-items-with-all-payloads", "items that touch all seven payloads", Form::BinaryBytes, false,
     100000, [](int n) { return compressed(listOf(allPayloads(), n)); }},
    {"compressed-text", "one long text", Form::BinaryBytes, false, 100000000,
     [](int n) {
         return compressed(form(entry(
             fragmentTag,
             word(1) + sized(entry(pelVtConnectServerTag, entry(addressTag, sized(QByteArray(n, 'x'))))))));
     }},
    {"compressed-bomb", "zeros, more than the limit admits", Form::BinaryBytes, false, 8000,
     [](int n) { return compressedForm(repeated(sized(qCompress(QByteArray(65536, '\0'), 9)), n)); }},
    {"compressed-lying-piece", "a piece that holds more than it says", Form::BinaryBytes, false, 30000000,
     [](int n) {
         QByteArray piece = qCompress(QByteArray(n, '\0'), 9);
         piece.replace(0, 4, word(65536));
         return compressedForm(sized(piece));
     }},
    {"compressed-small-pieces", "pieces of one byte", Form::BinaryBytes, false, 500000,
     [](int n) { return compressedForm(repeated(sized(qCompress(QByteArray(1, '\0'), 9)), n)); }},
};

const Case* findCase(const char* name)
{
    for (const Case& candidate : cases)
        if (std::strcmp(candidate.name, name) == 0)
            return &candidate;
    return nullptr;
}

const char* nameOf(Form form)
{
    switch (form) {
    case Form::XmlFile:
        return "XML file";
    case Form::XmlString:
        return "XML string";
    case Form::CheckedString:
        return "XML string, checked";
    case Form::BinaryFile:
        return "binary file";
    case Form::BinaryBytes:
        return "byte array";
    case Form::BinaryStream:
        return "stream";
    }
    return "";
}

// --- measuring --------------------------------------------------------------------------------

// A line of /proc/self/status in bytes.
long long statusOf(const char* key)
{
    std::FILE* status = std::fopen("/proc/self/status", "r");
    if (!status)
        return -1;
    char line[256];
    long long kilobytes = -1;
    while (std::fgets(line, sizeof line, status))
        if (std::strncmp(line, key, std::strlen(key)) == 0)
            kilobytes = std::atoll(line + std::strlen(key));
    std::fclose(status);
    return kilobytes * 1024;
}

// Resets the largest resident memory to the current one.
bool forgetPeak()
{
    std::FILE* file = std::fopen("/proc/self/clear_refs", "w");
    if (!file)
        return false;
    const bool written = std::fputs("5", file) >= 0;
    return std::fclose(file) == 0 && written;
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
           + static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

bool read(IMKObject& object, Form form, QFile& file, const QString& text, QByteArray& bytes)
{
    switch (form) {
    case Form::XmlFile:
        return object.LoadXml(&file);
    case Form::XmlString:
        return object.SetXmlString(text, false);
    case Form::CheckedString:
        return object.SetXmlString(text, true);
    case Form::BinaryFile:
        return object.LoadBinary(&file);
    case Form::BinaryBytes:
        return object.SetBinaryRepresentation(bytes);
    case Form::BinaryStream: {
        QDataStream stream(bytes);
        return object.SetBinaryRepresentation(stream);
    }
    }
    return false;
}

// Makes the input in another process, so that the heap of this one stays as it is.
bool makeInput(const Case& which, int parts, const QString& path)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(600);
        QFile file(path);
        const QByteArray input = which.make(parts);
        const bool made = file.open(QIODevice::WriteOnly) && file.write(input) == input.size();
        file.close();
        _exit(made ? 0 : 1);
    }
    int status = 1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

int measure(const Case& which, int parts)
{
    QTemporaryFile place;
    if (!place.open() || !makeInput(which, parts, place.fileName())) {
        std::fprintf(stderr, "The input cannot be made.\n");
        return 1;
    }
    QFile file(place.fileName());
    QByteArray bytes;
    QString text;
    if (which.form != Form::XmlFile && which.form != Form::BinaryFile) {
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        bytes = file.readAll();
        file.close();
        if (which.form == Form::XmlString || which.form == Form::CheckedString) {
            text = QString::fromUtf8(bytes);
            bytes = QByteArray();
        }
    }
    PelLu300RouterInterfaceXml document;
    std::string outcome;
    if (!forgetPeak()) {
        std::fprintf(stderr, "The peak of memory cannot be measured here.\n");
        return 1;
    }
    const long long before = statusOf("VmRSS:");
    const double begin = cpuSeconds();
    {
        std::unique_ptr<MODELKIT::ReadingReport> report;
        if (which.reports)
            report = std::make_unique<MODELKIT::ReadingReport>();
        try {
            read(document, which.form, file, text, bytes);
        } catch (const ModelKitException&) {
            // The outcome is Refused, as for every exception of a record.
        } catch (const std::bad_alloc&) {
            outcome = "std::bad_alloc";
        }
        const Failure::Kind kind = IMKObject::GetLastFailure().kind;
        if (outcome.empty())
            outcome = kind == Failure::None ? "read" : testing_support::nameOfKind(kind);
    }
    const double seconds = cpuSeconds() - begin;
    const long long peak = statusOf("VmHWM:") - before;
    std::printf("%s\t%s\t%lld\t%.3f\t%lld\t%s\n", which.name, nameOf(which.form),
                static_cast<long long>(QFile(place.fileName()).size()), seconds, peak, outcome.c_str());
    return 0;
}

#ifdef __clang__
const char* const compiler = __VERSION__;
#else
const char* const compiler = "GCC " __VERSION__;
#endif

// --- the table --------------------------------------------------------------------------------

struct Measured
{
    double size = 0;
    double seconds = 0;
    double peak = 0;
    std::string outcome;
};

// Runs this program for one case.
Measured run(const char* program, const Case& which, int parts)
{
    constexpr rlim_t mostSeconds = 120;
    Measured measured;
    int ends[2];
    if (pipe(ends) != 0)
        return measured;
    const pid_t child = fork();
    if (child == 0) {
        const rlimit limit{mostSeconds, mostSeconds};
        setrlimit(RLIMIT_CPU, &limit);
        // This also ends a process that only waits. An alarm stays set across execl().
        alarm(10 * mostSeconds);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        const std::string count = std::to_string(parts);
        execl(program, program, which.name, count.c_str(), static_cast<char*>(nullptr));
        _exit(1);
    }
    close(ends[1]);
    std::string line;
    char buffer[4096];
    for (ssize_t got = 0; (got = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        line.append(buffer, static_cast<std::size_t>(got));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    std::vector<std::string> fields;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t end = line.find_first_of("\t\n", at);
        fields.push_back(line.substr(at, end - at));
        at = end == std::string::npos ? line.size() : end + 1;
    }
    if (fields.size() == 6) {
        measured.size = std::stod(fields[2]);
        measured.seconds = std::stod(fields[3]);
        measured.peak = std::stod(fields[4]);
        measured.outcome = fields[5];
    } else {
        measured.outcome = WIFSIGNALED(status) && (WTERMSIG(status) == SIGKILL || WTERMSIG(status) == SIGXCPU)
                               ? "stopped after " + std::to_string(mostSeconds) + " s"
                               : "not measured";
    }
    return measured;
}

std::string ratio(double a, double b, double meaningless)
{
    char text[32] = "-";
    if (b > meaningless)
        std::snprintf(text, sizeof text, "%.1f", a / b);
    return text;
}

int table(const char* program)
{
    std::printf("| Input | Form | Outcome | Size | CPU | Peak | Peak per byte | CPU at 2N | Peak at 2N |\n"
                "|---|---|---|---|---|---|---|---|---|\n");
    for (const Case& which : cases) {
        const Measured once = run(program, which, which.parts);
        const Measured twice = run(program, which, 2 * which.parts);
        std::string outcome = once.outcome;
        if (twice.outcome != once.outcome)
            outcome += "; at 2N: " + twice.outcome;
        std::printf("| %s | %s | %s | %.3f MB | %.3f s | %.1f MB | %s | x %s | x %s |\n", which.what,
                    nameOf(which.form), outcome.c_str(), once.size / 1e6, once.seconds, once.peak / 1e6,
                    ratio(once.peak, once.size, 5e3).c_str(),
                    ratio(twice.seconds, once.seconds, 0.02).c_str(),
                    ratio(twice.peak, once.peak, 2e6).c_str());
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc == 2 && std::strcmp(argv[1], "--table") == 0)
        return table("/proc/self/exe");
    if (argc == 2 && std::strcmp(argv[1], "--about") == 0) {
        std::printf("library %s, Qt %s, compiled with %s\n",
                    qPrintable(PelLu300RouterInterfaceXml().GetVersion()), qVersion(), compiler);
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
        for (const Case& each : cases)
            std::printf("%s\t%s\t%d\t%s\n", each.name, nameOf(each.form), each.parts, each.what);
        return 0;
    }
    const Case* const which = argc >= 2 ? findCase(argv[1]) : nullptr;
    if (!which || argc > 3) {
        std::fprintf(stderr, "measure_peaks CASE [N] | --table | --list | --about\n");
        return 2;
    }
    return measure(*which, argc == 3 ? std::atoi(argv[2]) : which->parts);
}
