#include "CheckOutput.h"

#include "CommandLine.h"

#include "support/JsonWriter.h"

namespace kestrow::cli {

namespace {

QString line(const PathCheckOutcome& outcome)
{
    const RiskClassificationResult& classification = outcome.classification;
    QString text = outcome.path + QStringLiteral(": ");
    text += outcome.error ? QStringLiteral("refused: ") + outcome.error->description() : QStringLiteral("allowed.");
    text += QStringLiteral(" Tier: %1 (confidence %2)")
                .arg(classification.riskTier.displayName(), QString::number(classification.confidence, 'f', 2));
    // The refusal already stands in front when it is the reason.
    if (!outcome.error || classification.reason != outcome.error->description())
        text += QStringLiteral(": ") + classification.reason;
    else
        text += QLatin1Char('.');
    if (classification.matchedRuleId)
        text += QStringLiteral(" [rule ") + *classification.matchedRuleId + QLatin1Char(']');
    if (classification.hasCacheDirTag)
        text += QStringLiteral(" [cache directory tag]");
    return text + QLatin1Char('\n');
}

} // namespace

void reportChecks(const std::vector<PathCheckOutcome>& outcomes, bool json)
{
    if (json) {
        JsonValue::Array array;
        for (const PathCheckOutcome& outcome : outcomes)
            array.push_back(outcome.toJson());
        printOut(JsonWriter::write(array, {.pretty = true, .sortKeys = false}) + '\n');
    } else {
        for (const PathCheckOutcome& outcome : outcomes)
            printOut(line(outcome));
    }
}

} // namespace kestrow::cli
