#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// npm's download caches below ~/.npm.
class NpmCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
