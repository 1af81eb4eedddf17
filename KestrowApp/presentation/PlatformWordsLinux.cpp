#include "presentation/PlatformWords.h"

#include <QStorageInfo>

namespace kestrow {

const PlatformWords& PlatformWords::current()
{
    static const PlatformWords words{
        .putBack = QStringLiteral("Restore in your file manager"),
        .putBackAction = QStringLiteral("Restore"),
        .revealInFileManager = QStringLiteral("Show in File Manager"),
        .scanComputer = QStringLiteral("Scan this computer"),
        .themeDetail = QStringLiteral("Follow the desktop's appearance or lock to light or dark mode"),
        .thermalGovernorDetail = QStringLiteral("Pause scans when the computer runs critically hot, and slow them "
                                                "on battery, power-saver mode, or heat"),
        .reducedMotionDetail =
            QStringLiteral("Freezes the diorama's looping animations, even when the desktop's reduced motion is off"),
        .menuBarLabel = QStringLiteral("System Tray Companion"),
        .menuBarDetail = QStringLiteral("Show Kestrow's live read and Run sweep in the system tray"),
        .trashFirstDetail =
            QStringLiteral("Items move to the Trash. Fully restorable via the file manager's 'Restore'."),
        .permanentPurgeNote = QStringLiteral("Permanent Purge isn't available in the app yet: every sweep goes to "
                                             "the Trash, restorable from your file manager."),
        .fullDiskAccessBanner = QStringLiteral("Kestrow cleans all developer and user caches out of the box. Grant "
                                               "Full Disk Access to also inspect protected browser and mail data."),
        .fullDiskAccessTitle = QStringLiteral("Full Disk Access (FDA)"),
        .fullDiskAccessGrantedDetail = QStringLiteral(
            "Nothing in your home is guarded from Kestrow: it can inspect browser caches and system logs."),
        .fullDiskAccessOptionalDetail = QStringLiteral("Kestrow cleans developer and user caches out of the box. "
                                                       "Grant access to also scan protected mail and browser data."),
        .grantAccessHelp = QStringLiteral("Grant Access in your desktop's privacy settings"),
        .anomalySensitivityDetail =
            QStringLiteral("Threshold for flagging unknown directory growth in ~/.cache or ~/.local/share"),
        .noStartupItemsDetail = QStringLiteral("Your computer starts without extra agents."),
        .inherentProtections = QStringLiteral(
            "Kestrow's sandbox validator automatically rejects and blocks any scanning or cleaning of core system "
            "directories (/usr, /bin, /etc, ~/.ssh, ~/Documents, ~/Desktop) regardless of settings."),
    };
    return words;
}

QString PlatformWords::liveVolumeMark()
{
    const QString type = QString::fromLatin1(QStorageInfo::root().fileSystemType()).toUpper();
    return (type.isEmpty() ? QStringLiteral("DISK") : type) + QStringLiteral(" LIVE");
}

} // namespace kestrow
