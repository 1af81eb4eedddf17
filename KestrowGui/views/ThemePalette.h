#pragma once

#include <QColor>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace kestrow {

// The named colours for the QML screens, in the light or the dark scheme. The window decides
// the scheme from the setting and the system; everything else reads it from here.
class ThemePalette : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Theme)
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY changed)
    Q_PROPERTY(bool systemIsDark READ systemIsDark CONSTANT)
    Q_PROPERTY(QColor ink READ ink NOTIFY changed)
    Q_PROPERTY(QColor inkSecondary READ inkSecondary NOTIFY changed)
    Q_PROPERTY(QColor inkTertiary READ inkTertiary NOTIFY changed)
    Q_PROPERTY(QColor puttyWell READ puttyWell NOTIFY changed)
    Q_PROPERTY(QColor trackSystem READ trackSystem NOTIFY changed)
    Q_PROPERTY(QColor trackApps READ trackApps NOTIFY changed)
    Q_PROPERTY(QColor trackOther READ trackOther NOTIFY changed)
    Q_PROPERTY(QColor safeTeal READ safeTeal NOTIFY changed)
    Q_PROPERTY(QColor askAmber READ askAmber NOTIFY changed)
    Q_PROPERTY(QColor accentOrange READ accentOrange NOTIFY changed)
    Q_PROPERTY(QColor dangerRed READ dangerRed NOTIFY changed)
    Q_PROPERTY(QColor window READ window NOTIFY changed)
    Q_PROPERTY(QColor panel READ panel NOTIFY changed)
    Q_PROPERTY(QColor sidebar READ sidebar NOTIFY changed)
    Q_PROPERTY(QColor hairline READ hairline NOTIFY changed)

public:
    explicit ThemePalette(QObject* parent = nullptr);

    [[nodiscard]] bool dark() const { return m_dark; }
    void setDark(bool dark);
    // Read once from the application's palette: Qt 6.4 tells no later change of it.
    [[nodiscard]] static bool systemIsDark();

    // A named colour of the current scheme; the screens' models name their colours.
    Q_INVOKABLE [[nodiscard]] QColor color(const QString& name) const;

    [[nodiscard]] QColor ink() const;
    [[nodiscard]] QColor inkSecondary() const;
    [[nodiscard]] QColor inkTertiary() const;
    [[nodiscard]] QColor puttyWell() const;
    [[nodiscard]] QColor trackSystem() const;
    [[nodiscard]] QColor trackApps() const;
    [[nodiscard]] QColor trackOther() const;
    [[nodiscard]] QColor safeTeal() const;
    [[nodiscard]] QColor askAmber() const;
    [[nodiscard]] QColor accentOrange() const;
    [[nodiscard]] QColor dangerRed() const;
    // The surfaces the named colours stand on.
    [[nodiscard]] QColor window() const { return QColor::fromRgb(m_dark ? 0x18191c : 0xf6f4ef); }
    [[nodiscard]] QColor panel() const { return QColor::fromRgb(m_dark ? 0x222428 : 0xffffff); }
    [[nodiscard]] QColor sidebar() const { return QColor::fromRgb(m_dark ? 0x1d1e22 : 0xeeebe4); }
    [[nodiscard]] QColor hairline() const { return QColor::fromRgb(m_dark ? 0x34363b : 0xdcd8cf); }

Q_SIGNALS:
    void changed();

private:
    bool m_dark;
};

} // namespace kestrow
