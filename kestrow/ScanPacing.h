#pragma once

#include "scan/ThermalGovernor.h"

#include <memory>

namespace kestrow::cli {

// The governor of a command's scan. Paced: the default one, which tells on standard error when
// it slows or pauses the scan and why, and when it lets it run at full speed again. Otherwise
// one that never holds the scan back.
[[nodiscard]] std::shared_ptr<ThermalGovernor> makeScanGovernor(bool paced);

} // namespace kestrow::cli
