#pragma once

#include "platform/FileManager.h"

#include <QStringList>

namespace kestrow::test {

// The disk as a user without permission on chosen folders sees it, for tests that run as root
// (where permission bits refuse nothing): each refused folder exists, but listing or walking it
// fails with EACCES, and what lies below it can't be seen, also inside a walk.
class RefusingFileManager : public FileManager {
public:
    explicit RefusingFileManager(QStringList refusedFolders);

    [[nodiscard]] std::optional<FileStatus> status(const QString& path, bool followLinks = false) const override;
    [[nodiscard]] bool fileExists(const QString& path, bool* isDirectory = nullptr) const override;
    [[nodiscard]] DirectoryListing contentsOfDirectory(const QString& path, bool skipHidden) const override;
    void walk(const QString& root, WalkSink& sink, std::stop_token stop = {},
              const WalkOptions& options = {}) const override;

private:
    [[nodiscard]] bool isRefused(const QString& path) const;
    [[nodiscard]] bool isBelowRefused(const QString& path) const;

    QStringList m_refused;
};

} // namespace kestrow::test
