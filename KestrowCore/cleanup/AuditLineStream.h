#pragma once

#include "platform/LockedFile.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace kestrow {

// The non-blank lines of an open log, one at a time, in fixed memory: the file is read in
// chunks, checked to be UTF-8 as it goes (a byte order mark at its start is dropped), and cut
// at every line break of the Unicode newline set: LF, VT, FF, CR, NEL, LS and PS. A line of
// nothing but spaces and tabs (of any Unicode width) is passed over and not counted.
class AuditLineStream {
public:
    explicit AuditLineStream(const LockedFile& file);

    // The next non-blank line, without its break, valid until the next call; nothing at the
    // end of the file. Throws AuditLoggerError::readFailed when the file cannot be read or a
    // line is not UTF-8.
    [[nodiscard]] std::optional<QByteArrayView> next();
    // The number of the line `next` gave last, counting non-blank lines from 1.
    [[nodiscard]] int lineNumber() const { return m_lineNumber; }
    // Whether the text read so far is empty or ends with a line break.
    [[nodiscard]] bool endsWithLineBreak() const { return m_endsWithBreak; }
    // Reads the rest of the file, checking only that it is UTF-8 (readFailed if not).
    void checkRest();

private:
    // Reads one more chunk behind what is kept; false at the end of the file.
    bool fill();
    // Where the line break at or after `from` begins and how long it is; the break's length
    // is 0 when the buffer ends first (more must be read to tell). Sets `nonAscii` when a
    // byte on the way is not ASCII.
    [[nodiscard]] std::pair<qsizetype, int> findBreak(qsizetype from, bool& nonAscii) const;

    const LockedFile& m_file;
    QByteArray m_buffer;
    qsizetype m_start = 0; // first byte of the buffer not yet handed out
    bool m_atEnd = false;
    bool m_atStartOfFile = true;
    bool m_endsWithBreak = true;
    int m_lineNumber = 0;
};

} // namespace kestrow
