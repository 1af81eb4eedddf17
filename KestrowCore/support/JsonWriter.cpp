#include "support/JsonWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace kestrow {

namespace {

void newline(QByteArray& out, int depth)
{
    out.append('\n');
    out.append(depth * 2, ' ');
}

void writeValue(QByteArray& out, const JsonValue& value, const JsonWriter::Options& options, int depth)
{
    if (value.isNull()) {
        out.append("null");
    } else if (value.isBool()) {
        out.append(value.toBool() ? "true" : "false");
    } else if (value.isInteger()) {
        out.append(QByteArray::number(static_cast<qlonglong>(value.toInteger())));
    } else if (value.isDouble()) {
        out.append(JsonWriter::formatDouble(value.toDouble()));
    } else if (value.isString()) {
        JsonWriter::appendString(out, value.toString(), options.escapeSlashes);
    } else if (value.isArray()) {
        const auto& array = value.toArray();
        out.append('[');
        for (size_t i = 0; i < array.size(); ++i) {
            if (i > 0)
                out.append(',');
            if (options.pretty)
                newline(out, depth + 1);
            writeValue(out, array[i], options, depth + 1);
        }
        if (options.pretty && !array.empty())
            newline(out, depth);
        out.append(']');
    } else {
        std::vector<const JsonValue::Member*> members;
        for (const auto& member : value.toObject())
            members.push_back(&member);
        if (options.sortKeys)
            std::stable_sort(members.begin(), members.end(),
                             [](const auto* a, const auto* b) { return a->first < b->first; });
        out.append('{');
        for (size_t i = 0; i < members.size(); ++i) {
            if (i > 0)
                out.append(',');
            if (options.pretty)
                newline(out, depth + 1);
            JsonWriter::appendString(out, members[i]->first, options.escapeSlashes);
            out.append(options.pretty ? " : " : ":");
            writeValue(out, members[i]->second, options, depth + 1);
        }
        if (options.pretty && !members.empty())
            newline(out, depth);
        out.append('}');
    }
}

} // namespace

QByteArray JsonWriter::write(const JsonValue& value, Options options)
{
    QByteArray out;
    writeValue(out, value, options, 0);
    return out;
}

QByteArray JsonWriter::formatDouble(double value)
{
    if (!std::isfinite(value))
        return "null";
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QByteArray(buffer, static_cast<int>(result.ptr - buffer));
}

void JsonWriter::appendString(QByteArray& out, const QString& text, bool escapeSlashes)
{
    static const char* const hex = "0123456789abcdef";
    const auto appendEscaped = [&out](char16_t u) {
        out.append("\\u");
        out.append(hex[u >> 12]);
        out.append(hex[(u >> 8) & 0xF]);
        out.append(hex[(u >> 4) & 0xF]);
        out.append(hex[u & 0xF]);
    };
    const auto standsAsItIs = [escapeSlashes](char16_t u) {
        return u >= 0x20 && u < 0x80 && u != u'"' && u != u'\\' && (u != u'/' || !escapeSlashes);
    };
    out.append('"');
    for (qsizetype i = 0; i < text.size(); ++i) {
        // A run of characters that stand as they are is copied at once.
        qsizetype end = i;
        while (end < text.size() && standsAsItIs(text.at(end).unicode()))
            ++end;
        if (end > i) {
            const qsizetype at = out.size();
            out.resize(at + (end - i));
            std::transform(text.constData() + i, text.constData() + end, out.data() + at,
                           [](QChar c) { return static_cast<char>(c.unicode()); });
            i = end;
            if (i == text.size())
                break;
        }
        const char16_t u = text.at(i).unicode();
        switch (u) {
        case u'"':
            out.append("\\\"");
            break;
        case u'\\':
            out.append("\\\\");
            break;
        case u'/':
            out.append(escapeSlashes ? "\\/" : "/");
            break;
        case u'\n':
            out.append("\\n");
            break;
        case u'\r':
            out.append("\\r");
            break;
        case u'\t':
            out.append("\\t");
            break;
        case u'\b':
            out.append("\\b");
            break;
        case u'\f':
            out.append("\\f");
            break;
        // Line breaks to readers that split on the Unicode newline set: escaped, so that one
        // value never spans two lines of a JSON Lines file.
        case 0x0085:
        case 0x2028:
        case 0x2029:
            appendEscaped(u);
            break;
        default:
            if (u < 0x20) {
                appendEscaped(u);
            } else if (u < 0x80) {
                out.append(static_cast<char>(u));
            } else if (QChar::isHighSurrogate(u) && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
                out.append(QStringView(text).mid(i, 2).toUtf8());
                ++i;
            } else if (QChar::isSurrogate(u)) {
                // A lone surrogate stands for a byte of a name that is not UTF-8; the escape
                // keeps it, where UTF-8 has no form for it.
                appendEscaped(u);
            } else {
                out.append(QStringView(text).mid(i, 1).toUtf8());
            }
        }
    }
    out.append('"');
}

} // namespace kestrow
