#pragma once

#include <QVector>
#include <QWidget>

class MaterialDescribe;
class MaterialDescribeEngine;
class MaterialSelectDialog;
class MaterialSelectWidget;
class NumberEdit;
class QGridLayout;
class QLabel;
class QToolButton;

// One material of a machine in a row: its name as a button that opens the catalogue,
// and a button that opens the material's file. A choice goes up as materialChanged;
// values set from outside are shown without signals.
class MaterialRowWidget : public QWidget
{
    Q_OBJECT
public:
    QString material() const { return m_material; }
    void setMaterial(const QString &name);
    MaterialSelectWidget *selectWidget() const { return m_widgetMaterial; }
    QToolButton *detailButton() const { return m_buttonDetail; }

signals:
    void materialChanged(QString name);

protected:
    MaterialRowWidget(const MaterialDescribeEngine &catalogue, QWidget *parent);

    // The rows below the material's, for the kind's further values.
    QGridLayout *grid() const { return m_grid; }
    // The catalogue's record of the current name; null for none or a name it lacks.
    const MaterialDescribe *record() const;
    NumberEdit *addNumberRow(const char *labelName, const QString &label, const char *editName);

private:
    virtual MaterialSelectDialog *newSelectDialog(const QString &currentName) = 0;
    void chooseMaterial();
    void openFile();

    const MaterialDescribeEngine &m_catalogue;
    QString m_material;
    QGridLayout *m_grid;
    MaterialSelectWidget *m_widgetMaterial;
    QToolButton *m_buttonDetail;
};

// A conductor and the temperature at which its resistance is taken.
class MaterialConductorWidget : public MaterialRowWidget
{
    Q_OBJECT
public:
    explicit MaterialConductorWidget(QWidget *parent = nullptr);

    void setTemperature(double temperature);
    // What the temperature changes, in the words of the row's user.
    void setTemperatureToolTip(const QString &toolTip);

signals:
    void temperatureChanged(double temperature);

private:
    MaterialSelectDialog *newSelectDialog(const QString &currentName) override;

    QLabel *m_labelTemperature;
    NumberEdit *m_editTemperature;
};

// A laminated or pressed iron, its stacking factor, and the plots of its data.
class MaterialIronWidget : public MaterialRowWidget
{
    Q_OBJECT
public:
    explicit MaterialIronWidget(QWidget *parent = nullptr);

    void setStackingFactor(double factor);
    void setFillCoefs(const QVector<double> &coefs);
    void setDsomaloy(double dsomaloy);
    // The rows of filling coefficients and d_somaloy are for debugging.
    void setDebugRowsVisible(bool visible);

    // The plot windows of the current material; null when the catalogue lacks it.
    QWidget *openBHCurve();
    QWidget *openIronLoss();

signals:
    void stackingFactorChanged(double factor);

private:
    MaterialSelectDialog *newSelectDialog(const QString &currentName) override;

    NumberEdit *m_editStackingFactor;
    QList<QWidget *> m_debugRows;
    QLabel *m_labelFillCoefsValue;
    QLabel *m_labelDsomaloyValue;
};

// A permanent magnet, its temperature and how many segments a pole has radially.
class MaterialMagnetWidget : public MaterialRowWidget
{
    Q_OBJECT
public:
    explicit MaterialMagnetWidget(QWidget *parent = nullptr);

    void setTemperature(double temperature);
    void setSegments(int segments);

signals:
    void temperatureChanged(double temperature);

private:
    MaterialSelectDialog *newSelectDialog(const QString &currentName) override;

    NumberEdit *m_editTemperature;
    QLabel *m_valueSegments;
};
