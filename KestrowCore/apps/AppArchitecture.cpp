#include "apps/AppArchitecture.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct ArchitectureRow {
    AppArchitecture::Value value;
    const char* rawValue;
    const char* displayName;
};

constexpr EnumTable<ArchitectureRow, AppArchitecture::count> architectures{{{
    {AppArchitecture::arm64, "arm64", "Apple Silicon"},
    {AppArchitecture::x86_64, "x86_64", "Intel 64-bit"},
    {AppArchitecture::universal, "universal", "Universal"},
    {AppArchitecture::unknown, "unknown", "Unknown"},
}}};
static_assert(architectures.isInDeclarationOrder());

} // namespace

QString AppArchitecture::rawValue() const
{
    return architectures.rawValue(m_value);
}

QString AppArchitecture::displayName() const
{
    return architectures.text(m_value, &ArchitectureRow::displayName);
}

std::optional<AppArchitecture> AppArchitecture::fromRawValue(const QString& raw)
{
    return architectures.fromRawValue(raw);
}

AppArchitecture AppArchitecture::fromProcessors(const ExecutableProcessors& processors)
{
    if (processors.arm64 && processors.x86_64)
        return universal;
    if (processors.arm64)
        return arm64;
    if (processors.x86_64)
        return x86_64;
    return unknown;
}

} // namespace kestrow
