#include "platform/ExecutableHeadReader.h"

#include "platform/FileManager.h"

#include <cstdint>

namespace kestrow {

namespace {

constexpr std::uint32_t machO64Magic = 0xFEEDFACF;
constexpr std::uint32_t fatMagic = 0xCAFEBABE;
constexpr std::uint32_t fatMagicSwapped = 0xBEBAFECA;
constexpr std::uint32_t cpuArm64 = 0x0100000C;
constexpr std::uint32_t cpuX86_64 = 0x01000007;
constexpr std::uint32_t cpuI386 = 7;
// Java class files start with the fat magic followed by their version, which is never this low.
constexpr std::uint32_t maxFatSlices = 99;
constexpr qsizetype maxSlicesWalked = 16;
constexpr qsizetype fatSliceBytes = 20;

std::uint32_t word(const QByteArray& bytes, qsizetype offset, bool bigEndian)
{
    std::uint32_t value = 0;
    for (qsizetype index = 0; index < 4; ++index) {
        const auto byte = static_cast<std::uint8_t>(bytes[offset + (bigEndian ? index : 3 - index)]);
        value = (value << 8) | byte;
    }
    return value;
}

void note(ExecutableProcessors& processors, std::uint32_t cpuType)
{
    processors.arm64 = processors.arm64 || cpuType == cpuArm64;
    processors.x86_64 = processors.x86_64 || cpuType == cpuX86_64;
}

ExecutableProcessors fat(const QByteArray& head, bool bigEndian)
{
    const std::uint32_t slices = word(head, 4, bigEndian);
    if (slices == 0 || slices > maxFatSlices || head.size() < 12)
        return {};
    const std::uint32_t first = word(head, 8, bigEndian);
    if (first != cpuArm64 && first != cpuX86_64 && first != cpuI386)
        return {};
    ExecutableProcessors processors;
    for (qsizetype slice = 0; slice < std::min<qsizetype>(slices, maxSlicesWalked); ++slice) {
        const qsizetype offset = 8 + slice * fatSliceBytes;
        if (offset + 4 > head.size())
            break;
        note(processors, word(head, offset, bigEndian));
    }
    return processors;
}

#if !defined(__APPLE__)
constexpr std::uint16_t elfMachineX86_64 = 62;
constexpr std::uint16_t elfMachineAArch64 = 183;

// e_ident[EI_DATA] gives the byte order of e_machine, which follows e_ident and e_type.
std::optional<ExecutableProcessors> elf(const QByteArray& head)
{
    if (head.size() < 20 || !head.startsWith("\x7F"
                                             "ELF"))
        return std::nullopt;
    const bool bigEndian = head[5] == 2;
    const auto low = static_cast<std::uint8_t>(head[bigEndian ? 19 : 18]);
    const auto high = static_cast<std::uint8_t>(head[bigEndian ? 18 : 19]);
    const auto machine = static_cast<std::uint16_t>(high << 8 | low);
    return ExecutableProcessors{.arm64 = machine == elfMachineAArch64, .x86_64 = machine == elfMachineX86_64};
}
#endif

} // namespace

ExecutableProcessors ExecutableHeadReader::processors(const QByteArray& head)
{
    if (head.size() < 8)
        return {};
#if !defined(__APPLE__)
    if (const std::optional<ExecutableProcessors> elfHead = elf(head))
        return *elfHead;
#endif
    for (const bool bigEndian : {false, true}) {
        if (word(head, 0, bigEndian) == machO64Magic) {
            ExecutableProcessors processors;
            note(processors, word(head, 4, bigEndian));
            return processors;
        }
    }
    const std::uint32_t magic = word(head, 0, true);
    if (magic == fatMagic)
        return fat(head, true);
    if (magic == fatMagicSwapped)
        return fat(head, false);
    return {};
}

ExecutableProcessors ExecutableHeadReader::readFile(const FileManager& fileManager, const QString& path)
{
    const FileManager::RegularFileRead read = fileManager.readRegularFile(path, headBytes, true);
    if (read.errorCode != 0)
        return {};
    return processors(read.bytes);
}

} // namespace kestrow
