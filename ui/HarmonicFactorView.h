#pragma once

#include <QMainWindow>

#include "winding/LayoutSettings.h"
#include "winding/Winding.h"

class HarmonicBarChart;

// The winding factors of the odd harmonics of the pole pairs, as the winding was when
// the window was made; it does not follow later changes and deletes itself on close.
class HarmonicFactorView : public QMainWindow
{
    Q_OBJECT
public:
    HarmonicFactorView(const Winding::LayoutSettings &settings, const Winding::CoilList &phaseA,
                       QWidget *parent = nullptr);

    HarmonicBarChart *chartView() const { return m_chartView; }

private:
    HarmonicBarChart *m_chartView = nullptr;
};
