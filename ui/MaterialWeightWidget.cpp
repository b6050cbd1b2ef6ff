#include "ui/MaterialWeightWidget.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "materials/AbstractMaterial.h"
#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"
#include "winding/WindingObject.h"

namespace {

// Shape volumes are in mm³, mass densities in kg/m³.
const double cubicMillimetresPerCubicMetre = 1e9;

struct RowText
{
    const char *name;
    const char *text;
};

const RowText rowTexts[] = {
    {"labelStatorIronWeight", QT_TRANSLATE_NOOP("MaterialWeightWidget", "Stator iron:")},
    {"labelStatorWindingWeight", QT_TRANSLATE_NOOP("MaterialWeightWidget", "Stator winding:")},
    {"labelRotorIronWeight", QT_TRANSLATE_NOOP("MaterialWeightWidget", "Rotor iron:")},
    {"labelRotorMagnetWeight", QT_TRANSLATE_NOOP("MaterialWeightWidget", "Magnets:")},
    {"labelRotorConductorWeight", QT_TRANSLATE_NOOP("MaterialWeightWidget", "Conductors:")},
    {"labelTotalWeight", QT_TRANSLATE_NOOP("MaterialWeightWidget", "Total:")},
};

template <class Engine>
const auto *describeOf(const QString &name)
{
    return Engine::instance().describe(name);
}

} // namespace

MaterialWeightWidget::MaterialWeightWidget(QWidget *parent) : QWidget(parent)
{
    auto *group = new QGroupBox(tr("Material weight"), this);
    group->setObjectName(QStringLiteral("groupBoxWeight"));
    auto *grid = new QGridLayout(group);
    for (int row = 0; row < RowCount; ++row) {
        auto *text = new QLabel(tr(rowTexts[row].text), group);
        text->setObjectName(QLatin1String(rowTexts[row].name));
        m_values[row] = new QLabel(group);
        m_values[row]->setObjectName(QLatin1String(rowTexts[row].name) + QStringLiteral("Value"));
        m_values[row]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto *unit = new QLabel(tr("kg"), group);
        grid->addWidget(text, row, 0);
        grid->addWidget(m_values[row], row, 1);
        grid->addWidget(unit, row, 2);
        m_rowWidgets[row] = {text, m_values[row], unit};
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
    refresh();
}

void MaterialWeightWidget::setDocument(Document *document)
{
    if (m_document)
        disconnect(m_document, nullptr, this, nullptr);
    m_document = document;
    if (document) {
        connect(document, &Document::piecesReady, this, &MaterialWeightWidget::takePieces);
        connect(document, &Document::materialsChanged, this, &MaterialWeightWidget::refresh);
        connect(document->winding(), &WindingObject::wireLengthChanged, this, &MaterialWeightWidget::refresh);
    }
    takePieces();
}

void MaterialWeightWidget::takePieces()
{
    m_volumes = Volumes();
    // Pieces are taken as built: building them here would stall the window.
    if (m_document && m_document->hasPieces()) {
        for (const Piece &piece : m_document->pieces()) {
            const Piece::Scopes scope(piece.scope());
            const bool stator = (scope & Piece::StatorMask) && !(scope & ~Piece::Scopes(Piece::StatorMask));
            const bool rotor = (scope & Piece::RotorMask) && !(scope & ~Piece::Scopes(Piece::RotorMask));
            const qint32 kind = piece.kind();
            if (stator && kind == AbstractMaterial::IronKind) {
                m_volumes.statorIron += piece.shape().volume();
                m_volumes.hasStatorIron = true;
            } else if (stator && kind == AbstractMaterial::WindingKind) {
                m_volumes.hasStatorWinding = true;
            } else if (rotor && kind == AbstractMaterial::IronKind) {
                m_volumes.rotorIron += piece.shape().volume();
                m_volumes.hasRotorIron = true;
            } else if (rotor && kind == AbstractMaterial::MagnetKind) {
                m_volumes.rotorMagnet += piece.shape().volume();
                m_volumes.hasRotorMagnet = true;
            } else if (rotor && kind == AbstractMaterial::ConductorKind) {
                m_volumes.rotorConductor += piece.shape().volume();
                m_volumes.hasRotorConductor = true;
            }
        }
    }
    refresh();
}

void MaterialWeightWidget::refresh()
{
    const Stator *stator = m_document ? m_document->stator() : nullptr;
    const Rotor *rotor = m_document ? m_document->rotor() : nullptr;
    const WindingObject *winding = m_document ? m_document->winding() : nullptr;
    double total = 0.0;

    const auto *statorIron = stator ? describeOf<MaterialIronEngine>(stator->ironMaterial()) : nullptr;
    total += showRow(StatorIron, m_volumes.hasStatorIron,
                     statorIron ? m_volumes.statorIron / cubicMillimetresPerCubicMetre * statorIron->massDensity *
                                      stator->ironStacking()
                                : 0.0,
                     statorIron);

    const auto *conductor = stator ? describeOf<MaterialConductorEngine>(stator->windingMaterial()) : nullptr;
    const double wireArea = winding ? M_PI * std::pow(winding->wireDiameter() / 2.0, 2) / 1e6 : 0.0;
    total += showRow(StatorWinding, m_volumes.hasStatorWinding,
                     conductor && winding ? wireArea * winding->strandsConductor() * winding->wireLength() *
                                                winding->countLayouts() * conductor->massDensity
                                          : 0.0,
                     conductor);

    const auto *rotorIron = rotor ? describeOf<MaterialIronEngine>(rotor->ironMaterial()) : nullptr;
    total += showRow(RotorIron, m_volumes.hasRotorIron,
                     rotorIron ? m_volumes.rotorIron / cubicMillimetresPerCubicMetre * rotorIron->massDensity *
                                     rotor->ironStacking()
                               : 0.0,
                     rotorIron);

    const auto *magnet = rotor ? describeOf<MaterialMagnetEngine>(rotor->magnetMaterial()) : nullptr;
    total += showRow(RotorMagnet, m_volumes.hasRotorMagnet,
                     magnet ? m_volumes.rotorMagnet / cubicMillimetresPerCubicMetre * magnet->massDensity : 0.0, magnet);

    const auto *rotorConductor = rotor ? describeOf<MaterialConductorEngine>(rotor->conductorMaterial()) : nullptr;
    total += showRow(RotorConductor, m_volumes.hasRotorConductor,
                     rotorConductor
                         ? m_volumes.rotorConductor / cubicMillimetresPerCubicMetre * rotorConductor->massDensity
                         : 0.0,
                     rotorConductor);

    m_values[Total]->setText(QString::number(total, 'f', 3));
}

double MaterialWeightWidget::showRow(Row row, bool shown, double mass, bool known)
{
    for (QWidget *widget : qAsConst(m_rowWidgets[row]))
        widget->setVisible(shown);
    m_values[row]->setText(known ? QString::number(mass, 'f', 3) : QString());
    return shown && known ? mass : 0.0;
}
