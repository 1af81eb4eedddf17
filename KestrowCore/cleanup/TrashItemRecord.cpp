#include "cleanup/TrashItemRecord.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"

namespace kestrow {

TrashItemRecord TrashItemRecord::measured(const QString& sourcePath, const MeasuredMetrics& metrics,
                                          TrashItemStatus status, std::optional<QString> trashPath,
                                          std::optional<QString> errorMessage)
{
    return TrashItemRecord{
        .id = QUuid::createUuid(),
        .sourcePath = sourcePath,
        .trashPath = std::move(trashPath),
        .allocatedBytes = metrics.allocatedBytes,
        .logicalBytes = metrics.logicalBytes == 0 ? metrics.allocatedBytes : metrics.logicalBytes,
        .fileCount = metrics.fileCount,
        .status = status,
        .errorMessage = std::move(errorMessage),
    };
}

QString TrashItemRecord::sourceURL() const
{
    return PathText::fileURLString(sourcePath);
}

std::optional<QString> TrashItemRecord::trashURL() const
{
    if (!trashPath)
        return std::nullopt;
    return PathText::fileURLString(*trashPath);
}

JsonValue TrashItemRecord::toJson() const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("sourceURL"), sourceURL()},
        {QStringLiteral("sourcePath"), sourcePath},
    });
    if (trashPath) {
        json.insert(QStringLiteral("trashURL"), *trashURL());
        json.insert(QStringLiteral("trashPath"), *trashPath);
    }
    json.insert(QStringLiteral("allocatedBytes"), allocatedBytes);
    json.insert(QStringLiteral("logicalBytes"), logicalBytes);
    json.insert(QStringLiteral("fileCount"), fileCount);
    json.insert(QStringLiteral("status"), status.rawValue());
    if (errorMessage)
        json.insert(QStringLiteral("errorMessage"), *errorMessage);
    return json;
}

} // namespace kestrow
