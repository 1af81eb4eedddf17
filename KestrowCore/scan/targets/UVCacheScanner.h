#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// uv's package and wheel caches, one item per cache folder.
class UVCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
