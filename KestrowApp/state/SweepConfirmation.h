#pragma once

#include "storage/DiscoveredItem.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace kestrow {

// What the question before a Sweep says: how much goes, and where from by category.
struct SweepConfirmationRequest {
    QString message;
    QString body;
    QStringList buttons; // the first one accepts

    [[nodiscard]] static SweepConfirmationRequest forSelection(const std::vector<DiscoveredItem>& selection);
};

// Asks the user before a Sweep. The application supplies it (a modal dialog); it is called on
// the main thread and blocks the Sweep until answered.
class SweepConfirmation {
public:
    virtual ~SweepConfirmation() = default;
    // True only when the first button was taken.
    [[nodiscard]] virtual bool confirm(const SweepConfirmationRequest& request) = 0;
};

} // namespace kestrow
