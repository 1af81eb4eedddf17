#pragma once

#include "CommandLine.h"

#include "cleanup/AuditLogger.h"
#include "cleanup/TrashHoldings.h"

#include <memory>

namespace kestrow::cli {

// What the Trash holds for the home's log (TrashLedger). A log that cannot be read throws a
// failure that names it and says what to do.
[[nodiscard]] TrashHoldings readTrashHoldings(const std::shared_ptr<AuditLogger>& log);

// The run with this operation id whose items went to the Trash. Throws UsageError for an id
// that is not one, is not in the log, or names a run of another kind, saying why its items
// cannot be had back (a purge's are gone for good).
[[nodiscard]] const TrashedRun& trashedRun(const TrashHoldings& holdings, const std::string& operationId,
                                           const QString& logFile);

// The runs' items still in the Trash, by run (time, client, items, bytes, the original paths),
// then the total and the line for other programs' items.
[[nodiscard]] QString holdingsText(const std::vector<const TrashedRun*>& runs, const TrashHoldings& holdings);

// Registers `kestrow trash` and its `list` command, and returns the group; `trash empty`
// adds itself to it (setupTrashEmptyCommand).
CLI::App& setupTrashCommand(CommandLine& commandLine);

} // namespace kestrow::cli
