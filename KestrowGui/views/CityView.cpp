#include "views/CityView.h"

#include "presentation/ThemeColor.h"
#include "settings/AppSettings.h"
#include "views/StateChanges.h"

namespace kestrow {

namespace {

constexpr int applicationsDistrict = 2;

ThemeColor tintColor(DiskCityModel::ChipTint tint)
{
    switch (tint) {
    case DiskCityModel::ChipTint::teal:
        return ThemeColor::safeTeal;
    case DiskCityModel::ChipTint::amber:
        return ThemeColor::askAmber;
    case DiskCityModel::ChipTint::orange:
        break;
    }
    return ThemeColor::accentOrange;
}

} // namespace

CityView::CityView(AppState& state, QObject* parent)
    : QObject(parent)
    , m_state(state)
{
    connect(&m_controller, &DiskCitySceneController::activityChanged, &m_state, &AppState::setIsDioramaBusy);
    connect(&m_controller, &DiskCitySceneController::styleChanged, this, &CityView::styleChanged);
    connectEveryChange(m_state, this, metaObject()->method(metaObject()->indexOfSlot("refreshModel()")));
    connect(&m_state.settings(), &AppSettings::changed, this, &CityView::refreshSettings);
    refreshSettings();
    m_model = m_state.cityModel();
    m_controller.update(m_model);
    m_controller.startFrameTicker();
}

QVariantList CityView::chips() const
{
    QVariantList chips;
    for (const DiskCityModel::Chip& chip : m_model.chips)
        chips.append(QVariantMap{{QStringLiteral("id"), chip.id},
                                 {QStringLiteral("badge"), chip.badge},
                                 {QStringLiteral("title"), chip.title},
                                 {QStringLiteral("detail"), chip.detail},
                                 {QStringLiteral("tintName"), colorName(tintColor(chip.tint))},
                                 {QStringLiteral("x"), chip.x},
                                 {QStringLiteral("y"), chip.y}});
    return chips;
}

void CityView::selectDistrict(int id)
{
    m_state.setSelectedTab(id == applicationsDistrict ? AppTab::uninstall : AppTab::sweep);
}

void CityView::refreshModel()
{
    DiskCityModel model = m_state.cityModel();
    if (model == m_model)
        return;
    m_model = std::move(model);
    m_controller.update(m_model);
    Q_EMIT modelChanged();
}

void CityView::refreshSettings()
{
    const AppSettings& settings = m_state.settings();
    if (settings.dioramaStyle() != m_controller.currentStyle())
        m_controller.switchDiorama(settings.dioramaStyle());
    m_controller.setReduceMotion(settings.reduceDioramaMotion());
}

} // namespace kestrow
