#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Attachments Mail saved to disk.
class MailDownloadScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
