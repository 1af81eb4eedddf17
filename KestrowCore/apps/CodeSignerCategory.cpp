#include "apps/CodeSignerCategory.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

struct SignerRow {
    CodeSignerCategory::Value value;
    const char* rawValue;
};

constexpr EnumTable<SignerRow, CodeSignerCategory::count> signers{{{
    {CodeSignerCategory::applePlatform, "Apple Platform / OS"},
    {CodeSignerCategory::developerId, "Developer ID Application"},
    {CodeSignerCategory::macAppStore, "Mac App Store"},
    {CodeSignerCategory::adHoc, "Ad-Hoc / Self-Signed"},
    {CodeSignerCategory::unsignedCode, "Unsigned"},
}}};
static_assert(signers.isInDeclarationOrder());

} // namespace

QString CodeSignerCategory::rawValue() const
{
    return signers.rawValue(m_value);
}

std::optional<CodeSignerCategory> CodeSignerCategory::fromRawValue(const QString& raw)
{
    return signers.fromRawValue(raw);
}

} // namespace kestrow
