#include "views/CityModelView.h"

#include "views/CityStageData.h"

namespace kestrow {

CityModelView::CityModelView(QObject* parent)
    : QObject(parent)
    , m_model(CityStageData::previewModel())
{
    connect(&m_controller, &DiskCitySceneController::styleChanged, this, &CityModelView::styleChanged);
    connect(&m_controller, &DiskCitySceneController::styleChanged, this, &CityModelView::agentsChanged);
    connect(&m_controller, &DiskCitySceneController::modelFlagsChanged, this, &CityModelView::agentsChanged);
    connect(&m_controller, &DiskCitySceneController::reduceMotionChanged, this, &CityModelView::reduceMotionChanged);
    m_controller.update(m_model);
    m_controller.startFrameTicker();
}

QVariantList CityModelView::chips() const
{
    return CityStageData::chips(m_model);
}

void CityModelView::setStyle(const QString& raw)
{
    m_controller.switchDiorama(DioramaStyle::fromStored(raw));
}

QVariantList CityModelView::agents() const
{
    return CityStageData::agents(m_controller.currentStyle(), m_controller.isScanning(), m_controller.isCleaning());
}

void CityModelView::showActivity(const QVariantMap& flags)
{
    const auto flag = [&](const char* name) { return flags.value(QLatin1String(name)).toBool(); };
    m_model.isScanning = flag("isScanning");
    m_model.isCleaning = flag("isCleaning");
    m_model.hasCleaned = flag("hasCleaned");
    m_model.isDiskScanning = flag("isDiskScanning");
    m_model.isLoadingApps = flag("isLoadingApps");
    m_model.isAnalyzingSystem = flag("isAnalyzingSystem");
    m_model.systemScale = flags.value(QStringLiteral("systemScale"), m_model.systemScale).toDouble();
    m_model.appsScale = flags.value(QStringLiteral("appsScale"), m_model.appsScale).toDouble();
    m_controller.update(m_model);
}

void CityModelView::selectDistrict(int id)
{
    Q_EMIT districtSelected(id);
}

} // namespace kestrow
