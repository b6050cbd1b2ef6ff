#include "materials/Steinmetz.h"

namespace {

std::vector<double> vectorOf(const QList<double> &values)
{
    return std::vector<double>(values.begin(), values.end());
}

} // namespace

Steinmetz::Steinmetz(const MaterialIronDescribe::IronLoss &loss)
    : IronLossCoefficients(fitIronLoss(vectorOf(loss.lossFrequency), vectorOf(loss.lossFluxDensity), vectorOf(loss.lossValue)))
{
}
