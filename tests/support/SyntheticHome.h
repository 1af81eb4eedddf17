#pragma once

#include "TestHome.h"

#include "platform/FileManager.h"
#include "storage/DiscoveredItem.h"

#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace kestrow::test {

// A developer's home as the scanners meet it: uv caches, model stores, Docker's disks, Xcode
// products, a stray node_modules, and the user's caches, logs, crash reports, Mail downloads
// and browser caches, with the decoys each scanner must pass over. Docker.app is installed in
// `applicationsFolder()`.
//
// Without Full Disk Access four folders refuse to be listed, as privacy protection refuses
// them on a Mac: "Library/Caches/com.apple.HomeKit", "Library/Logs/DiagnosticReports",
// "Library/Containers/com.apple.mail/Data/Library" and "Library/Caches/com.apple.Safari"; and
// "Library/Caches/Vivaldi" refuses too. They are locked with mode 000; where that refuses
// nothing (root), `fileManager()` refuses them itself.
// Items as comparable lines, sorted: "path below `home` | CATEGORY | TIER | description |
// rule id | file count, logical bytes | flags", the flags being "orphaned", "locked" and "fda"
// (requires Full Disk Access) where set.
[[nodiscard]] std::vector<std::string> itemLines(const std::vector<DiscoveredItem>& items, const QString& home);

class SyntheticHome : public TestHome {
public:
    enum class Access { restricted, fullDiskAccess };

    explicit SyntheticHome(Access access = Access::restricted);

    [[nodiscard]] QString applicationsFolder() const { return path(QStringLiteral("Applications")); }
    // Absolute paths of the refused folders; empty with Full Disk Access.
    [[nodiscard]] const QStringList& refusedFolders() const { return m_refused; }
    // The file manager a scan of this home must use for the refusals to bite.
    [[nodiscard]] std::shared_ptr<const FileManager> fileManager() const;

    // The items as `itemLines` below this home.
    [[nodiscard]] std::vector<std::string> lines(const std::vector<DiscoveredItem>& items) const
    {
        return itemLines(items, path());
    }

private:
    QStringList m_refused;
};

} // namespace kestrow::test
