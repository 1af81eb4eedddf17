#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Xcode's DerivedData, archives and simulator caches.
class XcodeArtifactScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
