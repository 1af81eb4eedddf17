#include "agent/ArgumentOverflowError.h"

#include "support/JsonWriter.h"

namespace kestrow {

ArgumentOverflowError::ArgumentOverflowError(QString key, double value)
    : m_key(std::move(key))
    , m_value(value)
{
}

QString ArgumentOverflowError::description() const
{
    return QStringLiteral("The argument '%1' is too large for a 64-bit integer: %2")
        .arg(m_key, QString::fromLatin1(JsonWriter::formatDouble(m_value)));
}

} // namespace kestrow
