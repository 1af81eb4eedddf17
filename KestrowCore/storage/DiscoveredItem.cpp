#include "storage/DiscoveredItem.h"

#include "platform/PathText.h"
#include "support/ByteCountFormatter.h"

namespace kestrow {

QString DiscoveredItem::url() const
{
    return PathText::fileURLString(path);
}
QString DiscoveredItem::formattedAllocatedSize() const
{
    return ByteCountFormatter::format(allocatedSizeBytes);
}
QString DiscoveredItem::formattedLogicalSize() const
{
    return ByteCountFormatter::format(logicalSizeBytes);
}

JsonValue DiscoveredItem::toJson(DateEncoding dates) const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("url"), url()},
        {QStringLiteral("path"), path},
        {QStringLiteral("category"), category.rawValue()},
        {QStringLiteral("riskTier"), riskTier.rawValue()},
        {QStringLiteral("logicalSizeBytes"), logicalSizeBytes},
        {QStringLiteral("allocatedSizeBytes"), allocatedSizeBytes},
        {QStringLiteral("fileCount"), fileCount},
    });
    if (lastAccessedDate)
        json.insert(QStringLiteral("lastAccessedDate"), JsonDecoder::encodeDate(*lastAccessedDate, dates));
    if (lastModifiedDate)
        json.insert(QStringLiteral("lastModifiedDate"), JsonDecoder::encodeDate(*lastModifiedDate, dates));
    json.insert(QStringLiteral("isOrphaned"), isOrphaned);
    json.insert(QStringLiteral("isLocked"), isLocked);
    json.insert(QStringLiteral("requiresFullDiskAccess"), requiresFullDiskAccess);
    json.insert(QStringLiteral("itemDescription"), itemDescription);
    if (ruleId)
        json.insert(QStringLiteral("ruleId"), *ruleId);
    return json;
}

DiscoveredItem DiscoveredItem::fromJson(const JsonValue& json, DateEncoding dates)
{
    const JsonDecoder in(json, QStringLiteral("DiscoveredItem"));
    const QString path = PathText::pathFromFileURLString(in.string(QStringLiteral("url")));
    if (path.isEmpty())
        in.fail(QStringLiteral("url"), QStringLiteral("expected an absolute file URL"));
    return DiscoveredItem{
        .id = uuidFromText(in, QStringLiteral("id")),
        .path = path,
        .category = StorageCategory::decode(in, QStringLiteral("category")),
        .riskTier = RiskTier::decode(in, QStringLiteral("riskTier")),
        .logicalSizeBytes = in.integer(QStringLiteral("logicalSizeBytes")),
        .allocatedSizeBytes = in.integer(QStringLiteral("allocatedSizeBytes")),
        .fileCount = in.integer(QStringLiteral("fileCount")),
        .lastAccessedDate = in.optionalDate(QStringLiteral("lastAccessedDate"), dates),
        .lastModifiedDate = in.optionalDate(QStringLiteral("lastModifiedDate"), dates),
        .isOrphaned = in.boolean(QStringLiteral("isOrphaned")),
        .isLocked = in.boolean(QStringLiteral("isLocked")),
        .requiresFullDiskAccess = in.boolean(QStringLiteral("requiresFullDiskAccess")),
        .itemDescription = in.string(QStringLiteral("itemDescription")),
        .ruleId = in.optionalString(QStringLiteral("ruleId")),
    };
}

} // namespace kestrow
