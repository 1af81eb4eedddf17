#pragma once

#include "presentation/SettingsScreen.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

namespace kestrow {

// What the Settings sheet shows, tab by tab, and the calls its controls make. Each tab is one
// map of its texts and rows, computed again on every change of the settings or the screen.
class SettingsView : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantMap frame READ frame CONSTANT)
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT)
    Q_PROPERTY(int selectedTab READ selectedTab WRITE setSelectedTab NOTIFY changed)
    Q_PROPERTY(QVariantMap general READ general NOTIFY changed)
    Q_PROPERTY(QVariantMap developer READ developer NOTIFY changed)
    Q_PROPERTY(QVariantMap safety READ safety NOTIFY changed)
    Q_PROPERTY(QVariantMap agents READ agents NOTIFY changed)
    Q_PROPERTY(QVariantMap exclusions READ exclusions NOTIFY changed)

public:
    // Shows a file in the desktop's file manager.
    using Reveal = std::function<void(const QString& path)>;

    SettingsView(AppState& state, SettingsScreen::Clipboard clipboard, Reveal reveal, bool trayAvailable,
                 QObject* parent = nullptr);

    // title, detail and done: the sidebar's heading and the button that closes the sheet.
    [[nodiscard]] static QVariantMap frame();
    // title, heading and subtitle of each tab.
    [[nodiscard]] static QVariantList tabs();
    [[nodiscard]] int selectedTab() const { return static_cast<int>(SettingsTabValue(m_screen.selectedTab())); }
    void setSelectedTab(int index);
    [[nodiscard]] QVariantMap general() const;
    [[nodiscard]] QVariantMap developer() const;
    [[nodiscard]] QVariantMap safety() const;
    [[nodiscard]] QVariantMap agents() const;
    [[nodiscard]] QVariantMap exclusions() const;

    // A switch's `flag` and its new state.
    Q_INVOKABLE void setFlag(int flag, bool on);
    Q_INVOKABLE void chooseTheme(const QString& raw);
    Q_INVOKABLE void chooseStyle(const QString& raw);
    Q_INVOKABLE void chooseJunkThreshold(int gigabytes);
    Q_INVOKABLE void chooseLowDiskAlert(int gigabytes);
    Q_INVOKABLE void chooseSensitivity(int megabytes);
    Q_INVOKABLE void openAccessSettings();
    Q_INVOKABLE void verifyAudit();
    Q_INVOKABLE void revealAuditLog();
    Q_INVOKABLE void copyMCPConfiguration();
    // The folder the chooser gave, as a local file URL; its name's bytes are kept as they are.
    Q_INVOKABLE void addExclusion(const QUrl& folder);
    Q_INVOKABLE void removeExclusion(int index);
    Q_INVOKABLE void done();

    // The path of a local file URL, byte for byte: percent escapes that are no UTF-8 stay the
    // bytes they stand for. Empty for a URL of no local file.
    [[nodiscard]] static QString localPath(const QUrl& url);

Q_SIGNALS:
    void changed();

private:
    AppState& m_state;
    SettingsScreen m_screen;
    Reveal m_reveal;
    bool m_trayAvailable;
};

} // namespace kestrow
