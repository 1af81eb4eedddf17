#include "presentation/PlatformWords.h"

namespace kestrow {

const PlatformWords& PlatformWords::current()
{
    static const PlatformWords words{
        .putBack = QStringLiteral("Put Back in Finder"),
        .putBackAction = QStringLiteral("Put Back"),
        .revealInFileManager = QStringLiteral("Reveal in Finder"),
        .scanComputer = QStringLiteral("Scan MacBook"),
        .themeDetail = QStringLiteral("Select macOS system appearance or lock to light or dark mode"),
        .thermalGovernorDetail = QStringLiteral(
            "Pause scans when the Mac runs critically hot, and slow them on battery, Low Power Mode, or heat"),
        .reducedMotionDetail =
            QStringLiteral("Freezes the diorama's looping animations, even when macOS Reduce Motion is off"),
        .menuBarLabel = QStringLiteral("Menu Bar Companion"),
        .menuBarDetail = QStringLiteral("Show Kestrow's live read and Run sweep in the macOS menu bar"),
        .trashFirstDetail = QStringLiteral("Items move to macOS Trash. Fully restorable via Finder 'Put Back'."),
        .permanentPurgeNote = QStringLiteral(
            "Permanent Purge isn't available in the app yet: every sweep goes to the Trash, restorable with Put Back."),
        .fullDiskAccessBanner = QStringLiteral("Kestrow cleans all developer and user caches out of the box. Grant "
                                               "Full Disk Access to also inspect protected Safari and Mail data."),
        .fullDiskAccessTitle = QStringLiteral("macOS Full Disk Access (FDA)"),
        .fullDiskAccessGrantedDetail =
            QStringLiteral("Kestrow can inspect protected Safari caches and system diagnostic logs."),
        .fullDiskAccessOptionalDetail = QStringLiteral("Kestrow cleans developer and user caches out of the box. "
                                                       "Grant FDA to also scan protected mail and browser data."),
        .grantAccessHelp = QStringLiteral("Grant Access in System Settings > Privacy & Security > Full Disk Access"),
        .anomalySensitivityDetail =
            QStringLiteral("Threshold for flagging unknown directory growth in ~/.cache or ~/Library"),
        .noStartupItemsDetail = QStringLiteral("Your Mac boots without extra agents."),
        .inherentProtections = QStringLiteral(
            "Kestrow's sandbox validator automatically rejects and blocks any scanning or cleaning of core macOS "
            "directories (/System, /usr, /bin, /Library/Keychains, ~/Documents, ~/Desktop) regardless of settings."),
    };
    return words;
}

QString PlatformWords::liveVolumeMark()
{
    return QStringLiteral("APFS LIVE");
}

} // namespace kestrow
