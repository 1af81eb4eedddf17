#include "system/StartupItem.h"

#include "platform/PathText.h"
#include "support/UuidText.h"

namespace kestrow {

JsonValue StartupItem::toJson() const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("name"), name},
        {QStringLiteral("label"), label},
        {QStringLiteral("type"), type.rawValue()},
    });
    if (fileURL)
        json.insert(QStringLiteral("fileURL"), PathText::fileURLString(*fileURL));
    if (targetExecutablePath)
        json.insert(QStringLiteral("targetExecutablePath"), *targetExecutablePath);
    json.insert(QStringLiteral("isEnabled"), isEnabled);
    json.insert(QStringLiteral("isRunning"), isRunning);
    json.insert(QStringLiteral("requiresAdministrator"), requiresAdministrator);
    json.insert(QStringLiteral("status"), status.rawValue());
    json.insert(QStringLiteral("impact"), impact.rawValue());
    if (bundleIdentifier)
        json.insert(QStringLiteral("bundleIdentifier"), *bundleIdentifier);
    return json;
}

} // namespace kestrow
