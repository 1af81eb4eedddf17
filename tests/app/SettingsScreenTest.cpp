#include "presentation/SettingsScreen.h"
#include "AppHarness.h"

#include "cleanup/AuditLogger.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::AppHarness;
using kestrow::test::pumpUntil;

namespace {

std::optional<QString> selected(const std::vector<SettingsScreen::Choice>& choices)
{
    std::optional<QString> text;
    for (const SettingsScreen::Choice& choice : choices)
        if (choice.isSelected) {
            EXPECT_FALSE(text) << "two choices selected";
            text = choice.text;
        }
    return text;
}

} // namespace

TEST(SettingsScreen, ChoicesSwitchesAndCardsFollowTheStoredSettings)
{
    AppHarness harness({.settings = [](AppSettings& settings) {
        settings.setJunkThresholdGB(42);
        settings.setTargetCargo(false);
        settings.setAppThemeRaw(QStringLiteral("sepia"));
        settings.setDioramaStyle(DioramaStyle::freightTerminal);
    }});
    SettingsScreen screen(*harness.state, [](const QString&) {});

    EXPECT_FALSE(selected(screen.junkThresholdChoices())) << "a value that is no choice selects none";
    EXPECT_EQ(harness.settings.junkThresholdGB(), 42);
    harness.settings.setJunkThresholdGB(50);
    EXPECT_EQ(selected(screen.junkThresholdChoices()), QStringLiteral("50 GB"));
    EXPECT_EQ(selected(screen.lowDiskChoices()), QStringLiteral("30 GB (Recommended)"));
    EXPECT_EQ(selected(screen.sensitivityChoices()), QStringLiteral("500 MB (Default)"));

    // Each target's switch is the flag of its own target.
    const std::vector<SettingsScreen::Switch> targets = screen.targetSwitches();
    ASSERT_EQ(targets.size(), ScanTarget::count);
    QStringList off;
    for (const SettingsScreen::Switch& target : targets) {
        EXPECT_FALSE(target.tag.isEmpty());
        if (!target.isOn)
            off.append(target.tag);
    }
    EXPECT_EQ(off, QStringList{QStringLiteral("RUST")});
    EXPECT_EQ(targets[2].tag, QStringLiteral("MACOS/IOS"));
    EXPECT_EQ(harness.settings.disabledScanTargets(), std::set<ScanTarget>{ScanTarget::cargo});

    const std::vector<SettingsScreen::ThemeButton> themes = screen.themeButtons();
    ASSERT_EQ(themes.size(), 3u);
    EXPECT_TRUE(themes[0].isSelected) << "an unknown theme is the system's";
    EXPECT_EQ(themes[0].symbol, QStringLiteral("laptopcomputer"));
    const std::vector<SettingsScreen::StyleCard> cards = screen.styleCards();
    ASSERT_EQ(cards.size(), 2u);
    EXPECT_TRUE(cards[0].isDefault && !cards[0].isSelected);
    EXPECT_TRUE(cards[1].isSelected && !cards[1].isDefault);
    EXPECT_EQ(cards[1].previewAccessibilityText, QStringLiteral("Preview of Modular Freight Terminal"));
}

TEST(SettingsScreen, CopyingTheAgentConfigurationMarksTheButtonForAMoment)
{
    AppHarness harness;
    QStringList clipboard;
    SettingsScreen screen(
        *harness.state, [&](const QString& text) { clipboard.append(text); }, std::chrono::milliseconds(20));
    EXPECT_EQ(screen.copyButton().title, QStringLiteral("Copy MCP Config"));
    screen.copyMCPConfiguration();
    EXPECT_EQ(clipboard, QStringList{AppSettings::mcpConfigurationJSON()});
    EXPECT_EQ(screen.copyButton().title, QStringLiteral("Copied JSON!"));
    EXPECT_EQ(screen.copyButton().symbol, QStringLiteral("checkmark"));
    pumpUntil([&] { return !screen.isCopiedMCP(); });
    EXPECT_EQ(screen.copyButton().symbol, QStringLiteral("doc.on.doc"));
}

TEST(SettingsScreen, TheAuditVerdictAndTheNewestEntriesFirst)
{
    AppHarness harness;
    AuditLogger logger({.homeURL = harness.home.path()});
    const QDateTime when = QDateTime::currentDateTimeUtc();
    (void)logger.record(QUuid::createUuid(), AuditOperationType::dryRun, 3, 0, {}, QStringLiteral("cli"), {}, when);
    (void)logger.record(QUuid::createUuid(), AuditOperationType::trash, 1, 10, {}, QStringLiteral("gui"), {}, when);

    SettingsScreen screen(*harness.state, [](const QString&) {});
    EXPECT_FALSE(screen.verdict());
    screen.auditCheck().verifyAuditChain();
    EXPECT_FALSE(screen.verifyButton().isEnabled);
    pumpUntil([&] { return !screen.auditCheck().isVerifyingAudit(); });
    EXPECT_TRUE(screen.verifyButton().isEnabled);
    ASSERT_TRUE(screen.verdict());
    EXPECT_TRUE(screen.verdict()->passed);
    EXPECT_EQ(screen.verdict()->message, QStringLiteral("Valid SHA-256 chain: 2 entries verified with 0 tampering."));
    const std::vector<SettingsScreen::EntryRow> rows = screen.recentEntryRows();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].kind, QStringLiteral("trash"));
    EXPECT_EQ(rows[0].items, QStringLiteral("1 item"));
    EXPECT_EQ(rows[1].kind, QStringLiteral("dry_run"));
    EXPECT_EQ(rows[1].items, QStringLiteral("3 items"));

    QFile log(AuditLogger::defaultLogFile(harness.home.path()));
    ASSERT_TRUE(log.open(QIODevice::ReadWrite));
    QByteArray lines = log.readAll();
    lines.replace("\"itemsCount\":3", "\"itemsCount\":4");
    log.seek(0);
    log.write(lines);
    log.close();
    screen.auditCheck().verifyAuditChain();
    pumpUntil([&] { return !screen.auditCheck().isVerifyingAudit(); });
    EXPECT_FALSE(screen.verdict()->passed);
    EXPECT_TRUE(screen.verdict()->message.startsWith(QStringLiteral("Tampering detected at block 0: ")))
        << screen.verdict()->message.toStdString();
}

TEST(SettingsScreen, ExclusionsTheAccessRowAndDone)
{
    AppHarness harness;
    SettingsScreen screen(*harness.state, [](const QString&) {});
    EXPECT_TRUE(screen.exclusionRows().empty());
    const QString folder = harness.home.makeDirectory(QStringLiteral("datasets"));
    harness.settings.addExclusion(folder);
    harness.settings.addExclusion(folder);
    ASSERT_EQ(screen.exclusionRows().size(), 1u);
    EXPECT_EQ(screen.exclusionRows().front().path, folder);

    const SettingsScreen::AccessRow access = screen.accessRow();
    EXPECT_EQ(access.offersSettings, !harness.state->hasFullDiskAccess());
    EXPECT_EQ(access.title, harness.state->hasFullDiskAccess() ? QStringLiteral("Full Disk Access Granted")
                                                               : QStringLiteral("Full Disk Access Optional"));

    harness.state->openSettings();
    screen.done();
    EXPECT_FALSE(harness.state->showingSettingsSheet());
}

#ifndef __APPLE__
TEST(SettingsScreen, NoTextOnThisDesktopNamesTheMacOrItsPrograms)
{
    AppHarness harness;
    SettingsScreen screen(*harness.state, [](const QString&) {});
    QStringList texts;
    const auto heading = [&](const SettingsScreen::Heading& h) { texts << h.title << h.detail; };
    for (const auto& h :
         {SettingsScreen::themeSection(), SettingsScreen::dioramaSection(), SettingsScreen::alertsSection(),
          SettingsScreen::deletionModeSection(), SettingsScreen::auditSection(), SettingsScreen::sensitivitySection(),
          SettingsScreen::inherentProtections()})
        heading(h);
    for (const auto& s : screen.behaviourSwitches())
        texts << s.label << s.detail;
    for (const auto& m : SettingsScreen::deletionModes())
        texts << m.detail << m.note;
    texts << SettingsScreen::accessSectionTitle() << screen.accessRow().detail << SettingsScreen::accessButtonHelp()
          << SettingsScreen::revealButton().title;
    for (const QString& text : texts)
        for (const QLatin1String word : {QLatin1String("macOS"), QLatin1String("Mac "), QLatin1String("Finder"),
                                         QLatin1String("Safari"), QLatin1String("menu bar"), QLatin1String("Library")})
            EXPECT_FALSE(text.contains(word)) << text.toStdString();
}
#endif
