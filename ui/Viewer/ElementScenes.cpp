#include "ui/Viewer/ElementScenes.h"

#include "document/Document.h"
#include "base/Tbb.h"
#include "geometry/EndturnShape.h"
#include "materials/WindingMaterial.h"
#include "winding/WindingObject.h"

MotorGeometryScene::MotorGeometryScene(Document *document, QObject *parent)
    : GeometryScene(document, QStringLiteral("Motor"), parent)
{
}

PieceList MotorGeometryScene::buildPieces()
{
    emit document()->createMotorGeometryStarted();
    return document()->pieces();
}

void MotorGeometryScene::createScene(const PieceList &pieces)
{
    m_machinePieces = pieces;
    GeometryScene::createScene(withEndturns());
    document()->checkElements();
    emit document()->geometryChanged();
    emit document()->createMotorGeometryFinished();
}

void MotorGeometryScene::setHighlightPhases(bool highlight)
{
    if (m_highlightPhases == highlight)
        return;
    m_highlightPhases = highlight;
    setPieces(pieces());
}

void MotorGeometryScene::setFilamentsOnly(bool filamentsOnly)
{
    if (m_filamentsOnly == filamentsOnly)
        return;
    m_filamentsOnly = filamentsOnly;
    setPieces(withEndturns());
}

QColor MotorGeometryScene::colorOf(const Piece &piece) const
{
    const auto endturn = piece.material().dynamicCast<EndturnMaterial>();
    if (m_highlightPhases && endturn)
        return Winding::phaseColor(Winding::Phase(endturn->phase()), false);
    return GeometryScene::colorOf(piece);
}

PieceList MotorGeometryScene::withEndturns() const
{
    PieceList all = m_machinePieces;
    all.append(endturnPieces());
    return all;
}

PieceList MotorGeometryScene::endturnPieces() const
{
    WindingObject *winding = document()->winding();
    winding->updateEndturns();
    const QVector<QVector<Winding::Endturns>> layouts = winding->endturns();
    // A bundle as thick as the narrower side of the coil's section.
    const double diameter = std::min(winding->widthWindingCoil(), winding->heightWindingCoil());
    struct Job
    {
        const Winding::Endturn *endturn;
        int phase;
        int layout;
    };
    std::vector<Job> jobs;
    for (int layout = 0; layout < layouts.size(); ++layout) {
        for (const Winding::Endturns &coil : layouts.at(layout)) {
            for (const Winding::Endturn *end : {&coil.outer, &coil.inner})
                jobs.push_back({end, int(coil.phase), layout + 1});
        }
    }
    std::vector<servoce::shape> shapes(jobs.size());
    tbb::parallel_for(std::size_t(0), jobs.size(), [&](std::size_t k) {
        const Winding::Endturn &end = *jobs[k].endturn;
        servoce::shape solid = m_filamentsOnly ? servoce::shape() : Winding::endturnSolid(end, diameter);
        shapes[k] = solid.is_null() ? end.path : solid;
    });
    PieceList result;
    for (std::size_t k = 0; k < jobs.size(); ++k) {
        if (!shapes[k].is_null())
            result.append(Piece(shapes[k], QSharedPointer<EndturnMaterial>::create(jobs[k].phase, jobs[k].layout),
                                Piece::Stator1));
    }
    return result;
}

ElementGeometryScene::ElementGeometryScene(Document *document, const QString &name, Piece::Scopes bodies,
                                           QObject *parent)
    : GeometryScene(document, name, parent)
    , m_bodies(bodies)
{
}

PieceList ElementGeometryScene::buildPieces()
{
    PieceList own;
    for (const Piece &piece : document()->pieces()) {
        if (m_bodies & piece.scope())
            own.append(piece);
    }
    return own;
}

StatorGeometryScene::StatorGeometryScene(Document *document, QObject *parent)
    : ElementGeometryScene(document, QStringLiteral("Stator"), Piece::StatorMask, parent)
{
}

RotorGeometryScene::RotorGeometryScene(Document *document, QObject *parent)
    : ElementGeometryScene(document, QStringLiteral("Rotor"), Piece::RotorMask, parent)
{
}
