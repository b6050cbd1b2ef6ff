#pragma once

#include <QString>
#include <QVariant>

// The values of a design that the model counts, indexes or builds by, with the ranges
// a design may have. Values from a file or its history are checked against these
// before they reach the elements: a slot count of 0 or 100000 or a diameter that is no
// number would hang or break the geometry rather than draw a machine.
namespace ModelRanges {

// Empty when `value` is one that the variable or property `name` may take, or when
// `name` is none of those checked; otherwise what is wrong, naming the field.
QString check(const QString &name, const QVariant &value);

// The first fault among the values of a map, as above.
QString check(const QVariantMap &values);

} // namespace ModelRanges
