#pragma once

#include <QByteArray>
#include <QObject>
#include <QQuickWindow>

namespace kestrow {

// Tells, once the window's scene graph is up, whether it draws on a software rasteriser (Mesa's
// llvmpipe or softpipe, or the like), where the city's shadows cost more frames than they give.
class RendererProbe : public QObject {
    Q_OBJECT

public:
    explicit RendererProbe(QQuickWindow& window, QObject* parent = nullptr);

    // The OpenGL renderer string of a rasteriser that runs on the processor.
    [[nodiscard]] static bool isSoftwareRenderer(const QByteArray& rendererName);

Q_SIGNALS:
    // Emitted on the render thread; a receiver in another thread hears it queued.
    void softwareRendererFound();
};

} // namespace kestrow
