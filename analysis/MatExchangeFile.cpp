#include "analysis/MatExchangeFile.h"

#include <QDebug>
#include <QDir>
#include <QFile>

#include "analysis/MatFileCheck.h"
#include "base/SafeWrite.h"

namespace {

QByteArray fileName(const QString &path)
{
    return QFile::encodeName(QDir::toNativeSeparators(path));
}

} // namespace

bool MatExchangeFile::write(const QString &path, const QVector<Variable> &variables)
{
    if (!SafeWrite::mayWrite(path))
        return false;
    SafeWrite::Replacement replacement(path);
    mat_t *mat = Mat_CreateVer(fileName(replacement.temporaryPath()).constData(), nullptr, MAT_FT_MAT5);
    if (!mat) {
        qCritical() << "Mat_Open for write cannot open file " << path;
        return false;
    }
    bool written = true;
    for (const Variable &variable : variables) {
        const MatVarPointer named(variable.second ? MAT_Converter::renamed(variable.second.data(), variable.first)
                                                  : nullptr);
        if (!named || Mat_VarWrite(mat, named.data(), MAT_COMPRESSION_NONE) != 0) {
            qCritical().noquote() << "Error: Can't create variable for " + variable.first;
            written = false;
        }
    }
    Mat_Close(mat);
    // A file with a variable missing still takes the place of the old one: the reader
    // finds out what is missing by name.
    return replacement.commit() && written;
}

std::optional<QHash<QString, MatVarPointer>> MatExchangeFile::read(const QString &path)
{
    mat_t *mat = MatFileCheck::openForRead(path);
    if (!mat) {
        qCritical() << "Mat_Open for read cannot open file " << path;
        return std::nullopt;
    }
    QHash<QString, MatVarPointer> variables;
    size_t count = 0;
    char **dir = Mat_GetDir(mat, &count);
    QStringList names;
    for (size_t i = 0; dir && i < count; ++i)
        names << QString::fromUtf8(dir[i]);
    for (const QString &name : qAsConst(names)) {
        qDebug() << name;
        MatVarPointer variable(Mat_VarRead(mat, name.toUtf8().constData()));
        if (variable)
            variables.insert(name, variable);
    }
    Mat_Close(mat);
    return variables;
}
