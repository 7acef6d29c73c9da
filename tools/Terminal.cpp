#include "Terminal.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QLocale>

#include <csignal>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace routermsg {

// --- text -----------------------------------------------------------------------------------

namespace {

// Joiners are part of how some scripts and emojis are written.
bool isJoiner(char32_t character) { return character == 0x200C || character == 0x200D; }

bool canBeShown(char32_t character)
{
    if ((character & 0xFFFE) == 0xFFFE)
        return false;
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    case QChar::Other_Format:
        return isJoiner(character);
    default:
        return true;
    }
}

QString escapedUnit(QChar unit)
{
    switch (unit.unicode()) {
    case '\b':
        return QStringLiteral("\\b");
    case '\f':
        return QStringLiteral("\\f");
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
}

// Replaces what cannot be shown, except line breaks when those are to stay.
QString escaped(const QString& text, const std::function<QString(QStringView)>& escape, bool keepLineBreaks)
{
    QString result;
    result.reserve(text.size());
    for (QString::size_type i = 0; i < text.size(); ++i) {
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1)) : text.at(i).unicode();
        const auto units = QStringView(text).mid(i, isPair ? 2 : 1);
        if (canBeShown(character) || (keepLineBreaks && character == '\n'))
            result.append(units.data(), static_cast<int>(units.size()));
        else
            result += escape(units);
        i += isPair ? 1 : 0;
    }
    return result;
}

QString escapedAsInJson(QStringView units)
{
    QString result;
    for (const QChar unit : units)
        result += escapedUnit(unit);
    return result;
}

QString escapedAsInXml(QStringView units)
{
    const uint character =
        units.size() == 2 ? QChar::surrogateToUcs4(units.at(0), units.at(1)) : units.at(0).unicode();
    return QStringLiteral("&#x%1;").arg(character, 0, 16);
}

} // namespace

QString printable(const QString& text) { return escaped(text, escapedAsInJson, false); }

QString quoted(const QString& text)
{
    QString inside = text;
    inside.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + printable(inside) + QLatin1Char('"');
}

QString abbreviated(const QString& text)
{
    constexpr int shown = 40;
    return text.size() > shown ? text.left(shown) + QLatin1String("...") : text;
}

QString showableJson(const QString& json) { return escaped(json, escapedAsInJson, true); }

QString showableXml(const QString& xml) { return escaped(xml, escapedAsInXml, true); }

QString exactly(double value)
{
    const double size = std::abs(value);
    const bool isUsual = value == 0 || (size >= 1e-6 && size < 1e15);
    return QString::number(value, isUsual ? 'f' : 'g', QLocale::FloatingPointShortest);
}

// --- output ---------------------------------------------------------------------------------

OutputError::OutputError(const QString& name, int error)
    : m_error(error),
      m_text(name.toUtf8() + ": " + QByteArray::fromStdString(std::system_category().message(error)))
{}

bool OutputError::isBrokenPipe() const noexcept { return m_error == EPIPE; }

namespace {

constexpr int muchToKeep = 1 << 16;

bool wantsColours(Colour colour, bool isTerminal)
{
    if (colour != Colour::Auto)
        return colour == Colour::Always;
    return isTerminal && qgetenv("NO_COLOR").isEmpty() && qgetenv("TERM") != "dumb";
}

const char* codeOf(Style style)
{
    switch (style) {
    case Style::Plain:
        break;
    case Style::Good:
    case Style::Added:
        return "32";
    case Style::Error:
        return "1;31";
    case Style::Removed:
        return "31";
    case Style::Warning:
        return "1;35";
    case Style::Place:
        return "1";
    case Style::Name:
        return "36";
    case Style::Value:
        return "33";
    case Style::Faint:
        return "2";
    }
    return "";
}

// 0, or the value of errno.
int writeAll(int descriptor, const QByteArray& bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const auto size =
            ::write(descriptor, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (size < 0 && errno != EINTR)
            return errno;
        written += std::max<qint64>(size, 0);
    }
    return 0;
}

} // namespace

// A thread of its own draws the bar: a step may take long.
class ProgressBar
{
public:
    ProgressBar(int descriptor, int total) : m_descriptor(descriptor), m_total(total), m_thread(startThread())
    {}
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    ~ProgressBar()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isOver = true;
            wipe();
        }
        m_wake.notify_one();
        m_thread.join();
    }

    void next(const QString& name)
    {
        const std::lock_guard lock(m_mutex);
        ++m_step;
        m_name = name;
    }

    void whileHidden(const std::function<void()>& action)
    {
        const std::lock_guard lock(m_mutex);
        wipe();
        action();
    }

private:
    using Clock = std::chrono::steady_clock;

    // Signals are for the main thread, which may hold them back.
    std::thread startThread()
    {
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        std::thread thread([this] { run(); });
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        return thread;
    }

    void run()
    {
        std::unique_lock lock(m_mutex);
        auto pause = std::chrono::milliseconds(1000);
        while (!m_wake.wait_for(lock, pause, [this] { return m_isOver; })) {
            draw();
            pause = std::chrono::milliseconds(200);
        }
    }

    void draw()
    {
        constexpr int width = 20;
        const int done = std::max(m_step - 1, 0);
        const int filled = m_total > 0 ? static_cast<int>(qint64(width) * done / m_total) : 0;
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - m_begin).count();
        const QString text = QStringLiteral("[%1] %2/%3 %4 s  %5")
                                 .arg(QString(filled, QLatin1Char('=')).leftJustified(width))
                                 .arg(done)
                                 .arg(m_total)
                                 .arg(seconds)
                                 .arg(printable(m_name));
        // Without wrapping the terminal itself cuts off what is too long.
        writeAll(m_descriptor, "\r\033[K\033[?7l" + text.toUtf8() + "\033[?7h");
        m_isVisible = true;
    }

    void wipe()
    {
        if (m_isVisible)
            writeAll(m_descriptor, "\r\033[K");
        m_isVisible = false;
    }

    const int m_descriptor;
    const int m_total;
    const Clock::time_point m_begin = Clock::now();
    std::mutex m_mutex;
    std::condition_variable m_wake;
    int m_step = 0;
    QString m_name;
    bool m_isVisible = false;
    bool m_isOver = false;
    std::thread m_thread;
};

Output::Output(int descriptor, const QString& name, Colour colour)
    : m_descriptor(descriptor), m_name(name), m_isTerminal(isatty(descriptor) == 1),
      m_hasColours(wantsColours(colour, m_isTerminal))
{}

Output::~Output()
{
    try {
        flush();
    } catch (const OutputError&) {
        // Who wants to know flushes before.
    }
}

void Output::write(const QString& text) { writeBytes(text.toUtf8()); }

void Output::writeLine(const QString& line) { write(line + QLatin1Char('\n')); }

void Output::writeBytes(const QByteArray& bytes)
{
    m_kept += bytes;
    if (m_kept.size() >= muchToKeep || (m_isTerminal && m_kept.endsWith('\n')))
        flush();
}

void Output::flush()
{
    if (m_kept.isEmpty())
        return;
    int error = 0;
    const auto writeKept = [this, &error] { error = writeAll(m_descriptor, std::exchange(m_kept, {})); };
    if (m_progress)
        m_progress->whileHidden(writeKept);
    else
        writeKept();
    if (error != 0)
        throw OutputError(m_name, error);
}

int Output::width() const
{
    constexpr int usual = 80;
    if (!m_isTerminal)
        return 0;
    winsize size{};
    return ioctl(m_descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

QString Output::paint(Style style, const QString& text) const
{
    if (!m_hasColours || style == Style::Plain || text.isEmpty())
        return text;
    return QStringLiteral("\033[%1m%2\033[0m").arg(QLatin1String(codeOf(style)), text);
}

// --- session --------------------------------------------------------------------------------

Session::Session(const CommonOptions& options)
    : m_options(options), m_out(STDOUT_FILENO, QStringLiteral("standard output"), options.colour),
      m_err(STDERR_FILENO, QStringLiteral("standard error"), options.colour)
{}

void Session::writeJson(const QJsonObject& result, Output& output)
{
    output.write(showableJson(QString::fromUtf8(QJsonDocument(result).toJson(QJsonDocument::Indented))));
}

void Session::complain(const QString& text)
{
    m_out.flush();
    m_err.writeLine(m_err.paint(Style::Place, QStringLiteral("routermsg:")) + QLatin1Char(' ')
                    + printable(text));
    m_err.flush();
}

void Session::complain(const Finding& finding)
{
    m_out.flush();
    m_err.writeLine(finding.toLine(m_err));
    m_err.flush();
}

// --- progress -------------------------------------------------------------------------------

Progress::Progress(Session& session, int total) : m_session(session)
{
    if (session.isQuiet() || !session.err().isTerminal())
        return;
    m_bar = std::make_unique<ProgressBar>(STDERR_FILENO, total);
    session.out().m_progress = m_bar.get();
    session.err().m_progress = m_bar.get();
}

Progress::~Progress()
{
    m_session.out().m_progress = nullptr;
    m_session.err().m_progress = nullptr;
}

void Progress::next(const QString& name)
{
    if (m_bar)
        m_bar->next(name);
}

} // namespace routermsg
