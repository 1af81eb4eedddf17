#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// The user's cache folders other than those of browsers and developer tools.
class UserCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
