#include "analysis/SpaceNode.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"

namespace kestrow {

QString SpaceNode::url() const
{
    return PathText::fileURLString(path);
}

JsonValue SpaceNode::toJson(DateEncoding dates) const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("url"), url()},
        {QStringLiteral("path"), path},
        {QStringLiteral("name"), name},
        {QStringLiteral("isDirectory"), isDirectory},
        {QStringLiteral("allocatedSizeBytes"), allocatedSizeBytes},
        {QStringLiteral("logicalSizeBytes"), logicalSizeBytes},
        {QStringLiteral("itemCount"), itemCount},
    });
    if (lastAccessedDate)
        json.insert(QStringLiteral("lastAccessedDate"), JsonDecoder::encodeDate(*lastAccessedDate, dates));
    if (lastModifiedDate)
        json.insert(QStringLiteral("lastModifiedDate"), JsonDecoder::encodeDate(*lastModifiedDate, dates));
    if (children) {
        JsonValue::Array array;
        array.reserve(children->size());
        for (const SpaceNode& child : *children)
            array.push_back(child.toJson(dates));
        json.insert(QStringLiteral("children"), JsonValue(std::move(array)));
    }
    if (fileCategory)
        json.insert(QStringLiteral("fileCategory"), fileCategory->rawValue());
    return json;
}

} // namespace kestrow
