#pragma once

#include "models/AtlasRowsModel.h"
#include "views/StateView.h"

#include <QVariantList>

namespace kestrow {

// What the Atlas screen shows of the folder map, and its moves through it.
class AtlasView : public StateView {
    Q_OBJECT
    Q_PROPERTY(QString screenState READ screenState NOTIFY changed)
    // title, isLast
    Q_PROPERTY(QVariantList crumbs READ crumbs NOTIFY changed)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY changed)
    Q_PROPERTY(QObject* rows READ rows CONSTANT)

public:
    explicit AtlasView(AppState& state, QObject* parent = nullptr);

    // "surveying", "noMap" or "map".
    [[nodiscard]] QString screenState() const;
    [[nodiscard]] QVariantList crumbs() const;
    [[nodiscard]] bool canGoUp() const { return m_state.atlasStack().size() >= 2; }
    [[nodiscard]] QObject* rows() { return &m_rows; }

    // The screen came into view: a first survey starts by itself.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void loadSpaceLens();
    // Folders only; a row of a file does nothing.
    Q_INVOKABLE void drillIn(int row);
    Q_INVOKABLE void drillOut();
    Q_INVOKABLE void drillTo(int index);

private:
    AtlasRowsModel m_rows;
};

} // namespace kestrow
