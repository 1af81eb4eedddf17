#include "views/CityStageData.h"

#include "city/RobotAgentProfile.h"
#include "presentation/ThemeColor.h"
#include "system/SystemVitals.h"

namespace kestrow {

namespace {

QString tintName(DiskCityModel::ChipTint tint)
{
    switch (tint) {
    case DiskCityModel::ChipTint::teal:
        return colorName(ThemeColor::safeTeal);
    case DiskCityModel::ChipTint::amber:
        return colorName(ThemeColor::askAmber);
    case DiskCityModel::ChipTint::orange:
        break;
    }
    return colorName(ThemeColor::accentOrange);
}

QString badgeTintName(const QString& badgeTint)
{
    if (badgeTint == QLatin1String("teal"))
        return tintName(DiskCityModel::ChipTint::teal);
    if (badgeTint == QLatin1String("amber"))
        return tintName(DiskCityModel::ChipTint::amber);
    return tintName(DiskCityModel::ChipTint::orange);
}

} // namespace

QVariantList CityStageData::chips(const DiskCityModel& model)
{
    QVariantList chips;
    for (const DiskCityModel::Chip& chip : model.chips)
        chips.append(QVariantMap{{QStringLiteral("id"), chip.id},
                                 {QStringLiteral("badge"), chip.badge},
                                 {QStringLiteral("title"), chip.title},
                                 {QStringLiteral("detail"), chip.detail},
                                 {QStringLiteral("tintName"), tintName(chip.tint)},
                                 {QStringLiteral("x"), chip.x},
                                 {QStringLiteral("y"), chip.y}});
    return chips;
}

QVariantList CityStageData::agents(DioramaStyle style, bool isScanning, bool isCleaning)
{
    const std::map<QString, RobotAgentProfile> worded = RobotAgentProfile::profilesFor(currentHostSystem());
    QVariantList agents;
    for (const RobotAgentProfile& listed : RobotAgentProfile::agents(style)) {
        const RobotAgentProfile& profile = worded.at(listed.id);
        QVariantList stats;
        for (const RobotAgentProfile::StatItem& stat : profile.stats)
            stats.append(QVariantMap{{QStringLiteral("label"), stat.label}, {QStringLiteral("value"), stat.value}});
        agents.append(QVariantMap{
            {QStringLiteral("id"), profile.id},
            {QStringLiteral("designation"), profile.designation},
            {QStringLiteral("name"), profile.name},
            {QStringLiteral("role"), profile.role},
            {QStringLiteral("district"), profile.district},
            {QStringLiteral("status"), profile.currentStatus(isScanning, isCleaning)},
            {QStringLiteral("loreBio"), profile.loreBio},
            {QStringLiteral("benefit"), profile.macBenefit},
            {QStringLiteral("emoteLabel"), profile.emoteLabel},
            {QStringLiteral("tintName"), badgeTintName(profile.badgeTint)},
            {QStringLiteral("stats"), stats},
        });
    }
    return agents;
}

DiskCityModel CityStageData::previewModel()
{
    constexpr std::int64_t gigabyte = 1'000'000'000;
    const SystemVitals vitals{.disk = DiskMetrics(QStringLiteral("/"), QStringLiteral("Preview"), 1000 * gigabyte,
                                                  460 * gigabyte, 460 * gigabyte, 0, 0)};
    return DiskCityModel::from({.vitals = &vitals});
}

} // namespace kestrow
