#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Bun's package install cache.
class BunCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
