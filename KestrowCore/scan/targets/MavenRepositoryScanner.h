#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Maven's local repository, which also holds the artefacts installed from the user's own builds.
class MavenRepositoryScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
