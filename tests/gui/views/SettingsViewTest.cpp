#include "AppHarness.h"

#include "cleanup/AuditLogger.h"
#include "platform/NativePath.h"
#include "views/IconTable.h"
#include "views/SettingsView.h"

#include <QUrl>

#include <gtest/gtest.h>

namespace kestrow {
namespace {

using test::AppHarness;

struct SettingsViewFixture {
    AppHarness harness;
    QString clipboard;
    QString revealed;
    SettingsView view{*harness.state, [this](const QString& text) { clipboard = text; },
                      [this](const QString& path) { revealed = path; }, false};
};

// Every symbol anywhere in a tab's texts, so that none shows as the table's stand-in.
void collectSymbols(const QVariant& value, QStringList& symbols)
{
    if (value.typeId() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            if (entry.key().endsWith(QLatin1String("ymbol")) && !entry.value().toString().isEmpty())
                symbols.append(entry.value().toString());
            collectSymbols(entry.value(), symbols);
        }
    } else if (value.typeId() == QMetaType::QVariantList) {
        for (const QVariant& item : value.toList())
            collectSymbols(item, symbols);
    }
}

TEST(SettingsView, AFolderFromTheChooserKeepsItsBytesAndIsExcludedOnce)
{
    SettingsViewFixture fixture;
    // A folder whose name is Latin-1, not UTF-8: its byte must come back from the setting.
    const QUrl folder = QUrl::fromEncoded("file:///data/caf%E9%20models");
    const QString path = SettingsView::localPath(folder);
    EXPECT_EQ(NativePath::encode(path), QByteArray("/data/caf\xE9 models"));
    EXPECT_EQ(SettingsView::localPath(QUrl(QStringLiteral("https://example.com/x"))), QString());

    fixture.view.addExclusion(folder);
    fixture.view.addExclusion(folder);
    fixture.view.addExclusion(QUrl(QStringLiteral("https://example.com/x")));
    const QVariantList rows = fixture.view.exclusions().value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(fixture.harness.settings.excludedPaths(), QStringList{path});
    EXPECT_EQ(rows[0].toMap().value(QStringLiteral("path")).toString(), QStringLiteral("/data/caf\\xE9 models"));

    fixture.view.removeExclusion(0);
    EXPECT_TRUE(fixture.harness.settings.excludedPaths().isEmpty());
}

TEST(SettingsView, ControlsWriteTheSettingsAndTheTabsShowThem)
{
    SettingsViewFixture fixture;
    const QVariantList switches = fixture.view.developer().value(QStringLiteral("switches")).toList();
    ASSERT_EQ(switches.size(), 9);
    const QVariantMap cargo = switches[5].toMap();
    EXPECT_EQ(cargo.value(QStringLiteral("tag")).toString(), QStringLiteral("RUST"));
    fixture.view.setFlag(cargo.value(QStringLiteral("flag")).toInt(), false);
    EXPECT_FALSE(fixture.harness.settings.targetCargo());
    EXPECT_FALSE(fixture.view.developer()
                     .value(QStringLiteral("switches"))
                     .toList()[5]
                     .toMap()
                     .value(QStringLiteral("isOn"))
                     .toBool());
    fixture.view.setFlag(-1, false);
    fixture.view.setFlag(static_cast<int>(AppSettings::flagCount), false);

    fixture.view.chooseJunkThreshold(50);
    fixture.view.chooseTheme(QStringLiteral("dark"));
    fixture.view.chooseStyle(QStringLiteral("freightTerminal"));
    EXPECT_EQ(fixture.harness.settings.junkThresholdGB(), 50);
    EXPECT_EQ(fixture.harness.settings.appThemeRaw(), QStringLiteral("dark"));
    EXPECT_EQ(fixture.harness.settings.dioramaStyle(), DioramaStyle::freightTerminal);
    int selected = 0;
    for (const QVariant& choice : fixture.view.general().value(QStringLiteral("junkThresholdChoices")).toList())
        selected += choice.toMap().value(QStringLiteral("isSelected")).toBool() ? 1 : 0;
    EXPECT_EQ(selected, 1);

    fixture.view.setSelectedTab(4);
    EXPECT_EQ(fixture.view.selectedTab(), 4);
    fixture.view.setSelectedTab(9);
    EXPECT_EQ(fixture.view.selectedTab(), 4);
    EXPECT_FALSE(fixture.view.general().value(QStringLiteral("noTrayNote")).toString().isEmpty());

    QStringList symbols;
    for (const QVariantMap& tab : {fixture.view.general(), fixture.view.developer(), fixture.view.safety(),
                                   fixture.view.agents(), fixture.view.exclusions()})
        collectSymbols(tab, symbols);
    for (const QString& symbol : symbols)
        EXPECT_TRUE(IconTable::knows(symbol)) << symbol.toStdString();
}

TEST(SettingsView, CopyRevealAndVerifyActOnThisHome)
{
    SettingsViewFixture fixture;
    fixture.view.copyMCPConfiguration();
    EXPECT_EQ(fixture.clipboard, AppSettings::mcpConfigurationJSON());
    EXPECT_EQ(fixture.view.agents().value(QStringLiteral("copyButton")).toMap().value(QStringLiteral("title")),
              QStringLiteral("Copied JSON!"));

    fixture.view.revealAuditLog();
    EXPECT_EQ(fixture.revealed, AuditLogger::defaultLogFile(fixture.harness.home.path()));

    fixture.view.verifyAudit();
    test::pumpUntil([&] {
        return fixture.view.safety().value(QStringLiteral("verdict")).toMap().value(QStringLiteral("present")).toBool();
    });
    const QVariantMap verdict = fixture.view.safety().value(QStringLiteral("verdict")).toMap();
    EXPECT_TRUE(verdict.value(QStringLiteral("passed")).toBool());
    EXPECT_TRUE(
        verdict.value(QStringLiteral("message")).toString().startsWith(QLatin1String("Valid SHA-256 chain: 0")));

    fixture.harness.state->setShowingSettingsSheet(true);
    fixture.view.done();
    EXPECT_FALSE(fixture.harness.state->showingSettingsSheet());
}

} // namespace
} // namespace kestrow
