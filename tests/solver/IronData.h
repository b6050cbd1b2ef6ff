#pragma once

#include <cmath>
#include <vector>

#include "solver/ReluctivityCurve.h"

// A measured-looking B-H table of electrical steel: B = mu0 H + Js tanh(H / Hk), which
// saturates at Js = 1.9 T with an initial relative permeability of about 7500.
struct IronData
{
    std::vector<double> h;
    std::vector<double> b;

    IronData()
    {
        for (const double field : {25.0, 50.0, 100.0, 200.0, 300.0, 500.0, 800.0, 1200.0, 2000.0, 4000.0, 8000.0,
                                   16000.0, 40000.0, 100000.0}) {
            h.push_back(field);
            b.push_back(solver::mu0 * field + 1.9 * std::tanh(field / 200.0));
        }
    }

    solver::ReluctivityCurve curve() const { return *solver::ReluctivityCurve::fromBH(h, b); }
};
