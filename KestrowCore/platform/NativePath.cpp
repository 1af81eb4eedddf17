#include "platform/NativePath.h"

#include <algorithm>
#include <cstring>

namespace kestrow {

namespace {

constexpr char16_t rawByteBase = 0xDC00;

// Length of the valid UTF-8 sequence at `p` (at most `left` bytes), or 0 when it is not one.
// Overlong forms, surrogates and code points above U+10FFFF are not valid.
int validSequenceLength(const unsigned char* p, qsizetype left, char32_t& codePoint)
{
    const unsigned char lead = p[0];
    int length;
    char32_t minimum;
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        minimum = 0x80;
        codePoint = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        minimum = 0x800;
        codePoint = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        minimum = 0x10000;
        codePoint = lead & 0x07;
    } else {
        return 0;
    }
    if (left < length)
        return 0;
    for (int i = 1; i < length; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        codePoint = (codePoint << 6) | (p[i] & 0x3F);
    }
    if (codePoint < minimum || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
        return 0;
    return length;
}

} // namespace

void NativePath::appendUtf8(QByteArray& out, char32_t c)
{
    if (c < 0x80) {
        out.append(static_cast<char>(c));
    } else if (c < 0x800) {
        out.append(static_cast<char>(0xC0 | (c >> 6)));
        out.append(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.append(static_cast<char>(0xE0 | (c >> 12)));
        out.append(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.append(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.append(static_cast<char>(0xF0 | (c >> 18)));
        out.append(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.append(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.append(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

int NativePath::rawByte(QChar c)
{
    const char16_t u = c.unicode();
    return u >= rawByteBase + 0x80 && u <= rawByteBase + 0xFF ? u - rawByteBase : -1;
}

QString NativePath::decode(const char* bytes)
{
    return decode(bytes, static_cast<qsizetype>(std::strlen(bytes)));
}

QString NativePath::decode(const char* bytes, qsizetype size)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes);
    qsizetype i = 0;
    while (i < size && p[i] < 0x80)
        ++i;
    if (i == size)
        return QString::fromLatin1(bytes, size); // the common case: plain ASCII
    QString text;
    text.reserve(size);
    text.append(QLatin1String(bytes, i));
    while (i < size) {
        char32_t codePoint = 0;
        const int length = validSequenceLength(p + i, size - i, codePoint);
        if (length == 0) {
            text.append(QChar(static_cast<char16_t>(rawByteBase + p[i])));
            ++i;
            continue;
        }
        if (codePoint >= 0x10000) {
            text.append(QChar(QChar::highSurrogate(codePoint)));
            text.append(QChar(QChar::lowSurrogate(codePoint)));
        } else {
            text.append(QChar(static_cast<char16_t>(codePoint)));
        }
        i += length;
    }
    return text;
}

QByteArray NativePath::encode(QStringView text)
{
    // The common case: a run of ASCII, copied at once.
    qsizetype ascii = 0;
    while (ascii < text.size() && text[ascii].unicode() < 0x80)
        ++ascii;
    QByteArray out(ascii, Qt::Uninitialized);
    std::transform(text.begin(), text.begin() + ascii, out.begin(),
                   [](QChar c) { return static_cast<char>(c.unicode()); });
    if (ascii == text.size())
        return out;
    out.reserve(text.size() + (text.size() - ascii) * 3);
    for (qsizetype i = ascii; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() < 0x80) {
            out.append(static_cast<char>(c.unicode()));
        } else if (const int byte = rawByte(c); byte >= 0) {
            out.append(static_cast<char>(byte));
        } else if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            appendUtf8(out, QChar::surrogateToUcs4(c, text[i + 1]));
            ++i;
        } else {
            appendUtf8(out, c.unicode());
        }
    }
    return out;
}

bool NativePath::hasRawBytes(QStringView text)
{
    for (const QChar c : text) {
        if (rawByte(c) >= 0)
            return true;
    }
    return false;
}

QString NativePath::displayText(QStringView text)
{
    if (!hasRawBytes(text))
        return text.toString();
    QString shown;
    shown.reserve(text.size() + 8);
    for (const QChar c : text) {
        const int byte = rawByte(c);
        if (byte < 0) {
            shown.append(c);
            continue;
        }
        static constexpr char digits[] = "0123456789ABCDEF";
        shown.append(QLatin1String("\\x"));
        shown.append(QLatin1Char(digits[byte >> 4]));
        shown.append(QLatin1Char(digits[byte & 0xF]));
    }
    return shown;
}

} // namespace kestrow
