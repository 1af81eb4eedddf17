#pragma once

#include "city/DiskCityModel.h"
#include "city/DiskCitySceneController.h"

#include <QObject>
#include <QQmlEngine>
#include <QVariantList>
#include <QVariantMap>

namespace kestrow {

// A city stage over a model of its own rather than the application's: the Settings' previews
// show a fixed city in the style of their card, and a script can play activity through it.
class CityModelView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariantList chips READ chips CONSTANT)
    Q_PROPERTY(QString accessibilitySummary READ accessibilitySummary CONSTANT)
    Q_PROPERTY(bool isSample READ isSample CONSTANT)
    Q_PROPERTY(QString style READ style WRITE setStyle NOTIFY styleChanged)
    Q_PROPERTY(QString styleName READ styleName NOTIFY styleChanged)
    Q_PROPERTY(bool reduceMotion READ reduceMotion WRITE setReduceMotion NOTIFY reduceMotionChanged)
    Q_PROPERTY(kestrow::DiskCitySceneController* controller READ controller CONSTANT)
    Q_PROPERTY(QVariantList agents READ agents NOTIFY agentsChanged)

public:
    explicit CityModelView(QObject* parent = nullptr);

    [[nodiscard]] QVariantList chips() const;
    [[nodiscard]] QString accessibilitySummary() const { return m_model.accessibilitySummary; }
    [[nodiscard]] bool isSample() const { return m_model.isSample; }
    [[nodiscard]] QString style() const { return m_controller.currentStyle().rawValue(); }
    void setStyle(const QString& raw);
    [[nodiscard]] QString styleName() const { return m_controller.currentStyle().displayName(); }
    [[nodiscard]] bool reduceMotion() const { return m_controller.reduceMotion(); }
    void setReduceMotion(bool reduce) { m_controller.setReduceMotion(reduce); }
    [[nodiscard]] DiskCitySceneController* controller() { return &m_controller; }
    [[nodiscard]] QVariantList agents() const;

    // Plays the activity of `flags` (isScanning, isCleaning, hasCleaned, isDiskScanning,
    // isLoadingApps, isAnalyzingSystem; systemScale and appsScale) over the fixed chips; a flag
    // left out is false and a scale left out keeps its value.
    Q_INVOKABLE void showActivity(const QVariantMap& flags);
    Q_INVOKABLE void selectDistrict(int id);

Q_SIGNALS:
    void styleChanged();
    void reduceMotionChanged();
    void agentsChanged();
    void districtSelected(int id);

private:
    DiskCitySceneController m_controller;
    DiskCityModel m_model;
};

} // namespace kestrow
