#pragma once

#include "support/JsonValue.h"

#include <QByteArray>

namespace kestrow {

// The one writer of the system's JSON texts. The forms are exact: compact lines for the audit
// log and the agent protocol, the pretty form (two spaces, " : ") for documents and the rule
// file; keys in build order or sorted; forward slashes escaped as "\/" by default.
class JsonWriter {
public:
    struct Options {
        bool pretty = false;
        bool sortKeys = false;
        bool escapeSlashes = true;
    };

    [[nodiscard]] static QByteArray write(const JsonValue& value, Options options);
    [[nodiscard]] static QByteArray compact(const JsonValue& value) { return write(value, {}); }
    [[nodiscard]] static QByteArray compactSorted(const JsonValue& value) { return write(value, {false, true, true}); }
    [[nodiscard]] static QByteArray prettySorted(const JsonValue& value) { return write(value, {true, true, true}); }

    // Shortest text that reads back as the same double ("0.5", "1e-05", "3").
    [[nodiscard]] static QByteArray formatDouble(double value);
    static void appendString(QByteArray& out, const QString& text, bool escapeSlashes);
};

} // namespace kestrow
