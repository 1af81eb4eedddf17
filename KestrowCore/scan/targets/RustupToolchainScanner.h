#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// The toolchains rustup installed: no cache, builds need them, but an unused one can go.
class RustupToolchainScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
