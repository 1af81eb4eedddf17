#include "cleanup/AuditLineScanner.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace kestrow {

namespace {

enum Key : unsigned {
    bytesFreed,
    client,
    durationMs,
    itemsCount,
    operationId,
    operationType,
    paths,
    previousHash,
    rollingHash,
    timestamp,
    keyCount
};
constexpr std::array<std::string_view, keyCount> keyNames{"bytesFreed",  "client",        "durationMs", "itemsCount",
                                                          "operationId", "operationType", "paths",      "previousHash",
                                                          "rollingHash", "timestamp"};
constexpr unsigned requiredKeys = ((1u << keyCount) - 1) & ~(1u << durationMs);

// Integers of up to 15 digits are exact in a double, which is how the full decoder reads them.
constexpr std::ptrdiff_t maxIntegerDigits = 15;

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

void appendUtf8(QByteArray& out, char16_t unit)
{
    if (unit < 0x80) {
        out.append(static_cast<char>(unit));
    } else if (unit < 0x800) {
        out.append(static_cast<char>(0xC0 | (unit >> 6)));
        out.append(static_cast<char>(0x80 | (unit & 0x3F)));
    } else {
        out.append(static_cast<char>(0xE0 | (unit >> 12)));
        out.append(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
        out.append(static_cast<char>(0x80 | (unit & 0x3F)));
    }
}

class Scanner {
public:
    explicit Scanner(QByteArrayView line)
        : m_p(line.data())
        , m_end(line.data() + line.size())
    {
    }

    bool entry(AuditLogEntry* out)
    {
        if (!consume('{'))
            return false;
        unsigned seen = 0;
        do {
            std::string_view name;
            if (!plainString(name))
                return false;
            const auto found = std::find(keyNames.begin(), keyNames.end(), name);
            if (found == keyNames.end())
                return false;
            const auto key = static_cast<Key>(found - keyNames.begin());
            if (seen & (1u << key))
                return false;
            seen |= 1u << key;
            if (!consume(':') || !value(key, out))
                return false;
        } while (consume(','));
        if (!consume('}'))
            return false;
        skipSpace();
        return m_p == m_end && (seen & requiredKeys) == requiredKeys;
    }

private:
    void skipSpace()
    {
        while (m_p != m_end && (*m_p == ' ' || *m_p == '\t'))
            ++m_p;
    }

    bool consume(char c)
    {
        skipSpace();
        if (m_p == m_end || *m_p != c)
            return false;
        ++m_p;
        return true;
    }

    bool value(Key key, AuditLogEntry* out)
    {
        switch (key) {
        case bytesFreed:
            return integer(out ? &out->bytesFreed : nullptr);
        case itemsCount:
            return integer(out ? &out->itemsCount : nullptr);
        case durationMs: {
            double duration = 0;
            if (!number(duration))
                return false;
            if (out)
                out->durationMs = duration;
            return true;
        }
        case client:
            return string(out ? &out->client : nullptr);
        case operationId:
            return string(out ? &out->operationId : nullptr);
        case previousHash:
            return string(out ? &out->previousHash : nullptr);
        case rollingHash:
            return string(out ? &out->rollingHash : nullptr);
        case timestamp:
            return string(out ? &out->timestamp : nullptr);
        case operationType: {
            QString text;
            if (!string(&text))
                return false;
            const auto type = AuditOperationType::fromText(text);
            if (type && out)
                out->operationType = *type;
            return type.has_value();
        }
        case paths:
            return pathArray(out ? &out->paths : nullptr);
        case keyCount:
            break;
        }
        return false;
    }

    bool pathArray(QStringList* out)
    {
        if (!consume('['))
            return false;
        if (consume(']'))
            return true;
        do {
            QString path;
            if (!string(out ? &path : nullptr))
                return false;
            if (out)
                out->append(std::move(path));
        } while (consume(','));
        return consume(']');
    }

    // A key: a string without escapes.
    bool plainString(std::string_view& text)
    {
        if (!consume('"'))
            return false;
        const char* start = m_p;
        while (m_p != m_end && *m_p != '"') {
            if (*m_p == '\\' || static_cast<unsigned char>(*m_p) < 0x20)
                return false;
            ++m_p;
        }
        if (m_p == m_end)
            return false;
        text = std::string_view(start, static_cast<size_t>(m_p - start));
        ++m_p;
        return true;
    }

    // A string value, unescaped into `text` when given. Each \uXXXX is one UTF-16 unit, a
    // lone surrogate included, as the full decoder reads it.
    bool string(QString* text)
    {
        if (!consume('"'))
            return false;
        if (text)
            text->clear();
        m_bytes.resize(0);
        const char* run = m_p;
        for (;;) {
            if (m_p == m_end)
                return false;
            const auto c = static_cast<unsigned char>(*m_p);
            if (c == '"')
                break;
            if (c < 0x20)
                return false;
            if (c != '\\') {
                ++m_p;
                continue;
            }
            if (text)
                m_bytes.append(run, m_p - run);
            if (m_end - m_p < 2)
                return false;
            const char escape = m_p[1];
            m_p += 2;
            char plain;
            switch (escape) {
            case '"':
            case '\\':
            case '/':
                plain = escape;
                break;
            case 'b':
                plain = '\b';
                break;
            case 'f':
                plain = '\f';
                break;
            case 'n':
                plain = '\n';
                break;
            case 'r':
                plain = '\r';
                break;
            case 't':
                plain = '\t';
                break;
            case 'u': {
                if (m_end - m_p < 4)
                    return false;
                char16_t unit = 0;
                for (int i = 0; i < 4; ++i) {
                    const int digit = hexValue(m_p[i]);
                    if (digit < 0)
                        return false;
                    unit = static_cast<char16_t>(unit * 16 + digit);
                }
                m_p += 4;
                run = m_p;
                if (!text)
                    continue;
                if (QChar::isSurrogate(unit)) {
                    *text += QString::fromUtf8(m_bytes);
                    m_bytes.resize(0);
                    *text += QChar(unit);
                } else {
                    appendUtf8(m_bytes, unit);
                }
                continue;
            }
            default:
                return false;
            }
            if (text)
                m_bytes.append(plain);
            run = m_p;
        }
        if (text) {
            if (m_bytes.isEmpty() && text->isEmpty()) {
                *text = QString::fromUtf8(run, m_p - run);
            } else {
                m_bytes.append(run, m_p - run);
                *text += QString::fromUtf8(m_bytes);
            }
        }
        ++m_p;
        return true;
    }

    bool integer(std::int64_t* out)
    {
        skipSpace();
        const char* start = m_p;
        const bool negative = m_p != m_end && *m_p == '-';
        if (negative)
            ++m_p;
        const char* digits = m_p;
        while (m_p != m_end && isDigit(*m_p))
            ++m_p;
        const std::ptrdiff_t count = m_p - digits;
        if (count == 0 || count > maxIntegerDigits || (*digits == '0' && (count > 1 || negative)))
            return false;
        if (m_p != m_end && (*m_p == '.' || *m_p == 'e' || *m_p == 'E'))
            return false;
        if (out)
            std::from_chars(start, m_p, *out);
        return true;
    }

    // JSON's number grammar, read as the nearest double.
    bool number(double& value)
    {
        skipSpace();
        const char* start = m_p;
        const auto digits = [this] {
            const char* first = m_p;
            while (m_p != m_end && isDigit(*m_p))
                ++m_p;
            return m_p != first;
        };
        if (m_p != m_end && *m_p == '-')
            ++m_p;
        if (m_p == m_end || !isDigit(*m_p))
            return false;
        if (*m_p == '0')
            ++m_p;
        else
            digits();
        if (m_p != m_end && *m_p == '.') {
            ++m_p;
            if (!digits())
                return false;
        }
        if (m_p != m_end && (*m_p == 'e' || *m_p == 'E')) {
            ++m_p;
            if (m_p != m_end && (*m_p == '+' || *m_p == '-'))
                ++m_p;
            if (!digits())
                return false;
        }
        // Out of range either way is the full decoder's to judge; it also reads "-0" as 0.
        const auto [end, error] = std::from_chars(start, m_p, value);
        return error == std::errc() && end == m_p && !(value == 0 && std::signbit(value));
    }

    const char* m_p;
    const char* m_end;
    QByteArray m_bytes; // unescaped bytes of the string being read
};

} // namespace

bool AuditLineScanner::scan(QByteArrayView line, AuditLogEntry* entry)
{
    AuditLogEntry scanned;
    if (!Scanner(line).entry(entry ? &scanned : nullptr))
        return false;
    if (entry)
        *entry = std::move(scanned);
    return true;
}

} // namespace kestrow
