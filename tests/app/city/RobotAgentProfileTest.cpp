#include "city/RobotAgentProfile.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <set>

using namespace kestrow;

namespace {

QString s(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QStringList ids(const std::vector<RobotAgentProfile>& profiles)
{
    QStringList list;
    for (const auto& profile : profiles)
        list << profile.id;
    return list;
}

} // namespace

TEST(RobotAgentProfile, EachStyleHasItsCastInOrder)
{
    EXPECT_EQ(ids(RobotAgentProfile::agents(DioramaStyle::classicCity)),
              (QStringList{s("patrol_bot"), s("sweeper_bot"), s("dev_worker"), s("hauler_bot"), s("engineer_bot")}));
    EXPECT_EQ(ids(RobotAgentProfile::agents(DioramaStyle::freightTerminal)),
              (QStringList{s("amr_inspector"), s("amr_hauler")}));

    EXPECT_EQ(RobotAgentProfile::allProfiles().size(), 7U);
    ASSERT_TRUE(RobotAgentProfile::profile(s("amr_hauler")));
    EXPECT_EQ(RobotAgentProfile::profile(s("amr_hauler"))->name, s("AMR Carrier 02"));
    EXPECT_FALSE(RobotAgentProfile::profile(s("mop_bot")));
    EXPECT_FALSE(RobotAgentProfile::profile(QString()));
}

TEST(RobotAgentProfile, EveryProfileIsComplete)
{
    const std::set<QString> tints{s("orange"), s("teal"), s("amber")};
    for (const auto& [id, profile] : RobotAgentProfile::allProfiles()) {
        SCOPED_TRACE(id.toStdString());
        EXPECT_EQ(profile.id, id);
        for (const QString* text : {&profile.designation, &profile.name, &profile.role, &profile.district,
                                    &profile.idleStatus, &profile.scanStatus, &profile.cleanStatus, &profile.loreBio,
                                    &profile.macBenefit, &profile.emoteLabel, &profile.emoteIcon, &profile.systemIcon})
            EXPECT_FALSE(text->isEmpty());
        EXPECT_TRUE(profile.designation.startsWith(QLatin1Char('[')) && profile.designation.endsWith(QLatin1Char(']')));
        EXPECT_TRUE(tints.contains(profile.badgeTint));
        ASSERT_EQ(profile.stats.size(), 4U);
        std::set<QString> labels;
        for (const auto& stat : profile.stats)
            labels.insert(stat.id());
        EXPECT_EQ(labels.size(), 4U);
    }
}

TEST(RobotAgentProfile, TextsStandAsWritten)
{
    const auto mac = RobotAgentProfile::profilesFor(HostSystem::macOS);
    const auto& dev = mac.at(s("dev_worker"));
    EXPECT_EQ(dev.designation, s("[DEV-01]"));
    EXPECT_EQ(dev.district, s("DEV QUARTER · LOFT STUDIO"));
    EXPECT_EQ(dev.emoteLabel, s("Sip Coffee & Type"));
    EXPECT_EQ(dev.stats.back().label, s("TARGET"));
    EXPECT_EQ(dev.stats.back().value, s("60 FPS"));

    const auto& hauler = mac.at(s("hauler_bot"));
    EXPECT_EQ(hauler.stats[0].value, s("3,200 PSI"));
    EXPECT_EQ(hauler.loreBio,
              s("Hydraulic powerlifter stationed at the Trash Dock. Takes obsolete Xcode archives, dead "
                "downloads, and stale DMG files directly to the compactor for safe zero-fill release."));
    const auto& engineer = mac.at(s("engineer_bot"));
    EXPECT_EQ(engineer.stats[1].value, s("64 / 64"));
    EXPECT_EQ(engineer.badgeTint, s("amber"));
}

TEST(RobotAgentProfile, SweepStatusOutranksScanStatus)
{
    const auto patrol = *RobotAgentProfile::profile(s("patrol_bot"));
    EXPECT_EQ(patrol.currentStatus(false, false), s("ROUTINE PATROL · NOMINAL"));
    EXPECT_EQ(patrol.currentStatus(true, false), s("SECTOR SWEEP ACTIVE"));
    EXPECT_EQ(patrol.currentStatus(false, true), s("TRAFFIC CONTROL ACTIVE"));
    EXPECT_EQ(patrol.currentStatus(true, true), s("TRAFFIC CONTROL ACTIVE"));
}

TEST(DioramaStyle, StoredTextsFallBackToTheClassicCity)
{
    EXPECT_EQ(DioramaStyle::fromStored(s("freightTerminal")), DioramaStyle::freightTerminal);
    EXPECT_EQ(DioramaStyle::fromStored(s("classicCity")), DioramaStyle::classicCity);
    EXPECT_EQ(DioramaStyle::fromStored(s("FreightTerminal")), DioramaStyle::classicCity);
    EXPECT_EQ(DioramaStyle::fromStored(QString()), DioramaStyle::classicCity);

    const DioramaStyle freight = DioramaStyle::freightTerminal;
    EXPECT_EQ(freight.rawValue(), s("freightTerminal"));
    EXPECT_EQ(freight.displayName(), s("Modular Freight Terminal"));
    EXPECT_EQ(freight.iconName(), s("ferry"));
    const DioramaStyle classic = DioramaStyle::classicCity;
    EXPECT_EQ(classic.shortDescription(),
              s("Classic diorama city with voxel bots, avenues, and corporate towers (Default)"));
}

TEST(RobotAgentProfile, ALinuxUserNeverReadsAboutAMac)
{
    const auto mac = RobotAgentProfile::profilesFor(HostSystem::macOS);
    EXPECT_EQ(mac.at(s("patrol_bot")).macBenefit,
              s("Protects APFS snapshot safety and avoids volume metadata corruption during heavy disk I/O."));
    EXPECT_EQ(mac.at(s("dev_worker")).idleStatus, s("REFACTORING SWIFTUI · 0 ERRORS"));

    const auto onLinux = RobotAgentProfile::profilesFor(HostSystem::gnuLinux);
    int reworded = 0;
    for (const auto& [id, profile] : onLinux) {
        const RobotAgentProfile& original = mac.at(id);
        for (const auto field :
             {&RobotAgentProfile::idleStatus, &RobotAgentProfile::loreBio, &RobotAgentProfile::macBenefit}) {
            const QString& text = profile.*field;
            for (const char* word : {"macOS", "APFS", "Xcode", "Safari", "Apple", "DMG", "SWIFTUI"})
                EXPECT_FALSE(text.contains(QLatin1String(word))) << text.toStdString();
            reworded += text != original.*field;
        }
        // Only the texts that name the Mac change; names and figures stay.
        EXPECT_EQ(profile.name, original.name);
        EXPECT_EQ(profile.stats, original.stats);
    }
    EXPECT_EQ(reworded, 8);
}
