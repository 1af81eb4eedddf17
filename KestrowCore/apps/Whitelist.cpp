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

const QSet<QString>& linuxDesktopComponents()
{
    static const QSet<QString> rows = textSet({
        "akonadi",
        "applications",
        "at-spi",
        "at-spi2",
        "autostart",
        "backgrounds",
        "baloo",
        "color-schemes",
        "containers",
        "dbus",
        "dbus-1",
        "dconf",
        "desktop-directories",
        "enchant",
        "event-sound-cache.tdb",
        "evolution",
        "flatpak",
        "fontconfig",
        "fonts",
        "gegl-0.4",
        "babl",
        "goa-1.0",
        "gstreamer-1.0",
        "gvfs",
        "gvfs-metadata",
        "ibus",
        "icons",
        "kactivitymanagerd",
        "kcookiejar",
        "kded5",
        "kded6",
        "keyrings",
        "kscreen",
        "kservices5",
        "ksycoca5",
        "kwallet",
        "kwalletd",
        "kxmlgui5",
        "locale",
        "mesa_shader_cache",
        "mesa_shader_cache_db",
        "menus",
        "mime",
        "mimeapps.list",
        "monitors.xml",
        "mozilla",
        "nautilus",
        "nvidia",
        "obexd",
        "openbox",
        "pipewire",
        "pki",
        "procps",
        "pulse",
        "qtproject",
        "radv_builtin_shaders64",
        "recently-used.xbel",
        "remoteview",
        "sandbox",
        "session",
        "sessions",
        "snap",
        "sounds",
        "systemd",
        "themes",
        "thumbnails",
        "trash",
        "trolltech",
        "ubuntu-report",
        "update-notifier",
        "user-places.xbel",
        "vulkan",
        "webkitgtk",
        "whoopsie",
        "wireplumber",
        "xorg",
        "xsettingsd",
        "gnome-shell",
        "gnome-session",
        "gnome-settings-daemon",
    });
    return rows;
}

// Families of the desktop's components, named by a common beginning.
const QStringList& linuxDesktopPrefixes()
{
    static const QStringList prefixes{
        QStringLiteral("gnome-"),
        QStringLiteral("org.gnome."),
        QStringLiteral("org.kde."),
        QStringLiteral("org.freedesktop."),
        QStringLiteral("kde"),
        QStringLiteral("plasma"),
        QStringLiteral("xfce"),
        QStringLiteral("lxqt"),
        QStringLiteral("lxde"),
        QStringLiteral("lxsession"),
        QStringLiteral("lxpanel"),
        QStringLiteral("cinnamon"),
        QStringLiteral("mate-"),
        QStringLiteral("tracker"),
        QStringLiteral("xdg-desktop-portal"),
        QStringLiteral("user-dirs."),
        QStringLiteral("gtk-"),
        QStringLiteral("fcitx"),
        QStringLiteral("kwin"),
        QStringLiteral("kglobal"),
        QStringLiteral("evolution"),
        QStringLiteral("event-sound-cache"),
        QStringLiteral("xorg."),
        QStringLiteral("monitors.xml"),
    };
    return prefixes;
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

bool Whitelist::isLinuxDesktopComponent(const QString& name)
{
    const QString lowered = name.toLower();
    if (linuxDesktopComponents().contains(lowered))
        return true;
    return std::any_of(linuxDesktopPrefixes().begin(), linuxDesktopPrefixes().end(),
                       [&lowered](const QString& prefix) { return lowered.startsWith(prefix); });
}

} // namespace kestrow
