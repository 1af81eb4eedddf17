#include "apps/TokenNormalizer.h"

namespace kestrow {

namespace {

QStringList pieces(const QString& text)
{
    QStringList found;
    QString current;
    for (const QChar character : text.toLower()) {
        if (character.isLetterOrNumber()) {
            current.append(character);
        } else if (!current.isEmpty()) {
            found.append(current);
            current.clear();
        }
    }
    if (!current.isEmpty())
        found.append(current);
    return found;
}

} // namespace

QString TokenNormalizer::normalize(const QString& text)
{
    return pieces(text).join(QString());
}

QString TokenNormalizer::stripTrailingDigits(const QString& text)
{
    qsizetype end = text.size();
    while (end > 0 && text.at(end - 1).isNumber())
        --end;
    return text.left(end);
}

QStringList TokenNormalizer::tokenize(const QString& text)
{
    QStringList tokens = pieces(text);
    tokens.removeIf([](const QString& piece) { return piece.size() < 2; });
    return tokens;
}

} // namespace kestrow
