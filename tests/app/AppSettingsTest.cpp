#include "settings/AppSettings.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

// A store of its own in a temporary folder, never the user's preferences.
class SettingsStore {
public:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("settings.ini")); }
    [[nodiscard]] std::unique_ptr<QSettings> open() const
    {
        return std::make_unique<QSettings>(path(), QSettings::IniFormat);
    }
    void write(const QString& key, const QVariant& value) const { open()->setValue(key, value); }
    [[nodiscard]] QVariant read(const QString& key) const { return open()->value(key); }

private:
    QTemporaryDir m_folder;
};

} // namespace

TEST(AppSettings, AFreshStoreYieldsTheDefaults)
{
    const SettingsStore store;
    const AppSettings settings(store.open());
    EXPECT_EQ(settings.appThemeRaw(), QStringLiteral("system"));
    EXPECT_EQ(settings.dioramaStyleRaw(), QStringLiteral("classicCity"));
    const std::vector<bool> on = {settings.autoScanOnLaunch(), settings.thermalGovernorEnabled(),
                                  settings.showMenuBarExtra(), settings.notifyOnThreshold(),
                                  settings.mcpServerEnabled(), settings.autonomousRuleSynthesis(),
                                  settings.targetUvPython(),   settings.targetBrowserCaches()};
    EXPECT_EQ(on, std::vector<bool>(on.size(), true));
    EXPECT_FALSE(settings.reduceDioramaMotion() || settings.permanentPurgeMode() || settings.confirmBeforeClean() ||
                 settings.autoSelectReviewRequired());
    EXPECT_EQ(settings.junkThresholdGB(), 25);
    EXPECT_EQ(settings.lowDiskAlertGB(), 30);
    EXPECT_EQ(settings.anomalyThresholdMB(), 500);
    EXPECT_TRUE(settings.excludedPaths().isEmpty());
    EXPECT_TRUE(settings.disabledScanTargets().empty());
}

TEST(AppSettings, WrongTypesAndUnknownTextsFallBackWithoutChangingTheStore)
{
    const SettingsStore store;
    store.write(QStringLiteral("kestrow.junkThresholdGB"), QStringLiteral("plenty"));
    store.write(QStringLiteral("kestrow.autoScanOnLaunch"), 7);
    store.write(QStringLiteral("kestrow.lowDiskAlertGB"), true);
    store.write(QStringLiteral("kestrow.anomalyThresholdMB"), 1000);
    store.write(QStringLiteral("kestrow.appTheme"), QStringLiteral("sepia"));
    store.write(QStringLiteral("kestrow.dioramaStyle"), QStringLiteral("freightTerminal"));
    store.write(QStringLiteral("kestrow.targetCargo"), false);
    const AppSettings settings(store.open());
    EXPECT_EQ(settings.junkThresholdGB(), 25);
    EXPECT_TRUE(settings.autoScanOnLaunch());
    EXPECT_EQ(settings.lowDiskAlertGB(), 30);
    EXPECT_EQ(settings.anomalyThresholdMB(), 1000);
    EXPECT_EQ(settings.appTheme(), AppTheme::system);
    EXPECT_EQ(settings.appThemeRaw(), QStringLiteral("sepia"));
    EXPECT_EQ(store.read(QStringLiteral("kestrow.appTheme")).toString(), QStringLiteral("sepia"));
    EXPECT_EQ(settings.dioramaStyle(), DioramaStyle::freightTerminal);
    EXPECT_EQ(settings.disabledScanTargets(), std::set<ScanTarget>{ScanTarget::cargo});
}

TEST(AppSettings, ChangesWriteThroughAtOnceAndAreTold)
{
    const SettingsStore store;
    AppSettings settings(store.open());
    QSignalSpy changed(&settings, &AppSettings::changed);
    settings.setTargetCargo(false);
    settings.setTargetBrowserCaches(false);
    settings.setJunkThresholdGB(50);
    settings.setDioramaStyle(DioramaStyle::freightTerminal);
    EXPECT_EQ(changed.count(), 4);

    const AppSettings reopened(store.open());
    EXPECT_EQ(reopened.junkThresholdGB(), 50);
    EXPECT_EQ(reopened.dioramaStyleRaw(), QStringLiteral("freightTerminal"));
    const std::set<ScanTarget> disabled{ScanTarget::cargo, ScanTarget::browserCaches};
    EXPECT_EQ(reopened.disabledScanTargets(), disabled);
    const ScanTargetFilter filter = reopened.scanTargetFilter(QStringLiteral("/home/someone"));
    EXPECT_EQ(filter.disabledTargets(), disabled);
    EXPECT_EQ(filter.homeURL(), QStringLiteral("/home/someone"));
}

TEST(AppSettings, ExclusionsAreTrimmedKeptAsWrittenAndRemovedExactly)
{
    const SettingsStore store;
    AppSettings settings(store.open());
    settings.addExclusion(QStringLiteral(" \t\n "));
    EXPECT_TRUE(settings.excludedPaths().isEmpty());
    EXPECT_FALSE(store.read(AppSettings::exclusionsKey).isValid());

    settings.addExclusion(QStringLiteral("  ~/Projects/data\n"));
    settings.addExclusion(QStringLiteral("~/Projects/data"));
    settings.addExclusion(QStringLiteral("/home/someone/Projects/data"));
    settings.addExclusion(QStringLiteral("/srv/models"));
    const QStringList three{QStringLiteral("~/Projects/data"), QStringLiteral("/home/someone/Projects/data"),
                            QStringLiteral("/srv/models")};
    EXPECT_EQ(settings.excludedPaths(), three);

    QSignalSpy changed(&settings, &AppSettings::changed);
    settings.removeExclusion(5);
    settings.removeExclusion(-1);
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(AppSettings(store.open()).excludedPaths(), three);

    settings.removeExclusion(0);
    settings.removeExclusion(QStringLiteral("/srv/models"));
    EXPECT_EQ(AppSettings(store.open()).excludedPaths(), QStringList{QStringLiteral("/home/someone/Projects/data")});
    settings.removeExclusion(QStringLiteral("/home/someone/Projects/data"));
    EXPECT_TRUE(AppSettings(store.open()).excludedPaths().isEmpty());
}

TEST(AppSettings, GovernorThemeAndAgentConfiguration)
{
    const SettingsStore store;
    AppSettings settings(store.open());
    settings.setThermalGovernorEnabled(false);
    const auto governor = settings.makeThermalGovernor();
    const ConcurrencyProfile profile = governor->currentProfile();
    EXPECT_FALSE(profile.isPaused);
    EXPECT_EQ(profile.directorySleepMs, 0u);
    EXPECT_GE(governor->activeProcessors(), 1);

    // The appearance follows a turn of the event loop later, never in the caller.
    settings.setAppTheme(AppTheme::dark);
    EXPECT_EQ(settings.appliedColorScheme(), std::nullopt);
    QCoreApplication::processEvents();
    EXPECT_EQ(settings.appliedColorScheme(), ColorScheme::dark);
    settings.setAppThemeRaw(QStringLiteral("neon"));
    QCoreApplication::processEvents();
    EXPECT_EQ(settings.appliedColorScheme(), std::nullopt);

    EXPECT_EQ(AppSettings::mcpConfigurationJSON(),
              QStringLiteral("{\n  \"mcpServers\": {\n    \"kestrow\": {\n      \"command\": "
                             "\"/usr/local/bin/kestrow\",\n      \"args\": [\"mcp\"]\n    }\n  }\n}"));
}
