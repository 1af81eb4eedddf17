#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// The caches of editors and IDEs: JetBrains products and VS Code with its forks (Linux).
class EditorCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
