#include "ui/MaterialWeightWidget.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "winding/WindingObject.h"

namespace {

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
    m_pieces = m_document && m_document->hasPieces() ? m_document->pieces() : PieceList();
    refresh();
}

void MaterialWeightWidget::refresh()
{
    if (!m_document) {
        for (int row = 0; row < Total; ++row)
            showRow(Row(row), MaterialMass());
        m_values[Total]->setText(QString::number(0.0, 'f', 3));
        return;
    }
    const MaterialMasses masses = MaterialMasses::of(*m_document, m_pieces);
    // The panel weighs the rotor iron as stacked, as it does the stator's.
    MaterialMass rotorIron = masses.rotorIron;
    if (rotorIron.kilograms)
        *rotorIron.kilograms *= m_document->rotor()->ironStacking();
    const double total = showRow(StatorIron, masses.statorIron) + showRow(StatorWinding, masses.statorWinding)
                         + showRow(RotorIron, rotorIron) + showRow(RotorMagnet, masses.rotorMagnet)
                         + showRow(RotorConductor, masses.rotorConductor);
    m_values[Total]->setText(QString::number(total, 'f', 3));
}

double MaterialWeightWidget::showRow(Row row, const MaterialMass &mass)
{
    for (QWidget *widget : qAsConst(m_rowWidgets[row]))
        widget->setVisible(mass.hasPieces);
    m_values[row]->setText(mass.kilograms ? QString::number(*mass.kilograms, 'f', 3) : QString());
    return mass.hasPieces ? mass.orZero() : 0.0;
}
