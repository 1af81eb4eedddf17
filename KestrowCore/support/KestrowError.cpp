#include "support/KestrowError.h"

namespace kestrow {

const char* KestrowError::what() const noexcept
{
    try {
        m_what = description().toStdString();
    } catch (...) {
        return "kestrow error";
    }
    return m_what.c_str();
}

QString CancellationError::description() const
{
    return QStringLiteral("The operation was cancelled.");
}

} // namespace kestrow
