#pragma once

#include "platform/FileManager.h"

#include <QString>

namespace kestrow {

// Deletes an anchored item for good, through descriptors. A link or a file is unlinked itself;
// a folder is emptied depth first, each entry unlinked relative to its open folder, never
// through a link and never into another mount. A folder that is a mount point, or holds one
// anywhere below, is left whole: the tree is looked over before anything goes.
class TreeRemover {
public:
    explicit TreeRemover(const FileManager& fileManager);

    // Fails, naming the item, when its name no longer holds the anchored object; otherwise
    // stops at the first thing that cannot go and names it.
    [[nodiscard]] FileOperationResult remove(const AnchoredItem& item) const;

    // "Could not remove “PATH”: " and the system's text for `errorCode`.
    [[nodiscard]] static FileOperationResult failure(const QString& path, int errorCode);

private:
    [[nodiscard]] FileOperationResult removeFolder(const AnchoredItem& item) const;

    const FileManager& m_fileManager;
};

} // namespace kestrow
