#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// The caches of compilers, build systems and tool downloaders in the XDG cache folder (Linux).
class BuildToolCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
