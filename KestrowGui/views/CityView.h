#pragma once

#include "city/DiskCityModel.h"
#include "city/DiskCitySceneController.h"
#include "state/AppState.h"

#include <QObject>
#include <QString>
#include <QVariantList>

namespace kestrow {

// The city stage's side of the state: the model of the city now, the controller that turns it
// into the stage's motion, and the district a chip or a building opens. The controller's
// activity is the state's `isDioramaBusy`, so the run buttons wait for the stage.
class CityView : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList chips READ chips NOTIFY modelChanged)
    Q_PROPERTY(QString accessibilitySummary READ accessibilitySummary NOTIFY modelChanged)
    Q_PROPERTY(bool isSample READ isSample NOTIFY modelChanged)
    Q_PROPERTY(QString style READ style NOTIFY styleChanged)
    Q_PROPERTY(kestrow::DiskCitySceneController* controller READ controller CONSTANT)

public:
    explicit CityView(AppState& state, QObject* parent = nullptr);

    // Each chip's id, badge, title, detail, tintName ("accentOrange", "safeTeal" or "askAmber")
    // and its anchor x and y in the stage's unit square.
    [[nodiscard]] QVariantList chips() const;
    [[nodiscard]] QString accessibilitySummary() const { return m_model.accessibilitySummary; }
    [[nodiscard]] bool isSample() const { return m_model.isSample; }
    // The raw value of the diorama style the settings choose.
    [[nodiscard]] QString style() const { return m_controller.currentStyle().rawValue(); }
    [[nodiscard]] DiskCitySceneController* controller() { return &m_controller; }
    [[nodiscard]] const DiskCityModel& model() const { return m_model; }

    // The applications' district opens the Uninstaller; every other the Sweep screen.
    Q_INVOKABLE void selectDistrict(int id);

Q_SIGNALS:
    void modelChanged();
    void styleChanged();

private Q_SLOTS:
    void refreshModel();

private:
    void refreshSettings();

    AppState& m_state;
    DiskCitySceneController m_controller;
    DiskCityModel m_model;
};

} // namespace kestrow
