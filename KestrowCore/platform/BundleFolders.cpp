#include "platform/BundleFolders.h"

#if defined(__APPLE__)
#include <CoreFoundation/CoreFoundation.h>
#else
#include <array>
#include <cctype>
#endif

namespace kestrow {

#if defined(__APPLE__)

bool BundleFolders::isBundle(std::string_view path)
{
    const CFURLRef url = CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), true);
    if (!url)
        return false;
    CFTypeRef value = nullptr;
    const bool known = CFURLCopyResourcePropertyForKey(url, kCFURLIsPackageKey, &value, nullptr) && value;
    const bool bundle =
        known && CFGetTypeID(value) == CFBooleanGetTypeID() && CFBooleanGetValue(static_cast<CFBooleanRef>(value));
    if (value)
        CFRelease(value);
    CFRelease(url);
    return bundle;
}

#else

bool BundleFolders::isBundle(std::string_view path)
{
    static constexpr std::array<std::string_view, 7> suffixes{".app",  ".framework", ".bundle",       ".plugin",
                                                              ".kext", ".xcarchive", ".photoslibrary"};
    const std::string_view name = path.substr(path.rfind('/') + 1);
    for (const std::string_view suffix : suffixes) {
        // The bare suffix (".app") is a hidden name, not a bundle.
        if (name.size() <= suffix.size())
            continue;
        const std::string_view tail = name.substr(name.size() - suffix.size());
        bool equal = true;
        for (std::size_t at = 0; at < suffix.size() && equal; ++at)
            equal = std::tolower(static_cast<unsigned char>(tail[at])) == suffix[at];
        if (equal)
            return true;
    }
    return false;
}

#endif

} // namespace kestrow
