#include "ui/MaterialRowWidgets.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QUrl>
#include <memory>

#include "materials/MaterialConductorEngine.h"
#include "materials/MaterialIronEngine.h"
#include "materials/MaterialMagnetEngine.h"
#include "ui/BHCurveWidget.h"
#include "ui/Controls/NumberEdit.h"
#include "ui/IronLossWidget.h"
#include "ui/MainWindow.h"
#include "ui/MaterialSelectDialog.h"
#include "ui/MaterialSelectWidget.h"
#include "ui/MessageBox.h"

namespace {

QLabel *newLabel(QWidget *parent, const char *name, const QString &text)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

// Plot windows stand on their own but close with the program's window.
QWidget *plotWindowParent(QWidget *row)
{
    if (MainWindow *main = MainWindow::instance())
        return main;
    return row->window();
}

} // namespace

MaterialRowWidget::MaterialRowWidget(const MaterialDescribeEngine &catalogue, QWidget *parent)
    : QWidget(parent), m_catalogue(catalogue), m_grid(new QGridLayout(this)),
      m_widgetMaterial(new MaterialSelectWidget(this)), m_buttonDetail(new QToolButton(this))
{
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_widgetMaterial->setObjectName(QStringLiteral("widgetMaterial"));
    m_buttonDetail->setObjectName(QStringLiteral("buttonDetail"));
    m_buttonDetail->setIcon(QIcon(QStringLiteral(":/eye.png")));
    m_buttonDetail->setToolTip(tr("Open file with material properties"));
    m_grid->addWidget(newLabel(this, "labelMaterial", tr("Material:")), 0, 0);
    m_grid->addWidget(m_widgetMaterial, 0, 1);
    m_grid->addWidget(m_buttonDetail, 0, 2);
    connect(m_widgetMaterial, &MaterialSelectWidget::buttonSelectClicked, this, &MaterialRowWidget::chooseMaterial);
    connect(m_buttonDetail, &QToolButton::clicked, this, &MaterialRowWidget::openFile);
    setMaterial(QString());
}

void MaterialRowWidget::setMaterial(const QString &name)
{
    m_material = name;
    m_widgetMaterial->setText(name);
    m_widgetMaterial->setIcon(m_catalogue.iconOf(name));
    m_buttonDetail->setEnabled(!name.isEmpty());
    QString toolTip;
    if (const MaterialDescribe *described = record()) {
        toolTip = name;
        if (!described->description.isEmpty())
            toolTip += QLatin1Char('\n') + described->description;
        if (!described->source.isEmpty())
            toolTip += QLatin1Char('\n') + described->source;
    }
    m_widgetMaterial->setToolTip(toolTip);
}

const MaterialDescribe *MaterialRowWidget::record() const
{
    return m_material.isEmpty() ? nullptr : m_catalogue.find(m_material);
}

NumberEdit *MaterialRowWidget::addNumberRow(const char *labelName, const QString &label, const char *editName)
{
    const int row = m_grid->rowCount();
    auto *edit = new NumberEdit(this);
    edit->setObjectName(QLatin1String(editName));
    m_grid->addWidget(newLabel(this, labelName, label), row, 0);
    m_grid->addWidget(edit, row, 1, 1, 2);
    return edit;
}

void MaterialRowWidget::chooseMaterial()
{
    const std::unique_ptr<MaterialSelectDialog> dialog(newSelectDialog(m_material));
    if (dialog->exec() != QDialog::Accepted)
        return;
    const QString chosen = dialog->selectedMaterial();
    if (chosen == m_material)
        return;
    setMaterial(chosen);
    emit materialChanged(chosen);
}

void MaterialRowWidget::openFile()
{
    const MaterialDescribe *described = record();
    if (!described)
        return;
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(described->fileName)))
        MessageBox::critical(this, QCoreApplication::applicationName(), tr("Can't open file %1").arg(described->fileName));
}

MaterialConductorWidget::MaterialConductorWidget(QWidget *parent)
    : MaterialRowWidget(MaterialConductorEngine::instance(), parent),
      m_editTemperature(addNumberRow("labelTemperature", tr("Temperature (°C):"), "editTemperature"))
{
    m_labelTemperature = findChild<QLabel *>(QStringLiteral("labelTemperature"));
    m_editTemperature->setRange(-273.15, 1000.0, 2);
    connect(m_editTemperature, &NumberEdit::valueEditingFinished, this, &MaterialConductorWidget::temperatureChanged);
}

void MaterialConductorWidget::setTemperature(double temperature)
{
    m_editTemperature->setValue(temperature);
}

void MaterialConductorWidget::setTemperatureToolTip(const QString &toolTip)
{
    m_labelTemperature->setToolTip(toolTip);
    m_editTemperature->setToolTip(toolTip);
}

MaterialSelectDialog *MaterialConductorWidget::newSelectDialog(const QString &currentName)
{
    return new MaterialConductorSelectDialog(currentName, this);
}

MaterialIronWidget::MaterialIronWidget(QWidget *parent)
    : MaterialRowWidget(MaterialIronEngine::instance(), parent),
      m_editStackingFactor(addNumberRow("labelStackingFactor", tr("Stacking factor:"), "editStackingFactor")),
      m_labelFillCoefsValue(newLabel(this, "labelFillCoefsValue", QStringLiteral("[1,1,1]"))),
      m_labelDsomaloyValue(newLabel(this, "labelDsomaloyValue", QString()))
{
    m_editStackingFactor->setRange(0.0, 1.0, 15);
    m_editStackingFactor->setToolTip(tr("Ratio of the volume filled by electrical steel to the total volume of the iron core"));
    connect(m_editStackingFactor, &NumberEdit::valueEditingFinished, this, &MaterialIronWidget::stackingFactorChanged);

    m_labelFillCoefsValue->setToolTip(tr("Material filling coefficient"));
    m_labelDsomaloyValue->setToolTip(tr("Smallest cross section of component [m] for Somaloy material"));
    QLabel *labelFillCoefs = newLabel(this, "labelFillCoefs", tr("Fill coefs:"));
    QLabel *labelDsomaloy = newLabel(this, "labelDsomaloy", tr("d_somaloy:"));
    int row = grid()->rowCount();
    grid()->addWidget(labelFillCoefs, row, 0);
    grid()->addWidget(m_labelFillCoefsValue, row, 1, 1, 2);
    grid()->addWidget(labelDsomaloy, ++row, 0);
    grid()->addWidget(m_labelDsomaloyValue, row, 1, 1, 2);
    m_debugRows = {labelFillCoefs, m_labelFillCoefsValue, labelDsomaloy, m_labelDsomaloyValue};
    setDsomaloy(0.0);

    auto *menu = new QMenu(detailButton());
    menu->addAction(tr("B-H curve..."), this, &MaterialIronWidget::openBHCurve);
    menu->addAction(tr("Iron loss..."), this, &MaterialIronWidget::openIronLoss);
    detailButton()->setMenu(menu);
    detailButton()->setPopupMode(QToolButton::MenuButtonPopup);

    const MainWindow *main = MainWindow::instance();
    setDebugRowsVisible(main && main->isDebugMode());
    if (main)
        connect(main, &MainWindow::debugModeChanged, this, &MaterialIronWidget::setDebugRowsVisible);
}

void MaterialIronWidget::setStackingFactor(double factor)
{
    m_editStackingFactor->setValue(factor);
}

void MaterialIronWidget::setFillCoefs(const QVector<double> &coefs)
{
    QStringList values;
    for (const double coef : coefs)
        values << QString::number(coef, 'g', 6);
    m_labelFillCoefsValue->setText(QStringLiteral("[%1]").arg(values.join(QStringLiteral(", "))));
}

void MaterialIronWidget::setDsomaloy(double dsomaloy)
{
    m_labelDsomaloyValue->setText(QString::number(dsomaloy, 'g', 6));
}

void MaterialIronWidget::setDebugRowsVisible(bool visible)
{
    for (QWidget *widget : qAsConst(m_debugRows))
        widget->setVisible(visible);
}

QWidget *MaterialIronWidget::openBHCurve()
{
    const auto *iron = static_cast<const MaterialIronDescribe *>(record());
    if (!iron)
        return nullptr;
    auto *window = new BHCurveWidget(*iron, plotWindowParent(this));
    window->show();
    return window;
}

QWidget *MaterialIronWidget::openIronLoss()
{
    const auto *iron = static_cast<const MaterialIronDescribe *>(record());
    if (!iron)
        return nullptr;
    auto *window = new IronLossWidget(*iron, plotWindowParent(this));
    window->show();
    return window;
}

MaterialSelectDialog *MaterialIronWidget::newSelectDialog(const QString &currentName)
{
    return new MaterialIronSelectDialog(currentName, this);
}

MaterialMagnetWidget::MaterialMagnetWidget(QWidget *parent)
    : MaterialRowWidget(MaterialMagnetEngine::instance(), parent),
      m_editTemperature(addNumberRow("labelTemperature", tr("Temperature (°C):"), "editTemperature")),
      m_valueSegments(newLabel(this, "valueSegmentsInRadialDirection", QStringLiteral("1")))
{
    const QString temperatureTip =
        tr("Remanence flux density and intrinsic coercivity of magnet vary with temperature");
    findChild<QLabel *>(QStringLiteral("labelTemperature"))->setToolTip(temperatureTip);
    m_editTemperature->setToolTip(temperatureTip);
    m_editTemperature->setRange(-273.15, 1000.0, 2);
    connect(m_editTemperature, &NumberEdit::valueEditingFinished, this, &MaterialMagnetWidget::temperatureChanged);

    QLabel *labelSegments = newLabel(this, "labelSegmentsInRadialDirection", tr("Segments:"));
    labelSegments->setToolTip(tr("Number of magnet segments in radial direction"));
    const int row = grid()->rowCount();
    grid()->addWidget(labelSegments, row, 0);
    grid()->addWidget(m_valueSegments, row, 1, 1, 2);
}

void MaterialMagnetWidget::setTemperature(double temperature)
{
    m_editTemperature->setValue(temperature);
}

void MaterialMagnetWidget::setSegments(int segments)
{
    m_valueSegments->setNum(segments);
}

MaterialSelectDialog *MaterialMagnetWidget::newSelectDialog(const QString &currentName)
{
    return new MaterialMagnetSelectDialog(currentName, this);
}
