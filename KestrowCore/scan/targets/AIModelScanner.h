#pragma once

#include "scan/targets/TargetScanner.h"

namespace kestrow {

// Local AI model stores: HuggingFace, Whisper, Ollama, LM Studio and vLLM.
class AIModelScanner final : public TargetScanner {
public:
    void scan(TargetScan& scan, const TargetContext& context) const override;
};

} // namespace kestrow
