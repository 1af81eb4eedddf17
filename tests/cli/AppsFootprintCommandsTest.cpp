#include "KestrowProcess.h"
#include "SyntheticApps.h"
#include "TestHome.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace kestrow;
using namespace kestrow::test;

namespace {

// An AppImage in Apps/ with its entry and a cache, a cache and a settings folder no installed
// program owns, and an empty system root.
QStringList widgetHome(const TestHome& home)
{
    const QString image = home.writeFile(QStringLiteral("Apps/Acme-Widget-1.0.AppImage"), 2000);
    home.writeFile(
        QStringLiteral("Apps/com.acme.widget.desktop"),
        (QStringLiteral("[Desktop Entry]\nType=Application\nName=Acme Widget\nExec=") + image + QLatin1Char('\n'))
            .toUtf8());
    home.writeFile(QStringLiteral(".cache/com.acme.widget/blob"), 3000);
    home.writeFile(QStringLiteral(".cache/com.acme.gone/x"), 100);
    home.writeFile(QStringLiteral(".config/nodots/x"), 100);
    home.makeDirectory(QStringLiteral("root"));
    return {QStringLiteral("--home"),         home.path(),
            QStringLiteral("--applications"), home.path(QStringLiteral("Apps")),
            QStringLiteral("--system-root"),  home.path(QStringLiteral("root"))};
}

QStringList apps(std::initializer_list<const char*> arguments, const QStringList& where)
{
    QStringList list{QStringLiteral("apps")};
    for (const char* argument : arguments)
        list.append(QString::fromUtf8(argument));
    return list + where;
}

} // namespace

TEST(AppsFootprintCommands, FootprintByNameAsTableAndJson)
{
    TestHome home;
    const QStringList where = widgetHome(home);
    const KestrowRun table = runKestrow(apps({"footprint", "acme widget"}, where));
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    EXPECT_TRUE(table.out.startsWith(QStringLiteral("Acme Widget (com.acme.widget)\n  Application Bundle (.app)")));
    EXPECT_TRUE(table.out.contains(QStringLiteral("Caches  ")));
    EXPECT_TRUE(table.out.contains(QStringLiteral("\n2 items, ")));

    const KestrowRun json = runKestrow(apps({"footprint", "COM.ACME.WIDGET", "--json"}, where));
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    const QJsonObject footprint = QJsonDocument::fromJson(json.out.toUtf8()).object();
    EXPECT_EQ(footprint[QStringLiteral("totalItemCount")].toInt(), 2);
    EXPECT_EQ(footprint[QStringLiteral("dependencies")].toArray().at(1).toObject()[QStringLiteral("location")],
              QStringLiteral("CACHES"));
    EXPECT_TRUE(footprint[QStringLiteral("canUninstall")].toBool());

    EXPECT_EQ(runKestrow(apps({"footprint", "Gadget"}, where)).exitCode, 2);
}

TEST(AppsFootprintCommands, UninstallNeedsAConfirmationAndMovesTheApplicationWithItsData)
{
    TestHome home;
    const QStringList where = widgetHome(home);
    const QString bundle = home.path(QStringLiteral("Apps/Acme-Widget-1.0.AppImage"));
    const QString cache = home.path(QStringLiteral(".cache/com.acme.widget"));

    const KestrowRun unconfirmed = runKestrow(apps({"uninstall", "Acme Widget"}, where));
    EXPECT_EQ(unconfirmed.exitCode, 2);
    EXPECT_TRUE(unconfirmed.err.contains(QStringLiteral("--yes")));

    const KestrowRun dry = runKestrow(apps({"uninstall", "Acme Widget", "--dry-run", "--keep-app", "--json"}, where));
    ASSERT_EQ(dry.exitCode, 0) << dry.err.toStdString();
    const QJsonObject summary = QJsonDocument::fromJson(dry.out.toUtf8()).object();
    EXPECT_TRUE(summary[QStringLiteral("dryRun")].toBool());
    EXPECT_EQ(summary[QStringLiteral("deletedURLs")].toArray().size(), 1);
    EXPECT_TRUE(QFile::exists(cache));

    const KestrowRun done = runKestrow(apps({"uninstall", "com.acme.widget", "--yes"}, where));
    ASSERT_EQ(done.exitCode, 0) << done.err.toStdString();
    EXPECT_TRUE(done.out.contains(QStringLiteral("Removed: ") + bundle));
    EXPECT_FALSE(QFile::exists(bundle));
    EXPECT_FALSE(QFile::exists(cache));
    EXPECT_TRUE(QFile::exists(home.trashFilesFolder() + QStringLiteral("/com.acme.widget")));
    QFile log(home.path(QStringLiteral(".kestrow/audit.jsonl")));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("\"client\":\"uninstaller\""));
}

TEST(AppsFootprintCommands, LeftoversListedByPlaceAndOnlySafeOnesCleaned)
{
    TestHome home;
    const QStringList where = widgetHome(home);
    const KestrowRun listed = runKestrow(apps({"leftovers"}, where));
    ASSERT_EQ(listed.exitCode, 0) << listed.err.toStdString();
    EXPECT_TRUE(listed.out.startsWith(QStringLiteral("Preferences (.plist):\n  0.75  Review Required  ")));
    EXPECT_TRUE(listed.out.contains(QStringLiteral("\nCaches:\n  1.00  Safe to Clean  ")));
    EXPECT_FALSE(listed.out.contains(QStringLiteral("com.acme.widget")));

    const KestrowRun json = runKestrow(apps({"leftovers", "--json"}, where));
    EXPECT_EQ(QJsonDocument::fromJson(json.out.toUtf8()).array().size(), 2);

    EXPECT_EQ(runKestrow(apps({"leftovers", "--clean"}, where)).exitCode, 2);
    const KestrowRun cleaned = runKestrow(apps({"leftovers", "--clean", "--yes"}, where));
    ASSERT_EQ(cleaned.exitCode, 0) << cleaned.err.toStdString();
    EXPECT_FALSE(QFile::exists(home.path(QStringLiteral(".cache/com.acme.gone"))));
    EXPECT_TRUE(QFile::exists(home.path(QStringLiteral(".config/nodots"))));

    // A fresh home holds nothing to report, whatever the system has.
    TestHome fresh;
    const KestrowRun none =
        runKestrow({QStringLiteral("apps"), QStringLiteral("leftovers"), QStringLiteral("--home"), fresh.path(),
                    QStringLiteral("--system-root"), home.path(QStringLiteral("root"))});
    EXPECT_EQ(none.out,
              QStringLiteral("No leftovers: every item in the XDG folders belongs to an installed program.\n"));
}
