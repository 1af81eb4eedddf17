#pragma once

#include "cleanup/AuditLogger.h"
#include "cleanup/RestoreRun.h"
#include "platform/FileManager.h"
#include "platform/TrashEntry.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kestrow {

// Puts items of the Trash back where they came from, one after another: each is reached
// through its open Trash folder, checked to be the entry that was listed, measured, and moved
// back without ever replacing what stands at its original path now (then it stays in the
// Trash, and its record says where both are). Every item gets a record whatever happens, and
// every restore that moves anything leaves one "restore" line in the audit log, with the
// paths put back and their bytes. Immutable.
class TrashRestorer {
public:
    struct Options {
        std::shared_ptr<const FileManager> fileManager; // absent: the real disk
        std::shared_ptr<AuditLogger> auditLogger;       // absent: no line is written
        // Told when the log could not take the line; the restore stands all the same.
        std::function<void(const AuditLoggerError&)> onAuditFailure;
    };

    // What to put back: an entry of the Trash, or only the path when nothing of it is left.
    struct Item {
        QString originalPath;
        std::optional<TrashEntry> entry;
    };

    explicit TrashRestorer(Options options = {});

    // Puts every item back, or with `dryRun` only checks that it could go and measures it
    // (nothing is moved and no line is written). Throws TrashPipelineError::emptyTargetList
    // for an empty list, before anything is touched.
    RestoreRun restore(const std::vector<Item>& items, bool dryRun, const QString& client) const;

private:
    [[nodiscard]] TrashItemRecord restoreItem(const Item& item, bool dryRun) const;

    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<AuditLogger> m_auditLogger;
    std::function<void(const AuditLoggerError&)> m_onAuditFailure;
};

} // namespace kestrow
