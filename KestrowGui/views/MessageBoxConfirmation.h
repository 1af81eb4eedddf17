#pragma once

#include "state/SweepConfirmation.h"

namespace kestrow {

// The question before a Sweep as a modal message box: the message, the grouped body below it,
// and the buttons in the request's order, the first one accepting.
class MessageBoxConfirmation : public SweepConfirmation {
public:
    [[nodiscard]] bool confirm(const SweepConfirmationRequest& request) override;
};

} // namespace kestrow
