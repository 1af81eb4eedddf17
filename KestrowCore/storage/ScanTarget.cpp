#include "storage/ScanTarget.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

// What each target covers (its categories, folders and rule ids) is the scan target table's.
constexpr RawValueTable<ScanTarget> targets{{{
    {ScanTarget::uvPython, "uvPython"},
    {ScanTarget::dockerVM, "dockerVM"},
    {ScanTarget::xcode, "xcode"},
    {ScanTarget::aiModels, "aiModels"},
    {ScanTarget::npmBun, "npmBun"},
    {ScanTarget::cargo, "cargo"},
    {ScanTarget::homebrew, "homebrew"},
    {ScanTarget::systemCaches, "systemCaches"},
    {ScanTarget::browserCaches, "browserCaches"},
}}};
static_assert(targets.isInDeclarationOrder());

} // namespace

QString ScanTarget::rawValue() const
{
    return targets.rawValue(m_value);
}

std::optional<ScanTarget> ScanTarget::fromRawValue(const QString& raw)
{
    return targets.fromRawValue(raw);
}

} // namespace kestrow
