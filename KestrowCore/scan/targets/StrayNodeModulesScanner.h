#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// A node_modules lying in the home itself, which belongs to no project.
class StrayNodeModulesScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
