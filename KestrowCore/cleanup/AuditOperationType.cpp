#include "cleanup/AuditOperationType.h"

#include <array>

namespace kestrow {

namespace {
constexpr std::array<AuditOperationType::Value, 5> allValues{AuditOperationType::scan, AuditOperationType::dryRun,
                                                             AuditOperationType::trash, AuditOperationType::purge,
                                                             AuditOperationType::restore};
}

QString AuditOperationType::text() const
{
    switch (m_value) {
    case scan:
        return QStringLiteral("scan");
    case dryRun:
        return QStringLiteral("dry_run");
    case trash:
        return QStringLiteral("trash");
    case purge:
        return QStringLiteral("purge");
    case restore:
        return QStringLiteral("restore");
    }
    return {};
}

std::optional<AuditOperationType> AuditOperationType::fromText(const QString& text)
{
    for (const Value value : allValues) {
        if (AuditOperationType(value).text() == text)
            return AuditOperationType(value);
    }
    return std::nullopt;
}

} // namespace kestrow
