#include "presentation/CapacitySegment.h"
#include "presentation/CapacityTrack.h"
#include "presentation/Theme.h"
#include "presentation/VUMeter.h"
#include "system/DiskCapacityBreakdown.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

QStringList ids(const std::vector<CapacitySegment>& segments)
{
    QStringList ids;
    for (const CapacitySegment& segment : segments)
        ids.append(segment.id);
    return ids;
}

CapacitySegment withFraction(double fraction)
{
    return {.fraction = fraction};
}

} // namespace

TEST(DiskCapacityBreakdown, EstimatesBeforeAnyScanAddUpToTheUsedSpace)
{
    const DiskCapacityBreakdown fresh(1'000'000'000'000, 500'000'000'000, 0, 0, 0, false, std::nullopt);
    EXPECT_EQ(fresh.usedBytes, 500'000'000'000.0);
    EXPECT_EQ(fresh.systemBytes, 75'000'000'000.0);
    EXPECT_EQ(fresh.appsBytes, 90'000'000'000.0);
    EXPECT_EQ(fresh.sweepableBytes, 5'000'000'000.0);
    EXPECT_EQ(fresh.otherBytes, 330'000'000'000.0);
    EXPECT_EQ(ids(CapacitySegment::segments(fresh)),
              QStringList({QStringLiteral("system"), QStringLiteral("apps"), QStringLiteral("sweepable"),
                           QStringLiteral("other"), QStringLiteral("free")}));

    // The floors overshoot a small disk, so the three estimates are scaled down to fit.
    const DiskCapacityBreakdown small(20'000'000'000, 10'000'000'000, 0, 0, 0, false, std::nullopt);
    EXPECT_DOUBLE_EQ(small.sweepableBytes, 800'000'000.0 * 10 / 20.8);
    EXPECT_DOUBLE_EQ(small.systemBytes, 10'000'000'000.0 * 10 / 20.8);
    EXPECT_DOUBLE_EQ(small.appsBytes, 10'000'000'000.0 * 10 / 20.8);
    EXPECT_NEAR(small.otherBytes, 0.0, 1e-3);
    EXPECT_NEAR(small.sweepableBytes + small.systemBytes + small.appsBytes, small.usedBytes, 1e-3);
}

TEST(DiskCapacityBreakdown, KnownFiguresReplaceTheEstimates)
{
    const DiskCapacityBreakdown scannedNothing(1'000'000'000'000, 500'000'000'000, 9'000'000'000, 0, 0, false, 0);
    EXPECT_EQ(scannedNothing.sweepableBytes, 0.0);
    const DiskCapacityBreakdown purgeable(1'000'000'000'000, 500'000'000'000, 9'000'000'000, 0, 0, false, std::nullopt);
    EXPECT_EQ(purgeable.sweepableBytes, 9'000'000'000.0);
    const DiskCapacityBreakdown emptyApps(1'000'000'000'000, 500'000'000'000, 0, 0, 0, true, std::nullopt);
    EXPECT_EQ(emptyApps.appsBytes, 0.0);

    const DiskCapacityBreakdown none(0, 5, 5, 5, 5, true, 5);
    EXPECT_EQ(none, DiskCapacityBreakdown(-1, 0, 0, 0, 0, false, std::nullopt));
    EXPECT_EQ(none.freeBytes, 0.0);
    EXPECT_TRUE(CapacitySegment::segments(none).empty());

    const DiskCapacityBreakdown overfull(100, 250, 0, 0, 0, false, std::nullopt);
    EXPECT_EQ(overfull.freeBytes, 100.0);
    EXPECT_EQ(overfull.usedBytes, 0.0);
    EXPECT_EQ(ids(CapacitySegment::segments(overfull)), QStringList{QStringLiteral("free")});
    EXPECT_EQ(CapacitySegment::segments(overfull).front().tooltipText(), QStringLiteral("Free: <1 GB"));
}

TEST(CapacityPresentation, LegendTrackAndMeters)
{
    EXPECT_EQ(Theme::legendGB(400'000'000), QStringLiteral("<1"));
    EXPECT_EQ(Theme::legendGB(500'000'000), QStringLiteral("1"));
    EXPECT_EQ(Theme::legendGB(0), QStringLiteral("0"));
    EXPECT_EQ(Theme::legendGB(75'000'000'000), QStringLiteral("75"));

    EXPECT_EQ(CapacityTrack::widths({withFraction(1)}, 100), std::vector<double>{100});
    const std::vector<double> tiny = CapacityTrack::widths({withFraction(0.999), withFraction(0.001)}, 103);
    ASSERT_EQ(tiny.size(), 2u);
    EXPECT_DOUBLE_EQ(tiny[0], 91);
    EXPECT_DOUBLE_EQ(tiny[1], 9);
    // A slice of nothing stays at nothing while another is lifted to the floor.
    const std::vector<double> withEmpty =
        CapacityTrack::widths({withFraction(0.999), withFraction(0.001), withFraction(0)}, 106);
    EXPECT_DOUBLE_EQ(withEmpty[1], 9);
    EXPECT_DOUBLE_EQ(withEmpty[2], 0);
    EXPECT_TRUE(CapacityTrack::widths({}, 100).empty());

    EXPECT_EQ((VUMeter{.percent = 0.52, .cells = 20}).litCells(), 10);
    EXPECT_EQ((VUMeter{.percent = 1.7, .cells = 20}).litCells(), 20);
    EXPECT_EQ((VUMeter{.percent = -0.2, .cells = 8}).litCells(), 0);
    EXPECT_EQ((VUMeter{.percent = 0.526}).percentText(), QStringLiteral("53%"));
}
