#pragma once

#include "presentation/AuditCheck.h"
#include "presentation/SettingsTab.h"
#include "settings/AppSettings.h"
#include "state/AppState.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace kestrow {

// The Settings screen: what each tab says, computed from the settings and the state, and the
// screen's own state (the tab in front, the audit check, the copied mark). Its texts say
// plainly which controls are not connected yet, and must stay true to what the settings do.
class SettingsScreen : public QObject {
    Q_OBJECT

public:
    struct Heading {
        QString title;
        QString detail;
    };
    struct Switch {
        AppSettings::Flag flag;
        QString label;
        QString detail;
        QString tag; // empty where the switch has none
        bool isOn = false;
    };
    struct Choice {
        int value = 0;
        QString text;
        bool isSelected = false;
    };
    struct Button {
        QString title;
        QString symbol;
        bool isEnabled = true;
    };
    struct ThemeButton {
        AppTheme theme;
        QString title;
        QString symbol;
        bool isSelected = false;
    };
    struct StyleCard {
        DioramaStyle style;
        QString title;
        QString description;
        QString symbol;
        bool isDefault = false;
        bool isSelected = false;
        QString previewAccessibilityText;
    };
    // A way of deleting, shown for what it is; neither can be chosen.
    struct DeletionMode {
        QString title;
        QString mark;
        QString detail;
        QString note; // empty where there is none
    };
    struct AccessRow {
        QString title;
        QString detail;
        QString symbol;
        bool offersSettings = false; // the button to the system's settings
    };
    struct Verdict {
        QString message;
        bool passed = false;
        QString symbol;
    };
    struct EntryRow {
        QString kind;
        QString time;
        QString items;
    };
    struct ToolLine {
        QString name;
        QString line;
    };
    struct ExclusionRow {
        int index = 0;
        QString path;
        QString symbol;
        QString removeSymbol;
    };

    // Puts a text on the system clipboard.
    using Clipboard = std::function<void(const QString&)>;

    static constexpr std::chrono::milliseconds copiedMarkDuration{1500};
    static constexpr int recentEntryCount = 10;

    SettingsScreen(AppState& state, Clipboard clipboard, std::chrono::milliseconds copiedFor = copiedMarkDuration,
                   QObject* parent = nullptr);

    [[nodiscard]] SettingsTab selectedTab() const { return m_selectedTab; }
    void setSelectedTab(SettingsTab tab);
    [[nodiscard]] AuditCheck& auditCheck() { return m_auditCheck; }
    [[nodiscard]] const AuditCheck& auditCheck() const { return m_auditCheck; }
    [[nodiscard]] bool isCopiedMCP() const { return m_isCopiedMCP; }

    // Closes the sheet.
    void done();
    // Puts the agent configuration on the clipboard and shows the copied mark for a moment;
    // another press starts the moment again.
    void copyMCPConfiguration();

    [[nodiscard]] static Heading frame();
    [[nodiscard]] static QString doneTitle();

    [[nodiscard]] static Heading themeSection();
    [[nodiscard]] std::vector<ThemeButton> themeButtons() const;
    [[nodiscard]] static Heading dioramaSection();
    [[nodiscard]] std::vector<StyleCard> styleCards() const;
    [[nodiscard]] static QString behaviourTitle();
    [[nodiscard]] std::vector<Switch> behaviourSwitches() const;
    // The title and detail, then the note that no alert is sent yet.
    [[nodiscard]] static Heading alertsSection();
    [[nodiscard]] static QString alertsNote();
    [[nodiscard]] Switch junkAlertSwitch() const;
    [[nodiscard]] static QString thresholdLabel();
    // A stored value that is not among the choices selects none.
    [[nodiscard]] std::vector<Choice> junkThresholdChoices() const;
    [[nodiscard]] static Heading lowDiskSection();
    [[nodiscard]] std::vector<Choice> lowDiskChoices() const;

    [[nodiscard]] static QString targetsNote();
    // The nine targets in the order of their settings.
    [[nodiscard]] std::vector<Switch> targetSwitches() const;

    // Its detail is the note that a permanent purge isn't available.
    [[nodiscard]] static Heading deletionModeSection();
    [[nodiscard]] static std::vector<DeletionMode> deletionModes();
    [[nodiscard]] Switch confirmationSwitch() const;
    [[nodiscard]] static QString accessSectionTitle();
    [[nodiscard]] AccessRow accessRow() const;
    [[nodiscard]] static Button accessButton();
    [[nodiscard]] static QString accessButtonHelp();
    [[nodiscard]] static Heading auditSection();
    [[nodiscard]] static QString auditLogPath();
    [[nodiscard]] Button verifyButton() const;
    [[nodiscard]] static Button revealButton();
    // Absent before the first check.
    [[nodiscard]] std::optional<Verdict> verdict() const;
    [[nodiscard]] static QString recentEntriesTitle();
    // The newest entries of the log, newest first.
    [[nodiscard]] std::vector<EntryRow> recentEntryRows() const;

    [[nodiscard]] static Heading serverSection();
    [[nodiscard]] static QString serverText();
    [[nodiscard]] static QString commandLabel();
    [[nodiscard]] static QString command();
    [[nodiscard]] Button copyButton() const;
    [[nodiscard]] static QString toolsTitle();
    [[nodiscard]] static std::vector<ToolLine> toolLines();
    [[nodiscard]] static QString selfImprovementTitle();
    [[nodiscard]] static QString selfImprovementNote();
    [[nodiscard]] Switch ruleSynthesisSwitch() const;
    [[nodiscard]] static Heading sensitivitySection();
    [[nodiscard]] std::vector<Choice> sensitivityChoices() const;

    [[nodiscard]] static QString exclusionsTitle();
    [[nodiscard]] static Button addFolderButton();
    // The folder chooser's title and message.
    [[nodiscard]] static Heading folderChooser();
    // What stands in place of the rows while there are none, and its symbol.
    [[nodiscard]] static Heading noExclusions();
    [[nodiscard]] static QString noExclusionsSymbol();
    [[nodiscard]] std::vector<ExclusionRow> exclusionRows() const;
    [[nodiscard]] static QString exclusionsNote();
    [[nodiscard]] static Heading inherentProtections();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] Switch flagSwitch(AppSettings::Flag flag, QString label, QString detail, QString tag = {}) const;
    [[nodiscard]] static std::vector<Choice> choices(const std::vector<std::pair<int, const char*>>& offered,
                                                     int stored);

    AppState& m_state;
    Clipboard m_clipboard;
    SettingsTab m_selectedTab = SettingsTab::general;
    AuditCheck m_auditCheck;
    bool m_isCopiedMCP = false;
    QTimer m_copiedMark;
};

} // namespace kestrow
