#include "ui/IronLossWidget.h"

#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>
#include <cmath>
#include <qcustomplot.h>

#include "base/Numeric.h"
#include "materials/Steinmetz.h"

namespace {

const QVector<double> standardFrequencies{20, 50, 100, 200, 500, 1000, 2500, 5000, 10000};
const int curveIntervals = 100;

QVector<double> distinctSorted(const QList<double> &values)
{
    QVector<double> result(values.begin(), values.end());
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

// Frequencies read from text differ in their last bits; relative equality to 1e-12.
bool sameFrequency(double a, double b)
{
    return std::min(std::abs(a), std::abs(b)) >= 1e12 * std::abs(a - b);
}

double equationLoss(double kh, double alfa, double beta, double ke, double f, double b)
{
    return kh * std::pow(f, alfa) * std::pow(b, beta) + ke * std::pow(f * b, 2);
}

QLabel *newLabel(QWidget *parent, const char *name, const QString &text = QString())
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

} // namespace

IronLossWidget::IronLossWidget(const MaterialIronDescribe &material, QWidget *parent)
    : MaterialPlotWindow(tr("Iron loss: %1").arg(material.name), material.name, parent),
      m_labelErrors(newLabel(this, "labelErrors")), m_labelA(newLabel(this, "labelA")),
      m_labelB(newLabel(this, "labelB")), m_labelKe(newLabel(this, "labelKe")), m_labelKh(newLabel(this, "labelKh"))
{
    m_labelErrors->setStyleSheet(QStringLiteral("background-color: rgb(255, 217, 217);"));
    m_labelErrors->setWordWrap(true);
    addAbovePlot(m_labelErrors);

    auto *equation = new QWidget(this);
    auto *row = new QHBoxLayout(equation);
    row->addWidget(new QLabel(tr("Iron loss Steinmetz's equation:"), equation));
    row->addWidget(new QLabel(QStringLiteral("P<sub>il</sub> = K<sub>h</sub>&middot;f<sup>a</sup>&middot;B<sub>m</sub><sup>b</sup>"
                                             " + K<sub>e</sub>&middot;(f&middot;B<sub>m</sub>)<sup>2</sup>"),
                              equation));
    for (QLabel *label : {m_labelA, m_labelB, m_labelKe, m_labelKh})
        row->addWidget(label);
    row->addStretch();
    addBelowPlot(equation);

    plot()->xAxis->setLabel(tr("Peak magnetic flux density, %1").arg(material.unitFluxDensity));
    plot()->yAxis->setLabel(tr("Iron loss, %1").arg(material.unitLoss));

    if (std::abs(material.alfa) > Numeric::zeroTolerance)
        plotFileCoefficients(material);
    else
        plotMeasured(material);
    showErrors();
    zoomFit();
}

void IronLossWidget::plotMeasured(const MaterialIronDescribe &material)
{
    const Steinmetz fit(material);
    showCoefficients(fit.a, fit.b, fit.ke, fit.kh);

    const QVector<double> frequencies = distinctSorted(material.lossFrequency);
    QHash<double, QColor> colorOf;
    const int rows = std::min({material.lossFrequency.size(), material.lossFluxDensity.size(), material.lossValue.size()});
    for (const double f : frequencies) {
        QVector<double> fluxDensity;
        QVector<double> loss;
        for (int i = 0; i < rows; ++i) {
            if (sameFrequency(material.lossFrequency.at(i), f)) {
                fluxDensity.append(material.lossFluxDensity.at(i));
                loss.append(material.lossValue.at(i));
            }
        }
        if (fluxDensity.isEmpty()
            || !acceptsFluxDensities(fluxDensity, tr("For '%1 %2' found repeated value %3 of peak magnetic flux density.")
                                                      .arg(f)
                                                      .arg(material.unitFrequency)))
            continue;
        const QColor color = nextColor();
        colorOf.insert(f, color);
        addLine(curveThrough(fluxDensity, loss, curveIntervals), QStringLiteral("%1 %2").arg(f).arg(material.unitFrequency),
                QPen(color, 1.0));
        addMarks(fluxDensity, loss, color);
    }
    plot()->legend->setWrap(frequencies.size());

    const QVector<double> fluxDensity = distinctSorted(material.lossFluxDensity);
    for (const double f : frequencies) {
        QVector<double> loss;
        for (const double b : fluxDensity)
            loss.append(fit.loss(f, b));
        if (fluxDensity.isEmpty()
            || !acceptsFluxDensities(
                fluxDensity, tr("For '%1 %2' (Steinmetz fitted) found repeated value %3 of peak magnetic flux density.")
                                 .arg(f)
                                 .arg(material.unitFrequency)))
            continue;
        addLine(curveThrough(fluxDensity, loss, curveIntervals),
                tr("%1 %2 (Steinmetz fitted)").arg(f).arg(material.unitFrequency),
                QPen(colorOf.value(f, nextColor()), 0, Qt::DashLine));
    }
}

void IronLossWidget::plotFileCoefficients(const MaterialIronDescribe &material)
{
    showCoefficients(material.alfa, material.beta, material.ke, material.kh);
    for (const double f : standardFrequencies) {
        QVector<double> fluxDensity;
        QVector<double> loss;
        for (int i = 0; i <= 10; ++i) {
            fluxDensity.append(0.2 * i);
            loss.append(equationLoss(material.kh, material.alfa, material.beta, material.ke, f, fluxDensity.last()));
        }
        const QColor color = nextColor();
        addLine(curveThrough(fluxDensity, loss, curveIntervals), QStringLiteral("%1 %2").arg(f).arg(material.unitFrequency),
                QPen(color, 1.0));
        addMarks(fluxDensity, loss, color);
    }
}

bool IronLossWidget::acceptsFluxDensities(const QVector<double> &fluxDensity, const QString &repeatedMessage)
{
    for (int i = 1; i < fluxDensity.size(); ++i) {
        if (std::abs(fluxDensity.at(i) - fluxDensity.at(i - 1)) <= Numeric::zeroTolerance) {
            m_errors << repeatedMessage.arg(fluxDensity.at(i - 1));
            return false;
        }
    }
    return true;
}

void IronLossWidget::showCoefficients(double a, double b, double ke, double kh)
{
    m_labelA->setText(tr("a= %1").arg(a, 0, 'g'));
    m_labelB->setText(tr("b= %1").arg(b, 0, 'g'));
    m_labelKe->setText(tr("Ke= %1").arg(ke, 0, 'g'));
    m_labelKh->setText(tr("Kh= %1").arg(kh, 0, 'g'));
}

void IronLossWidget::showErrors()
{
    m_labelErrors->setVisible(!m_errors.isEmpty());
    m_labelErrors->setText(tr("Iron loss data format is not correct.\n") + m_errors.join(QLatin1Char('\n')));
}
