#include "storage/ScanTarget.h"

namespace kestrow {

QString ScanTarget::rawValue() const
{
    switch (m_value) {
    case uvPython:
        return QStringLiteral("uvPython");
    case dockerVM:
        return QStringLiteral("dockerVM");
    case xcode:
        return QStringLiteral("xcode");
    case aiModels:
        return QStringLiteral("aiModels");
    case npmBun:
        return QStringLiteral("npmBun");
    case cargo:
        return QStringLiteral("cargo");
    case homebrew:
        return QStringLiteral("homebrew");
    case systemCaches:
        return QStringLiteral("systemCaches");
    case browserCaches:
        return QStringLiteral("browserCaches");
    }
    return {};
}

std::optional<ScanTarget> ScanTarget::fromRawValue(const QString& raw)
{
    for (const ScanTarget target : allCases())
        if (target.rawValue() == raw)
            return target;
    return std::nullopt;
}

} // namespace kestrow
