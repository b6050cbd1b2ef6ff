#pragma once

#include "base/ElementTypes.h"
#include "geometry/PoleArrangement.h"
#include "ui/Controls/ValueComboBox.h"
#include "winding/Winding.h"

#include <QStringList>
#include <QVariantList>

// Combo boxes of the design's enumerations. Each has the user property
// `currentValue`, announced by `currentValueChanged`; no current item reads as the
// type's unknown value.

// Single or double layer winding.
class WindingLayersComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(int currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged USER true)
public:
    explicit WindingLayersComboBox(QWidget *parent = nullptr);
    int currentValue() const { return value(currentIndex()); }
    Q_INVOKABLE int value(int index) const;

public slots:
    void setCurrentValue(int numberLayers);

signals:
    void currentValueChanged(int numberLayers);

protected:
    void announceCurrentValue(int index) override;
};

class WindingLayersOrientationComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(Winding::LayersOrientation currentValue READ currentValue WRITE setCurrentValue NOTIFY
                   currentValueChanged USER true)
public:
    explicit WindingLayersOrientationComboBox(QWidget *parent = nullptr);
    Winding::LayersOrientation currentValue() const { return value(currentIndex()); }
    Q_INVOKABLE Winding::LayersOrientation value(int index) const;

public slots:
    void setCurrentValue(Winding::LayersOrientation orientation);

signals:
    void currentValueChanged(Winding::LayersOrientation orientation);

protected:
    void announceCurrentValue(int index) override;
};

class WindingTypeComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(Winding::Type currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged USER true)
public:
    explicit WindingTypeComboBox(QWidget *parent = nullptr);
    Winding::Type currentValue() const { return value(currentIndex()); }
    Q_INVOKABLE Winding::Type value(int index) const;

public slots:
    void setCurrentValue(Winding::Type type);

signals:
    void currentValueChanged(Winding::Type type);

protected:
    void announceCurrentValue(int index) override;
};

// Whether a stator or rotor body has a yoke; both elements use the one class.
class MiddleTypeComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(ElementTypes::MiddleType currentValue READ currentValue WRITE setCurrentValue NOTIFY
                   currentValueChanged USER true)
public:
    explicit MiddleTypeComboBox(QWidget *parent = nullptr);
    ElementTypes::MiddleType currentValue() const { return value(currentIndex()); }
    Q_INVOKABLE ElementTypes::MiddleType value(int index) const;

public slots:
    void setCurrentValue(ElementTypes::MiddleType type);

signals:
    void currentValueChanged(ElementTypes::MiddleType type);

protected:
    void announceCurrentValue(int index) override;
};

// Starts with all arrangements; a script cuts the list to those its rotor can build.
class PoleArrangementComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(PoleArrangement::Type currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged
                   USER true)
public:
    explicit PoleArrangementComboBox(QWidget *parent = nullptr);
    PoleArrangement::Type currentValue() const { return value(currentIndex()); }
    Q_INVOKABLE PoleArrangement::Type value(int index) const;
    // Members that are no arrangement are passed over.
    Q_INVOKABLE void setItems(const QVariantList &items);

public slots:
    void setCurrentValue(PoleArrangement::Type type);

signals:
    void currentValueChanged(PoleArrangement::Type type);

protected:
    void announceCurrentValue(int index) override;
};

// How the layouts of several stator faces are joined, in the texts of the winding.
class WindingConnectionComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(QString currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged USER true)
public:
    explicit WindingConnectionComboBox(QWidget *parent = nullptr);
    QString currentValue() const { return value(currentIndex()); }
    Q_INVOKABLE QString value(int index) const;
    Q_INVOKABLE void setItems(const QStringList &items);

public slots:
    void setCurrentValue(const QString &connection);

signals:
    void currentValueChanged(const QString &connection);

protected:
    void announceCurrentValue(int index) override;
};

// How a time plot shows its expression.
class TimePlotTypeComboBox : public ValueComboBox
{
    Q_OBJECT
    Q_PROPERTY(QString currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged USER true)
public:
    explicit TimePlotTypeComboBox(QWidget *parent = nullptr);
    QString currentValue() const { return value(currentIndex()); }
    QString value(int index) const;

public slots:
    void setCurrentValue(const QString &type);

signals:
    void currentValueChanged(const QString &type);

protected:
    void announceCurrentValue(int index) override;
};
