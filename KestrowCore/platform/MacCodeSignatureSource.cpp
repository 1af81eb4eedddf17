#include "platform/CodeSignatureSource.h"

#include "platform/NativePath.h"

#include <CoreFoundation/CoreFoundation.h>
#include <Security/Security.h>

namespace kestrow {

namespace {

// Releases a Core Foundation object it was given by a Copy or Create call.
class CFOwned {
public:
    explicit CFOwned(CFTypeRef reference = nullptr)
        : m_reference(reference)
    {
    }
    ~CFOwned()
    {
        if (m_reference)
            CFRelease(m_reference);
    }
    CFOwned(const CFOwned&) = delete;
    CFOwned& operator=(const CFOwned&) = delete;
    [[nodiscard]] CFTypeRef get() const { return m_reference; }

private:
    CFTypeRef m_reference;
};

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
