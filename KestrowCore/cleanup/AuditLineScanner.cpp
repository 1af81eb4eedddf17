#include "cleanup/AuditLineScanner.h"

#include "platform/NativePath.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
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
constexpr auto operationTypes = AuditOperationType::allCases();
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

template <typename Word> Word load(const char* bytes)
{
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// Equal bytes, for 4 to 16 of them: two overlapping loads a side, cheaper here than memcmp.
bool sameBytes(const char* a, const char* b, size_t size)
{
    if (size >= 8)
        return load<std::uint64_t>(a) == load<std::uint64_t>(b) &&
               load<std::uint64_t>(a + size - 8) == load<std::uint64_t>(b + size - 8);
    return load<std::uint32_t>(a) == load<std::uint32_t>(b) &&
           load<std::uint32_t>(a + size - 4) == load<std::uint32_t>(b + size - 4);
}
static_assert(std::all_of(keyNames.begin(), keyNames.end(),
                          [](std::string_view name) { return name.size() >= 4 && name.size() <= 16; }));

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
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
        unsigned key = keyCount;
        do {
            // Written lines hold their keys in order: the one after the last is tried first.
            key = key + 1 < keyCount ? key + 1 : 0;
            if (!takeKey(keyNames[key])) {
                std::string_view name;
                if (!plainString(name) || !consume(':'))
                    return false;
                const auto found = std::find(keyNames.begin(), keyNames.end(), name);
                if (found == keyNames.end())
                    return false;
                key = static_cast<unsigned>(found - keyNames.begin());
            }
            if (seen & (1u << key))
                return false;
            seen |= 1u << key;
            if (!value(static_cast<Key>(key), out))
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
        if (m_p != m_end && *m_p == c) {
            ++m_p;
            return true;
        }
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
            if (!number(out ? &duration : nullptr))
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
            const auto type = operationTypeValue();
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

    std::optional<AuditOperationType> operationTypeValue()
    {
        const char* start = m_p;
        std::string_view plain;
        if (plainString(plain)) {
            // The texts as bytes, made once from the type's own texts.
            static const std::array<QByteArray, operationTypes.size()> texts = [] {
                std::array<QByteArray, operationTypes.size()> bytes;
                for (size_t i = 0; i < operationTypes.size(); ++i)
                    bytes[i] = operationTypes[i].text().toLatin1();
                return bytes;
            }();
            const auto found = std::find(texts.begin(), texts.end(), QByteArrayView(plain.data(), plain.size()));
            if (found == texts.end())
                return std::nullopt;
            return operationTypes[static_cast<size_t>(found - texts.begin())];
        }
        m_p = start;
        QString text;
        return string(&text) ? AuditOperationType::fromText(text) : std::nullopt;
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

    // Moves past the bytes of a string that stand for themselves: all but the quote, the
    // backslash and control characters; eight at a time while it can.
    void skipPlainBytes()
    {
        constexpr std::uint64_t ones = 0x0101010101010101u;
        constexpr std::uint64_t highBits = 0x8080808080808080u;
        const auto hasZeroByte = [](std::uint64_t v) { return (v - ones) & ~v & highBits; };
        for (; m_end - m_p >= 8; m_p += 8) {
            const auto word = load<std::uint64_t>(m_p);
            // Exact for the first byte it flags; bytes after that may be flagged falsely.
            const std::uint64_t flagged = ((word - ones * 0x20) & ~word & highBits) | hasZeroByte(word ^ (ones * '"')) |
                                          hasZeroByte(word ^ (ones * '\\'));
            if (flagged == 0)
                continue;
            if constexpr (std::endian::native == std::endian::little) {
                m_p += std::countr_zero(flagged) / 8;
                return;
            }
            break;
        }
        while (m_p != m_end && *m_p != '"' && *m_p != '\\' && static_cast<unsigned char>(*m_p) >= 0x20)
            ++m_p;
    }

    // The quoted `name` and its colon at the current position, passed over when there.
    bool takeKey(std::string_view name)
    {
        skipSpace();
        const auto size = static_cast<std::ptrdiff_t>(name.size());
        if (m_end - m_p < size + 3 || m_p[0] != '"' || m_p[size + 1] != '"' || m_p[size + 2] != ':' ||
            !sameBytes(m_p + 1, name.data(), name.size()))
            return false;
        m_p += size + 3;
        return true;
    }

    // A string without escapes, as it stands.
    bool plainString(std::string_view& text)
    {
        if (!consume('"'))
            return false;
        const char* start = m_p;
        skipPlainBytes();
        if (m_p == m_end || *m_p != '"')
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
        if (text) {
            text->clear();
            if (!m_bytes.isEmpty())
                m_bytes.resize(0);
        }
        const char* run = m_p;
        for (;;) {
            skipPlainBytes();
            if (m_p == m_end || *m_p == '"')
                break;
            if (*m_p != '\\')
                return false; // a control character
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
                    NativePath::appendUtf8(m_bytes, unit);
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
        if (m_p == m_end)
            return false;
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

    // JSON's number grammar, read as the nearest double; read only to check it, a number
    // without an exponent needs no reading: up to 300 characters it is a finite double.
    bool number(double* value)
    {
        skipSpace();
        const char* start = m_p;
        bool nonZero = false;
        const auto digits = [&] {
            const char* first = m_p;
            for (; m_p != m_end && isDigit(*m_p); ++m_p)
                nonZero |= *m_p != '0';
            return m_p != first;
        };
        const bool negative = m_p != m_end && *m_p == '-';
        if (negative)
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
        bool exponent = false;
        if (m_p != m_end && (*m_p == 'e' || *m_p == 'E')) {
            exponent = true;
            ++m_p;
            if (m_p != m_end && (*m_p == '+' || *m_p == '-'))
                ++m_p;
            if (!digits())
                return false;
        }
        // The full decoder reads "-0" as 0, which hashes differently.
        if (negative && !nonZero)
            return false;
        if (!value && !exponent && m_p - start <= 300)
            return true;
        // Out of range either way is the full decoder's to judge.
        double parsed = 0;
        const auto [end, error] = std::from_chars(start, m_p, parsed);
        if (error != std::errc() || end != m_p)
            return false;
        if (value)
            *value = parsed;
        return true;
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
