#pragma once

#include "city/DioramaStyle.h"
#include "scan/ScanTargetFilter.h"
#include "scan/ThermalGovernor.h"
#include "settings/AppTheme.h"
#include "storage/ScanTarget.h"

#include <QObject>
#include <QSettings>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>
#include <set>

namespace kestrow {

// The application's persisted preferences. Every field is loaded once, when the object is
// made, and written through to the store as soon as it changes; there is no save. A stored
// value of the wrong type reads as the field's default. Belongs to the main thread.
class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString appThemeRaw READ appThemeRaw WRITE setAppThemeRaw NOTIFY changed)
    Q_PROPERTY(QString dioramaStyleRaw READ dioramaStyleRaw WRITE setDioramaStyleRaw NOTIFY changed)
    Q_PROPERTY(bool autoScanOnLaunch READ autoScanOnLaunch WRITE setAutoScanOnLaunch NOTIFY changed)
    Q_PROPERTY(bool thermalGovernorEnabled READ thermalGovernorEnabled WRITE setThermalGovernorEnabled NOTIFY changed)
    Q_PROPERTY(bool reduceDioramaMotion READ reduceDioramaMotion WRITE setReduceDioramaMotion NOTIFY changed)
    Q_PROPERTY(bool showMenuBarExtra READ showMenuBarExtra WRITE setShowMenuBarExtra NOTIFY changed)
    Q_PROPERTY(bool notifyOnThreshold READ notifyOnThreshold WRITE setNotifyOnThreshold NOTIFY changed)
    Q_PROPERTY(int junkThresholdGB READ junkThresholdGB WRITE setJunkThresholdGB NOTIFY changed)
    Q_PROPERTY(int lowDiskAlertGB READ lowDiskAlertGB WRITE setLowDiskAlertGB NOTIFY changed)
    Q_PROPERTY(bool targetUvPython READ targetUvPython WRITE setTargetUvPython NOTIFY changed)
    Q_PROPERTY(bool targetDockerVM READ targetDockerVM WRITE setTargetDockerVM NOTIFY changed)
    Q_PROPERTY(bool targetXcode READ targetXcode WRITE setTargetXcode NOTIFY changed)
    Q_PROPERTY(bool targetAIModels READ targetAIModels WRITE setTargetAIModels NOTIFY changed)
    Q_PROPERTY(bool targetNpmBun READ targetNpmBun WRITE setTargetNpmBun NOTIFY changed)
    Q_PROPERTY(bool targetCargo READ targetCargo WRITE setTargetCargo NOTIFY changed)
    Q_PROPERTY(bool targetHomebrew READ targetHomebrew WRITE setTargetHomebrew NOTIFY changed)
    Q_PROPERTY(bool targetSystemCaches READ targetSystemCaches WRITE setTargetSystemCaches NOTIFY changed)
    Q_PROPERTY(bool targetBrowserCaches READ targetBrowserCaches WRITE setTargetBrowserCaches NOTIFY changed)
    Q_PROPERTY(bool permanentPurgeMode READ permanentPurgeMode WRITE setPermanentPurgeMode NOTIFY changed)
    Q_PROPERTY(bool confirmBeforeClean READ confirmBeforeClean WRITE setConfirmBeforeClean NOTIFY changed)
    Q_PROPERTY(
        bool autoSelectReviewRequired READ autoSelectReviewRequired WRITE setAutoSelectReviewRequired NOTIFY changed)
    Q_PROPERTY(bool mcpServerEnabled READ mcpServerEnabled WRITE setMcpServerEnabled NOTIFY changed)
    Q_PROPERTY(
        bool autonomousRuleSynthesis READ autonomousRuleSynthesis WRITE setAutonomousRuleSynthesis NOTIFY changed)
    Q_PROPERTY(int anomalyThresholdMB READ anomalyThresholdMB WRITE setAnomalyThresholdMB NOTIFY changed)
    Q_PROPERTY(QStringList excludedPaths READ excludedPaths NOTIFY changed)
    Q_PROPERTY(QString mcpConfigurationJSON READ mcpConfigurationJSON CONSTANT)

public:
    // The boolean fields. The nine targets stand in the order of ScanTarget.
    enum class Flag {
        autoScanOnLaunch,
        thermalGovernorEnabled,
        reduceDioramaMotion,
        showMenuBarExtra,
        notifyOnThreshold,
        targetUvPython,
        targetDockerVM,
        targetXcode,
        targetAIModels,
        targetNpmBun,
        targetCargo,
        targetHomebrew,
        targetSystemCaches,
        targetBrowserCaches,
        permanentPurgeMode,
        confirmBeforeClean,
        autoSelectReviewRequired,
        mcpServerEnabled,
        autonomousRuleSynthesis,
    };
    static constexpr std::size_t flagCount = 19;
    enum class Number { junkThresholdGB, lowDiskAlertGB, anomalyThresholdMB };
    static constexpr std::size_t numberCount = 3;

    static inline const QString exclusionsKey = QStringLiteral("kestrow.excludedPaths");

    // Loads every field from `store`, which it keeps and writes to.
    explicit AppSettings(std::unique_ptr<QSettings> store, QObject* parent = nullptr);

    // The one instance of the process, on the per-user preference store, made on first use.
    [[nodiscard]] static AppSettings& shared();

    [[nodiscard]] static QString key(Flag flag);
    [[nodiscard]] static QString key(Number number);

    [[nodiscard]] bool flag(Flag flag) const { return m_flags[static_cast<std::size_t>(flag)]; }
    void setFlag(Flag flag, bool value);
    [[nodiscard]] int number(Number number) const { return m_numbers[static_cast<std::size_t>(number)]; }
    void setNumber(Number number, int value);

    [[nodiscard]] const QString& appThemeRaw() const { return m_appThemeRaw; }
    void setAppThemeRaw(const QString& raw);
    [[nodiscard]] const QString& dioramaStyleRaw() const { return m_dioramaStyleRaw; }
    void setDioramaStyleRaw(const QString& raw);
    [[nodiscard]] AppTheme appTheme() const { return AppTheme::fromStored(m_appThemeRaw); }
    void setAppTheme(AppTheme theme) { setAppThemeRaw(theme.rawValue()); }
    [[nodiscard]] DioramaStyle dioramaStyle() const { return DioramaStyle::fromStored(m_dioramaStyleRaw); }
    void setDioramaStyle(DioramaStyle style) { setDioramaStyleRaw(style.rawValue()); }

    [[nodiscard]] bool autoScanOnLaunch() const { return flag(Flag::autoScanOnLaunch); }
    void setAutoScanOnLaunch(bool value) { setFlag(Flag::autoScanOnLaunch, value); }
    [[nodiscard]] bool thermalGovernorEnabled() const { return flag(Flag::thermalGovernorEnabled); }
    void setThermalGovernorEnabled(bool value) { setFlag(Flag::thermalGovernorEnabled, value); }
    [[nodiscard]] bool reduceDioramaMotion() const { return flag(Flag::reduceDioramaMotion); }
    void setReduceDioramaMotion(bool value) { setFlag(Flag::reduceDioramaMotion, value); }
    [[nodiscard]] bool showMenuBarExtra() const { return flag(Flag::showMenuBarExtra); }
    void setShowMenuBarExtra(bool value) { setFlag(Flag::showMenuBarExtra, value); }
    [[nodiscard]] bool notifyOnThreshold() const { return flag(Flag::notifyOnThreshold); }
    void setNotifyOnThreshold(bool value) { setFlag(Flag::notifyOnThreshold, value); }
    [[nodiscard]] int junkThresholdGB() const { return number(Number::junkThresholdGB); }
    void setJunkThresholdGB(int value) { setNumber(Number::junkThresholdGB, value); }
    [[nodiscard]] int lowDiskAlertGB() const { return number(Number::lowDiskAlertGB); }
    void setLowDiskAlertGB(int value) { setNumber(Number::lowDiskAlertGB, value); }
    [[nodiscard]] bool targetUvPython() const { return flag(Flag::targetUvPython); }
    void setTargetUvPython(bool value) { setFlag(Flag::targetUvPython, value); }
    [[nodiscard]] bool targetDockerVM() const { return flag(Flag::targetDockerVM); }
    void setTargetDockerVM(bool value) { setFlag(Flag::targetDockerVM, value); }
    [[nodiscard]] bool targetXcode() const { return flag(Flag::targetXcode); }
    void setTargetXcode(bool value) { setFlag(Flag::targetXcode, value); }
    [[nodiscard]] bool targetAIModels() const { return flag(Flag::targetAIModels); }
    void setTargetAIModels(bool value) { setFlag(Flag::targetAIModels, value); }
    [[nodiscard]] bool targetNpmBun() const { return flag(Flag::targetNpmBun); }
    void setTargetNpmBun(bool value) { setFlag(Flag::targetNpmBun, value); }
    [[nodiscard]] bool targetCargo() const { return flag(Flag::targetCargo); }
    void setTargetCargo(bool value) { setFlag(Flag::targetCargo, value); }
    [[nodiscard]] bool targetHomebrew() const { return flag(Flag::targetHomebrew); }
    void setTargetHomebrew(bool value) { setFlag(Flag::targetHomebrew, value); }
    [[nodiscard]] bool targetSystemCaches() const { return flag(Flag::targetSystemCaches); }
    void setTargetSystemCaches(bool value) { setFlag(Flag::targetSystemCaches, value); }
    [[nodiscard]] bool targetBrowserCaches() const { return flag(Flag::targetBrowserCaches); }
    void setTargetBrowserCaches(bool value) { setFlag(Flag::targetBrowserCaches, value); }
    [[nodiscard]] bool permanentPurgeMode() const { return flag(Flag::permanentPurgeMode); }
    void setPermanentPurgeMode(bool value) { setFlag(Flag::permanentPurgeMode, value); }
    [[nodiscard]] bool confirmBeforeClean() const { return flag(Flag::confirmBeforeClean); }
    void setConfirmBeforeClean(bool value) { setFlag(Flag::confirmBeforeClean, value); }
    [[nodiscard]] bool autoSelectReviewRequired() const { return flag(Flag::autoSelectReviewRequired); }
    void setAutoSelectReviewRequired(bool value) { setFlag(Flag::autoSelectReviewRequired, value); }
    [[nodiscard]] bool mcpServerEnabled() const { return flag(Flag::mcpServerEnabled); }
    void setMcpServerEnabled(bool value) { setFlag(Flag::mcpServerEnabled, value); }
    [[nodiscard]] bool autonomousRuleSynthesis() const { return flag(Flag::autonomousRuleSynthesis); }
    void setAutonomousRuleSynthesis(bool value) { setFlag(Flag::autonomousRuleSynthesis, value); }
    [[nodiscard]] int anomalyThresholdMB() const { return number(Number::anomalyThresholdMB); }
    void setAnomalyThresholdMB(int value) { setNumber(Number::anomalyThresholdMB, value); }

    [[nodiscard]] const QStringList& excludedPaths() const { return m_excludedPaths; }
    // Appends the trimmed path unless it is empty or already stored as written.
    Q_INVOKABLE void addExclusion(const QString& path);
    // Ignored for an index outside the list.
    Q_INVOKABLE void removeExclusion(int index);
    // Removes every entry equal to `path`; writes even when none was.
    Q_INVOKABLE void removeExclusion(const QString& path);

    // The targets whose switch is off.
    [[nodiscard]] std::set<ScanTarget> disabledScanTargets() const;
    // Built anew for every use from the switches and exclusions, for the given home.
    [[nodiscard]] ScanTargetFilter scanTargetFilter(const QString& homeURL) const;
    // A governor for one scan: the machine's own, or with the switch off one that never slows.
    [[nodiscard]] std::shared_ptr<ThermalGovernor> makeThermalGovernor() const;

    // The appearance the application should wear: absent to follow the system. It follows the
    // theme through applyTheme, always a turn of the event loop later.
    [[nodiscard]] std::optional<ColorScheme> appliedColorScheme() const { return m_appliedColorScheme; }
    // Absent: the stored theme. Does nothing before the application object exists.
    void applyTheme(std::optional<AppTheme> theme = std::nullopt);

    // What an agent client's configuration needs to start the server; fixed text.
    [[nodiscard]] static QString mcpConfigurationJSON();

Q_SIGNALS:
    void changed();
    void appliedColorSchemeChanged();

private:
    QVariant stored(const QString& key) const;

    std::unique_ptr<QSettings> m_store;
    QString m_appThemeRaw;
    QString m_dioramaStyleRaw;
    std::array<bool, flagCount> m_flags{};
    std::array<int, numberCount> m_numbers{};
    QStringList m_excludedPaths;
    std::optional<ColorScheme> m_appliedColorScheme;
};

} // namespace kestrow
