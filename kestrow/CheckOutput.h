#pragma once

#include "policy/PathCheckOutcome.h"

#include <vector>

namespace kestrow::cli {

// Prints what checking the paths found: a JSON array, or one line per path with the refusal,
// the tier, its confidence and reason, the matched rule and a cache directory tag.
void reportChecks(const std::vector<PathCheckOutcome>& outcomes, bool json);

} // namespace kestrow::cli
