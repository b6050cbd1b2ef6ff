#pragma once

#include <QFile>
#include <QStringList>
#include <QVector>
#include <matio.h>

#include "analysis/MAT_Converter.h"

// A MAT file read back with libmatio's own calls, for the tests to look into.
class MatFile
{
public:
    explicit MatFile(const QString &path)
        : m_path(QFile::encodeName(path))
    {
    }

    QStringList names() const
    {
        QStringList listed;
        mat_t *mat = Mat_Open(m_path.constData(), MAT_ACC_RDONLY);
        if (!mat)
            return listed;
        size_t count = 0;
        char **names = Mat_GetDir(mat, &count);
        for (size_t i = 0; i < count; ++i)
            listed << QString::fromUtf8(names[i]);
        Mat_Close(mat);
        return listed;
    }

    bool isLevel5() const
    {
        mat_t *mat = Mat_Open(m_path.constData(), MAT_ACC_RDONLY);
        if (!mat)
            return false;
        const bool level5 = Mat_GetVersion(mat) == MAT_FT_MAT5;
        Mat_Close(mat);
        return level5;
    }

    MatVarPointer read(const char *name) const
    {
        mat_t *mat = Mat_Open(m_path.constData(), MAT_ACC_RDONLY);
        if (!mat)
            return MatVarPointer();
        MatVarPointer variable(Mat_VarRead(mat, name));
        Mat_Close(mat);
        return variable;
    }

private:
    QByteArray m_path;
};

inline matvar_t *field(const MatVarPointer &structure, const char *name)
{
    return structure ? Mat_VarGetStructFieldByName(structure.data(), name, 0) : nullptr;
}

inline QStringList fieldNames(const matvar_t *structure)
{
    QStringList names;
    char *const *fields = Mat_VarGetStructFieldnames(structure);
    for (unsigned i = 0; i < Mat_VarGetNumberOfFields(const_cast<matvar_t *>(structure)); ++i)
        names << QString::fromUtf8(fields[i]);
    return names;
}

inline QVector<double> doubles(const matvar_t *variable)
{
    if (!variable || variable->class_type != MAT_C_DOUBLE || !variable->data)
        return {};
    const double *data = static_cast<const double *>(variable->data);
    return QVector<double>(data, data + variable->dims[0] * variable->dims[1]);
}

inline QString text(const matvar_t *variable)
{
    return MAT_Converter::toVariant(variable).toString();
}
