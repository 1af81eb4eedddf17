#include "views/PulseView.h"

#include "presentation/CapacitySegment.h"
#include "presentation/CapacityTrack.h"
#include "presentation/FootprintPanel.h"
#include "presentation/PlatformWords.h"
#include "presentation/PulseScreen.h"

namespace kestrow {

namespace {

QVariantMap meterMap(const std::optional<VUMeter>& meter, bool charging = false)
{
    if (!meter)
        return {{QStringLiteral("present"), false},
                {QStringLiteral("lit"), 0},
                {QStringLiteral("miniLit"), 0},
                {QStringLiteral("text"), QStringLiteral("--")},
                {QStringLiteral("charging"), false}};
    const VUMeter mini{.percent = meter->percent, .cells = 8};
    return {{QStringLiteral("present"), true},
            {QStringLiteral("lit"), meter->litCells()},
            {QStringLiteral("miniLit"), mini.litCells()},
            {QStringLiteral("text"), meter->percentText()},
            {QStringLiteral("charging"), charging}};
}

QString fillName(CapacitySegment::Fill fill)
{
    switch (fill) {
    case CapacitySegment::Fill::solid:
        return QStringLiteral("solid");
    case CapacitySegment::Fill::striped:
        return QStringLiteral("striped");
    case CapacitySegment::Fill::hatched:
        break;
    }
    return QStringLiteral("hatched");
}

constexpr int meterCells = 20;

} // namespace

PulseView::PulseView(AppState& state, QObject* parent)
    : StateView(state, parent)
{
    const auto refreshGroups = [this] { m_sweepGroups.setRecords(SweepGroup::groups(m_state.scanResult())); };
    connect(&state, &AppState::scanResultChanged, this, refreshGroups);
    refreshGroups();
}

QVariantList PulseView::tabs() const
{
    QVariantList tabs;
    for (const AppTab tab : AppTab::allCases()) {
        const std::optional<PulseScreen::Badge> badge = PulseScreen::badge(m_state, tab);
        tabs.append(QVariantMap{{QStringLiteral("id"), tab.id()},
                                {QStringLiteral("title"), tab.rawValue()},
                                {QStringLiteral("icon"), tab.iconName()},
                                {QStringLiteral("hasBadge"), badge.has_value()},
                                {QStringLiteral("badgeText"), badge ? badge->text : QString()},
                                {QStringLiteral("badgeColor"), badge ? colorName(badge->color) : QString()}});
    }
    return tabs;
}

QString PulseView::mainButtonTitle() const
{
    return PulseScreen::mainButtonTitle(m_state);
}

QString PulseView::mainButtonIcon() const
{
    return PulseScreen::mainButtonSymbol(m_state);
}

QString PulseView::freeSpaceText() const
{
    return PulseScreen::capacityFreeText(m_state) + QStringLiteral(" GB of ") +
           PulseScreen::capacityTotalText(m_state) + QStringLiteral(" GB");
}

QString PulseView::freeSpaceAccessibleText() const
{
    return PulseScreen::freeSpaceAccessibilityText(m_state).value_or(QStringLiteral("Free space"));
}

QString PulseView::lastSweepLine() const
{
    return PulseScreen::lastSweepLine(m_state).value_or(QString());
}

QString PulseView::capacityFreeText() const
{
    return PulseScreen::capacityFreeText(m_state);
}

QString PulseView::capacityTotalText() const
{
    return PulseScreen::capacityTotalText(m_state);
}

QString PulseView::liveVolumeMark()
{
    return PlatformWords::liveVolumeMark();
}

QVariantList PulseView::segments() const
{
    QVariantList segments;
    for (const CapacitySegment& segment : m_state.capacitySegments())
        segments.append(QVariantMap{{QStringLiteral("label"), segment.label},
                                    {QStringLiteral("valueGB"), segment.valueGB},
                                    {QStringLiteral("colorName"), colorName(segment.color)},
                                    {QStringLiteral("fill"), fillName(segment.fill)},
                                    {QStringLiteral("striped"), segment.striped},
                                    {QStringLiteral("tooltip"), segment.tooltipText()}});
    return segments;
}

QVariantList PulseView::trackWidths(double width) const
{
    QVariantList widths;
    for (const double segmentWidth : CapacityTrack::widths(m_state.capacitySegments(), width))
        widths.append(segmentWidth);
    return widths;
}

QString PulseView::thermalText() const
{
    return PulseScreen::thermalLabel(m_state).text;
}

QString PulseView::thermalColor() const
{
    return colorName(PulseScreen::thermalLabel(m_state).color);
}

QString PulseView::memoryBadgeText() const
{
    const std::optional<PulseScreen::Label> badge = PulseScreen::memoryBadge(m_state);
    return badge ? badge->text : QString();
}

QString PulseView::memoryBadgeColor() const
{
    const std::optional<PulseScreen::Label> badge = PulseScreen::memoryBadge(m_state);
    return colorName(badge ? badge->color : ThemeColor::inkTertiary);
}

QString PulseView::cpuText() const
{
    return PulseScreen::cpuText(m_state);
}

QString PulseView::memoryText() const
{
    return PulseScreen::memoryText(m_state);
}

QVariantMap PulseView::cpuMeter() const
{
    return meterMap(PulseScreen::cpuMeter(m_state, meterCells));
}

QVariantMap PulseView::memoryMeter() const
{
    return meterMap(PulseScreen::memoryMeter(m_state, meterCells));
}

QVariantMap PulseView::batteryMeter() const
{
    const bool charging = m_state.vitals() && m_state.vitals()->battery && m_state.vitals()->battery->isCharging;
    return meterMap(PulseScreen::batteryMeter(m_state, meterCells), charging);
}

QString PulseView::footprintTitle()
{
    return FootprintPanel::title();
}

bool PulseView::footprintPending() const
{
    return FootprintPanel::isPending(m_state);
}

QString PulseView::footprintPendingTitle()
{
    return FootprintPanel::pendingTitle();
}

QString PulseView::footprintPendingDetail()
{
    return FootprintPanel::pendingDetail();
}

QVariantList PulseView::footprintRows() const
{
    QVariantList rows;
    for (const FootprintPanel::Row& row : FootprintPanel::rows(m_state))
        rows.append(QVariantMap{{QStringLiteral("symbol"), row.symbol},
                                {QStringLiteral("label"), row.label},
                                {QStringLiteral("value"), row.value},
                                {QStringLiteral("colorName"), colorName(row.color)}});
    return rows;
}

QString PulseView::fullDiskAccessTitle() const
{
    return PulseScreen::fullDiskAccessTitle(m_state);
}

bool PulseView::canRunSweep() const
{
    return PulseScreen::canRunSweep(m_state);
}

QString PulseView::scanAgainTitle() const
{
    return PulseScreen::scanAgainTitle(m_state);
}

QString PulseView::statusText() const
{
    return PulseScreen::statusLine(m_state);
}

QString PulseView::statusDotColor() const
{
    return colorName(PulseScreen::statusDotColor(m_state));
}

QString PulseView::putBack()
{
    return PlatformWords::current().putBack;
}

QString PulseView::fullDiskAccessBanner()
{
    return PlatformWords::current().fullDiskAccessBanner;
}

void PulseView::pressMainButton()
{
    PulseScreen::pressMainButton(m_state);
}

void PulseView::runSmartScan()
{
    m_state.runSmartScan();
}

void PulseView::cleanSafeItems()
{
    m_state.cleanSafeItems();
}

void PulseView::openFullDiskAccessSettings()
{
    m_state.openFDASettings();
}

void PulseView::openSettings()
{
    m_state.openSettings();
}

void PulseView::refreshVitals()
{
    m_state.refreshVitals();
}

} // namespace kestrow
