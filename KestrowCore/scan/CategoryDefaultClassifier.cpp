#include "scan/CategoryDefaultClassifier.h"

namespace kestrow {

ClassifyFunction categoryDefaultClassifier()
{
    return [](const QString&, StorageCategory category, bool) {
        return RiskClassificationResult{.riskTier = category.defaultRiskTier(),
                                        .confidence = 0.85,
                                        .reason = QStringLiteral("Category default risk classification."),
                                        .matchedRuleId = std::nullopt,
                                        .hasCacheDirTag = false};
    };
}

} // namespace kestrow
