#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// The browsers' own caches.
class BrowserCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
