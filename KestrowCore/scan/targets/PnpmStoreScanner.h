#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// pnpm's content-addressed stores, wherever pnpm put them.
class PnpmStoreScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
