#include "support/JsonWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace kestrow {

namespace {

void newline(QByteArray& out, int depth)
{
    out.append('\n');
    out.append(QByteArray(depth * 2, ' '));
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
    out.append('"');
    for (const char c : text.toUtf8()) {
        const auto u = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            out.append("\\\"");
            break;
        case '\\':
            out.append("\\\\");
            break;
        case '/':
            out.append(escapeSlashes ? "\\/" : "/");
            break;
        case '\n':
            out.append("\\n");
            break;
        case '\r':
            out.append("\\r");
            break;
        case '\t':
            out.append("\\t");
            break;
        case '\b':
            out.append("\\b");
            break;
        case '\f':
            out.append("\\f");
            break;
        default:
            if (u < 0x20) {
                out.append("\\u00");
                out.append(hex[u >> 4]);
                out.append(hex[u & 0xF]);
            } else {
                out.append(c);
            }
        }
    }
    out.append('"');
}

} // namespace kestrow
