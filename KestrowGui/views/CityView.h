#pragma once

#include "city/DiskCityModel.h"
#include "city/DiskCitySceneController.h"
#include "platform/CommandRunner.h"
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
    Q_PROPERTY(QVariantList agents READ agents NOTIFY agentsChanged)
    Q_PROPERTY(bool softwareRendering READ softwareRendering NOTIFY softwareRenderingChanged)

public:
    // `runner` asks the desktop whether it wants less motion, once.
    explicit CityView(AppState& state, const CommandRunner& runner = CommandRunner(), QObject* parent = nullptr);

    [[nodiscard]] QVariantList chips() const;
    [[nodiscard]] QString accessibilitySummary() const { return m_model.accessibilitySummary; }
    [[nodiscard]] bool isSample() const { return m_model.isSample; }
    // The raw value of the diorama style the settings choose.
    [[nodiscard]] QString style() const { return m_controller.currentStyle().rawValue(); }
    [[nodiscard]] DiskCitySceneController* controller() { return &m_controller; }
    [[nodiscard]] const DiskCityModel& model() const { return m_model; }
    [[nodiscard]] QVariantList agents() const;
    // The window draws on the processor: the stage leaves its shadows out to stay fluid.
    [[nodiscard]] bool softwareRendering() const { return m_softwareRendering; }
    void setSoftwareRendering(bool software);
    // Whether the desktop has turned its animations off; false where it cannot tell.
    [[nodiscard]] static bool systemReducesMotion(const CommandRunner& runner);

    // The applications' district opens the Uninstaller; every other the Sweep screen.
    Q_INVOKABLE void selectDistrict(int id);

Q_SIGNALS:
    void modelChanged();
    void styleChanged();
    void agentsChanged();
    void softwareRenderingChanged();

private Q_SLOTS:
    void refreshModel();

private:
    void refreshSettings();

    AppState& m_state;
    DiskCitySceneController m_controller;
    DiskCityModel m_model;
    bool m_systemReducesMotion = false;
    bool m_softwareRendering = false;
};

} // namespace kestrow
