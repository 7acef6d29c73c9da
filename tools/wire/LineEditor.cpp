// SPDX-License-Identifier: MIT
#include "wire/LineEditor.h"

#include "Finding.h"
#include "Output.h"
#include "Session.h"
#include "wire/TerminalSettings.h"
#include "wire/WireLoop.h"

#include <QtCore/QByteArray>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <langinfo.h>
#include <optional>
#include <poll.h>
#include <unistd.h>
#include <utility>

#include <editline/readline.h>

namespace routermsg {

namespace {

constexpr char prompt[] = "> ";
// In bytes. libedit goes on using memory that it has given back when a line grows beyond 1,000 bytes, and one
// key can double a line.
constexpr int longestTyped = 500;

// The program writes UTF-8 in every locale, so it reads that, too. libedit asks the locale.
void useUtf8()
{
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        setlocale(LC_CTYPE, "C.UTF-8");
}

bool isEditable(Session& session)
{
    const QByteArray kind = qgetenv("TERM");
    return isatty(STDIN_FILENO) == 1 && session.out().isTerminal() && !kind.isEmpty() && kind != "dumb";
}

// Where the cursor is, counted from the beginning of the prompt.
struct CursorPlace
{
    int row = 0;
    int column = 0;

    void pass(char32_t character, int columns)
    {
        // libedit shows control characters as two: ^A.
        const int width =
            character < 0x20 || character == 0x7f ? 2 : std::max(0, wcwidth(static_cast<wchar_t>(character)));
        if (column + width > columns)
            *this = {row + 1, 0};
        column += width;
        // libedit moves the cursor on when a row is full.
        if (column == columns)
            *this = {row + 1, 0};
    }
};

CursorPlace placeBehind(const QString& text, int columns)
{
    CursorPlace place;
    for (const char32_t character : text.toStdU32String())
        place.pass(character, columns);
    return place;
}

// libedit frees these.
char* copyOf(const QString& text) { return strdup(text.toUtf8().constData()); }

class LineEditor : public LineSource
{
public:
    using Completer = std::function<Completion(const QString& line)>;

    LineEditor(WireLoop& loop, Session& session, const Receivers& receivers, const Completer& completer)
        : m_session(session), m_receivers(receivers), m_completer(completer),
          m_notifier(STDIN_FILENO, QSocketNotifier::Read), m_width(session.out().width())
    {
        s_current = this;
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier,
                         loop.guarded([this] { read(); }));
        m_showing.setSingleShot(true);
        QObject::connect(&m_showing, &QTimer::timeout, &m_showing, loop.guarded([this] { show(); }));
        rl_attempted_completion_function = complete;
        rl_callback_handler_install(prompt, take);
        const auto aside = [this](const Output::Action& write) {
            hide();
            write();
        };
        session.out().setAside(aside);
        if (session.err().isTerminal())
            session.err().setAside(aside);
    }

    ~LineEditor() override
    {
        LineEditor::stop();
        s_current = nullptr;
    }

    void pause() override { m_notifier.setEnabled(false); }
    void resume() override { m_notifier.setEnabled(!m_isOver); }

    void stop() override
    {
        if (std::exchange(m_isOver, true))
            return;
        m_notifier.setEnabled(false);
        m_session.out().setAside(nullptr);
        m_session.err().setAside(nullptr);
        if (rl_end > 0)
            leaveLine();
        else
            hide();
        m_showing.stop();
        rl_callback_handler_remove();
        m_settings.reset();
    }

private:
    // --- input

    void read()
    {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (poll(&input, 1, 0) == 1 && (input.revents & POLLIN) == 0)
            return end();
        if (m_session.out().width() != m_width)
            hide();
        show();
        rl_callback_read_char();
        if (rl_end > longestTyped)
            throw Refusal(
                Finding::ofFile(QStringLiteral("<stdin>"),
                                QStringLiteral("A line is longer than %1 bytes.").arg(longestTyped)));
        if (m_hasEnded)
            end();
        else if (const auto line = std::exchange(m_line, std::nullopt))
            m_receivers.onLine(*line);
    }

    void end()
    {
        stop();
        m_receivers.onEnd();
    }

    // libedit calls it with a line, or with null at the end of the input. No exception may pass through
    // libedit.
    static void take(char* line)
    {
        if (!line) {
            s_current->m_hasEnded = true;
            return;
        }
        s_current->m_line = textOfLine(line);
        const bool isEmpty = s_current->m_line->trimmed().isEmpty();
        if (!isEmpty && s_current->m_earlier != *s_current->m_line) {
            add_history(line);
            s_current->m_earlier = *s_current->m_line;
        }
        std::free(line);
        rl_callback_handler_install(prompt, take);
    }

    // --- completion

    static char** complete(const char* text, int, int)
    {
        // There is nothing else to complete.
        rl_attempted_completion_over = 1;
        const Completion completion = s_current->m_completer(QString::fromUtf8(rl_line_buffer, rl_point));
        if (completion.words.isEmpty() || completion.begin != QString::fromUtf8(text))
            return nullptr;
        const auto count = static_cast<size_t>(completion.words.size());
        // First what replaces the text, then the words, if there are several.
        auto** const all = static_cast<char**>(std::calloc(count + 2, sizeof(char*)));
        if (!all)
            return nullptr;
        QString replacement = sharedBeginning(completion);
        if (count == 1 && !replacement.endsWith(QLatin1Char('=')))
            replacement += QLatin1Char(' ');
        all[0] = copyOf(replacement);
        for (size_t i = 0; count > 1 && i < count; ++i)
            all[i + 1] = copyOf(completion.words.at(static_cast<int>(i)));
        return all;
    }

    // --- the line on the terminal

    // The line as it stands on the terminal, up to that byte.
    CursorPlace placeOf(int size) const
    {
        return placeBehind(QLatin1String(prompt) + QString::fromUtf8(rl_line_buffer, size), m_width);
    }

    // Makes place for output. The line comes back when the loop has nothing else to do. An error of the
    // terminal is told by the output that follows.
    void hide()
    {
        if (!std::exchange(m_isShown, false))
            return;
        const int row = placeOf(rl_point).row;
        QByteArray wiping = "\r";
        if (row > 0)
            wiping += "\033[" + QByteArray::number(row) + 'A';
        writeAll(STDOUT_FILENO, wiping + "\033[J");
        m_showing.start(0);
    }

    void show()
    {
        if (std::exchange(m_isShown, true))
            return;
        m_width = m_session.out().width();
        rl_resize_terminal();
        rl_forced_update_display();
    }

    // What was typed stays, and the next output begins below.
    void leaveLine()
    {
        show();
        const int rows = placeOf(rl_end).row - placeOf(rl_point).row;
        writeAll(STDOUT_FILENO, QByteArray(rows, '\n') + "\r\n");
    }

    // libedit's functions know no object.
    static LineEditor* s_current;

    // Restores what libedit changes.
    std::optional<TerminalSettings> m_settings{std::in_place};
    Session& m_session;
    const Receivers m_receivers;
    const Completer m_completer;
    QSocketNotifier m_notifier;
    QTimer m_showing;
    int m_width;
    bool m_isShown = true;
    bool m_isOver = false;
    bool m_hasEnded = false;
    std::optional<QString> m_line;
    // The last line of the history.
    QString m_earlier;
};

LineEditor* LineEditor::s_current = nullptr;

} // namespace

std::unique_ptr<LineSource> editedLines(WireLoop& loop, Session& session,
                                        const LineSource::Receivers& receivers,
                                        const std::function<Completion(const QString& line)>& completer)
{
    if (!isEditable(session))
        return nullptr;
    useUtf8();
    rl_readline_name = "routermsg";
    // The loop and TerminalSettings handle signals.
    rl_catch_signals = 0;
    rl_catch_sigwinch = 0;
    rl_basic_word_break_characters = " \t.?";
    rl_completion_append_character = '\0';
    // Never asks whether to list so many.
    rl_completion_query_items = 10000;
    if (rl_initialize() != 0)
        return nullptr;
    return std::make_unique<LineEditor>(loop, session, receivers, completer);
}

} // namespace routermsg
