#include "SyntheticLinuxSoftware.h"

#include "SyntheticApps.h"

namespace kestrow::test {

namespace {

struct Entry {
    const char* id; // the file below usr/share/applications, without ".desktop"
    const char* keys;
};

// The system's entries, as the packages install them.
constexpr Entry systemEntries[] = {
    {"org.gnome.TextEditor", "Name=Text Editor\nExec=gnome-text-editor %U\nIcon=org.gnome.TextEditor\n"},
    {"org.gnome.Nautilus", "Name=Files\nExec=nautilus --new-window %U\n"},
    {"firefox-esr", "Name=Firefox ESR\nExec=/usr/lib/firefox-esr/firefox-esr %u\nStartupWMClass=firefox-esr\n"},
    {"gimp", "Name=GNU Image Manipulation Program\nName[de]=GNU-Bildbearbeitungsprogramm\nExec=gimp-2.10 %U\n"},
    {"libreoffice-writer", "Name=LibreOffice Writer\nExec=libreoffice --writer %U\n"},
    {"code", "Name=Visual Studio Code\nExec=/usr/share/code/code --unity-launch %F\nStartupWMClass=Code\n"},
    {"thunderbird", "Name=Thunderbird\nExec=thunderbird %u\n"},
    {"vlc", "Name=VLC media player\nExec=/usr/bin/vlc --started-from-file %U\n"},
    {"org.inkscape.Inkscape", "Name=Inkscape\nExec=inkscape %F\n"},
    {"blender", "Name=Blender\nExec=blender %f\n"},
    {"audacity", "Name=Audacity\nExec=env UBUNTU_MENUPROXY=0 audacity %F\n"},
    {"transmission-gtk", "Name=Transmission\nExec=transmission-gtk %U\n"},
    {"org.kde.kate", "Name=Kate\nExec=kate -b %U\n"},
    {"htop", "Name=Htop\nExec=htop\nTerminal=true\n"},
    {"org.remmina.Remmina", "Name=Remmina\nExec=remmina-file-wrapper %U\n"},
    {"org.keepassxc.KeePassXC", "Name=KeePassXC\nExec=keepassxc %f\n"},
    {"python3.11", "Name=Python (v3.11)\nExec=/usr/bin/python3.11\nNoDisplay=true\n"},
    {"kde4/okular", "Name=Okular\nExec=okular %U\n"},
};

constexpr const char* packages[] = {
    "gnome-text-editor",
    "nautilus",
    "firefox-esr",
    "gimp",
    "libreoffice-writer",
    "libreoffice-common",
    "code",
    "thunderbird",
    "vlc",
    "inkscape",
    "blender",
    "audacity",
    "transmission-gtk",
    "kate",
    "htop",
    "remmina",
    "keepassxc",
    "okular",
    "python3.11",
    "libgegl-0.4-0:amd64",
    "libbabl-0.1-0:amd64",
    "dconf-service",
    "git",
    "vim",
    "konsole",
    "dolphin",
    "hexchat",
    "filezilla",
    "gnome-calculator",
};

constexpr const char* programs[] = {
    "nautilus",
    "gimp-2.10",
    "libreoffice",
    "thunderbird",
    "vlc",
    "inkscape",
    "blender",
    "audacity",
    "transmission-gtk",
    "kate",
    "htop",
    "remmina-file-wrapper",
    "keepassxc",
    "okular",
    "python3.11",
    "git",
    "vim",
    "konsole",
    "dolphin",
    "hexchat",
    "filezilla",
    "gnome-calculator",
    "less",
    "nano",
};

// What the installed programs and the desktop keep in the searched folders.
constexpr const char* ownedFolders[] = {
    ".config/nautilus",
    ".config/GIMP",
    ".config/libreoffice",
    ".config/Code",
    ".config/vlc",
    ".config/inkscape",
    ".config/blender",
    ".config/audacity",
    ".config/transmission",
    ".config/htop",
    ".config/remmina",
    ".config/keepassxc",
    ".config/hexchat",
    ".config/filezilla",
    ".config/dconf",
    ".config/gtk-3.0",
    ".config/gtk-4.0",
    ".config/pulse",
    ".config/ibus",
    ".config/evolution",
    ".config/systemd",
    ".config/fontconfig",
    ".config/menus",
    ".config/enchant",
    ".config/goa-1.0",
    ".config/xdg-desktop-portal",
    ".config/Joplin",
    ".config/git",
    ".config/spotify",
    ".config/mytool",
    ".config/Slack",
    ".config/obsidian",
    ".local/share/applications",
    ".local/share/icons",
    ".local/share/Trash",
    ".local/share/keyrings",
    ".local/share/gvfs-metadata",
    ".local/share/flatpak",
    ".local/share/nautilus",
    ".local/share/gnome-shell",
    ".local/share/vlc",
    ".local/share/kate",
    ".local/share/konsole",
    ".local/share/dolphin",
    ".local/share/remmina",
    ".local/share/keepassxc",
    ".local/share/okular",
    ".local/share/gegl-0.4",
    ".local/share/mytool",
    ".local/share/org.gnome.TextEditor",
    ".local/share/sounds",
    ".local/share/backgrounds",
    ".local/share/evolution",
    ".local/share/tracker3",
    ".cache/thumbnails",
    ".cache/fontconfig",
    ".cache/mesa_shader_cache",
    ".cache/gimp",
    ".cache/vlc",
    ".cache/inkscape",
    ".cache/thunderbird",
    ".cache/mozilla",
    ".cache/pip",
    ".cache/babl",
    ".cache/gegl-0.4",
    ".cache/gnome-software",
    ".cache/tracker3",
    ".cache/evolution",
    ".cache/ibus",
    ".cache/gstreamer-1.0",
    ".cache/keepassxc",
    ".cache/remmina",
    ".cache/blender",
    ".cache/transmission",
    ".cache/org.gnome.TextEditor",
    ".cache/joplin",
    ".local/state/wireplumber",
    ".local/state/nautilus",
    ".local/state/vim",
    ".local/state/gnome-text-editor",
    ".var/app/com.spotify.Client",
    ".var/app/org.signal.Signal",
    ".var/app/md.obsidian.Obsidian",
};

constexpr const char* ownedFiles[] = {
    ".config/katerc",
    ".config/konsolerc",
    ".config/dolphinrc",
    ".config/okularrc",
    ".config/kwinrc",
    ".config/kdeglobals",
    ".config/mimeapps.list",
    ".config/user-dirs.dirs",
    ".config/user-dirs.locale",
    ".config/monitors.xml",
    ".config/QtProject.conf",
    ".config/Trolltech.conf",
    ".local/share/recently-used.xbel",
    ".cache/event-sound-cache.tdb.1a2b3c.x86_64-pc-linux-gnu",
};

} // namespace

void SyntheticLinuxSoftware::writeEntry(const QString& relative, const QString& body) const
{
    m_home.writeFile(relative, (QStringLiteral("[Desktop Entry]\nType=Application\n") + body).toUtf8());
}

SyntheticLinuxSoftware::SyntheticLinuxSoftware(const TestHome& home)
    : m_home(home)
{
    const QString root = QStringLiteral("system-root/");
    const QString homePath = home.path();
    for (const Entry& entry : systemEntries)
        writeEntry(root + QStringLiteral("usr/share/applications/") + QString::fromLatin1(entry.id) +
                       QStringLiteral(".desktop"),
                   QString::fromLatin1(entry.keys));
    home.writeFile(root + QStringLiteral("usr/share/applications/debian-doc.desktop"),
                   QByteArray("[Desktop Entry]\nType=Link\nName=Debian documentation\nURL=file:///usr/share/doc\n"));
    for (const char* package : packages)
        home.writeFile(root + QStringLiteral("var/lib/dpkg/info/") + QString::fromLatin1(package) +
                           QStringLiteral(".list"),
                       QByteArray("/usr\n"));
    for (const char* program : programs)
        home.writeFile(root + QStringLiteral("usr/bin/") + QString::fromLatin1(program), 100);
    home.writeFile(root + QStringLiteral("usr/bin/gnome-text-editor"), SyntheticApps::elf(SyntheticApps::elfX86_64));

    // Two Flatpaks of the system's installation, one of the user's, and a Snap.
    const auto flatpak = [&](const QString& installation, const QString& id, const QString& name,
                             const QString& command, const QString& version) {
        const QString deployment = installation + QStringLiteral("/app/") + id + QStringLiteral("/current/active/");
        home.writeFile(deployment + QStringLiteral("files/bin/") + command,
                       SyntheticApps::elf(SyntheticApps::elfAArch64) + QByteArray(5000, 'f'));
        home.writeFile(deployment + QStringLiteral("files/share/metainfo/") + id + QStringLiteral(".metainfo.xml"),
                       (QStringLiteral("<component><releases><release version=\"") + version +
                        QStringLiteral("\" date=\"2024-01-01\"/><release version=\"0.9\"/></releases></component>"))
                           .toUtf8());
        writeEntry(installation + QStringLiteral("/exports/share/applications/") + id + QStringLiteral(".desktop"),
                   QStringLiteral("Name=") + name +
                       QStringLiteral("\nExec=/usr/bin/flatpak run --branch=stable --arch=x86_64 --command=") +
                       command + QStringLiteral(" --file-forwarding ") + id + QStringLiteral(" @@u %U @@\nX-Flatpak=") +
                       id + QLatin1Char('\n'));
    };
    flatpak(root + QStringLiteral("var/lib/flatpak"), QStringLiteral("com.spotify.Client"), QStringLiteral("Spotify"),
            QStringLiteral("spotify"), QStringLiteral("1.2.31"));
    flatpak(root + QStringLiteral("var/lib/flatpak"), QStringLiteral("org.signal.Signal"), QStringLiteral("Signal"),
            QStringLiteral("signal-desktop"), QStringLiteral("7.0.0"));
    flatpak(QStringLiteral(".local/share/flatpak"), QStringLiteral("md.obsidian.Obsidian"), QStringLiteral("Obsidian"),
            QStringLiteral("obsidian.sh"), QStringLiteral("1.5.3"));
    home.writeFile(root + QStringLiteral("var/lib/snapd/snaps/slack_123.snap"), 100);
    home.writeFile(root + QStringLiteral("snap/slack/123/usr/lib/slack/slack"), 7000);
    writeEntry(root + QStringLiteral("var/lib/snapd/desktop/applications/slack_slack.desktop"),
               QStringLiteral("Name=Slack\nExec=env BAMF_DESKTOP_FILE_HINT=/var/lib/snapd/desktop/applications/"
                              "slack_slack.desktop /snap/bin/slack %U\nX-SnapInstanceName=slack\n"));

    // The user's: an integrated AppImage with its icons, a bare one, a program of their own,
    // an entry that hides the system's VLC and one that renames the system's editor.
    home.writeFile(QStringLiteral("Applications/Joplin-2.13.4.AppImage"),
                   SyntheticApps::elf(SyntheticApps::elfX86_64) + QByteArray(20000, 'j'));
    writeEntry(QStringLiteral(".local/share/applications/appimagekit-joplin.desktop"),
               QStringLiteral("Name=Joplin\nExec=\"") + homePath +
                   QStringLiteral("/Applications/Joplin-2.13.4.AppImage\" %u\nIcon=appimagekit-joplin\n"
                                  "StartupWMClass=Joplin\nX-AppImage-Version=2.13.4\n"));
    home.writeFile(QStringLiteral(".local/share/icons/hicolor/256x256/apps/appimagekit-joplin.png"), 3000);
    home.writeFile(QStringLiteral(".local/share/icons/hicolor/128x128/apps/appimagekit-joplin.png"), 1000);
    home.writeFile(QStringLiteral("Downloads/Bitwarden-2024.1.0-x86_64.AppImage"), 9000);
    home.writeFile(QStringLiteral(".local/bin/mytool"), 400);
    writeEntry(QStringLiteral(".local/share/applications/mytool.desktop"),
               QStringLiteral("Name=My Tool\nExec=") + homePath + QStringLiteral("/.local/bin/mytool\n"));
    writeEntry(QStringLiteral(".local/share/applications/vlc.desktop"), QStringLiteral("Name=VLC\nHidden=true\n"));
    writeEntry(QStringLiteral(".local/share/applications/org.gnome.TextEditor.desktop"),
               QStringLiteral("Name=My Editor\nExec=/usr/bin/gnome-text-editor %U\n"));

    for (const char* folder : ownedFolders) {
        home.writeFile(QString::fromLatin1(folder) + QStringLiteral("/data"), 500);
        m_owned.append(QString::fromLatin1(folder));
    }
    for (const char* file : ownedFiles) {
        home.writeFile(QString::fromLatin1(file), 200);
        m_owned.append(QString::fromLatin1(file));
    }
    const auto autostart = [&](const QString& name, const QString& exec) {
        writeEntry(QStringLiteral(".config/autostart/") + name,
                   QStringLiteral("Name=") + name + QStringLiteral("\nExec=") + exec + QLatin1Char('\n'));
    };
    autostart(QStringLiteral("keepassxc.desktop"), QStringLiteral("keepassxc --minimized"));
    autostart(QStringLiteral("mytool.desktop"), homePath + QStringLiteral("/.local/bin/mytool"));
    autostart(QStringLiteral("Joplin.desktop"), homePath + QStringLiteral("/Applications/Joplin-2.13.4.AppImage"));
    m_owned << QStringLiteral(".config/autostart") << QStringLiteral(".config/autostart/keepassxc.desktop")
            << QStringLiteral(".config/autostart/mytool.desktop") << QStringLiteral(".config/autostart/Joplin.desktop");

    // What programs that are gone left behind.
    const RiskTier review = RiskTier::reviewRequired;
    const RiskTier safe = RiskTier::safeToDelete;
    for (const auto& [path, tier] : std::initializer_list<std::pair<const char*, RiskTier>>{
             {".var/app/com.discordapp.Discord", review},
             {".config/Atom", review},
             {".cache/atom", safe},
             {".config/Etcher", review},
             {".cache/etcher", safe},
             {".cache/org.example.OldViewer", safe},
             {".local/share/gedit", review},
             {".config/gedit", review},
             {".local/state/oldplayer", review},
             {".local/share/com.example.Gone", review},
         }) {
        home.writeFile(QString::fromLatin1(path) + QStringLiteral("/data"), 700);
        m_leftovers.push_back({QString::fromLatin1(path), tier});
    }
    home.writeFile(QStringLiteral(".var/app/com.discordapp.Discord/cache/blob"), 900);
    home.writeFile(QStringLiteral(".config/oldtermrc"), 300);
    m_leftovers.push_back({QStringLiteral(".config/oldtermrc"), review});
    autostart(QStringLiteral("oldsync.desktop"), QStringLiteral("oldsync-daemon --background"));
    m_leftovers.push_back({QStringLiteral(".config/autostart/oldsync.desktop"), review});
}

SoftwareRoot SyntheticLinuxSoftware::root() const
{
    return SoftwareRoot::below(rootPath());
}

} // namespace kestrow::test
