#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Docker's VM disk images, orphaned when Docker is neither installed nor running.
class DockerVMScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
