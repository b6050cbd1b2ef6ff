#pragma once

#include <QPair>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <matio.h>

// A shared owner of one MAT variable, freed with the last copy; may be null.
class MatVarPointer : public QSharedPointer<matvar_t>
{
public:
    MatVarPointer() = default;
    explicit MatVarPointer(matvar_t *variable)
        : QSharedPointer<matvar_t>(variable, Mat_VarFree)
    {
    }
};

// Qt values to MAT variables and back. Every matVar and builder returns a new
// variable that the caller owns, or null; a cell or struct takes over the
// variables it is given. An element of a cell has an empty name.
class MAT_Converter
{
public:
    using Field = QPair<QString, matvar_t *>;

    // A variable of that name without data.
    static matvar_t *empty(const QString &name);

    // 1×n char: UTF-8 bytes for plain ASCII, otherwise UTF-16 units.
    static matvar_t *matVar(const QString &text, const QString &name);
    static matvar_t *matVar(const char *text, const QString &name) { return matVar(QString::fromUtf8(text), name); }
    static matvar_t *matVar(double value, const QString &name);
    // Written as a double scalar.
    static matvar_t *matVar(int value, const QString &name);
    // A uint8 scalar without the logical flag.
    static matvar_t *matVar(bool value, const QString &name);
    static matvar_t *matVar(const QVector<double> &values, const QString &name);
    static matvar_t *matVar(const QVector<matvar_t *> &cells, const QString &name);
    // 1×n char with the data type uint8.
    static matvar_t *matVar(const QByteArray &bytes, const QString &name);
    static matvar_t *matVar(const QVariantList &list, const QString &name);
    static matvar_t *matVar(const QVariantMap &map, const QString &name);
    static matvar_t *matVar(const QVariant &value, const QString &name);

    // A rows×columns double table from its values in column-major order.
    static matvar_t *matrix(const QVector<double> &columnMajor, int rows, const QString &name);
    // A 1×1 struct with the fields in the given order. A null value leaves its
    // field out, with a critical log line that names it below the struct.
    static matvar_t *structVar(const QString &name, const QVector<Field> &fields);
    // A 1×n struct array; each element gives a value per field name, in that
    // order, and a null value leaves that field of that element empty.
    static matvar_t *structArray(const QString &name, const QStringList &fieldNames,
                                 const QVector<QVector<matvar_t *>> &elements);

    // A copy of the variable under another name.
    static matvar_t *renamed(const matvar_t *variable, const QString &name);

    static QVariant toVariant(const matvar_t *variable);

    // The bytes of a MAT file that holds the one variable; empty on failure.
    static QByteArray toByteArray(const matvar_t *variable);
    // The variable of that name from such bytes: empty bytes give an empty
    // variable, bytes without it or no MAT file at all give null.
    static MatVarPointer fromByteArray(const QByteArray &bytes, const QString &name);
};
