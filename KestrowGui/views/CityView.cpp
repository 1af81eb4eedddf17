#include "views/CityView.h"

#include "settings/AppSettings.h"
#include "views/CityStageData.h"
#include "views/StateChanges.h"

namespace kestrow {

namespace {

constexpr int applicationsDistrict = 2;

} // namespace

CityView::CityView(AppState& state, const CommandRunner& runner, QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_systemReducesMotion(systemReducesMotion(runner))
{
    connect(&m_controller, &DiskCitySceneController::activityChanged, &m_state, &AppState::setIsDioramaBusy);
    connect(&m_controller, &DiskCitySceneController::styleChanged, this, &CityView::styleChanged);
    connect(&m_controller, &DiskCitySceneController::styleChanged, this, &CityView::agentsChanged);
    connect(&m_controller, &DiskCitySceneController::modelFlagsChanged, this, &CityView::agentsChanged);
    connectEveryChange(m_state, this, metaObject()->method(metaObject()->indexOfSlot("refreshModel()")));
    connect(&m_state.settings(), &AppSettings::changed, this, &CityView::refreshSettings);
    refreshSettings();
    m_model = m_state.cityModel();
    m_controller.update(m_model);
    m_controller.startFrameTicker();
}

QVariantList CityView::chips() const
{
    return CityStageData::chips(m_model);
}

QVariantList CityView::agents() const
{
    return CityStageData::agents(m_controller.currentStyle(), m_controller.isScanning(), m_controller.isCleaning());
}

bool CityView::systemReducesMotion(const CommandRunner& runner)
{
    try {
        const CommandResult result =
            runner.runWithStatus({QStringLiteral("/usr/bin/gsettings"),
                                  {QStringLiteral("get"), QStringLiteral("org.gnome.desktop.interface"),
                                   QStringLiteral("enable-animations")}});
        return result.exitStatus == 0 && result.standardOutput.trimmed() == "false";
    } catch (const ProcessLaunchError&) {
        return false;
    }
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

void CityView::setSoftwareRendering(bool software)
{
    if (software == m_softwareRendering)
        return;
    m_softwareRendering = software;
    Q_EMIT softwareRenderingChanged();
}

void CityView::refreshSettings()
{
    const AppSettings& settings = m_state.settings();
    if (settings.dioramaStyle() != m_controller.currentStyle())
        m_controller.switchDiorama(settings.dioramaStyle());
    m_controller.setReduceMotion(settings.reduceDioramaMotion() || m_systemReducesMotion);
}

} // namespace kestrow
