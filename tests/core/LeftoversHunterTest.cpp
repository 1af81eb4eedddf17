#include "TestHome.h"

#include "apps/InstalledAppsIndex.h"
#include "apps/LeftoversHunter.h"
#include "apps/TokenNormalizer.h"
#include "apps/Whitelist.h"
#include "support/JsonWriter.h"
#include "support/KestrowError.h"

#include <gtest/gtest.h>

#include <stop_token>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

InstalledApp installed(const QString& identifier, const QString& name, const QString& bundleFile)
{
    return InstalledApp{.id = QUuid::createUuid(),
                        .bundleIdentifier = identifier,
                        .bundlePath = QStringLiteral("/Applications/") + bundleFile,
                        .displayName = name,
                        .version = QStringLiteral("1")};
}

const InstalledAppsIndex& index()
{
    static const InstalledAppsIndex built({
        installed(QStringLiteral("com.acme.widget"), QStringLiteral("Acme Widget"), QStringLiteral("Widget.app")),
        installed(QStringLiteral("org.tools.Builder7"), QStringLiteral("Build Studio"), QStringLiteral("BStudio.app")),
        installed(QStringLiteral("com.adobe.photoshop.cc"), QStringLiteral("Photoshop"), QStringLiteral("PS.app")),
    });
    return built;
}

std::vector<AppLeftover> scan(const TestHome& home, const std::vector<InstalledApp>& apps)
{
    return LeftoversHunter({.homeURL = home.path(), .host = HostSystem::macOS}).scanForLeftovers(apps);
}

QStringList names(const std::vector<AppLeftover>& leftovers)
{
    QStringList found;
    for (const AppLeftover& leftover : leftovers)
        found.append(leftover.candidateAppName);
    return found;
}

} // namespace

TEST(LeftoversHunterTest, TokenFormsAndWhitelist)
{
    EXPECT_EQ(TokenNormalizer::normalize(QStringLiteral("Foo-Bar 2")), QStringLiteral("foobar2"));
    EXPECT_EQ(TokenNormalizer::stripTrailingDigits(QStringLiteral("app12")), QStringLiteral("app"));
    EXPECT_EQ(TokenNormalizer::stripTrailingDigits(QStringLiteral("123")), QString());
    EXPECT_EQ(TokenNormalizer::tokenize(QStringLiteral("Adobe x Photoshop-Cache")),
              (QStringList{QStringLiteral("adobe"), QStringLiteral("photoshop"), QStringLiteral("cache")}));

    EXPECT_TRUE(Whitelist::isProtected(QStringLiteral("anything"), QStringLiteral("COM.Apple.x")));
    EXPECT_TRUE(Whitelist::isProtected(QStringLiteral("group.com.apple.notes"), std::nullopt));
    for (const char* name : {"Keychain Access", "Docker", "Python", "Helper", "Google Updater"})
        EXPECT_TRUE(Whitelist::isProtected(QString::fromLatin1(name), std::nullopt)) << name;
    EXPECT_FALSE(Whitelist::isProtected(QStringLiteral("com.applesauce.x"), QStringLiteral("com.applesauce.x")));
    EXPECT_FALSE(Whitelist::isProtected(QStringLiteral("Dockerish"), std::nullopt));
}

TEST(LeftoversHunterTest, EachTestOfTheIndexClaimsItsName)
{
    const InstalledAppsIndex& apps = index();
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("COM.ACME.WIDGET")));             // 1
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("group.group.com.acme.widget"))); // 2
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("bstudio")));                     // 3
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("widget2")));                     // 4
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("Build-Studio")));                // 5
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("Build Studio 3")));              // 6
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("com.acme.widget.helper")));      // 7
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("com.acme")));                    // 7, the other way
    EXPECT_TRUE(apps.matchesInstalledApp(QStringLiteral("tools builder studio x")));      // 8: 3 of 3 tokens
    // 2 of 3 tokens of one application is below the share.
    EXPECT_FALSE(apps.matchesInstalledApp(QStringLiteral("adobe photoshop cache")));
    EXPECT_FALSE(apps.matchesInstalledApp(QStringLiteral("com.acme.widgetmaker")));
    EXPECT_FALSE(apps.matchesInstalledApp(QStringLiteral("Gadget")));
}

TEST(LeftoversHunterTest, ReportsOrphansWithTheirConfidenceTierAndReason)
{
    TestHome home;
    home.writeFile(QStringLiteral("Library/Preferences/com.acme.gone.plist"), 300);
    home.writeFile(QStringLiteral("Library/Application Support/Old Tool/state.db"), 2000);
    home.writeFile(QStringLiteral("Library/WebKit/nodots/x"), 10);
    home.writeFile(QStringLiteral("Library/Caches/adobe photoshop cache/x"), 10);
    home.writeFile(QStringLiteral("Library/Group Containers/TEAM.com.gone.app/x"), 10);
    // Never reported: Apple's, whitelisted names, and what installed applications claim.
    for (const char* kept :
         {"Library/Caches/com.apple.something/x", "Library/Group Containers/group.com.apple.x/x",
          "Library/Application Support/Docker/x", "Library/Application Support/Python/x", "Library/Caches/Helper/x",
          "Library/Containers/com.acme.widget.helper/x", "Library/Application Support/widget2/x",
          "Library/Saved Application State/com.acme.widget.savedState/x", "Library/Caches/.hidden/x"})
        home.writeFile(QString::fromLatin1(kept), 10);

    const std::vector<AppLeftover> leftovers = scan(
        home, {installed(QStringLiteral("com.acme.widget"), QStringLiteral("Acme Widget"), QStringLiteral("W.app")),
               installed(QStringLiteral("com.adobe.photoshop"), QStringLiteral("Photoshop"), QStringLiteral("P.app"))});

    ASSERT_EQ(names(leftovers), (QStringList{QStringLiteral("Old Tool"), QStringLiteral("adobe photoshop cache"),
                                             QStringLiteral("com.acme.gone"), QStringLiteral("nodots"),
                                             QStringLiteral("TEAM.com.gone.app")}));
    const AppLeftover& tool = leftovers.at(0);
    EXPECT_EQ(tool.confidence, 0.9);
    EXPECT_EQ(tool.suggestedRiskTier, RiskTier::safeToDelete);
    EXPECT_EQ(tool.orphanReason,
              QStringLiteral("Application Support directory 'Old Tool' has no corresponding installed application."));
    EXPECT_EQ(tool.logicalSizeBytes, 2000);
    EXPECT_FALSE(tool.bundleIdentifier.has_value());
    const AppLeftover& preference = leftovers.at(2);
    EXPECT_EQ(preference.bundleIdentifier, QStringLiteral("com.acme.gone"));
    EXPECT_EQ(preference.confidence, 1.0);
    EXPECT_EQ(preference.orphanReason,
              QStringLiteral("Preferences plist belongs to uninstalled bundle identifier 'com.acme.gone'."));
    EXPECT_EQ(leftovers.at(3).confidence, 0.75);
    EXPECT_EQ(leftovers.at(3).suggestedRiskTier, RiskTier::reviewRequired);
    EXPECT_EQ(leftovers.at(3).orphanReason,
              QStringLiteral("Item 'nodots' has no corresponding installed application."));
    EXPECT_EQ(leftovers.at(4).orphanReason,
              QStringLiteral("App Group container for uninstalled bundle identifier 'TEAM.com.gone.app'."));
}

TEST(LeftoversHunterTest, ProgressNamesEachFolderAndCancellationGivesNoPartialResult)
{
    TestHome home;
    home.writeFile(QStringLiteral("Library/Application Support/Old Tool/x"), 10);
    QStringList labels;
    LeftoversHunter hunter({.homeURL = home.path(), .host = HostSystem::macOS});
    (void)hunter.scanForLeftovers(std::vector<InstalledApp>{},
                                  [&labels](const QString& label, double) { labels.append(label); });
    ASSERT_EQ(labels.size(), 11);
    EXPECT_EQ(labels.at(0), QStringLiteral("Scanning Application Support"));
    EXPECT_EQ(labels.at(2), QStringLiteral("Scanning Preferences (.plist)"));
    EXPECT_EQ(labels.at(10), QStringLiteral("Complete"));

    std::stop_source source;
    const auto stopAfterFirst = [&source](const QString&, double fraction) {
        if (fraction > 0)
            source.request_stop();
    };
    EXPECT_THROW((void)hunter.scanForLeftovers(std::vector<InstalledApp>{}, stopAfterFirst, source.get_token()),
                 CancellationError);

    // The provider is asked only when no list is given, and its failure ends the scan.
    LeftoversHunter failing({.homeURL = home.path(),
                             .appsProvider = []() -> std::vector<InstalledApp> { throw std::runtime_error("no list"); },
                             .host = HostSystem::macOS});
    EXPECT_THROW((void)failing.scanForLeftovers(std::nullopt), std::runtime_error);
    EXPECT_EQ(failing.scanForLeftovers(std::vector<InstalledApp>{}).size(), 1U);
}

TEST(LeftoversHunterTest, LeftoverJson)
{
    const AppLeftover leftover{
        .id = QUuid(QStringLiteral("{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}")),
        .candidateAppName = QStringLiteral("com.acme.gone"),
        .bundleIdentifier = QStringLiteral("com.acme.gone"),
        .path = QStringLiteral("/Users/u/Library/Preferences/com.acme.gone.plist"),
        .location = DependencyLocation::preferences,
        .allocatedSizeBytes = 4096,
        .logicalSizeBytes = 300,
        .lastModifiedDate = QDateTime::fromSecsSinceEpoch(978307200 + 10, Qt::UTC),
        .confidence = 0.95,
        .orphanReason = QStringLiteral("why"),
        .suggestedRiskTier = RiskTier::safeToDelete,
    };
    EXPECT_EQ(JsonWriter::compact(leftover.toJson(DateEncoding::secondsSinceReferenceDate)),
              QByteArray(R"({"id":"AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE","candidateAppName":"com.acme.gone",)"
                         R"("bundleIdentifier":"com.acme.gone",)"
                         R"("url":"file:\/\/\/Users\/u\/Library\/Preferences\/com.acme.gone.plist",)"
                         R"("path":"\/Users\/u\/Library\/Preferences\/com.acme.gone.plist","location":"PREFERENCES",)"
                         R"("allocatedSizeBytes":4096,"logicalSizeBytes":300,"lastModifiedDate":10,)"
                         R"("confidence":0.95,"orphanReason":"why","suggestedRiskTier":"SAFE_TO_DELETE"})"));
}
