#include "cleanup/TrashItemStatus.h"

namespace kestrow {

QString TrashItemStatus::rawValue() const
{
    switch (m_value) {
    case success:
        return QStringLiteral("SUCCESS");
    case simulated:
        return QStringLiteral("SIMULATED");
    case failed:
        return QStringLiteral("FAILED");
    case skipped:
        return QStringLiteral("SKIPPED");
    }
    return {};
}

} // namespace kestrow
