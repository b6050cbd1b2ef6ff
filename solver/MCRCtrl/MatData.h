#pragma once

#include <QString>
#include <QStringList>
#include <map>
#include <stdexcept>
#include <vector>

struct matvar_t;

namespace mcrctrl {

// What makes a step stop: bad input or a failed solve, told to the user as it stands.
class StepError : public std::runtime_error
{
public:
    explicit StepError(const QString &text)
        : std::runtime_error(text.toStdString())
        , m_text(text)
    {
    }
    const QString &text() const { return m_text; }

private:
    QString m_text;
};

// A MAT variable as plain values: numbers of any class as doubles in column-major
// order, texts, cells and structs. A struct array is a struct with several elements.
struct MatValue
{
    enum Kind { Empty, Numbers, Text, Cell, Struct };

    Kind kind = Empty;
    int rows = 0;
    int columns = 0;
    std::vector<double> numbers;
    QString text;
    std::vector<MatValue> items;
    std::vector<std::map<QString, MatValue>> elements;

    static MatValue from(const matvar_t *variable);

    bool isEmpty() const { return kind == Empty || (kind == Numbers && numbers.empty()); }
    // A field of the first element of a struct; throws when missing, with where as the
    // dotted name of this value for the message.
    const MatValue &field(const QString &name, const QString &where) const;
    const MatValue *findField(const QString &name) const;
    // The one number of a scalar; throws otherwise.
    double number(const QString &where) const;
    double at(int row, int column) const { return numbers[std::size_t(row + column * rows)]; }
};

// Builders of variables that matio owns; a null name for the elements of cells and structs.
namespace mat {
matvar_t *number(const QString &name, double value);
matvar_t *matrix(const QString &name, int rows, int columns, const std::vector<double> &values);
matvar_t *row(const QString &name, const std::vector<double> &values);
matvar_t *text(const QString &name, const QString &value);
// Takes the elements.
matvar_t *cell(const QString &name, const std::vector<matvar_t *> &items);
// Takes the fields' variables.
matvar_t *structure(const QString &name, const std::vector<std::pair<QString, matvar_t *>> &fields);
// A copy of a variable under another name.
matvar_t *renamed(const matvar_t *variable, const QString &name);
void release(matvar_t *variable);
} // namespace mat

// Every variable of a MAT file, raw and read whole, freed with the reader.
class MatReader
{
public:
    explicit MatReader(const QString &path);
    ~MatReader();
    MatReader(const MatReader &) = delete;
    MatReader &operator=(const MatReader &) = delete;

    bool contains(const QString &name) const { return m_variables.count(name) > 0; }
    const matvar_t *raw(const QString &name) const;
    // Throws when the variable is missing.
    MatValue value(const QString &name) const;

private:
    std::map<QString, matvar_t *> m_variables;
};

// Replaces the file at path with the variables, which it takes, only once all are
// written: a failed write leaves the file as it was.
void writeMatFile(const QString &path, const std::vector<matvar_t *> &variables);

} // namespace mcrctrl
