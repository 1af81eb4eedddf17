#pragma once

#include "presentation/ThemeColor.h"
#include "state/AppState.h"

#include <QString>

#include <vector>

namespace kestrow {

// The Pulse sidebar's storage footprint: what each kind of storage the last scan found holds,
// then the orphans of applications that are gone.
class FootprintPanel {
public:
    struct Row {
        QString symbol;
        QString label;
        QString value;
        ThemeColor color; // of the category's tier; the orphans in the colour of asking first
    };

    [[nodiscard]] static QString title();
    // Before the first scan the panel says only that one is due: a heading and a line.
    [[nodiscard]] static bool isPending(const AppState& state);
    [[nodiscard]] static QString pendingTitle();
    [[nodiscard]] static QString pendingDetail();
    // Each category found, largest first, and the orphan row last; empty before the first scan.
    [[nodiscard]] static std::vector<Row> rows(const AppState& state);
};

} // namespace kestrow
