#pragma once

#include "cleanup/AuditLogger.h"
#include "cleanup/TrashHoldings.h"
#include "platform/FileManager.h"

#include <memory>

namespace kestrow {

// Tells which entries of the Trash Kestrow's runs put there. An entry belongs to a run when
// its record names one of the paths of the run's "trash" line (as given, or as the folders
// above it resolve now) and was made within the run's time, which the line gives by its time
// stamp and duration. Each entry belongs to one run at most; the rest are other programs'.
// The Trash folders read are the home Trash and those at the top of the file systems the
// runs' paths lie on. Stateless apart from its collaborators.
class TrashLedger {
public:
    struct Options {
        std::shared_ptr<const FileManager> fileManager; // absent: the real disk
        std::shared_ptr<AuditLogger> auditLogger;       // required
    };

    explicit TrashLedger(Options options);

    // Reads the log and the Trash folders and measures every entry. Throws AuditLoggerError
    // when the log cannot be read.
    [[nodiscard]] TrashHoldings read() const;

private:
    std::shared_ptr<const FileManager> m_fileManager;
    std::shared_ptr<AuditLogger> m_auditLogger;
};

} // namespace kestrow
