#pragma once

#include "cleanup/TrashHoldings.h"

#include <QString>

namespace kestrow::cli {

// The line after a run that moved items to the Trash: how much of Kestrow's runs now waits
// there and how to free it, and how much of what the last run freed stays held by hard links
// outside what it moved. Empty when nothing of Kestrow's is in the Trash.
[[nodiscard]] QString trashNoteText(const TrashHoldings& holdings);

// Prints that line for the home's log when standard output is a terminal; a log or a Trash
// that cannot be read leaves it out, as it is only a hint.
void printTrashNote(const QString& home);

} // namespace kestrow::cli
