#include "cleanup/RestoreRun.h"

#include "platform/PathText.h"

namespace kestrow {

JsonValue RestoreRun::toJson(DateEncoding dates) const
{
    JsonValue json = summary.toJson(dates);
    for (JsonValue::Member& member : json.asObject()) {
        if (member.first != QLatin1String("records"))
            continue;
        JsonValue::Array& records = member.second.asArray();
        for (std::size_t i = 0; i < records.size() && i < static_cast<std::size_t>(originalPaths.size()); ++i) {
            const QString& original = originalPaths[static_cast<qsizetype>(i)];
            records[i].insert(QStringLiteral("originalURL"), PathText::fileURLString(original));
            records[i].insert(QStringLiteral("originalPath"), original);
        }
    }
    return json;
}

} // namespace kestrow
