#include "solver/MCRCtrl/MatData.h"

#include "analysis/MatFileCheck.h"

#include <QFile>
#include <matio.h>
#include <cstdlib>
#include <cstring>

namespace mcrctrl {

namespace {

std::size_t elementCount(const matvar_t *variable)
{
    std::size_t count = variable->rank > 0 ? 1 : 0;
    for (int i = 0; i < variable->rank; ++i)
        count *= variable->dims[i];
    return count;
}

template <typename T>
void readNumbers(const matvar_t *variable, std::vector<double> &numbers)
{
    const auto *data = static_cast<const T *>(variable->data);
    const std::size_t count = variable->data ? elementCount(variable) : 0;
    numbers.assign(count, 0.0);
    for (std::size_t i = 0; i < count; ++i)
        numbers[i] = double(data[i]);
}

QString charText(const matvar_t *variable)
{
    const std::size_t count = elementCount(variable);
    if (!variable->data || count == 0)
        return QString();
    if (variable->data_type == MAT_T_UTF8 || variable->data_type == MAT_T_UINT8)
        return QString::fromUtf8(static_cast<const char *>(variable->data), int(variable->nbytes));
    if (Mat_SizeOf(variable->data_type) == 4)
        return QString::fromUcs4(static_cast<const uint *>(variable->data), int(count));
    return QString::fromUtf16(static_cast<const ushort *>(variable->data), int(count));
}

QByteArray nameBytes(const QString &name)
{
    return name.toUtf8();
}

const char *nameOrNull(const QByteArray &name)
{
    return name.isEmpty() ? nullptr : name.constData();
}

} // namespace

MatValue MatValue::from(const matvar_t *variable)
{
    MatValue value;
    if (!variable)
        return value;
    value.rows = variable->rank > 0 ? int(variable->dims[0]) : 0;
    value.columns = variable->rank > 1 ? int(elementCount(variable) / std::max<std::size_t>(1, variable->dims[0])) : 1;
    switch (variable->class_type) {
    case MAT_C_CHAR:
        value.kind = Text;
        value.text = charText(variable);
        return value;
    case MAT_C_CELL: {
        value.kind = Cell;
        const std::size_t count = variable->data ? elementCount(variable) : 0;
        for (std::size_t i = 0; i < count; ++i)
            value.items.push_back(from(Mat_VarGetCell(const_cast<matvar_t *>(variable), int(i))));
        return value;
    }
    case MAT_C_STRUCT: {
        value.kind = Struct;
        const unsigned fieldCount = Mat_VarGetNumberOfFields(const_cast<matvar_t *>(variable));
        char *const *names = Mat_VarGetStructFieldnames(variable);
        const std::size_t count = elementCount(variable);
        for (std::size_t e = 0; e < count; ++e) {
            std::map<QString, MatValue> fields;
            for (unsigned f = 0; f < fieldCount; ++f) {
                const matvar_t *field = Mat_VarGetStructFieldByIndex(const_cast<matvar_t *>(variable), f, e);
                fields.emplace(QString::fromUtf8(names[f]), from(field));
            }
            value.elements.push_back(std::move(fields));
        }
        return value;
    }
    case MAT_C_DOUBLE: value.kind = Numbers; readNumbers<double>(variable, value.numbers); break;
    case MAT_C_SINGLE: value.kind = Numbers; readNumbers<float>(variable, value.numbers); break;
    case MAT_C_INT8: value.kind = Numbers; readNumbers<qint8>(variable, value.numbers); break;
    case MAT_C_UINT8: value.kind = Numbers; readNumbers<quint8>(variable, value.numbers); break;
    case MAT_C_INT16: value.kind = Numbers; readNumbers<qint16>(variable, value.numbers); break;
    case MAT_C_UINT16: value.kind = Numbers; readNumbers<quint16>(variable, value.numbers); break;
    case MAT_C_INT32: value.kind = Numbers; readNumbers<qint32>(variable, value.numbers); break;
    case MAT_C_UINT32: value.kind = Numbers; readNumbers<quint32>(variable, value.numbers); break;
    case MAT_C_INT64: value.kind = Numbers; readNumbers<qint64>(variable, value.numbers); break;
    case MAT_C_UINT64: value.kind = Numbers; readNumbers<quint64>(variable, value.numbers); break;
    default: break;
    }
    return value;
}

const MatValue *MatValue::findField(const QString &name) const
{
    if (kind != Struct || elements.empty())
        return nullptr;
    const auto found = elements.front().find(name);
    return found == elements.front().end() ? nullptr : &found->second;
}

const MatValue &MatValue::field(const QString &name, const QString &where) const
{
    if (const MatValue *value = findField(name))
        return *value;
    throw StepError(QStringLiteral("The exchange file has no '%1.%2'").arg(where, name));
}

double MatValue::number(const QString &where) const
{
    if (kind != Numbers || numbers.size() != 1)
        throw StepError(QStringLiteral("'%1' is not a number").arg(where));
    return numbers.front();
}

namespace mat {

matvar_t *matrix(const QString &name, int rows, int columns, const std::vector<double> &values)
{
    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {size_t(rows), size_t(columns)};
    return Mat_VarCreate(nameOrNull(bytes), MAT_C_DOUBLE, MAT_T_DOUBLE, 2, dims,
                         const_cast<double *>(values.data()), 0);
}

matvar_t *number(const QString &name, double value)
{
    return matrix(name, 1, 1, {value});
}

matvar_t *row(const QString &name, const std::vector<double> &values)
{
    return matrix(name, 1, int(values.size()), values);
}

matvar_t *text(const QString &name, const QString &value)
{
    const QByteArray bytes = nameBytes(name);
    const QByteArray utf8 = value.toUtf8();
    size_t dims[2] = {1, size_t(utf8.size())};
    return Mat_VarCreate(nameOrNull(bytes), MAT_C_CHAR, MAT_T_UTF8, 2, dims, const_cast<char *>(utf8.constData()), 0);
}

matvar_t *cell(const QString &name, const std::vector<matvar_t *> &items)
{
    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {1, items.size()};
    matvar_t *variable = Mat_VarCreate(nameOrNull(bytes), MAT_C_CELL, MAT_T_CELL, 2, dims, nullptr, 0);
    for (std::size_t i = 0; i < items.size(); ++i)
        Mat_VarSetCell(variable, int(i), items[i]);
    return variable;
}

matvar_t *structure(const QString &name, const std::vector<std::pair<QString, matvar_t *>> &fields)
{
    std::vector<QByteArray> names;
    std::vector<const char *> pointers;
    for (const auto &field : fields)
        names.push_back(field.first.toUtf8());
    for (const QByteArray &fieldName : names)
        pointers.push_back(fieldName.constData());
    const QByteArray bytes = nameBytes(name);
    size_t dims[2] = {1, 1};
    matvar_t *variable = Mat_VarCreateStruct(nameOrNull(bytes), 2, dims, pointers.data(), unsigned(pointers.size()));
    for (std::size_t i = 0; i < fields.size(); ++i)
        Mat_VarSetStructFieldByIndex(variable, i, 0, fields[i].second);
    return variable;
}

matvar_t *renamed(const matvar_t *variable, const QString &name)
{
    matvar_t *copy = Mat_VarDuplicate(variable, 1);
    free(copy->name);
    copy->name = name.isEmpty() ? nullptr : strdup(name.toUtf8().constData());
    return copy;
}

void release(matvar_t *variable)
{
    Mat_VarFree(variable);
}

} // namespace mat

MatReader::MatReader(const QString &path)
{
    // libmatio believes the sizes a file declares: a damaged one is refused before it reads.
    const QString damage = MatFileCheck::problem(path);
    if (!damage.isEmpty())
        throw StepError(QStringLiteral("Can't read the exchange file '%1': %2").arg(path, damage));
    mat_t *file = Mat_Open(QFile::encodeName(path).constData(), MAT_ACC_RDONLY);
    if (!file)
        throw StepError(QStringLiteral("Can't open the exchange file '%1'").arg(path));
    while (matvar_t *variable = Mat_VarReadNextInfo(file)) {
        const QString name = QString::fromUtf8(variable->name);
        Mat_VarFree(variable);
        if (matvar_t *whole = Mat_VarRead(file, name.toUtf8().constData()))
            m_variables[name] = whole;
    }
    Mat_Close(file);
}

MatReader::~MatReader()
{
    for (auto &entry : m_variables)
        Mat_VarFree(entry.second);
}

const matvar_t *MatReader::raw(const QString &name) const
{
    const auto found = m_variables.find(name);
    return found == m_variables.end() ? nullptr : found->second;
}

MatValue MatReader::value(const QString &name) const
{
    const matvar_t *variable = raw(name);
    if (!variable)
        throw StepError(QStringLiteral("The exchange file has no variable '%1'").arg(name));
    return MatValue::from(variable);
}

void writeMatFile(const QString &path, const std::vector<matvar_t *> &variables)
{
    const QString temporary = path + QStringLiteral(".part");
    mat_t *file = Mat_CreateVer(QFile::encodeName(temporary).constData(), nullptr, MAT_FT_MAT5);
    bool written = file != nullptr;
    for (matvar_t *variable : variables) {
        if (written && variable)
            written = Mat_VarWrite(file, variable, MAT_COMPRESSION_NONE) == 0;
        Mat_VarFree(variable);
    }
    if (file)
        Mat_Close(file);
    if (!written) {
        QFile::remove(temporary);
        throw StepError(QStringLiteral("Can't write the exchange file '%1'").arg(path));
    }
    QFile::remove(path);
    if (!QFile::rename(temporary, path)) {
        QFile::remove(temporary);
        throw StepError(QStringLiteral("Can't replace the exchange file '%1'").arg(path));
    }
}

} // namespace mcrctrl
