#include "ui/PropertyRows.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QSpinBox>
#include <QToolButton>

#include "ui/ModelComboBoxes.h"
#include "ui/Controls/NumberEdit.h"

PropertyRows::PropertyRows(QObject *target, QGridLayout *grid, Setter setter, QObject *parent)
    : QObject(parent)
    , m_target(target)
    , m_grid(grid)
    , m_setter(std::move(setter))
{
}

void PropertyRows::addRow(const QString &label, const char *property, QWidget *editor, const QString &unit,
                         const QString &toolTip)
{
    const QString name = QLatin1String(property);
    QWidget *parent = m_grid->parentWidget();
    const int index = m_grid->rowCount();
    QList<QWidget *> &widgets = m_rows[name];
    if (!label.isEmpty()) {
        auto *text = new QLabel(label, parent);
        text->setToolTip(toolTip);
        m_grid->addWidget(text, index, 0);
        widgets.append(text);
    }
    editor->setObjectName(name);
    editor->setToolTip(toolTip);
    m_grid->addWidget(editor, index, label.isEmpty() ? 0 : 1, 1, label.isEmpty() ? 2 : 1);
    widgets.append(editor);
    if (!unit.isEmpty()) {
        auto *units = new QLabel(unit, parent);
        m_grid->addWidget(units, index, 2);
        widgets.append(units);
    }
    m_editors.insert(name, editor);
}

NumberEdit *PropertyRows::addNumber(const QString &label, const char *property, const QString &unit,
                                    const QString &toolTip)
{
    auto *edit = new NumberEdit(m_grid->parentWidget());
    edit->setRange(-1e12, 1e12, 6);
    addRow(label, property, edit, unit, toolTip);
    const QString name = QLatin1String(property);
    connect(edit, &NumberEdit::valueEditingFinished, this, [this, name](double value) { m_setter(name, value); });
    return edit;
}

QSpinBox *PropertyRows::addCount(const QString &label, const char *property, const QString &toolTip)
{
    auto *box = new QSpinBox(m_grid->parentWidget());
    box->setRange(1, 100000);
    addRow(label, property, box, QString(), toolTip);
    const QString name = QLatin1String(property);
    connect(box, &QSpinBox::editingFinished, this, [this, box, name] { m_setter(name, box->value()); });
    return box;
}

void PropertyRows::addCombo(const QString &label, const char *property, ModelValueComboBox *box,
                            const QString &unit, const QString &toolTip)
{
    addRow(label, property, box, unit, toolTip);
    const QString name = QLatin1String(property);
    connect(box, &ModelValueComboBox::currentValueChanged, this,
            [this, box, name] { m_setter(name, box->currentValueFor(m_target, name.toLatin1().constData())); });
}

QCheckBox *PropertyRows::addCheck(const QString &text, const char *property)
{
    auto *box = new QCheckBox(text, m_grid->parentWidget());
    addRow(QString(), property, box, QString(), QString());
    const QString name = QLatin1String(property);
    connect(box, &QCheckBox::toggled, this, [this, name](bool checked) { m_setter(name, checked); });
    return box;
}

QToolButton *PropertyRows::addButton(const char *property, const QString &text, const QString &toolTip,
                                     const std::function<void()> &clicked)
{
    const QString name = QLatin1String(property);
    QWidget *editor = m_editors.value(name);
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    m_grid->getItemPosition(m_grid->indexOf(editor), &row, &column, &rowSpan, &columnSpan);
    auto *button = new QToolButton(m_grid->parentWidget());
    button->setObjectName(name + QLatin1String("Button"));
    button->setText(text);
    button->setToolTip(toolTip);
    m_grid->addWidget(button, row, 3);
    m_rows[name].append(button);
    connect(button, &QToolButton::clicked, this, clicked);
    return button;
}

void PropertyRows::setRowEnabled(const char *property, bool enabled) const
{
    for (QWidget *widget : row(property))
        widget->setEnabled(enabled);
}

void PropertyRows::setRowVisible(const char *property, bool visible) const
{
    for (QWidget *widget : row(property))
        widget->setVisible(visible);
}

void PropertyRows::update()
{
    for (auto it = m_editors.cbegin(); it != m_editors.cend(); ++it) {
        const QVariant value = m_target->property(it.key().toLatin1().constData());
        QWidget *editor = it.value();
        const QSignalBlocker blocker(editor);
        if (auto *number = qobject_cast<NumberEdit *>(editor))
            number->setValue(value.toDouble());
        else if (auto *count = qobject_cast<QSpinBox *>(editor))
            count->setValue(value.toInt());
        else if (auto *combo = qobject_cast<ModelValueComboBox *>(editor))
            combo->setCurrentValue(value);
        else if (auto *check = qobject_cast<QCheckBox *>(editor))
            check->setChecked(value.toBool());
    }
}
