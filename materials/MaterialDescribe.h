#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

// What every library material states about itself. A record is a plain value; the
// catalogues keep records of the derived kinds behind this base, hence the virtual
// destructor.
struct MaterialDescribe
{
    virtual ~MaterialDescribe() = default;

    QString fileName; // full path of the file it was read from
    QString name;     // the key of the catalogue
    QString description;
    QString source;
};

struct MaterialConductorDescribe : MaterialDescribe
{
    double electricResistivity = 0.0;
    QString electricResistivityUnit;
    double temperatureCoefficient = 0.0;
    double massDensity = 0.0;
    QString massDensityUnit;
};

// The specific loss of an iron: a measured table, or the coefficients of
// Pil = kh f^alfa B^beta + ke (f B)^2. The three loss lists are of equal length.
struct MaterialIronLoss
{
    QList<double> lossFrequency;
    QList<double> lossFluxDensity;
    QList<double> lossValue;
    QString unitFrequency;
    QString unitFluxDensity;
    QString unitLoss;
    double kh = 0.0;
    double alfa = 0.0;
    double beta = 0.0;
    double ke = 0.0;
};

struct MaterialIronDescribe : MaterialDescribe, MaterialIronLoss
{
    using IronLoss = MaterialIronLoss;

    QList<double> curveB; // same length as curveH
    QList<double> curveH;
    QString unitB;
    QString unitH;
    double massDensity = 0.0;
    QString massDensityUnit;
};

struct MaterialMagnetDescribe : MaterialDescribe
{
    double electricResistivity = 0.0;
    QString electricResistivityUnit;
    double massDensity = 0.0;
    QString massDensityUnit;
};

Q_DECLARE_METATYPE(MaterialConductorDescribe)
Q_DECLARE_METATYPE(MaterialIronDescribe)
Q_DECLARE_METATYPE(MaterialMagnetDescribe)

// A number written by hand: both ',' and '.' are the decimal point, whatever the
// locale. Text that is no number gives 0.
double stringToDouble(const QString &text);
