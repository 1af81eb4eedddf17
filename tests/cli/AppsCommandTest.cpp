#include "KestrowProcess.h"
#include "SyntheticApps.h"
#include "TestHome.h"

#include "AppLookup.h"
#include "CommandLine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace kestrow;
using namespace kestrow::test;

TEST(AppsCommand, ListsTheApplicationsOfTheGivenFoldersAsATableOrJson)
{
    TestHome home;
    const QString widget = home.writeFile(QStringLiteral("Apps/Widget-3.2.AppImage"),
                                          SyntheticApps::elf(SyntheticApps::elfX86_64) + QByteArray(100000, 'w'));
    home.writeFile(QStringLiteral("Apps/com.acme.widget.desktop"),
                   (QStringLiteral("[Desktop Entry]\nType=Application\nName=Widget\nX-AppImage-Version=3.2\nExec=") +
                    widget + QLatin1Char('\n'))
                       .toUtf8());
    home.writeFile(QStringLiteral("More/bare.AppImage"), 100);
    home.writeFile(QStringLiteral("Applications/Ignored.AppImage"), 100);
    home.makeDirectory(QStringLiteral("root"));
    const QStringList where{QStringLiteral("--home"),         home.path(),
                            QStringLiteral("--applications"), home.path(QStringLiteral("Apps")),
                            QStringLiteral("--applications"), home.path(QStringLiteral("More")),
                            QStringLiteral("--system-root"),  home.path(QStringLiteral("root"))};

    const KestrowRun table = runKestrow(QStringList{QStringLiteral("apps"), QStringLiteral("list")} + where);
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    const QStringList lines = table.out.split(QLatin1Char('\n'));
    ASSERT_GE(lines.size(), 5);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("NAME  ")));
    EXPECT_TRUE(lines[0].contains(QStringLiteral("ARCHITECTURE")));
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("bare    Unknown")));
    EXPECT_TRUE(lines[1].endsWith(QStringLiteral("Unknown       no")));
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("Widget  3.2")));
    EXPECT_TRUE(lines[2].endsWith(QStringLiteral("Intel 64-bit  no")));
    EXPECT_TRUE(lines[4].startsWith(QStringLiteral("2 applications, ")));
    EXPECT_TRUE(table.err.isEmpty()); // no progress line off a terminal

    const KestrowRun json =
        runKestrow(QStringList{QStringLiteral("apps"), QStringLiteral("list"), QStringLiteral("--json")} + where);
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    const QJsonArray apps = QJsonDocument::fromJson(json.out.toUtf8()).array();
    ASSERT_EQ(apps.size(), 2);
    EXPECT_EQ(apps[1][QStringLiteral("bundleIdentifier")].toString(), QStringLiteral("com.acme.widget"));
    EXPECT_EQ(apps[1][QStringLiteral("architecture")].toString(), QStringLiteral("x86_64"));
    EXPECT_EQ(apps[0][QStringLiteral("bundleIdentifier")].toString(), QStringLiteral("bare"));

    const KestrowRun missing = runKestrow({QStringLiteral("apps"), QStringLiteral("list"),
                                           QStringLiteral("--applications"), home.path(QStringLiteral("nowhere"))});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_TRUE(missing.err.contains(QStringLiteral("no such folder")));
    EXPECT_EQ(runKestrow({QStringLiteral("apps")}).exitCode, 2);
}

TEST(AppLookup, IdentifierThenCaseThenNameAndSeveralAreRefused)
{
    const auto app = [](const char* id, const char* name) {
        return InstalledApp{.bundleIdentifier = QString::fromLatin1(id),
                            .bundlePath =
                                QStringLiteral("/Applications/") + QString::fromLatin1(name) + QStringLiteral(".app"),
                            .displayName = QString::fromLatin1(name)};
    };
    const cli::AppLookup lookup({app("com.acme.Widget", "Widget"), app("com.acme.widget", "Widget Lite"),
                                 app("org.other.tool", "com.ACME.widget"), app("io.x.one", "Twin"),
                                 app("io.x.two", "twin")});
    EXPECT_EQ(lookup.find(QStringLiteral("com.acme.widget")).displayName, QStringLiteral("Widget Lite"));
    EXPECT_EQ(lookup.find(QStringLiteral("IO.X.ONE")).displayName, QStringLiteral("Twin"));
    EXPECT_EQ(lookup.find(QStringLiteral("widget lite")).bundleIdentifier, QStringLiteral("com.acme.widget"));
    const auto refusal = [&lookup](const char* given) -> std::string {
        try {
            (void)lookup.find(QString::fromLatin1(given));
        } catch (const cli::UsageError& error) {
            return error.what();
        }
        return {};
    };
    // Two identifiers equal ignoring case: neither is picked, and no display name is tried.
    EXPECT_EQ(refusal("COM.ACME.WIDGET"),
              "'COM.ACME.WIDGET' names 2 applications; give the identifier or the path's folder with --applications "
              "to pick one:\n  Widget (com.acme.Widget) at /Applications/Widget.app\n  Widget Lite (com.acme.widget) "
              "at /Applications/Widget Lite.app");
    EXPECT_NE(refusal("TWIN").find("names 2 applications"), std::string::npos);
    EXPECT_NE(refusal("Gadget").find("no installed application is named or identified 'Gadget'"), std::string::npos);
}
