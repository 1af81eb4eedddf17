#include "SyntheticApps.h"

#include <QFileInfo>

namespace kestrow::test {

namespace {

void appendWord(QByteArray& bytes, std::uint32_t value, SyntheticApps::ByteOrder order)
{
    for (int index = 0; index < 4; ++index) {
        const int shift = order == SyntheticApps::ByteOrder::big ? 24 - 8 * index : 8 * index;
        bytes.append(static_cast<char>((value >> shift) & 0xFF));
    }
}

} // namespace

QByteArray SyntheticApps::thinMachO(std::uint32_t cpuType, ByteOrder order)
{
    QByteArray head;
    appendWord(head, 0xFEEDFACF, order);
    appendWord(head, cpuType, order);
    appendWord(head, 0, order); // sub-type
    appendWord(head, 2, order); // an executable
    head.append(64, '\0');
    return head;
}

QByteArray SyntheticApps::fatMachO(const std::vector<std::uint32_t>& cpuTypes, ByteOrder order,
                                   std::optional<std::uint32_t> sliceCount)
{
    QByteArray head;
    appendWord(head, 0xCAFEBABE, order);
    appendWord(head, sliceCount.value_or(static_cast<std::uint32_t>(cpuTypes.size())), order);
    for (const std::uint32_t cpuType : cpuTypes) {
        appendWord(head, cpuType, order);
        appendWord(head, 0, order);      // sub-type
        appendWord(head, 0x4000, order); // offset
        appendWord(head, 0x1000, order); // size
        appendWord(head, 14, order);     // alignment
    }
    return head;
}

QByteArray SyntheticApps::elf(std::uint16_t machine, ByteOrder order)
{
    QByteArray head("\x7F"
                    "ELF",
                    4);
    head.append(static_cast<char>(2)); // 64-bit
    head.append(static_cast<char>(order == ByteOrder::big ? 2 : 1));
    head.append(static_cast<char>(1)); // version
    head.append(9, '\0');
    head.append(order == ByteOrder::big ? QByteArray("\0\x02", 2) : QByteArray("\x02\0", 2)); // an executable
    const char low = static_cast<char>(machine & 0xFF);
    const char high = static_cast<char>(machine >> 8);
    head.append(order == ByteOrder::big ? high : low);
    head.append(order == ByteOrder::big ? low : high);
    head.append(44, '\0');
    return head;
}

QVariantMap SyntheticApps::info(const QString& identifier, const QString& name, const QString& shortVersion)
{
    return {
        {QStringLiteral("CFBundleIdentifier"), identifier},
        {QStringLiteral("CFBundleName"), name},
        {QStringLiteral("CFBundleShortVersionString"), shortVersion},
        {QStringLiteral("CFBundleVersion"), QStringLiteral("100")},
        {QStringLiteral("CFBundleExecutable"), name},
    };
}

QString SyntheticApps::make(const TestHome& home, const Bundle& bundle)
{
    const QString root = home.makeDirectory(bundle.path);
    const QString contents = bundle.path + QStringLiteral("/Contents/");
    if (bundle.rawInfo)
        home.writeFile(contents + QStringLiteral("Info.plist"), *bundle.rawInfo);
    else if (bundle.info)
        home.writeFile(contents + QStringLiteral("Info.plist"), PropertyListFile::encode(*bundle.info, bundle.format));
    if (bundle.executable) {
        QString name = QFileInfo(bundle.path).completeBaseName();
        if (bundle.info && bundle.info->value(QStringLiteral("CFBundleExecutable")).typeId() == QMetaType::QString)
            name = bundle.info->value(QStringLiteral("CFBundleExecutable")).toString();
        home.writeFile(contents + QStringLiteral("MacOS/") + name, *bundle.executable);
    }
    for (int index = 0; index < bundle.dataFiles; ++index)
        home.writeFile(contents + QStringLiteral("Resources/data/%1.bin").arg(index), bundle.dataFileBytes);
    return root;
}

} // namespace kestrow::test
