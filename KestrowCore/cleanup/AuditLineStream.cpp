#include "cleanup/AuditLineStream.h"

#include "platform/SystemMessage.h"

#include "cleanup/AuditLoggerError.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <utility>

namespace kestrow {

namespace {

constexpr qsizetype chunkSize = 64 * 1024;

AuditLoggerError readFailed(const QString& reason)
{
    return AuditLoggerError::readFailed(QStringLiteral("Could not read audit log: ") + reason);
}

// Spaces and tabs only, of any Unicode width; the empty line too.
bool isBlank(QByteArrayView line)
{
    for (const char c : line) {
        if (c == ' ' || c == '\t')
            continue;
        if (static_cast<unsigned char>(c) < 0x80)
            return false;
        const QString text = QString::fromUtf8(line);
        return std::all_of(text.begin(), text.end(), [](QChar character) {
            return character == QLatin1Char('\t') || character.category() == QChar::Separator_Space;
        });
    }
    return true;
}

} // namespace

AuditLineStream::AuditLineStream(const LockedFile& file)
    : m_file(file)
{
}

bool AuditLineStream::fill()
{
    if (m_atEnd)
        return false;
    m_buffer.remove(0, m_start);
    m_start = 0;
    const qsizetype kept = m_buffer.size();
    m_buffer.resize(kept + chunkSize);
    const ssize_t got = m_file.read(m_buffer.data() + kept, static_cast<size_t>(chunkSize));
    if (got < 0) {
        const int errorCode = errno;
        m_buffer.resize(kept);
        throw readFailed(SystemMessage::of(errorCode));
    }
    m_buffer.resize(kept + got);
    m_atEnd = got == 0;
    return !m_atEnd;
}

std::pair<qsizetype, int> AuditLineStream::findBreak(qsizetype from, bool& nonAscii) const
{
    const auto* data = reinterpret_cast<const unsigned char*>(m_buffer.constData());
    const qsizetype size = m_buffer.size();
    qsizetype i = from;
    while (i < size) {
        // Eight bytes at a time while none is below 0x0E (LF to CR) or above 0x7F (the first
        // byte of NEL, LS and PS, and of all other non-ASCII text).
        constexpr std::uint64_t ones = 0x0101010101010101u;
        constexpr std::uint64_t highBits = 0x8080808080808080u;
        for (std::uint64_t word; i + 8 <= size; i += 8) {
            std::memcpy(&word, data + i, 8);
            if (((word - ones * 0x0E) | word) & highBits)
                break;
        }
        if (i == size)
            break;
        const unsigned char c = data[i];
        if (c >= 0x0A && c <= 0x0D)
            return {i, 1};
        nonAscii |= c >= 0x80;
        if (c == 0xC2 || c == 0xE2) {
            const int length = c == 0xC2 ? 2 : 3;
            if (i + length > size)
                return {i, 0}; // cut by the end of the buffer: undecided
            if (c == 0xC2 ? data[i + 1] == 0x85 : data[i + 1] == 0x80 && (data[i + 2] == 0xA8 || data[i + 2] == 0xA9))
                return {i, length};
        }
        ++i;
    }
    return {size, 0};
}

std::optional<QByteArrayView> AuditLineStream::next()
{
    if (m_atStartOfFile) {
        while (m_buffer.size() < 3 && fill()) {
        }
        if (m_buffer.startsWith("\xEF\xBB\xBF"))
            m_start = 3;
        m_atStartOfFile = false;
    }
    qsizetype scanned = m_start; // the bytes before hold no line break
    bool nonAscii = false;       // among the bytes scanned of this line: else it is valid
    for (;;) {
        const auto [at, length] = findBreak(scanned, nonAscii);
        if (length == 0 && !m_atEnd) {
            const qsizetype known = at - m_start;
            fill();
            scanned = m_start + known;
            continue;
        }
        const qsizetype end = length > 0 ? at : m_buffer.size();
        if (length == 0 && end == m_start)
            return std::nullopt;
        const QByteArrayView line(m_buffer.constData() + m_start, end - m_start);
        m_start = end + length;
        scanned = m_start;
        m_endsWithBreak = length > 0;
        if (std::exchange(nonAscii, false) && !line.isValidUtf8())
            throw readFailed(QStringLiteral("The file is not valid UTF-8 text."));
        if (isBlank(line))
            continue;
        ++m_lineNumber;
        return line;
    }
}

void AuditLineStream::checkRest()
{
    while (next()) {
    }
}

} // namespace kestrow
