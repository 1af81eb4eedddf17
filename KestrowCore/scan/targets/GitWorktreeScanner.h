#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Git worktrees and linked checkouts whose other half is gone, in the project folders.
class GitWorktreeScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
