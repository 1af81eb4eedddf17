#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace kestrow {

// File names are bytes; text in the program is QString. This is the one conversion between
// the two, and it is lossless: valid UTF-8 becomes its characters, and each byte that is not
// part of valid UTF-8 becomes the lone low surrogate U+DC00 + byte (U+DC80..U+DCFF), which no
// valid UTF-8 can produce. Encoding turns those back into the very bytes, so a name read from
// the disk or the command line always names the same file again.
class NativePath {
public:
    [[nodiscard]] static QString decode(const char* bytes, qsizetype size);
    [[nodiscard]] static QString decode(const QByteArray& bytes) { return decode(bytes.constData(), bytes.size()); }
    [[nodiscard]] static QString decode(const char* bytes);
    // Any other lone surrogate (text that no name decodes to) is written in the generalised
    // UTF-8 form, so it can never name an existing file by accident.
    [[nodiscard]] static QByteArray encode(QStringView text);

    // True when `text` holds bytes that are not valid UTF-8 (escaped as above).
    [[nodiscard]] static bool hasRawBytes(QStringView text);
    // For people: each raw byte as "\xHH" (upper-case hex), everything else as it stands.
    [[nodiscard]] static QString displayText(QStringView text);
    // The UTF-8 form of one code point (a lone surrogate in its generalised form).
    static void appendUtf8(QByteArray& out, char32_t codePoint);
    // The raw byte a character stands for, or -1 when it stands for itself.
    [[nodiscard]] static int rawByte(QChar c);
};

} // namespace kestrow
