#pragma once

#include "TestHome.h"

#include "platform/SoftwareRoot.h"
#include "storage/RiskTier.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kestrow::test {

// A Linux machine's installed software, built inside a TestHome: a fake system root
// ("system-root") with the system's desktop entries, a dpkg info folder, programs on the search
// path, a system Flatpak installation and a Snap; and in the home the user's Flatpak, two
// AppImages (one integrated with an entry and icons), a program of the user's own with its
// entry, and the XDG folders full of what these programs and the desktop keep, among which lie
// the leftovers of programs that are gone.
class SyntheticLinuxSoftware {
public:
    struct Leftover {
        QString path; // relative to the home
        RiskTier tier;
    };

    explicit SyntheticLinuxSoftware(const TestHome& home);

    [[nodiscard]] SoftwareRoot root() const;
    [[nodiscard]] QString rootPath() const { return m_home.path(QStringLiteral("system-root")); }
    // The entries of the searched folders that something installed, or the desktop, owns.
    [[nodiscard]] const QStringList& ownedEntries() const { return m_owned; }
    [[nodiscard]] const std::vector<Leftover>& leftovers() const { return m_leftovers; }

private:
    void writeEntry(const QString& relative, const QString& body) const;

    const TestHome& m_home;
    QStringList m_owned;
    std::vector<Leftover> m_leftovers;
};

} // namespace kestrow::test
