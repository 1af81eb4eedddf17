#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace kestrow {

// What the platform's code-signing service says of a bundle, before any judgement on it.
struct SigningInformation {
    bool hasPlatformIdentifier = false; // the signature names an operating system platform
    std::optional<QString> teamIdentifier;
    std::uint32_t codeFlags = 0;                   // the signature's flags; 0 when it has none
    std::optional<QString> leafCertificateSummary; // the first certificate's subject summary
};

// Reads code signatures. Only macOS signs bundles so; elsewhere no bundle has a signature.
class CodeSignatureSource {
public:
    // Nothing when the bundle has no signature, or the signature cannot be read.
    [[nodiscard]] static std::optional<SigningInformation> read(const QString& bundlePath);
};

} // namespace kestrow
