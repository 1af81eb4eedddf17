#include "views/RendererProbe.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace kestrow {

RendererProbe::RendererProbe(QQuickWindow& window, QObject* parent)
    : QObject(parent)
{
    connect(
        &window, &QQuickWindow::sceneGraphInitialized, this,
        [this] {
            QOpenGLContext* context = QOpenGLContext::currentContext();
            if (!context)
                return;
            const auto* name = reinterpret_cast<const char*>(context->functions()->glGetString(GL_RENDERER));
            if (name && isSoftwareRenderer(QByteArray(name)))
                Q_EMIT softwareRendererFound();
        },
        Qt::DirectConnection);
}

bool RendererProbe::isSoftwareRenderer(const QByteArray& rendererName)
{
    const QByteArray name = rendererName.toLower();
    for (const char* rasteriser : {"llvmpipe", "softpipe", "swiftshader", "software rasterizer"})
        if (name.contains(rasteriser))
            return true;
    return false;
}

} // namespace kestrow
