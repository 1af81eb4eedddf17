#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// The user's log folders other than crash reports.
class UserLogScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
