#pragma once

#include "PropertyListFile.h"
#include "TestHome.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <cstdint>
#include <optional>
#include <vector>

namespace kestrow::test {

// Application bundles for tests, built inside a TestHome: an Info.plist (XML, binary, broken
// or none), an executable whose head names chosen processors, and files of data.
class SyntheticApps {
public:
    static constexpr std::uint32_t cpuArm64 = 0x0100000C;
    static constexpr std::uint32_t cpuX86_64 = 0x01000007;
    static constexpr std::uint32_t cpuI386 = 7;
    static constexpr std::uint16_t elfX86_64 = 62;
    static constexpr std::uint16_t elfAArch64 = 183;

    enum class ByteOrder { little, big };

    // A 64-bit thin Mach-O head.
    [[nodiscard]] static QByteArray thinMachO(std::uint32_t cpuType, ByteOrder order = ByteOrder::little);
    // A fat head with one 20-byte entry per CPU type; `sliceCount` overrides the count written
    // (a Java class file has the same magic and a count of 45 or more).
    [[nodiscard]] static QByteArray fatMachO(const std::vector<std::uint32_t>& cpuTypes,
                                             ByteOrder order = ByteOrder::big,
                                             std::optional<std::uint32_t> sliceCount = std::nullopt);
    [[nodiscard]] static QByteArray elf(std::uint16_t machine, ByteOrder order = ByteOrder::little);

    // The usual keys of an Info.plist.
    [[nodiscard]] static QVariantMap info(const QString& identifier, const QString& name,
                                          const QString& shortVersion = QStringLiteral("1.0"));

    struct Bundle {
        QString path;                    // relative to the home, e.g. "Applications/Acme.app"
        std::optional<QVariantMap> info; // absent: no Info.plist
        PropertyListFile::Format format = PropertyListFile::Format::xml;
        std::optional<QByteArray> rawInfo; // written instead of `info`, as it stands
        // Written to Contents/MacOS/ under CFBundleExecutable, else the bundle's base name.
        std::optional<QByteArray> executable;
        int dataFiles = 0; // Contents/Resources/data/<n>.bin
        std::int64_t dataFileBytes = 0;
    };

    // Builds the bundle; returns its absolute path.
    static QString make(const TestHome& home, const Bundle& bundle);
};

} // namespace kestrow::test
