#include "safety/FileCategory.h"

#include "support/JsonDecoder.h"

namespace kestrow {

QString FileCategory::rawValue() const
{
    switch (m_value) {
    case archives:
        return QStringLiteral("ARCHIVES");
    case diskImages:
        return QStringLiteral("DISK_IMAGES");
    case developerArtifacts:
        return QStringLiteral("DEVELOPER_ARTIFACTS");
    case media:
        return QStringLiteral("MEDIA");
    case binaries:
        return QStringLiteral("BINARIES");
    case documents:
        return QStringLiteral("DOCUMENTS");
    case other:
        return QStringLiteral("OTHER");
    }
    return {};
}

std::optional<FileCategory> FileCategory::fromRawValue(const QString& raw)
{
    for (const FileCategory category : allCases())
        if (category.rawValue() == raw)
            return category;
    return std::nullopt;
}

FileCategory FileCategory::decode(const JsonDecoder& decoder, const QString& key)
{
    const auto category = fromRawValue(decoder.string(key));
    if (!category)
        decoder.fail(key, QStringLiteral("unknown file category"));
    return *category;
}

} // namespace kestrow
