#pragma once

#include <QStringList>

#include "materials/MaterialDescribe.h"
#include "ui/MaterialPlotWindow.h"

class QLabel;

// The specific loss of an iron by frequency: the measured table with the Steinmetz
// equation fitted to it, or the equation of the file's coefficients at the standard
// frequencies. Rows that make no curve are named in a red label above the plot.
class IronLossWidget : public MaterialPlotWindow
{
    Q_OBJECT
public:
    IronLossWidget(const MaterialIronDescribe &material, QWidget *parent = nullptr);

    // Empty when every curve could be drawn.
    QStringList errors() const { return m_errors; }

private:
    void plotMeasured(const MaterialIronDescribe &material);
    void plotFileCoefficients(const MaterialIronDescribe &material);
    // False, with the message of the first value, where two neighbouring flux densities are one.
    bool acceptsFluxDensities(const QVector<double> &fluxDensity, const QString &repeatedMessage);
    void showCoefficients(double a, double b, double ke, double kh);
    void showErrors();

    QStringList m_errors;
    QLabel *m_labelErrors;
    QLabel *m_labelA;
    QLabel *m_labelB;
    QLabel *m_labelKe;
    QLabel *m_labelKh;
};
