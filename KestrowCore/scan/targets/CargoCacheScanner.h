#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Cargo's crate archives, unpacked sources and git caches; never its binaries.
class CargoCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
