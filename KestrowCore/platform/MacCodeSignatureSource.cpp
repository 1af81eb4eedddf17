#include "platform/CodeSignatureSource.h"

#include "platform/CFOwned.h"
#include "platform/NativePath.h"

#include <CoreFoundation/CoreFoundation.h>
#include <Security/Security.h>

namespace kestrow {

namespace {

std::optional<QString> stringValue(CFTypeRef value)
{
    if (!value || CFGetTypeID(value) != CFStringGetTypeID())
        return std::nullopt;
    return QString::fromCFString(static_cast<CFStringRef>(value));
}

} // namespace

std::optional<SigningInformation> CodeSignatureSource::read(const QString& bundlePath)
{
    const QByteArray path = NativePath::encode(bundlePath);
    const CFOwned url(CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8*>(path.constData()),
                                                              path.size(), true));
    if (!url.get())
        return std::nullopt;
    SecStaticCodeRef code = nullptr;
    if (SecStaticCodeCreateWithPath(static_cast<CFURLRef>(url.get()), kSecCSDefaultFlags, &code) != errSecSuccess ||
        !code)
        return std::nullopt;
    const CFOwned codeOwner(code);
    CFDictionaryRef rawInformation = nullptr;
    if (SecCodeCopySigningInformation(code, kSecCSSigningInformation, &rawInformation) != errSecSuccess ||
        !rawInformation)
        return std::nullopt;
    const CFOwned informationOwner(rawInformation);
    if (CFGetTypeID(rawInformation) != CFDictionaryGetTypeID())
        return std::nullopt;

    SigningInformation information;
    information.hasPlatformIdentifier = CFDictionaryContainsKey(rawInformation, CFSTR("platform-identifier")) != 0;
    information.teamIdentifier = stringValue(CFDictionaryGetValue(rawInformation, kSecCodeInfoTeamIdentifier));
    if (const CFTypeRef flags = CFDictionaryGetValue(rawInformation, kSecCodeInfoFlags);
        flags && CFGetTypeID(flags) == CFNumberGetTypeID()) {
        std::uint32_t value = 0;
        CFNumberGetValue(static_cast<CFNumberRef>(flags), kCFNumberSInt32Type, &value);
        information.codeFlags = value;
    }
    if (const CFTypeRef certificates = CFDictionaryGetValue(rawInformation, kSecCodeInfoCertificates);
        certificates && CFGetTypeID(certificates) == CFArrayGetTypeID() &&
        CFArrayGetCount(static_cast<CFArrayRef>(certificates)) > 0) {
        const auto leaf = static_cast<SecCertificateRef>(
            const_cast<void*>(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(certificates), 0)));
        const CFOwned summary(SecCertificateCopySubjectSummary(leaf));
        information.leafCertificateSummary = stringValue(summary.get());
    }
    return information;
}

} // namespace kestrow
