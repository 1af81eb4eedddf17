#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Gradle's dependency caches, wrapper distributions and daemon state.
class GradleCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
