/// \file
/// The written forms of documents, and getting records from files and into files.
#pragma once

#include "Finding.h"

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <optional>

namespace routermsg {

class Session;

enum class Form
{
    Xml,
    Binary,
    Compressed,
    Json
};

/// The names of the forms, in the order of the enumeration.
const QStringList& formNames();
QString nameOf(Form form);
std::optional<Form> formByName(const QString& name);
/// The form that the ending of a file's name stands for.
std::optional<Form> formOfFileName(const QString& path);
/// The endings of file names as the user is told of them: ".xml, .bin, .binz, .json".
QString knownEndings();
/// What the bytes are, or are most like.
Form formOfContent(const QByteArray& bytes);

/// How messages call a file: "<stdin>" for "-", otherwise as it was given.
QString inputName(const QString& path);
/// "<stdout>" for "-", otherwise as it was given.
QString outputName(const QString& path);

/// The whole content of a file, or of standard input for "-".
/// \throws Refusal when it cannot be read or is larger than Limits::inputSize.
QByteArray readInput(const QString& path);

/// How to read a document.
struct ReadingOptions
{
    /// Without one it is told by the content.
    std::optional<Form> form;
    /// Whether the record gets its validation switched on before it is read, and is checked afterwards.
    bool validate = false;
};

/// A document as it was read.
struct Loaded
{
    std::unique_ptr<MODELKIT::IMKObject> record;
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;
    Form form = Form::Xml;
    /// The number of bytes of the written form.
    qint64 size = 0;
};

/// Reads a document whose root may be any record.
/// \param path a file, or "-" for standard input
/// \throws Refusal with the library's own text.
Loaded load(const QString& path, const ReadingOptions& options = {});
/// As above, from bytes.
/// \param name how messages call them
Loaded parse(const QByteArray& bytes, const QString& name, const ReadingOptions& options = {});

/// The record in a form; files of that form hold the same bytes.
/// \param name how messages call what is to be written
/// \throws Refusal when the record does not pass its validation or the form cannot carry a text.
QByteArray encode(MODELKIT::IMKObject& record, Form form, const QString& name);

/// Writes the bytes of a document to a file, which changes at once or not at all, or for "-" to standard
/// output. What could steer a terminal is escaped there by the means of the form.
/// \throws Refusal when the file cannot be written, or for binary bytes on a terminal.
void writeDocument(const QByteArray& bytes, Form form, const QString& path, Session& session);

/// All files among the paths: files as given, of folders and the folders in them those whose ending
/// stands for a form, in the order of their names. What is hidden is left out, links to folders too. A
/// folder without such a file is left among them: readInput() says what is wrong with it.
QStringList filesAmong(const QStringList& paths);

} // namespace routermsg
