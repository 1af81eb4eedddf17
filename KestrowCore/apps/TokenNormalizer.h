#pragma once

#include <QString>
#include <QStringList>

namespace kestrow {

// The forms in which names of applications and of folders are compared.
class TokenNormalizer {
public:
    // Lower case with every character that is not a letter or a digit taken out:
    // "Foo-Bar 2" is "foobar2".
    [[nodiscard]] static QString normalize(const QString& text);
    // Without the numeric characters at its end: "app12" is "app", "123" is empty.
    [[nodiscard]] static QString stripTrailingDigits(const QString& text);
    // The lower-case runs of letters and digits, of 2 characters or more, in order.
    [[nodiscard]] static QStringList tokenize(const QString& text);
};

} // namespace kestrow
