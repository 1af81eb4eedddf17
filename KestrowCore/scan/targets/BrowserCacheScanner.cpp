#include "scan/targets/BrowserCacheScanner.h"

#include "scan/targets/ProtectedFolder.h"

namespace kestrow {

void BrowserCacheScanner::scan(TargetScan& scan, const TargetContext& context) const
{
    const std::pair<const char*, const char*> safari[] = {
        {"Library/Containers/com.apple.Safari/Data/Library/Caches", "Safari WebKit Container Cache"},
        {"Library/Caches/com.apple.Safari", "Safari WebKit User Cache"},
    };
    for (const auto& [folder, label] : safari)
        ProtectedFolder::emitUnlessRefused(scan, context,
                                           TargetScan::Location::at(context.home(QLatin1String(folder)),
                                                                    StorageCategory::browserCaches,
                                                                    QLatin1String(label), "sys.browser.safari"));

    // These lie outside the protected containers, so no refusal is looked for.
    struct Browser {
        const char* name;
        const char* folder;
        const char* ruleId;
    };
    constexpr Browser browsers[] = {
        {"Google Chrome", "Library/Caches/Google/Chrome", "sys.browser.chrome"},
        {"Microsoft Edge", "Library/Caches/Microsoft Edge", "sys.browser.edge"},
        {"Arc Browser", "Library/Caches/company.thebrowser.Browser", "sys.browser.arc"},
        {"Brave Browser", "Library/Caches/BraveSoftware/Brave-Browser", "sys.browser.brave"},
        {"Opera Browser", "Library/Caches/com.operasoftware.Opera", "sys.browser.other"},
        {"Vivaldi Browser", "Library/Caches/Vivaldi", "sys.browser.other"},
    };
    for (const Browser& browser : browsers)
        scan.emitIfContent(
            TargetScan::Location::at(context.home(QLatin1String(browser.folder)), StorageCategory::browserCaches,
                                     QLatin1String(browser.name) + QStringLiteral(" Cache"), browser.ruleId));

    scan.emitIfContent(TargetScan::Location::at(
        context.home(QStringLiteral("Library/Caches/Firefox/Profiles")), StorageCategory::browserCaches,
        QStringLiteral("Mozilla Firefox Profile Caches"), "sys.browser.firefox"));

    if (!context.isLinux())
        return;
    // The caches only: the profiles in ~/.mozilla and ~/.config/<browser> are the user's.
    constexpr Browser linuxBrowsers[] = {
        {"Google Chrome", ".cache/google-chrome", "sys.browser.chrome"},
        {"Chromium", ".cache/chromium", "sys.browser.other"},
        {"Brave Browser", ".cache/BraveSoftware", "sys.browser.brave"},
        {"Microsoft Edge", ".cache/microsoft-edge", "sys.browser.edge"},
        {"Vivaldi Browser", ".cache/vivaldi", "sys.browser.other"},
        {"Opera Browser", ".cache/opera", "sys.browser.other"},
    };
    for (const Browser& browser : linuxBrowsers)
        scan.emitIfContent(
            TargetScan::Location::at(context.home(QLatin1String(browser.folder)), StorageCategory::browserCaches,
                                     QLatin1String(browser.name) + QStringLiteral(" Cache"), browser.ruleId));

    // Firefox keeps one cache per profile, in the XDG cache folder or in that of its Snap or
    // Flatpak sandbox.
    const std::pair<const char*, const char*> firefoxCaches[] = {
        {".cache/mozilla/firefox", ""},
        {"snap/firefox/common/.cache/mozilla/firefox", ", Snap"},
        {".var/app/org.mozilla.firefox/cache/mozilla/firefox", ", Flatpak"},
    };
    for (const auto& cache : firefoxCaches) {
        const QLatin1String sandbox(cache.second);
        const auto whole =
            TargetScan::Location::at(context.home(QLatin1String(cache.first)), StorageCategory::browserCaches,
                                     QStringLiteral("Mozilla Firefox Profile Caches"), "sys.browser.firefox");
        context.forEntriesOrWhole(scan, whole, [&](const DirectoryEntry& entry, const QString& path) {
            if (entry.isDirectory)
                scan.emitIfContent(TargetScan::Location::at(path, StorageCategory::browserCaches,
                                                            QStringLiteral("Mozilla Firefox Profile Cache (") +
                                                                entry.name + sandbox + QLatin1Char(')'),
                                                            "sys.browser.firefox"));
        });
    }
}

} // namespace kestrow
