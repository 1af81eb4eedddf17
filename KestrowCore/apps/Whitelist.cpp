#include "apps/Whitelist.h"

#include <QSet>

namespace kestrow {

namespace {

QSet<QString> textSet(std::initializer_list<const char*> rows)
{
    QSet<QString> set;
    for (const char* row : rows)
        set.insert(QString::fromLatin1(row));
    return set;
}

const QSet<QString>& systemComponents()
{
    static const QSet<QString> rows = textSet({
        "accounts",
        "addressbook",
        "appstore",
        "biome",
        "books",
        "calendar",
        "callhistorydb",
        "callhistorytransactions",
        "cloudkit",
        "clouddocs",
        "console",
        "contacts",
        "corefollowup",
        "crashreporter",
        "diagnosticreports",
        "diskutility",
        "dock",
        "duetexpertcenter",
        "facetime",
        "familycircle",
        "fileprovider",
        "finder",
        "findmy",
        "fontbook",
        "home",
        "icloud",
        "identityservices",
        "keychains",
        "keychain",
        "keychain access",
        "keychainaccess",
        "knowledge",
        "mail",
        "maps",
        "messages",
        "mobilesync",
        "music",
        "news",
        "notes",
        "passes",
        "personalizationportrait",
        "photos",
        "podcasts",
        "preview",
        "quicklook",
        "quicktime player",
        "reminders",
        "safari",
        "screentime",
        "shortcuts",
        "siri",
        "stocks",
        "suggestions",
        "syncservices",
        "system preferences",
        "system settings",
        "terminal",
        "textedit",
        "trial",
        "tv",
        "voicecontrol",
        "voicememos",
    });
    return rows;
}

const QSet<QString>& developerTools()
{
    static const QSet<QString> rows = textSet({
        "brew",     "bun",         "cargo", "conda", "containerd", "developer",  "docker", "git",     "go",   "gradle",
        "homebrew", "instruments", "java",  "lldb",  "lmstudio",   "node",       "npm",    "openjdk", "pip",  "pnpm",
        "python",   "ruby",        "rust",  "swift", "uv",         "virtualenv", "vllm",   "xcode",   "yarn",
    });
    return rows;
}

const QSet<QString>& sharedInfrastructure()
{
    static const QSet<QString> rows = textSet({
        "google software update",
        "google updater",
        "helper",
        "microsoft autoupdate",
        "setapp",
        "shared",
        "sparkle",
    });
    return rows;
}

bool hasAppleBundlePrefix(const QString& lowered)
{
    return lowered.startsWith(QLatin1String("com.apple.")) || lowered.startsWith(QLatin1String("group.com.apple."));
}

} // namespace

bool Whitelist::isProtected(const QString& name, const std::optional<QString>& bundleId)
{
    if (bundleId && hasAppleBundlePrefix(bundleId->toLower()))
        return true;
    const QString lowered = name.toLower();
    return hasAppleBundlePrefix(lowered) || systemComponents().contains(lowered) ||
           developerTools().contains(lowered) || sharedInfrastructure().contains(lowered);
}

} // namespace kestrow
