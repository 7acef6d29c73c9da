// SPDX-License-Identifier: MIT
// Writes router messages in both forms, reads them back, and tells what has changed.
//
//     router_messages [FILE.xml | FOLDER]...
//
// First the program builds a typical request, writes it as XML and as binary, and reads it back from both.
// Then it loads and checks every document named on the command line (in a folder: every *.xml file), writes
// it in both forms and reads it back. One line per document tells whether anything has changed, and what.
//
// The exit status is 1 when a document cannot be read or does not pass its check, or when the typical request
// has changed, otherwise 0.

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <algorithm>
#include <iostream>
#include <vector>

using namespace PELLU300ROUTERINTERFACEXML;
using Document = PelLu300RouterInterfaceXml;

namespace {

// --- output ---------------------------------------------------------------------------------

void print(const QString& text) { std::cout << text.toStdString(); }

// File names and documents can contain any character. A character that is not printable is shown as \x and
// its number, so that it cannot control the terminal, and a backslash is doubled.
QString printable(const QString& text)
{
    QString shown;
    for (const char32_t character : text.toUcs4()) {
        if (character == U'\\')
            shown += "\\\\";
        else if (QChar::isPrint(character))
            shown += QString::fromUcs4(&character, 1);
        else
            shown += "\\x" + QString::number(character, 16).toUpper().rightJustified(2, '0');
    }
    return shown;
}

QString hexDump(const QByteArray& bytes)
{
    constexpr int bytesPerLine = 16;
    QString dump;
    for (int offset = 0; offset < bytes.size(); offset += bytesPerLine) {
        const QByteArray line = bytes.mid(offset, bytesPerLine).toHex(' ');
        dump += QString::number(offset, 16).rightJustified(4, '0') + "  " + line + '\n';
    }
    return dump;
}

// --- documents ------------------------------------------------------------------------------

// Validation is off in a new record. It is switched on before anything else, so that wrong values are
// refused where they occur, also in the records inside the document.
Document newDocument()
{
    Document document;
    document.SetValidate(true);
    return document;
}

QString kindOf(const Fragment& fragment)
{
    return fragment.ChoiceFragmentToName(fragment.GetChoiceFragment());
}

QString describeMessage(const Document& document)
{
    if (!document.IsPelLu300RouterMessageSet())
        return "none";
    const PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    const QString type = message.GetTypeAsString();
    return message.IsMessageIDSet() ? type + ' ' + QString::number(message.GetMessageID()) : type;
}

QString describeFragments(const Document& document)
{
    const QVector<Fragment>& fragments = document.GetPelLu300RouterMessage().GetFragment();
    QStringList kinds;
    QHash<QString, int> counts;
    for (const Fragment& fragment : fragments) {
        const QString kind = kindOf(fragment);
        if (++counts[kind] == 1)
            kinds += kind;
    }

    QStringList parts;
    for (const QString& kind : kinds)
        parts += counts[kind] == 1 ? kind : kind + " x" + QString::number(counts[kind]);
    const QString total = QString::number(fragments.size());
    return parts.isEmpty() ? total : total + ": " + parts.join(", ");
}

// --- the typical request --------------------------------------------------------------------

// A client asks to become master of the router.
Document typicalRequest()
{
    Document document = newDocument();
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Request);
    message.SetMessageID(1);

    Fragment fragment;
    fragment.SetAcquireMastership(AcquireMastership());
    message.AppendFragment(fragment);
    return document;
}

// Prints what was read back and whether it equals what was written.
bool showReadBack(const QString& form, bool readBack, const Document& copy, const Document& original)
{
    const bool equal = readBack && copy == original;
    print("Read back from " + form + ": " + describeMessage(copy) + ", fragments " + describeFragments(copy)
          + (equal ? " - equals the original\n" : " - differs from the original\n"));
    return equal;
}

bool showTypicalRequest()
{
    Document request = typicalRequest();

    const QString xml = request.GetXmlString();
    print("A typical request as XML:\n\n" + xml + '\n');
    QByteArray binary = request.GetBinaryRepresentationAsQByteArray();
    print("The same request as binary:\n\n" + hexDump(binary) + '\n');

    Document fromXml = newDocument();
    const bool xmlRead = fromXml.SetXmlString(xml, true);
    Document fromBinary = newDocument();
    const bool binaryRead = fromBinary.SetBinaryRepresentation(binary);

    const bool xmlEqual = showReadBack("XML", xmlRead, fromXml, request);
    const bool binaryEqual = showReadBack("binary", binaryRead, fromBinary, request);
    return xmlEqual && binaryEqual;
}

// --- the members of a document --------------------------------------------------------------

// Every member that is set, with a name that tells where it is.
struct Members
{
    QStringList names;
    QHash<QString, QString> values;

    void add(const QString& name, const QString& value)
    {
        names += name;
        values[name] = value;
    }
};

QString quoted(const QString& text) { return '"' + printable(text) + '"'; }

// All digits, not only the two decimals of the written forms.
QString exactly(double value) { return QString::number(value, 'f', QLocale::FloatingPointShortest); }

// Records with a string member are passed by value, because the getter of a string is not const.
void addMembers(Members& members, const QString& place, MastershipState record)
{
    if (record.IsStateSet())
        members.add(place + "State", record.GetStateAsString());
    if (record.IsMasterClientIDSet())
        members.add(place + "MasterClientID", quoted(record.GetMasterClientID()));
}

void addMembers(Members& members, const QString& place, PelVtConnectServer record)
{
    if (record.IsAddressSet())
        members.add(place + "Address", quoted(record.GetAddress()));
    if (record.IsPortSet())
        members.add(place + "Port", QString::number(record.GetPort()));
}

void addMembers(Members& members, const QString& place, const DF_Params& record)
{
    if (record.IsFrequencySet())
        members.add(place + "Frequency", exactly(record.GetFrequency()));
    if (record.IsDemodulationFrequencySet())
        members.add(place + "DemodulationFrequency", exactly(record.GetDemodulationFrequency()));
    if (record.IsBandwidthSet())
        members.add(place + "Bandwidth", exactly(record.GetBandwidth()));
    if (record.IsPanoramaSpanSet())
        members.add(place + "PanoramaSpan", exactly(record.GetPanoramaSpan()));
}

// AcquireMastership and ReleaseMastership.
template <class Record>
void addSuccess(Members& members, const QString& place, const Record& record)
{
    if (record.IsSuccessSet())
        members.add(place + "Success", record.GetSuccess() ? "true" : "false");
}

// OstraInterfacePort and RouterVtServerPort.
template <class Record>
void addPort(Members& members, const QString& place, const Record& record)
{
    if (record.IsPortSet())
        members.add(place + "Port", QString::number(record.GetPort()));
}

void addFragment(Members& members, const QString& name, const Fragment& fragment)
{
    members.add(name, kindOf(fragment));
    const QString place = name + ' ';
    switch (fragment.GetChoiceFragment()) {
    case Fragment::MastershipState:
        return addMembers(members, place, fragment.GetMastershipState());
    case Fragment::AcquireMastership:
        return addSuccess(members, place, fragment.GetAcquireMastership());
    case Fragment::ReleaseMastership:
        return addSuccess(members, place, fragment.GetReleaseMastership());
    case Fragment::OstraInterfacePort:
        return addPort(members, place, fragment.GetOstraInterfacePort());
    case Fragment::PelVtConnectServer:
        return addMembers(members, place, fragment.GetPelVtConnectServer());
    case Fragment::RouterVtServerPort:
        return addPort(members, place, fragment.GetRouterVtServerPort());
    case Fragment::DF_Params:
        return addMembers(members, place, fragment.GetDF_Params());
    default:
        break; // a payload that a later version has added
    }
}

Members membersOf(const Document& document)
{
    Members members;
    if (!document.IsPelLu300RouterMessageSet())
        return members;
    const PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    members.add("message", "present");
    if (message.IsTypeSet())
        members.add("Type", message.GetTypeAsString());
    if (message.IsMessageIDSet())
        members.add("MessageID", QString::number(message.GetMessageID()));
    int number = 0;
    for (const Fragment& fragment : message.GetFragment())
        addFragment(members, "fragment " + QString::number(++number), fragment);
    return members;
}

// --- what changed ---------------------------------------------------------------------------

QString differences(const Document& before, const Document& after)
{
    const Members old = membersOf(before);
    const Members now = membersOf(after);
    QStringList names = old.names + now.names;
    names.removeDuplicates();

    QStringList found;
    for (const QString& name : names) {
        const QString oldValue = old.values.value(name, "absent");
        const QString newValue = now.values.value(name, "absent");
        if (oldValue != newValue)
            found += name + ' ' + oldValue + " -> " + newValue;
    }
    return found.isEmpty() ? "nothing but NaN, which never equals itself" : found.join(", ");
}

QString describeRoundTrips(const Document& original, const Document& fromBinary, const Document& fromXml)
{
    const QString inBinary = fromBinary == original ? QString() : differences(original, fromBinary);
    const QString inXml = fromXml == original ? QString() : differences(original, fromXml);
    if (inBinary == inXml)
        return inXml.isEmpty() ? "unchanged" : "changed in both forms: " + inXml;

    QStringList changes;
    if (!inBinary.isEmpty())
        changes += "changed in binary: " + inBinary;
    if (!inXml.isEmpty())
        changes += "changed in XML: " + inXml;
    return changes.join("; ");
}

// --- one document ---------------------------------------------------------------------------

enum class Outcome
{
    Unchanged,
    Changed,
    Failed
};

// One line of the table.
struct Report
{
    QStringList cells; // the columns of the table; only the name when the document failed
    QString result;
    Outcome outcome = Outcome::Failed;
};

QString nameOf(const QString& path) { return printable(QFileInfo(path).fileName()); }

Report failure(const QString& path, const QString& reason)
{
    return {{nameOf(path)}, "failed: " + printable(reason), Outcome::Failed};
}

// Why the last operation on a whole document failed. The table names the file already.
QString lastFailure()
{
    MODELKIT::Failure failure = MODELKIT::IMKObject::GetLastFailure();
    failure.place.file.clear();
    return failure.GetSentence();
}

Report sendThroughBothForms(const QString& path)
{
    Document original = newDocument();
    if (!original.LoadXml(path))
        return failure(path, lastFailure());
    original.Check();

    QByteArray binary = original.GetBinaryRepresentationAsQByteArray();
    Document fromBinary = newDocument();
    if (!fromBinary.SetBinaryRepresentation(binary))
        return failure(path, "its binary form cannot be read back: " + lastFailure());
    fromBinary.Check();

    const QString xml = original.GetXmlString();
    Document fromXml = newDocument();
    if (!fromXml.SetXmlString(xml, true))
        return failure(path, "its XML form cannot be read back: " + lastFailure());

    const bool unchanged = fromBinary == original && fromXml == original;
    return {{nameOf(path), describeMessage(original), describeFragments(original),
             QString::number(xml.toUtf8().size()), QString::number(binary.size())},
            describeRoundTrips(original, fromBinary, fromXml),
            unchanged ? Outcome::Unchanged : Outcome::Changed};
}

Report examine(const QString& path)
{
    try {
        return sendThroughBothForms(path);
    } catch (const MKException& exception) {
        return failure(path, exception.GetText());
    }
}

// --- all documents --------------------------------------------------------------------------

std::vector<Report> examineAll(const QString& fileOrFolder)
{
    if (!QFileInfo(fileOrFolder).isDir())
        return {examine(fileOrFolder)};

    const QDir folder(fileOrFolder);
    std::vector<Report> reports;
    for (const QString& name : folder.entryList({"*.xml"}, QDir::Files, QDir::Name))
        reports.push_back(examine(folder.filePath(name)));
    if (reports.empty())
        reports.push_back(failure(folder.absolutePath(), "holds no *.xml file"));
    return reports;
}

void printTable(std::vector<Report> rows)
{
    const QStringList header = {"Document", "Message", "Fragments", "XML bytes", "Binary bytes"};
    const int firstNumber = 3;
    rows.insert(rows.begin(), {header, "Round trip", Outcome::Unchanged});

    QVector<int> widths(header.size(), 0);
    for (const Report& row : rows) {
        for (int i = 0; i < row.cells.size(); ++i)
            widths[i] = std::max(widths[i], static_cast<int>(row.cells[i].size()));
    }
    for (const Report& row : rows) {
        for (int i = 0; i < row.cells.size(); ++i) {
            const QString& cell = row.cells[i];
            print(i < firstNumber ? cell.leftJustified(widths[i]) : cell.rightJustified(widths[i]));
            print("  ");
        }
        print(row.result + '\n');
    }
}

void printSummary(const std::vector<Report>& reports)
{
    const auto number = [&](Outcome outcome) {
        const auto hasIt = [outcome](const Report& report) { return report.outcome == outcome; };
        return QString::number(std::count_if(reports.begin(), reports.end(), hasIt));
    };
    print(QString::number(reports.size()) + " documents: " + number(Outcome::Unchanged) + " unchanged, "
          + number(Outcome::Changed) + " changed, " + number(Outcome::Failed) + " failed\n");
}

} // namespace

int main(int argc, char* argv[])
{
    bool good = showTypicalRequest();

    std::vector<Report> reports;
    for (int i = 1; i < argc; ++i) {
        for (const Report& report : examineAll(QFile::decodeName(argv[i])))
            reports.push_back(report);
    }
    if (!reports.empty()) {
        print("\n");
        printTable(reports);
        print("\n");
        printSummary(reports);
    }
    for (const Report& report : reports)
        good = good && report.outcome != Outcome::Failed;
    return good ? 0 : 1;
}
