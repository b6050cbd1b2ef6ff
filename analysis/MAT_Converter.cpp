#include "analysis/MAT_Converter.h"

#include <QDebug>
#include <QFile>
#include <vector>
#include <cstdlib>
#include <cstring>

#include "analysis/MatFileCheck.h"
#include "base/ExchangePath.h"

namespace {

// matio keeps names as C strings; an empty name is none, as for cell elements.
QByteArray nameBytes(const QString &name)
{
    return name.toUtf8();
}

const char *nameOrNull(const QByteArray &name)
{
    return name.isEmpty() ? nullptr : name.constData();
}

matvar_t *rowVector(const QString &name, matio_classes classType, matio_types dataType, size_t count,
                    const void *data)
{
    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {1, count};
    return Mat_VarCreate(nameOrNull(bytes), classType, dataType, 2, dims, const_cast<void *>(data), 0);
}

size_t elementCount(const matvar_t *variable)
{
    size_t count = variable->rank > 0 ? 1 : 0;
    for (int i = 0; i < variable->rank; ++i)
        count *= variable->dims[i];
    return count;
}

// The elements whose values are there: libmatio sizes some data by the bytes a damaged
// file gave them, not by the dimensions.
size_t storedCount(const matvar_t *variable, size_t elementSize)
{
    return qMin(elementCount(variable), variable->nbytes / elementSize);
}

QString charText(const matvar_t *variable)
{
    if (!variable->data || elementCount(variable) == 0)
        return QString();
    if (variable->data_type == MAT_T_UTF8 || variable->data_type == MAT_T_UINT8)
        return QString::fromUtf8(static_cast<const char *>(variable->data), int(variable->nbytes));
    if (Mat_SizeOf(variable->data_type) == 4)
        return QString::fromUcs4(static_cast<const uint *>(variable->data), int(storedCount(variable, 4)));
    return QString::fromUtf16(static_cast<const ushort *>(variable->data), int(storedCount(variable, 2)));
}

template <typename T>
QVector<double> numbersOf(const matvar_t *variable)
{
    const size_t count = storedCount(variable, sizeof(T));
    const T *data = static_cast<const T *>(variable->data);
    QVector<double> numbers(static_cast<int>(count));
    for (size_t i = 0; i < count; ++i)
        numbers[int(i)] = double(data[i]);
    return numbers;
}

bool readNumbers(const matvar_t *variable, QVector<double> &numbers)
{
    if (variable->isComplex)
        return false;
    if (!variable->data) {
        numbers.clear();
        return true;
    }
    switch (variable->class_type) {
    case MAT_C_DOUBLE: numbers = numbersOf<double>(variable); return true;
    case MAT_C_SINGLE: numbers = numbersOf<float>(variable); return true;
    case MAT_C_INT8: numbers = numbersOf<qint8>(variable); return true;
    case MAT_C_UINT8: numbers = numbersOf<quint8>(variable); return true;
    case MAT_C_INT16: numbers = numbersOf<qint16>(variable); return true;
    case MAT_C_UINT16: numbers = numbersOf<quint16>(variable); return true;
    case MAT_C_INT32: numbers = numbersOf<qint32>(variable); return true;
    case MAT_C_UINT32: numbers = numbersOf<quint32>(variable); return true;
    case MAT_C_INT64: numbers = numbersOf<qint64>(variable); return true;
    case MAT_C_UINT64: numbers = numbersOf<quint64>(variable); return true;
    default: return false;
    }
}

// One element a number, a list for a row or column, a list of rows for a table.
QVariant numericVariant(const matvar_t *variable, const QVector<double> &numbers)
{
    if (numbers.isEmpty())
        return QVariant();
    if (numbers.size() == 1)
        return numbers.first();
    const int rows = int(variable->dims[0]);
    const int columns = numbers.size() / rows;
    if (variable->rank != 2 || rows == 1 || columns == 1) {
        QVariantList list;
        for (double number : numbers)
            list.append(number);
        return list;
    }
    QVariantList table;
    for (int r = 0; r < rows; ++r) {
        QVariantList row;
        for (int c = 0; c < columns; ++c)
            row.append(numbers.at(r + c * rows));
        table.append(QVariant(row));
    }
    return table;
}

QVariantMap structElement(const matvar_t *variable, size_t index)
{
    QVariantMap map;
    const unsigned count = Mat_VarGetNumberOfFields(const_cast<matvar_t *>(variable));
    char *const *names = Mat_VarGetStructFieldnames(variable);
    // A damaged file may declare fields and name none of them.
    if (!names)
        return map;
    for (unsigned i = 0; i < count; ++i) {
        const matvar_t *field = Mat_VarGetStructFieldByIndex(const_cast<matvar_t *>(variable), i, index);
        map.insert(QString::fromUtf8(names[i]), field ? MAT_Converter::toVariant(field) : QVariant());
    }
    return map;
}

// libmatio reads and writes files only: bytes pass through a file of their own.
class TemporaryMatFile
{
public:
    TemporaryMatFile()
        : m_path(getPathFileExchange(QStringLiteral("mat")))
        , m_name(QFile::encodeName(m_path))
    {
    }
    ~TemporaryMatFile() { QFile::remove(m_path); }
    TemporaryMatFile(const TemporaryMatFile &) = delete;
    TemporaryMatFile &operator=(const TemporaryMatFile &) = delete;

    const QString &path() const { return m_path; }
    const char *name() const { return m_name.constData(); }

private:
    QString m_path;
    QByteArray m_name;
};

} // namespace

matvar_t *MAT_Converter::empty(const QString &name)
{
    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {0, 0};
    return Mat_VarCreate(nameOrNull(bytes), MAT_C_DOUBLE, MAT_T_DOUBLE, 2, dims, nullptr, 0);
}

matvar_t *MAT_Converter::matVar(const QString &text, const QString &name)
{
    const QByteArray utf8 = text.toUtf8();
    // Plain ASCII is the same in UTF-8 and Latin-1; anything else goes as UTF-16.
    if (utf8 == text.toLatin1())
        return rowVector(name, MAT_C_CHAR, MAT_T_UTF8, size_t(utf8.size()), utf8.constData());
    return rowVector(name, MAT_C_CHAR, MAT_T_UTF16, size_t(text.size()), text.utf16());
}

matvar_t *MAT_Converter::matVar(double value, const QString &name)
{
    return rowVector(name, MAT_C_DOUBLE, MAT_T_DOUBLE, 1, &value);
}

matvar_t *MAT_Converter::matVar(int value, const QString &name)
{
    return matVar(double(value), name);
}

matvar_t *MAT_Converter::matVar(bool value, const QString &name)
{
    const quint8 byte = value ? 1 : 0;
    return rowVector(name, MAT_C_UINT8, MAT_T_UINT8, 1, &byte);
}

matvar_t *MAT_Converter::matVar(const QVector<double> &values, const QString &name)
{
    return rowVector(name, MAT_C_DOUBLE, MAT_T_DOUBLE, size_t(values.size()), values.constData());
}

matvar_t *MAT_Converter::matVar(const QVector<matvar_t *> &cells, const QString &name)
{
    matvar_t *cell = rowVector(name, MAT_C_CELL, MAT_T_CELL, size_t(cells.size()), nullptr);
    if (!cell) {
        for (matvar_t *element : cells)
            Mat_VarFree(element);
        return nullptr;
    }
    for (int i = 0; i < cells.size(); ++i)
        Mat_VarSetCell(cell, i, cells.at(i));
    return cell;
}

matvar_t *MAT_Converter::matVar(const QByteArray &bytes, const QString &name)
{
    return rowVector(name, MAT_C_CHAR, MAT_T_UINT8, size_t(bytes.size()), bytes.constData());
}

matvar_t *MAT_Converter::matVar(const QVariantList &list, const QString &name)
{
    if (list.isEmpty())
        return matVar(QStringLiteral("list is empty"), name);
    const int firstType = list.first().userType();
    if (firstType == QMetaType::Int || firstType == QMetaType::Double) {
        QVector<double> numbers;
        numbers.reserve(list.size());
        for (const QVariant &value : list)
            numbers.append(value.toDouble());
        return matVar(numbers, name);
    }
    QVector<matvar_t *> cells;
    cells.reserve(list.size());
    for (const QVariant &value : list)
        cells.append(matVar(value, QString()));
    return matVar(cells, name);
}

matvar_t *MAT_Converter::matVar(const QVariantMap &map, const QString &name)
{
    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {1, 1};
    matvar_t *structure = Mat_VarCreateStruct2(nameOrNull(bytes), 2, dims, nullptr);
    if (!structure)
        return nullptr;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        const QByteArray key = it.key().toUtf8();
        matvar_t *field = matVar(it.value(), it.key());
        if (!field || Mat_VarAddStructField(structure, key.constData()) != 0) {
            qCritical() << "Error: Can't add struct field" << it.key();
            Mat_VarFree(field);
            continue;
        }
        Mat_VarSetStructFieldByName(structure, key.constData(), 0, field);
    }
    return structure;
}

matvar_t *MAT_Converter::matVar(const QVariant &value, const QString &name)
{
    switch (value.userType()) {
    case QMetaType::UnknownType: return empty(name);
    case QMetaType::Bool: return matVar(value.toBool(), name);
    case QMetaType::Int: return matVar(value.toInt(), name);
    case QMetaType::Double: return matVar(value.toDouble(), name);
    case QMetaType::QVariantMap: return matVar(value.toMap(), name);
    case QMetaType::QVariantList:
    case QMetaType::QStringList: return matVar(value.toList(), name);
    case QMetaType::QString: return matVar(value.toString(), name);
    default: break;
    }
    qCritical() << "Error: can't create MAT value from" << value.typeName();
    return matVar(QStringLiteral("Unsupported type '%1'").arg(QString::fromLatin1(value.typeName())), name);
}

matvar_t *MAT_Converter::matrix(const QVector<double> &columnMajor, int rows, const QString &name)
{
    const QByteArray bytes = nameBytes(name);
    const int columns = rows > 0 ? columnMajor.size() / rows : 0;
    size_t dims[2] = {size_t(rows), size_t(columns)};
    return Mat_VarCreate(nameOrNull(bytes), MAT_C_DOUBLE, MAT_T_DOUBLE, 2, dims,
                         const_cast<double *>(columnMajor.constData()), 0);
}

matvar_t *MAT_Converter::structVar(const QString &name, const QVector<Field> &fields)
{
    std::vector<QByteArray> keys;
    std::vector<const char *> names;
    for (const Field &field : fields) {
        if (!field.second) {
            qCritical().noquote() << "Error: Can't create variable for " + name + "." + field.first;
            continue;
        }
        keys.push_back(field.first.toUtf8());
    }
    for (const QByteArray &key : keys)
        names.push_back(key.constData());

    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {1, 1};
    names.push_back(nullptr);
    matvar_t *structure = Mat_VarCreateStruct2(nameOrNull(bytes), 2, dims, names.data());
    if (!structure) {
        qCritical().noquote() << "Error: Can't create struct " + name;
        for (const Field &field : fields)
            Mat_VarFree(field.second);
        return nullptr;
    }
    for (const Field &field : fields) {
        if (field.second)
            Mat_VarSetStructFieldByName(structure, field.first.toUtf8().constData(), 0, field.second);
    }
    return structure;
}

matvar_t *MAT_Converter::structArray(const QString &name, const QStringList &fieldNames,
                                     const QVector<QVector<matvar_t *>> &elements)
{
    std::vector<QByteArray> keys;
    std::vector<const char *> names;
    for (const QString &field : fieldNames)
        keys.push_back(field.toUtf8());
    for (const QByteArray &key : keys)
        names.push_back(key.constData());

    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {1, size_t(elements.size())};
    names.push_back(nullptr);
    matvar_t *structure = Mat_VarCreateStruct2(nameOrNull(bytes), 2, dims, names.data());
    for (int i = 0; i < elements.size(); ++i) {
        for (int f = 0; f < elements.at(i).size(); ++f) {
            matvar_t *value = elements.at(i).at(f);
            if (!structure || f >= fieldNames.size() || !value)
                Mat_VarFree(value);
            else
                Mat_VarSetStructFieldByIndex(structure, size_t(f), size_t(i), value);
        }
    }
    if (!structure)
        qCritical().noquote() << "Error: Can't create struct " + name;
    return structure;
}

QVariant MAT_Converter::toVariant(const matvar_t *variable)
{
    if (!variable)
        return QVariant();
    switch (variable->class_type) {
    case MAT_C_CHAR: return charText(variable);
    case MAT_C_CELL: {
        QVariantList list;
        const size_t count = elementCount(variable);
        for (size_t i = 0; i < count; ++i)
            list.append(toVariant(Mat_VarGetCell(const_cast<matvar_t *>(variable), int(i))));
        return list;
    }
    case MAT_C_STRUCT: {
        // A struct array, like the regions of a slice, is a list of its elements. One
        // without fields holds nothing, however many elements it declares.
        const bool fieldless = Mat_VarGetNumberOfFields(const_cast<matvar_t *>(variable)) == 0;
        const size_t count = fieldless ? qMin<size_t>(elementCount(variable), 1) : elementCount(variable);
        if (count == 1)
            return structElement(variable, 0);
        QVariantList list;
        for (size_t i = 0; i < count; ++i)
            list.append(structElement(variable, i));
        return list;
    }
    default: break;
    }
    QVector<double> numbers;
    if (readNumbers(variable, numbers))
        return numericVariant(variable, numbers);
    return QStringLiteral("Unsupported MAT type '%1'").arg(int(variable->class_type));
}

matvar_t *MAT_Converter::renamed(const matvar_t *variable, const QString &name)
{
    matvar_t *copy = Mat_VarDuplicate(variable, 1);
    if (!copy)
        return nullptr;
    free(copy->name);
    const QByteArray bytes = nameBytes(name);
    copy->name = bytes.isEmpty() ? nullptr : strdup(bytes.constData());
    return copy;
}

QByteArray MAT_Converter::toByteArray(const matvar_t *variable)
{
    const TemporaryMatFile temporary;
    mat_t *mat = Mat_CreateVer(temporary.name(), nullptr, MAT_FT_MAT5);
    if (!mat) {
        qCritical() << "Mat_Open for write cannot open file " << temporary.path();
        return QByteArray();
    }
    const bool written = variable && Mat_VarWrite(mat, const_cast<matvar_t *>(variable), MAT_COMPRESSION_NONE) == 0;
    Mat_Close(mat);
    QFile file(temporary.path());
    if (!written || !file.open(QIODevice::ReadOnly)) {
        qCritical() << "Error: Can't open file" << temporary.path() << "for read";
        return QByteArray();
    }
    return file.readAll();
}

MatVarPointer MAT_Converter::fromByteArray(const QByteArray &bytes, const QString &name)
{
    if (bytes.isEmpty())
        return MatVarPointer(empty(name));
    const TemporaryMatFile temporary;
    {
        QFile file(temporary.path());
        if (!file.open(QIODevice::WriteOnly)) {
            qCritical() << "Error: Can't open file" << temporary.path() << "for write";
            return MatVarPointer();
        }
        if (file.write(bytes) != bytes.size()) {
            qCritical() << "Error: Written bytes != data.count()";
            return MatVarPointer();
        }
    }
    mat_t *mat = MatFileCheck::openForRead(temporary.path());
    if (!mat) {
        qCritical() << "Mat_Open for read cannot open file" << temporary.path();
        return MatVarPointer();
    }
    size_t count = 0;
    char **dir = Mat_GetDir(mat, &count);
    if (!dir) {
        qCritical() << "Mat_GetDir return null";
        Mat_Close(mat);
        return MatVarPointer();
    }
    QStringList names;
    for (size_t i = 0; i < count; ++i)
        names << QString::fromUtf8(dir[i]);
    if (!names.contains(name)) {
        qCritical() << "names" << names << "not contains" << name;
        Mat_Close(mat);
        return MatVarPointer();
    }
    MatVarPointer variable(Mat_VarRead(mat, name.toUtf8().constData()));
    Mat_Close(mat);
    return variable;
}
