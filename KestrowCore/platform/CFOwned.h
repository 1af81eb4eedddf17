#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace kestrow {

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

} // namespace kestrow
