#include "apps/InstalledApp.h"

#include "platform/PathText.h"
#include "storage/DiscoveredItem.h"
#include "support/ByteCountFormatter.h"
#include "support/JsonDecoder.h"

namespace kestrow {

namespace {

QString pathFromURL(const JsonDecoder& in, const QString& key, const QString& url)
{
    const QString path = PathText::pathFromFileURLString(url);
    if (path.isEmpty())
        in.fail(key, QStringLiteral("expected an absolute file URL"));
    return path;
}

} // namespace

QString InstalledApp::bundleURL() const
{
    return PathText::fileURLString(bundlePath);
}

std::optional<QString> InstalledApp::iconURL() const
{
    if (!iconPath)
        return std::nullopt;
    return PathText::fileURLString(*iconPath);
}

QString InstalledApp::formattedBundleSize() const
{
    return ByteCountFormatter::format(bundleSizeBytes);
}

QString InstalledApp::formattedLogicalSize() const
{
    return ByteCountFormatter::format(logicalSizeBytes);
}

JsonValue InstalledApp::toJson() const
{
    JsonValue json = JsonValue::object({
        {QStringLiteral("id"), uuidText(id)},
        {QStringLiteral("bundleIdentifier"), bundleIdentifier},
        {QStringLiteral("bundleURL"), bundleURL()},
        {QStringLiteral("displayName"), displayName},
        {QStringLiteral("version"), version},
    });
    const auto insertOptional = [&json](const char* key, const std::optional<QString>& value) {
        if (value)
            json.insert(QString::fromLatin1(key), *value);
    };
    insertOptional("shortVersion", shortVersion);
    json.insert(QStringLiteral("isSystemApp"), isSystemApp);
    json.insert(QStringLiteral("isRunning"), isRunning);
    json.insert(QStringLiteral("bundleSizeBytes"), bundleSizeBytes);
    json.insert(QStringLiteral("logicalSizeBytes"), logicalSizeBytes);
    insertOptional("architecture", architecture);
    insertOptional("codeSignatureAuthority", codeSignatureAuthority);
    insertOptional("iconURL", iconURL());
    insertOptional("executablePath", executablePath);
    insertOptional("teamIdentifier", teamIdentifier);
    json.insert(QStringLiteral("isProtected"), isProtected);
    insertOptional("protectionReason", protectionReason);
    insertOptional("bundleName", bundleName);
    if (appGroupIdentifiers) {
        JsonValue::Array groups;
        for (const QString& group : *appGroupIdentifiers)
            groups.emplace_back(group);
        json.insert(QStringLiteral("appGroupIdentifiers"), JsonValue(std::move(groups)));
    }
    return json;
}

InstalledApp InstalledApp::fromJson(const JsonValue& json)
{
    const JsonDecoder in(json, QStringLiteral("InstalledApp"));
    std::optional<QString> iconPath;
    if (const std::optional<QString> icon = in.optionalString(QStringLiteral("iconURL")))
        iconPath = pathFromURL(in, QStringLiteral("iconURL"), *icon);
    std::optional<QStringList> groups;
    if (in.optional(QStringLiteral("appGroupIdentifiers")))
        groups = in.stringArray(QStringLiteral("appGroupIdentifiers"));
    return InstalledApp{
        .id = uuidFromText(in, QStringLiteral("id")),
        .bundleIdentifier = in.string(QStringLiteral("bundleIdentifier")),
        .bundlePath = pathFromURL(in, QStringLiteral("bundleURL"), in.string(QStringLiteral("bundleURL"))),
        .displayName = in.string(QStringLiteral("displayName")),
        .version = in.string(QStringLiteral("version")),
        .shortVersion = in.optionalString(QStringLiteral("shortVersion")),
        .isSystemApp = in.boolean(QStringLiteral("isSystemApp")),
        .isRunning = in.boolean(QStringLiteral("isRunning")),
        .bundleSizeBytes = in.integer(QStringLiteral("bundleSizeBytes")),
        .logicalSizeBytes = in.integer(QStringLiteral("logicalSizeBytes")),
        .architecture = in.optionalString(QStringLiteral("architecture")),
        .codeSignatureAuthority = in.optionalString(QStringLiteral("codeSignatureAuthority")),
        .iconPath = iconPath,
        .executablePath = in.optionalString(QStringLiteral("executablePath")),
        .teamIdentifier = in.optionalString(QStringLiteral("teamIdentifier")),
        .isProtected = in.boolean(QStringLiteral("isProtected")),
        .protectionReason = in.optionalString(QStringLiteral("protectionReason")),
        .bundleName = in.optionalString(QStringLiteral("bundleName")),
        .appGroupIdentifiers = groups,
    };
}

} // namespace kestrow
