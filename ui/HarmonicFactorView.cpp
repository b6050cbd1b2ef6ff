#include "ui/HarmonicFactorView.h"
#include "ui/HarmonicBarChart.h"
#include "winding/WindingFactor.h"

namespace {

constexpr int highestHarmonic = 79;

} // namespace

HarmonicFactorView::HarmonicFactorView(const Winding::LayoutSettings &settings, const Winding::CoilList &phaseA,
                                       QWidget *parent)
    : QMainWindow(parent)
    , m_chartView(new HarmonicBarChart(tr("Factor"), tr("Harmonic"), tr("Winding factor"), this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Harmonic winding factors"));
    m_chartView->setObjectName(QStringLiteral("chartView"));
    setCentralWidget(m_chartView);

    QVector<int> harmonics;
    QVector<double> factors;
    for (int harmonic = 1; harmonic <= highestHarmonic; harmonic += 2) {
        harmonics << harmonic;
        factors << Winding::windingFactor(settings, phaseA, harmonic);
    }
    m_chartView->setBars(harmonics, factors);
}
