#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// pip's HTTP response and wheel caches.
class PipCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
