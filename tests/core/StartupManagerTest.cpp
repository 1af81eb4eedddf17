#include "system/StartupManager.h"
#include "system/StartupError.h"

#include "PropertyListFile.h"
#include "TestHome.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <cerrno>

using namespace kestrow;
using test::PropertyListFile;
using test::TestHome;

namespace {

// The user's home, and a second tree that stands for the machine's folders.
struct Machine {
    TestHome home;
    TestHome root;

    [[nodiscard]] StartupLocations locations() const
    {
        return {
            .home = home.path(),
            .launchdRoot = root.path(),
            .configDirectories = {root.path(QStringLiteral("etc/xdg")), root.path(QStringLiteral("usr/xdg"))},
            .userUnitDirectories = {root.path(QStringLiteral("etc/systemd/user")),
                                    root.path(QStringLiteral("usr/lib/systemd/user"))},
            .systemUnitDirectories = {root.path(QStringLiteral("etc/systemd/system"))},
            .executableSearchPath = {root.path(QStringLiteral("bin"))},
            .launchctl = root.path(QStringLiteral("bin/launchctl")),
            .systemctl = root.path(QStringLiteral("bin/systemctl")),
        };
    }
    QString program(const QString& name) const { return root.writeFile(QStringLiteral("bin/") + name, 1); }
};

// Stands in for launchctl and systemctl: answers the listings with set JSON and records the
// rest, with whether the file a launchctl call names existed at that moment.
class FakeRunner final : public CommandRunner {
public:
    QByteArray userUnits = "[]";
    QByteArray systemServices = "[]";
    CommandResult change;
    bool launchFails = false;
    mutable std::vector<ChildCommand> ran;
    mutable std::vector<bool> fileExisted;
    mutable int listings = 0;

    QByteArray run(const ChildCommand& command) const override
    {
        if (launchFails)
            throw ProcessLaunchError(command.executable, QStringLiteral("Exec format error"));
        ran.push_back(command);
        fileExisted.push_back(QFile::exists(command.arguments.last()));
        return {};
    }
    CommandResult runWithStatus(const ChildCommand& command) const override
    {
        if (command.arguments.contains(QStringLiteral("list-unit-files"))) {
            ++listings;
            return {0, command.arguments.first() == QStringLiteral("--user") ? userUnits : systemServices, {}};
        }
        ran.push_back(command);
        return change;
    }
};

class RefusingRename final : public SystemCalls {
public:
    int renameAt(int, const char*, int, const char*, bool) const override
    {
        errno = EACCES;
        return -1;
    }
};

QByteArray plist(const QVariantMap& job, PropertyListFile::Format format = PropertyListFile::Format::xml)
{
    return PropertyListFile::encode(job, format);
}

const StartupItem& named(const std::vector<StartupItem>& items, const QString& label)
{
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const StartupItem& item) { return item.label == label; });
    if (found == items.end())
        throw std::runtime_error("not listed: " + label.toStdString());
    return *found;
}

QStringList labels(const std::vector<StartupItem>& items)
{
    QStringList labels;
    for (const StartupItem& item : items)
        labels.append(item.label);
    return labels;
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

} // namespace

TEST(StartupManager, ListsLaunchdJobsWithTheirImpactStatusAndNames)
{
    const Machine machine;
    const QString tool = machine.program(QStringLiteral("tool"));
    const QString agents = QStringLiteral("Library/LaunchAgents/");
    const auto job = [&](const QString& name, const QVariantMap& content) {
        machine.home.writeFile(agents + name, plist(content));
    };
    job(QStringLiteral("a.plist"), {{QStringLiteral("Label"), QStringLiteral("com.acme.keeper")},
                                    {QStringLiteral("RunAtLoad"), true},
                                    {QStringLiteral("KeepAlive"), false},
                                    {QStringLiteral("Program"), tool}});
    job(QStringLiteral("b.plist"), {{QStringLiteral("Label"), QStringLiteral("com.acme.plain")},
                                    {QStringLiteral("ProgramArguments"), QVariantList{tool, QStringLiteral("-v")}}});
    job(QStringLiteral("c.plist.disabled"),
        {{QStringLiteral("Label"), QStringLiteral("com.acme.agent")}, {QStringLiteral("RunAtLoad"), true}});
    job(QStringLiteral("gone.plist.disabled"), {{QStringLiteral("Label"), QStringLiteral("com.acme.gone")},
                                                {QStringLiteral("Program"), QStringLiteral("/nowhere/gone")}});
    job(QStringLiteral("com.acme.nolabel.plist"), {{QStringLiteral("RunAtLoad"), false}});
    job(QStringLiteral("x.plist.disabled"), {});
    machine.home.writeFile(agents + QStringLiteral("broken.plist"), QByteArray("<plist><dict><key>"));
    machine.home.writeFile(agents + QStringLiteral("array.plist"),
                           PropertyListFile::encode(QVariantList{QStringLiteral("x")}, PropertyListFile::Format::xml));
    machine.home.writeFile(agents + QStringLiteral("notes.txt"),
                           plist({{QStringLiteral("Label"), QStringLiteral("no")}}));
    machine.root.writeFile(
        QStringLiteral("Library/LaunchAgents/s.plist"),
        plist({{QStringLiteral("Label"), QStringLiteral("org.site.helper")}, {QStringLiteral("RunAtLoad"), true}},
              PropertyListFile::Format::binary));
    machine.root.writeFile(QStringLiteral("Library/LaunchDaemons/d.plist"),
                           plist({{QStringLiteral("Label"), QStringLiteral("org.site.daemon")},
                                  {QStringLiteral("KeepAlive"), QVariantMap{{QStringLiteral("Crashed"), true}}}}));

    const std::vector<StartupItem> items = StartupManager(machine.locations()).listItems();
    EXPECT_EQ(labels(items), (QStringList{QStringLiteral("com.acme.keeper"), QStringLiteral("org.site.daemon"),
                                          QStringLiteral("com.acme.agent"), QStringLiteral("org.site.helper"),
                                          QStringLiteral("com.acme.plain"), QStringLiteral("com.acme.nolabel"),
                                          QStringLiteral("com.acme.gone"), QStringLiteral("x.plist")}));
    const StartupItem& keeper = named(items, QStringLiteral("com.acme.keeper"));
    EXPECT_EQ(keeper.impact, StartupImpact::high); // KeepAlive counts whatever its value
    EXPECT_EQ(keeper.status, StartupStatus::enabled);
    EXPECT_EQ(keeper.name, QStringLiteral("keeper"));
    EXPECT_EQ(named(items, QStringLiteral("com.acme.plain")).impact, StartupImpact::low);
    EXPECT_EQ(named(items, QStringLiteral("com.acme.plain")).targetExecutablePath, tool);
    const StartupItem& agent = named(items, QStringLiteral("com.acme.agent"));
    EXPECT_EQ(agent.status, StartupStatus::disabled);
    EXPECT_FALSE(agent.isEnabled);
    EXPECT_EQ(agent.name, QStringLiteral("agent"));
    EXPECT_FALSE(agent.targetExecutablePath);
    const StartupItem& gone = named(items, QStringLiteral("com.acme.gone"));
    EXPECT_EQ(gone.status, StartupStatus::orphan);
    EXPECT_FALSE(gone.isEnabled);
    EXPECT_EQ(named(items, QStringLiteral("com.acme.nolabel")).name, QStringLiteral("nolabel"));
    EXPECT_EQ(named(items, QStringLiteral("x.plist")).name, QStringLiteral("plist"));
    const StartupItem& daemon = named(items, QStringLiteral("org.site.daemon"));
    EXPECT_EQ(daemon.type, StartupType::systemLaunchDaemon);
    EXPECT_TRUE(daemon.requiresAdministrator);
    EXPECT_EQ(named(items, QStringLiteral("org.site.helper")).type, StartupType::systemLaunchAgent);
    EXPECT_FALSE(keeper.requiresAdministrator);

    const JsonValue json = agent.toJson();
    QStringList keys;
    for (const JsonValue::Member& member : json.toObject())
        keys.append(member.first);
    EXPECT_EQ(keys.join(QLatin1Char(',')),
              QStringLiteral("id,name,label,type,fileURL,isEnabled,isRunning,requiresAdministrator,status,impact,"
                             "bundleIdentifier"));
    EXPECT_EQ(json.find(QStringLiteral("type"))->toString(), QStringLiteral("USER_LAUNCH_AGENT"));
    EXPECT_EQ(json.find(QStringLiteral("fileURL"))->toString(),
              QStringLiteral("file://") + machine.home.path() +
                  QStringLiteral("/Library/LaunchAgents/c.plist.disabled"));
    EXPECT_EQ(json.find(QStringLiteral("impact"))->toString(), QStringLiteral("MEDIUM"));
}

TEST(StartupManager, TogglesALaunchdJobByRenamingAroundLaunchctl)
{
    const Machine machine;
    machine.program(QStringLiteral("launchctl"));
    const QString path = machine.home.writeFile(QStringLiteral("Library/LaunchAgents/a.plist"),
                                                plist({{QStringLiteral("Label"), QStringLiteral("com.acme.a")}}));
    const auto runner = std::make_shared<FakeRunner>();
    const StartupManager manager(machine.locations(), std::make_shared<FileManager>(), runner);
    StartupItem item = manager.listItems().at(0);

    EXPECT_EQ(manager.toggle(item, true), path); // already enabled: nothing runs
    EXPECT_TRUE(runner->ran.empty());

    const QString disabled = path + QStringLiteral(".disabled");
    EXPECT_EQ(manager.toggle(item, false), disabled);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(QFile::exists(disabled));
    item = manager.listItems().at(0);
    EXPECT_EQ(manager.toggle(item, false), disabled);
    EXPECT_EQ(manager.toggle(item, true), path);
    const QString launchctl = machine.locations().launchctl;
    EXPECT_EQ(runner->ran, (std::vector<ChildCommand>{
                               {launchctl, {QStringLiteral("unload"), QStringLiteral("-w"), path}},
                               {launchctl, {QStringLiteral("load"), QStringLiteral("-w"), path}},
                           }));
    // Unloaded while the plain name still held the file, loaded once it held it again.
    EXPECT_EQ(runner->fileExisted, (std::vector<bool>{true, true}));

    // A launchctl that cannot start changes nothing about the move; a missing one is not run.
    runner->launchFails = true;
    item = manager.listItems().at(0);
    EXPECT_EQ(manager.toggle(item, false), disabled);
    QFile::remove(machine.locations().launchctl);
    runner->launchFails = false;
    EXPECT_EQ(manager.toggle(manager.listItems().at(0), true), path);
    EXPECT_EQ(runner->ran.size(), 2u);

    // The move's refusal is the toggle's failure, in the system's words; nothing moved.
    const StartupManager refused(machine.locations(), std::make_shared<FileManager>(std::make_shared<RefusingRename>()),
                                 runner);
    try {
        (void)refused.toggle(item, false);
        ADD_FAILURE() << "the move was refused";
    } catch (const StartupError& error) {
        EXPECT_EQ(error.description(), path + QStringLiteral(": Permission denied"));
    }
    EXPECT_TRUE(QFile::exists(path));
    QFile::remove(path);
    EXPECT_THROW((void)manager.toggle(item, false), StartupError);
}

TEST(StartupManager, ListsAutostartEntriesUserOverSystem)
{
    const Machine machine;
    machine.program(QStringLiteral("own-tool"));
    const QString absolute = machine.program(QStringLiteral("absolute"));
    const auto user = [&](const QString& name, const QByteArray& content) {
        machine.home.writeFile(QStringLiteral(".config/autostart/") + name, content);
    };
    const auto system = [&](const QString& folder, const QString& name, const QByteArray& content) {
        machine.root.writeFile(folder + QStringLiteral("/autostart/") + name, content);
    };
    user(QStringLiteral("own.desktop"), "[Desktop Entry]\nName=Own\nExec=own-tool --start\n");
    user(QStringLiteral("hidden.desktop"), "[Desktop Entry]\nExec=" + absolute.toUtf8() + "\nHidden=true\n");
    user(QStringLiteral("off.desktop"), "[Desktop Entry]\nExec=own-tool\nX-GNOME-Autostart-enabled=false\n");
    user(QStringLiteral("missing.desktop"), "[Desktop Entry]\nExec=\"not there\" --flag\n");
    user(QStringLiteral("restart.desktop"), "[Desktop Entry]\nExec=own-tool\nX-GNOME-AutoRestart=true\n");
    user(QStringLiteral("override.desktop"), "[Desktop Entry]\nName=Mine\nExec=own-tool\n");
    user(QStringLiteral("masked.desktop"), "[Desktop Entry]\nHidden=true\n");
    user(QStringLiteral("notes.txt"), "[Desktop Entry]\nExec=own-tool\n");
    user(QStringLiteral("nogroup.desktop"), "[Something Else]\nExec=own-tool\n");
    system(QStringLiteral("etc/xdg"), QStringLiteral("override.desktop"), "[Desktop Entry]\nName=Theirs\nExec=x\n");
    system(QStringLiteral("etc/xdg"), QStringLiteral("masked.desktop"), "[Desktop Entry]\nExec=own-tool\n");
    system(QStringLiteral("etc/xdg"), QStringLiteral("sys.desktop"), "[Desktop Entry]\nName=First\nExec=own-tool\n");
    system(QStringLiteral("usr/xdg"), QStringLiteral("sys.desktop"), "[Desktop Entry]\nName=Second\nExec=own-tool\n");

    const std::vector<StartupItem> items = StartupManager(machine.locations()).listItems();
    EXPECT_EQ(labels(items), (QStringList{QStringLiteral("restart"), QStringLiteral("hidden"),
                                          QStringLiteral("missing"), QStringLiteral("off"), QStringLiteral("override"),
                                          QStringLiteral("own"), QStringLiteral("masked"), QStringLiteral("sys")}));
    const StartupItem& own = named(items, QStringLiteral("own"));
    EXPECT_EQ(own.name, QStringLiteral("Own"));
    EXPECT_EQ(own.type, StartupType::userLaunchAgent);
    EXPECT_EQ(own.status, StartupStatus::enabled);
    EXPECT_EQ(own.impact, StartupImpact::medium);
    EXPECT_EQ(own.targetExecutablePath, QStringLiteral("own-tool"));
    EXPECT_EQ(named(items, QStringLiteral("hidden")).status, StartupStatus::disabled);
    EXPECT_EQ(named(items, QStringLiteral("off")).status, StartupStatus::disabled);
    EXPECT_EQ(named(items, QStringLiteral("missing")).status, StartupStatus::orphan);
    EXPECT_EQ(named(items, QStringLiteral("missing")).targetExecutablePath, QStringLiteral("not there"));
    EXPECT_EQ(named(items, QStringLiteral("restart")).impact, StartupImpact::high);
    EXPECT_EQ(named(items, QStringLiteral("override")).name, QStringLiteral("Mine"));
    const StartupItem& masked = named(items, QStringLiteral("masked"));
    EXPECT_EQ(masked.type, StartupType::systemLaunchAgent);
    EXPECT_EQ(masked.status, StartupStatus::disabled);
    EXPECT_TRUE(masked.requiresAdministrator);
    EXPECT_EQ(masked.fileURL, machine.root.path(QStringLiteral("etc/xdg/autostart/masked.desktop")));
    EXPECT_EQ(named(items, QStringLiteral("sys")).name, QStringLiteral("First"));
}

TEST(StartupManager, AutostartToggleRestoresTheUsersBytes)
{
    const Machine machine;
    machine.program(QStringLiteral("tool"));
    const QByteArray original = "# started by hand\n[Desktop Entry]\nName=Tool\nName[de]=Werkzeug\nExec=tool\n\n"
                                "[Desktop Action Quit]\nExec=tool --quit";
    const QString userFile = machine.home.writeFile(QStringLiteral(".config/autostart/tool.desktop"), original);
    const QByteArray systemOriginal = "[Desktop Entry]\nExec=tool\n";
    const QString systemFile = machine.root.writeFile(QStringLiteral("etc/xdg/autostart/sys.desktop"), systemOriginal);
    const StartupManager manager(machine.locations());

    EXPECT_EQ(manager.toggle(named(manager.listItems(), QStringLiteral("tool")), false), userFile);
    EXPECT_TRUE(contents(userFile).contains("Exec=tool\nHidden=true\n"));
    EXPECT_EQ(named(manager.listItems(), QStringLiteral("tool")).status, StartupStatus::disabled);
    EXPECT_EQ(manager.toggle(named(manager.listItems(), QStringLiteral("tool")), true), userFile);
    EXPECT_EQ(contents(userFile), original);

    const QString hidingFile = machine.home.path(QStringLiteral(".config/autostart/sys.desktop"));
    EXPECT_EQ(manager.toggle(named(manager.listItems(), QStringLiteral("sys")), false), hidingFile);
    EXPECT_EQ(contents(hidingFile), QByteArray("[Desktop Entry]\nHidden=true\n"));
    const StartupItem hidden = named(manager.listItems(), QStringLiteral("sys"));
    EXPECT_EQ(hidden.status, StartupStatus::disabled);
    EXPECT_EQ(manager.toggle(hidden, false), systemFile);
    EXPECT_EQ(manager.toggle(hidden, true), hidingFile);
    EXPECT_FALSE(QFile::exists(hidingFile));
    EXPECT_EQ(contents(systemFile), systemOriginal);
    EXPECT_EQ(named(manager.listItems(), QStringLiteral("sys")).status, StartupStatus::enabled);

    // A linked entry is neither written through nor replaced.
    const QString target = machine.root.writeFile(QStringLiteral("share/linked.desktop"), systemOriginal);
    machine.home.makeSymbolicLink(QStringLiteral(".config/autostart/linked.desktop"), target);
    EXPECT_THROW((void)manager.toggle(named(manager.listItems(), QStringLiteral("linked")), false), StartupError);
    EXPECT_EQ(contents(target), systemOriginal);
}

TEST(StartupManager, ListsAndTogglesSystemdUnitsThroughSystemctl)
{
    const Machine machine;
    const QString agent = machine.program(QStringLiteral("agent"));
    const auto runner = std::make_shared<FakeRunner>();
    const StartupManager manager(machine.locations(), std::make_shared<FileManager>(), runner);
    EXPECT_TRUE(manager.listItems().empty()); // no systemctl, nothing asked
    EXPECT_EQ(runner->listings, 0);

    machine.program(QStringLiteral("systemctl"));
    const QString sync = machine.home.writeFile(QStringLiteral(".config/systemd/user/sync.service"),
                                                "[Service]\nExecStart=-" + agent.toUtf8() +
                                                    " --watch\nRestart=always\n[Install]\nWantedBy=default.target\n");
    machine.root.writeFile(QStringLiteral("usr/lib/systemd/user/idle.service"),
                           "[Service]\nExecStart=/nowhere/idle \\\n  --slow\n[Install]\nWantedBy=sockets.target "
                           "default.target\n");
    machine.root.writeFile(QStringLiteral("usr/lib/systemd/user/pkg.socket"), "[Socket]\nListenStream=%t/pkg\n");
    machine.root.writeFile(QStringLiteral("usr/lib/systemd/user/fixed.service"), "[Service]\nExecStart=agent\n");
    machine.root.writeFile(QStringLiteral("etc/systemd/system/db.service"),
                           "[Service]\nExecStart=agent\n[Install]\nWantedBy=multi-user.target\n");
    runner->userUnits = R"([{"unit_file":"sync.service","state":"enabled","preset":null},
        {"unit_file":"idle.service","state":"disabled","preset":"enabled"},
        {"unit_file":"pkg.socket","state":"enabled-runtime","preset":null},
        {"unit_file":"fixed.service","state":"static","preset":null},
        {"unit_file":"made.service","state":"generated","preset":null},
        {"unit_file":"elsewhere.service","state":"enabled","preset":null}])";
    runner->systemServices = R"([{"unit_file":"db.service","state":"enabled","preset":"enabled"}])";

    const std::vector<StartupItem> items = manager.listItems();
    EXPECT_EQ(labels(items), (QStringList{QStringLiteral("sync.service"), QStringLiteral("idle.service"),
                                          QStringLiteral("db.service"), QStringLiteral("pkg.socket")}));
    const StartupItem& syncItem = named(items, QStringLiteral("sync.service"));
    EXPECT_EQ(syncItem.name, QStringLiteral("sync"));
    EXPECT_EQ(syncItem.type, StartupType::userLaunchAgent);
    EXPECT_EQ(syncItem.targetExecutablePath, agent);
    EXPECT_EQ(syncItem.impact, StartupImpact::high);
    EXPECT_EQ(syncItem.status, StartupStatus::enabled);
    const StartupItem& idle = named(items, QStringLiteral("idle.service"));
    EXPECT_EQ(idle.type, StartupType::systemLaunchAgent);
    EXPECT_EQ(idle.impact, StartupImpact::medium);
    EXPECT_EQ(idle.status, StartupStatus::orphan);
    EXPECT_FALSE(idle.isEnabled);
    EXPECT_EQ(named(items, QStringLiteral("pkg.socket")).status, StartupStatus::enabled);
    EXPECT_FALSE(named(items, QStringLiteral("pkg.socket")).targetExecutablePath);
    const StartupItem& db = named(items, QStringLiteral("db.service"));
    EXPECT_EQ(db.type, StartupType::systemLaunchDaemon);
    EXPECT_EQ(db.impact, StartupImpact::medium);
    EXPECT_EQ(db.targetExecutablePath, QStringLiteral("agent"));
    EXPECT_TRUE(db.requiresAdministrator);

    const QString systemctl = machine.locations().systemctl;
    EXPECT_EQ(manager.toggle(syncItem, true), sync);
    EXPECT_EQ(manager.toggle(syncItem, false), sync);
    EXPECT_EQ(runner->ran,
              (std::vector<ChildCommand>{
                  {systemctl, {QStringLiteral("--user"), QStringLiteral("disable"), QStringLiteral("sync.service")}}}));
    runner->change = {1, "Failed to enable unit: Unit file idle.service is masked.\n", "\n"};
    try {
        (void)manager.toggle(idle, true);
        ADD_FAILURE() << "systemctl refused";
    } catch (const StartupError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("`systemctl --user enable idle.service` failed: Failed to "
                                                      "enable unit: Unit file idle.service is masked."));
    }
    try {
        (void)manager.toggle(db, false);
        ADD_FAILURE() << "a system service is the administrator's";
    } catch (const StartupError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("db.service is a system service; only an administrator can "
                                                      "change it: run `sudo systemctl disable db.service`."));
    }
    EXPECT_EQ(runner->ran.size(), 2u);

    runner->userUnits = "Failed to connect to bus: No medium found";
    EXPECT_EQ(labels(manager.listItems()), QStringList{QStringLiteral("db.service")});
}
