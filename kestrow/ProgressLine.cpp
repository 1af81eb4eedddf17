#include "ProgressLine.h"

#include "CommandLine.h"

#include "platform/NativePath.h"

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kestrow::cli {

namespace {

int terminalWidth()
{
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 10)
        return size.ws_col;
    return 80;
}

} // namespace

ProgressLine::ProgressLine()
    : m_enabled(standardErrorIsTerminal())
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::update(const QString& text)
{
    if (!m_enabled)
        return;
    const auto now = std::chrono::steady_clock::now();
    if (m_shown && now - m_lastDraw < std::chrono::milliseconds(100))
        return;
    m_lastDraw = now;
    m_shown = true;
    const int width = terminalWidth() - 1;
    const QString shown = NativePath::displayText(text);
    QString line = shown;
    if (shown.size() > width) {
        // Cut before a whole character: half a surrogate pair would print as "?".
        const qsizetype kept = shown.at(width - 2).isHighSurrogate() ? width - 2 : width - 1;
        line = shown.left(kept) + QChar(0x2026);
    }
    const QByteArray bytes = "\r\x1b[K" + line.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
    std::fflush(stderr);
}

void ProgressLine::clear()
{
    if (!m_shown)
        return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    m_shown = false;
}

} // namespace kestrow::cli
