// SPDX-License-Identifier: MIT
#include "wire/Outgoing.h"

#include "Messages.h"
#include "Suggestions.h"
#include "UsageError.h"
#include "commands/NewWords.h"
#include "documents/DocumentError.h"
#include "documents/Forms.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "routerinterface/RecordInfo.h"

#include <algorithm>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// The characters up to which the first name of a request goes.
bool endsName(QChar character)
{
    return character.isSpace() || character == QLatin1Char('.') || character == QLatin1Char('=');
}

QString firstName(const QString& request)
{
    const auto* const begin =
        std::find_if_not(request.begin(), request.end(), [](QChar c) { return c.isSpace(); });
    const auto* const end = std::find_if(begin, request.end(), endsName);
    return QString(begin, static_cast<int>(end - begin));
}

// Whether the argument looks like a file, whatever it begins with.
bool isPath(const QString& argument)
{
    return argument == QLatin1String("-") || argument.contains(QLatin1Char('/'))
           || FormOfFileName(argument).has_value();
}

bool isName(const QString& word)
{
    const QStringList words = possibleWords();
    return !word.isEmpty()
           && (words.contains(word) || words.contains(word + QLatin1Char('='))
               || word == RecordInfo::Document().GetName());
}

// Takes a request apart, word by word.
class WordReader
{
public:
    explicit WordReader(const QString& request) : m_request(request) {}

    QStringList read()
    {
        for (const QChar character : m_request)
            take(character);
        if (m_isQuoted)
            throw UsageError(QStringLiteral("A double quote is missing in %1.").arg(Quoted(m_request)));
        endWord();
        return m_words;
    }

private:
    void take(QChar character)
    {
        const bool isInValue = m_isInValue;
        if (m_isEscaped) {
            m_word += character;
            m_isEscaped = false;
        } else if (m_isQuoted && character == QLatin1Char('\\')) {
            m_isEscaped = true;
        } else if (isInValue && character == QLatin1Char('"')) {
            m_isQuoted = !m_isQuoted;
        } else if (!m_isQuoted && (character.isSpace() || (!isInValue && character == QLatin1Char('.')))) {
            endWord();
        } else {
            m_word += character;
            m_isInValue = m_isInValue || character == QLatin1Char('=');
        }
    }

    void endWord()
    {
        m_isInValue = false;
        if (!m_word.isEmpty())
            m_words += m_word;
        m_word.clear();
    }

    const QString m_request;
    QStringList m_words;
    QString m_word;
    // Whether the word has a '=' already.
    bool m_isInValue = false;
    bool m_isQuoted = false;
    bool m_isEscaped = false;
};

// Says also that the argument could have been a request.
Refusal explained(const Refusal& refusal, const QString& path)
{
    Finding finding = refusal.finding();
    const bool isMissing = finding.status == Failed && finding.hint.isEmpty();
    if (isMissing && !isPath(path)) {
        const QString meant = DidYouMean(firstName(path), possibleWords());
        finding.hint =
            QStringLiteral("It is taken for a file, because it does not begin with a word of a request.")
            + meant;
    }
    return Refusal(finding);
}

void addMessagesOf(const QString& path, const InputFormat& format, std::vector<OutgoingMessage>& messages)
{
    try {
        Messages input(path, {{}, format, nullptr});
        while (const auto message = input.next()) {
            const Document document = message->read(Validation::On);
            // The class is sure, because the format asks for it.
            const auto& record = dynamic_cast<const PelLu300RouterInterfaceXml&>(*document.record);
            messages.push_back(std::make_shared<PelLu300RouterInterfaceXml>(record));
        }
    } catch (const Refusal& refusal) {
        throw explained(refusal, path);
    }
}

} // namespace

QStringList wordsOf(const QString& request) { return WordReader(request).read(); }

OutgoingMessage messageOf(const QString& request)
{
    QStringList words = wordsOf(request);
    if (words.value(0) == RecordInfo::Document().GetName())
        words.removeFirst();
    try {
        const auto record = build(RecordInfo::Document(), words);
        const auto& made = dynamic_cast<const PelLu300RouterInterfaceXml&>(*record);
        auto message = std::make_shared<PelLu300RouterInterfaceXml>(made);
        if (!message->GetPelLu300RouterMessage().IsTypeSet())
            message->GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Request);
        message->Check();
        return message;
    } catch (const ModelKitException& exception) {
        Finding finding = Finding::of(DocumentError(exception), QString());
        throw Refusal(finding);
    }
}

QStringList offeredRequests()
{
    QStringList words = offeredWords();
    words.removeDuplicates();
    return words;
}

bool isRequest(const QString& argument)
{
    // A value may hold a slash or end like a file name.
    const bool hasValue = argument.contains(QLatin1Char('='));
    return (!isPath(argument) || hasValue) && isName(firstName(argument));
}

OptionTable outgoingArgument()
{
    return required(repeatable(suggesting(
        offeredRequests(),
        argument(
            "FILE|REQUEST", "FILE|REQUEST",
            "A file with messages, - for standard input, or a request in one word, such as "
            "DF_Params.Frequency=98.5e6 or 'Request MessageID=7 AcquireMastership'. What begins with a word "
            "of the command new is a request, unless it has a slash or the ending of a form."))));
}

std::vector<OutgoingMessage> outgoingMessages(const QStringList& arguments)
{
    InputFormat format;
    format.info = &RecordInfo::Document();
    std::vector<OutgoingMessage> messages;
    for (const QString& argument : arguments)
        if (isRequest(argument)) {
            // It stands for bytes of the command line that are no text, and would be sent instead of them.
            if (argument.contains(QChar::ReplacementCharacter))
                throw UsageError(QStringLiteral("The request %1 is not UTF-8.").arg(Quoted(argument)));
            messages.push_back(messageOf(argument));
        } else {
            addMessagesOf(argument, format, messages);
        }
    return messages;
}

} // namespace routermsg
