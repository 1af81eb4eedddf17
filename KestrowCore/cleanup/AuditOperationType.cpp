#include "cleanup/AuditOperationType.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<AuditOperationType> operations{{{
    {AuditOperationType::scan, "scan"},
    {AuditOperationType::dryRun, "dry_run"},
    {AuditOperationType::trash, "trash"},
    {AuditOperationType::purge, "purge"},
    {AuditOperationType::restore, "restore"},
}}};
static_assert(operations.isInDeclarationOrder());

} // namespace

QString AuditOperationType::text() const
{
    return operations.rawValue(m_value);
}

std::optional<AuditOperationType> AuditOperationType::fromText(const QString& text)
{
    return operations.fromRawValue(text);
}

} // namespace kestrow
