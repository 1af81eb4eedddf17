#pragma once

#include "platform/FileManager.h"
#include "platform/TrashEntry.h"
#include "platform/TrashLocation.h"
#include "platform/UniqueFd.h"

#include <optional>
#include <vector>

namespace kestrow {

// A freedesktop.org Trash folder opened for reading its entries and for taking them out
// again, with its files/ and info/ held open: the folder itself, files/ and info/ are never
// reached through a link and must be the user's own. Entries are acted on through those open
// folders, each checked to be the object that was listed. Move-only; `fileManager` must
// outlive it.
class TrashFolder {
public:
    // Nothing when the folder is absent or not one to use (a link, not a folder, another
    // user's), which for reading is a Trash with nothing in it.
    [[nodiscard]] static std::optional<TrashFolder> open(const FileManager& fileManager,
                                                         const TrashLocation::Folder& location);

    // Every entry with a readable record and an item of that name in files/, in name order.
    // Records without their item, and items without their record, are left out.
    [[nodiscard]] std::vector<TrashEntry> entries() const;

    // The entry's item, reached through the open files/ folder; fails with ESTALE when
    // another object now has its name, ENOENT when it is gone.
    [[nodiscard]] AnchorOutcome anchor(const TrashEntry& entry) const;

    // Moves the anchored entry back to its original path, making absent folders on the way
    // (never through a link), and never replacing anything there; then removes its record.
    // On failure the item stays in the Trash and the description (TrashEntryError) says why.
    [[nodiscard]] FileOperationResult putBack(const AnchoredItem& item, const TrashEntry& entry) const;

    // Deletes the anchored entry for good (as FileManager::removeItem does), then its record.
    [[nodiscard]] FileOperationResult erase(const AnchoredItem& item, const TrashEntry& entry) const;

private:
    TrashFolder(const FileManager& fileManager, TrashLocation::Folder location, UniqueFd files, UniqueFd info);

    // 0, or the errno of removing the entry's record.
    [[nodiscard]] int removeRecord(const TrashEntry& entry) const;

    const FileManager* m_fileManager;
    TrashLocation::Folder m_location;
    UniqueFd m_files;
    UniqueFd m_info;
};

} // namespace kestrow
