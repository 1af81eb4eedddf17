#pragma once

#include <QByteArray>
#include <QVariant>

namespace kestrow::test {

// Writes property lists for tests with the same library the core reads them with: maps,
// lists, strings, booleans, integers, reals and byte arrays.
class PropertyListFile {
public:
    enum class Format { xml, binary };

    [[nodiscard]] static QByteArray encode(const QVariant& value, Format format);
};

} // namespace kestrow::test
