#include "safety/FileCategory.h"

#include "support/EnumTable.h"

namespace kestrow {

namespace {

constexpr RawValueTable<FileCategory> fileCategories{{{
    {FileCategory::archives, "ARCHIVES"},
    {FileCategory::diskImages, "DISK_IMAGES"},
    {FileCategory::developerArtifacts, "DEVELOPER_ARTIFACTS"},
    {FileCategory::media, "MEDIA"},
    {FileCategory::binaries, "BINARIES"},
    {FileCategory::documents, "DOCUMENTS"},
    {FileCategory::other, "OTHER"},
}}};
static_assert(fileCategories.isInDeclarationOrder());

} // namespace

QString FileCategory::rawValue() const
{
    return fileCategories.rawValue(m_value);
}

std::optional<FileCategory> FileCategory::fromRawValue(const QString& raw)
{
    return fileCategories.fromRawValue(raw);
}

FileCategory FileCategory::decode(const JsonDecoder& decoder, const QString& key)
{
    return fileCategories.decode(decoder, key, "unknown file category");
}

} // namespace kestrow
