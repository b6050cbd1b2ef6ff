#include "meshing/Mesh3D.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QThread>
#include <QTimer>
#include <QtConcurrent>
#include <exception>

#include "base/ScriptConsole.h"
#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/MotorItem.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"
#include "meshing/PeriodGeometry.h"

namespace {

constexpr int progressInterval = 250;

const QString failureText = QStringLiteral("Critical error at meshingTask");

// The active bodies, stator first; the air of a body reaches to the middle of
// the gaps beside it, or by the axial extension past an end of the machine.
QVector<PeriodBody> periodBodies(Document *doc, double axialExtension)
{
    const PieceList pieces = doc->pieces();
    QVector<PeriodBody> bodies;
    const auto reach = [axialExtension](const Airgap *gap) {
        return gap ? gap->thickness() / 2.0 : axialExtension;
    };
    const auto add = [&](const MotorItem *item, const Airgap *below, const Airgap *above) {
        PeriodBody body;
        for (const Piece &piece : pieces) {
            if (piece.scope() == item->scope())
                body.pieces.append(piece);
        }
        body.displacement = item->relativeDisplacement();
        body.bottom = item->posBottom();
        body.top = item->posTop();
        body.extensionBelow = reach(below);
        body.extensionAbove = reach(above);
        bodies.append(body);
    };
    for (const MotorItem *item : doc->stator()->activeItems())
        add(item, doc->airgapOfStatorItem(item->id(), 1), doc->airgapOfStatorItem(item->id(), 2));
    for (const MotorItem *item : doc->rotor()->activeItems())
        add(item, doc->airgapOfRotorItem(item->id(), 1), doc->airgapOfRotorItem(item->id(), 2));
    return bodies;
}

} // namespace

Mesh3D::Mesh3D(Mesh *mesh)
    : QObject(mesh)
    , m_mesh(mesh)
{
}

ShapeList Mesh3D::periodShapes() const
{
    Document *doc = m_mesh->document();
    const double radius = qMax(doc->stator()->outerDiameter(), doc->rotor()->outerDiameter()) / 2.0;
    const PeriodGeometry geometry(radius, doc->periodicityAngleSpan());
    QElapsedTimer timer;
    timer.start();
    const ShapeList solids = geometry.solids(periodBodies(doc, m_mesh->boundCylinderAxialExtension()));
    qDebug() << "Period solids made at" << timer.elapsed() << "ms";
    return solids;
}

VolumeMeshParameters Mesh3D::meshingParameters(double sizeBound)
{
    VolumeMeshParameters parameters;
    parameters.maxh = sizeBound;
    parameters.minh = sizeBound / 100.0;
    parameters.optimizeSteps2d = 1;
    parameters.optimizeSteps3d = 1;
    return parameters;
}

std::shared_ptr<VolumeMesh> Mesh3D::createMesh(const ShapeList &shapes)
{
    const VolumeMeshParameters parameters = meshingParameters(m_mesh->sizeBound());
    QFutureWatcher<std::shared_ptr<VolumeMesh>> watcher;
    QEventLoop loop;
    connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
    QTimer progressTimer;
    connect(&progressTimer, &QTimer::timeout, this, [this] {
        const NetgenProgress progress = netgenMesher::progress();
        emit progressCreateMesh(progress.task, progress.percent);
    });
    progressTimer.start(progressInterval);
    watcher.setFuture(QtConcurrent::run([this, shapes, parameters] { return meshingTask(shapes, parameters); }));
    if (!watcher.isFinished())
        loop.exec();
    progressTimer.stop();
    const std::shared_ptr<VolumeMesh> result = watcher.result();
    return result ? result : std::make_shared<VolumeMesh>();
}

std::shared_ptr<VolumeMesh> Mesh3D::meshingTask(const ShapeList &shapes, const VolumeMeshParameters &parameters) const
{
    try {
        QElapsedTimer timer;
        timer.start();
        auto mesh = std::make_shared<VolumeMesh>(netgenMesher::meshSolids(shapes, parameters));
        qDebug() << "Volume mesh of" << mesh->tetrahedra.size() << "tetrahedra made at" << timer.elapsed() << "ms";
        return mesh;
    } catch (const std::exception &failure) {
        const QString text = failureText + QStringLiteral(": ") + QString::fromLocal8Bit(failure.what());
        qCritical().noquote() << text;
        m_mesh->console()->error(text);
    } catch (...) {
        qCritical().noquote() << failureText;
        m_mesh->console()->error(failureText);
    }
    return nullptr;
}
