#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// User and system diagnostic and crash reports.
class CrashReportScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
