#pragma once

#include "scan/TargetScan.h"
#include "scan/targets/TargetContext.h"

namespace kestrow {

// One family of known locations. It emits what it finds through `scan`, in a fixed order,
// and holds no state: everything it looks at comes from `context`.
class TargetScanner {
public:
    virtual ~TargetScanner() = default;
    // Throws CancellationError, or what the classifier throws.
    virtual void scan(TargetScan& scan, const TargetContext& context) const = 0;
};

} // namespace kestrow
