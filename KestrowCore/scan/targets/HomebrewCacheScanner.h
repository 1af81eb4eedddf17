#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Homebrew's downloads, Cask and API caches; unfinished downloads stand apart.
class HomebrewCacheScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
