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
        .menuBarDetail = QStringLiteral("Show Kestrow's live read and Run sweep in the system tray"),
        .trashFirstDetail =
            QStringLiteral("Items move to the Trash. Fully restorable via the file manager's 'Restore'."),
        .fullDiskAccessTitle = QStringLiteral("Full Disk Access (FDA)"),
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
