#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// What rootless container engines keep below the home: Docker's and Podman's storage and
// Podman's machine images (Linux).
class ContainerStorageScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
