#include "support/UuidText.h"

namespace kestrow {

QString uuidText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QUuid uuidFromText(const JsonDecoder& decoder, const QString& key)
{
    const QUuid id = QUuid::fromString(decoder.string(key));
    if (id.isNull())
        decoder.fail(key, QStringLiteral("expected a UUID"));
    return id;
}

} // namespace kestrow
