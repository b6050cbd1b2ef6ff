#pragma once

#include <QList>
#include <QPointF>
#include <QPolygonF>

// The pole of inaccessibility of a region: the inner point farthest from its outline,
// found to within precision, where a label sits best. The rings are closed by their
// first point and taken by the even-odd rule, so holes need no marking; a hole is never
// the answer. No rings give (0, 0).
QPointF polylabel(const QList<QPolygonF> &rings, double precision = 1.0);
