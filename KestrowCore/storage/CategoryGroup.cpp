#include "storage/CategoryGroup.h"

namespace kestrow {

QString CategoryGroup::rawValue() const
{
    switch (m_value) {
    case developer:
        return QStringLiteral("DEVELOPER");
    case system:
        return QStringLiteral("SYSTEM");
    case applications:
        return QStringLiteral("APPLICATIONS");
    case files:
        return QStringLiteral("FILES");
    case startup:
        return QStringLiteral("STARTUP");
    case dynamic:
        return QStringLiteral("DYNAMIC");
    }
    return {};
}

QString CategoryGroup::displayName() const
{
    switch (m_value) {
    case developer:
        return QStringLiteral("Developer & AI");
    case system:
        return QStringLiteral("System Junk");
    case applications:
        return QStringLiteral("Applications & Leftovers");
    case files:
        return QStringLiteral("Large & Old Files");
    case startup:
        return QStringLiteral("Startup Items");
    case dynamic:
        return QStringLiteral("Adaptive Rules");
    }
    return {};
}

std::optional<CategoryGroup> CategoryGroup::fromRawValue(const QString& raw)
{
    for (const CategoryGroup group : allCases())
        if (group.rawValue() == raw)
            return group;
    return std::nullopt;
}

} // namespace kestrow
