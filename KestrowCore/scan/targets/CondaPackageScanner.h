#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// conda's package caches: downloaded archives and the extracted packages that environments
// hard-link, so removing them frees less than they measure.
class CondaPackageScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
