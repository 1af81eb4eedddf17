#include "apps/ResolvedDependency.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"

namespace kestrow {

QString ResolvedDependency::url() const
{
    return PathText::fileURLString(path);
}

JsonValue ResolvedDependency::toJson(DateEncoding dates) const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("url"), url()},
        {QStringLiteral("path"), path},
        {QStringLiteral("location"), location.rawValue()},
        {QStringLiteral("allocatedSizeBytes"), allocatedSizeBytes},
        {QStringLiteral("logicalSizeBytes"), logicalSizeBytes},
        {QStringLiteral("fileCount"), fileCount},
    });
    if (lastModifiedDate)
        json.insert(QStringLiteral("lastModifiedDate"), JsonDecoder::encodeDate(*lastModifiedDate, dates));
    json.insert(QStringLiteral("isDirectory"), isDirectory);
    json.insert(QStringLiteral("isSymlink"), isSymlink);
    return json;
}

} // namespace kestrow
