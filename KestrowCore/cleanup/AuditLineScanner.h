#pragma once

#include "cleanup/AuditLogEntry.h"

#include <QByteArrayView>

namespace kestrow {

// A quick reader for the plain form of a log line: one flat JSON object holding the entry's
// keys, each once and in any order, with values of the right types. It is there for speed:
// an append checks every line of the log, and the full JSON decoder spends microseconds on
// each. It accepts only what the full decoder (JsonDecoder and AuditLogEntry::fromJson)
// certainly reads as the same entry, and declines the rest: escaped or unknown keys, null,
// control characters, unusual escapes and numbers. A declined line is not thereby wrong; the
// full decoder has the last word on it.
class AuditLineScanner {
public:
    // True when `line` (valid UTF-8) is an entry in the plain form; then `entry`, when
    // given, holds what it says.
    [[nodiscard]] static bool scan(QByteArrayView line, AuditLogEntry* entry = nullptr);
};

} // namespace kestrow
