#pragma once

#include "scan/TargetScan.h"

namespace kestrow {

// Classification by the category's default tier alone.
[[nodiscard]] ClassifyFunction categoryDefaultClassifier();

} // namespace kestrow
