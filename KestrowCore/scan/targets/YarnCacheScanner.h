#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Yarn's package cache in the XDG cache folder.
class YarnCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
