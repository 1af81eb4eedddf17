#include "rules/RuleBaseDirectory.h"

namespace kestrow {

QString RuleBaseDirectory::rawValue() const
{
    switch (m_value) {
    case home:
        return QStringLiteral("home");
    case userCaches:
        return QStringLiteral("userCaches");
    case userApplicationSupport:
        return QStringLiteral("userApplicationSupport");
    case userDeveloper:
        return QStringLiteral("userDeveloper");
    case systemLibrary:
        return QStringLiteral("systemLibrary");
    case absolute:
        return QStringLiteral("absolute");
    }
    return {};
}

std::optional<RuleBaseDirectory> RuleBaseDirectory::fromRawValue(const QString& raw)
{
    for (const RuleBaseDirectory directory : allCases())
        if (directory.rawValue() == raw)
            return directory;
    return std::nullopt;
}

} // namespace kestrow
