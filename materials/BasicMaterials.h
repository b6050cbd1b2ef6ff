#pragma once

#include <QVector>

#include "materials/AbstractMaterial.h"

// A body whose role is not assigned.
class EmptyMaterial : public AbstractMaterial
{
public:
    EmptyMaterial();

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
};

class GeneralMaterial : public AbstractMaterial
{
public:
    GeneralMaterial();

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
};

class ConductorMaterial : public AbstractMaterial
{
public:
    ConductorMaterial();

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
    bool equals(const AbstractMaterial &other) const override;
};

// Stands in for a role the program does not know.
class DummyMaterial : public AbstractMaterial
{
public:
    DummyMaterial();

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
};

// An arbitrary body told apart by its colour.
class CustomMaterial : public AbstractMaterial
{
public:
    explicit CustomMaterial(const QColor &color = Qt::red);

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;
    QString key() const override;
    QColor color() const override;
    QString description() const override;
    bool equals(const AbstractMaterial &other) const override;

private:
    QColor m_color;
};

// Core iron. Fill coefficients and the soft magnetic composite factor go to the solver.
class IronMaterial : public AbstractMaterial
{
public:
    IronMaterial();
    IronMaterial(const QVector<double> &fillCoefs, double dsomaloy);

    const Record &persistenceKey() const override;
    QSharedPointer<AbstractMaterial> clone() const override;

    const QVector<double> &fillCoefs() const { return m_fillCoefs; }
    double dsomaloy() const { return m_dsomaloy; }

private:
    QVector<double> m_fillCoefs;
    double m_dsomaloy = 0.0;
};
