#include "ui/VarsModel.h"

#include "document/Document.h"

VarsModel::VarsModel(Document *document, QObject *parent)
    : QAbstractTableModel(parent)
    , m_document(document)
{
    connect(m_document, &Document::modeChanged, this, &VarsModel::rebuild);
    connect(m_document, &Document::machineTypeChanged, this, &VarsModel::rebuild);
    rebuild();
}

void VarsModel::rebuild()
{
    beginResetModel();
    m_variables = m_document->mode() == Document::AnalysisMagnetostatic ? variablesOf(m_document->machineType())
                                                                         : QVector<Variable>();
    endResetModel();
}

QVector<VarsModel::Variable> VarsModel::variablesOf(Machine::Type type)
{
    const QString amperes = tr("A");
    const QString volts = tr("V");
    const QString watts = tr("W");
    const QString torque = tr("N*m");
    QVector<Variable> variables;
    const auto phases = [&variables](const QString &prefix, const QString &description, const QString &units) {
        for (const char *phase : {"a", "b", "c"})
            variables.append({prefix + QLatin1String(phase), description.arg(QString::fromLatin1(phase).toUpper()), units});
    };
    const auto axes = [&variables](const QString &prefix, const QString &description, const QString &units) {
        variables.append({prefix + QLatin1String("d"), description.arg(tr("d-axis")), units});
        variables.append({prefix + QLatin1String("q"), description.arg(tr("q-axis")), units});
    };
    phases(QStringLiteral("I"), tr("Stator phase current, phase %1"), amperes);
    axes(QStringLiteral("I"), tr("Phase current, %1"), amperes);
    phases(QStringLiteral("V"), tr("Phase voltage, phase %1"), volts);
    axes(QStringLiteral("V"), tr("Phase voltage, %1"), volts);
    variables.append({QStringLiteral("Gamma"), tr("Effective advance angle"), tr("electrical degrees")});
    phases(QStringLiteral("BackEMF"), tr("Phase back-EMF, phase %1"), volts);
    axes(QStringLiteral("BackEMF"), tr("Phase back-EMF, %1"), volts);
    variables.append({QStringLiteral("Pinput"), tr("Input electrical power"), watts});
    variables.append({QStringLiteral("Pmech"), tr("Mechanical power on the rotor shaft"), watts});
    variables.append({QStringLiteral("Ps"), tr("Stator winding losses"), watts});
    variables.append({QStringLiteral("MagnetLoss"), tr("Eddy current magnet loss)"), watts});
    variables.append({QStringLiteral("Torque_maxwell"), tr("Electromagnetic torque by Maxwell stress tensor"), torque});
    variables.append({QStringLiteral("Torque_vwork"), tr("Electromagnetic torque by virtual work method"), torque});
    variables.append(
        {QStringLiteral("Torque_fluxlinkage"), tr("Electromagnetic torque by flux linkage and current"), torque});
    variables.append({QStringLiteral("Torque_magnet"), tr("Magnet torque (by Maxwell stress tensor)"), torque});
    variables.append({QStringLiteral("Torque_reluctance"), tr("Reluctance torque (by Maxwell stress tensor)"), torque});

    // Bodies from the bottom: a gap between each two.
    const QString bodies = Machine::typeText(type);
    const int gaps = qMax(0, bodies.size() - 1);
    for (int gap = 1; gap <= gaps; ++gap) {
        variables.append(
            {QStringLiteral("Torque_airgap%1").arg(gap),
             gap == 1 ? tr("Electromagnetic torque in air gap #1 (bottom) (by Maxwell stress tensor)")
                      : tr("Electromagnetic torque in air gap #%1 (by Maxwell stress tensor)").arg(gap),
             torque});
    }
    phases(QStringLiteral("Fluxlinkage_"), tr("Flux linkage, phase %1"), tr("Wb"));
    axes(QStringLiteral("Fluxlinkage_"), tr("Flux linkage, %1"), tr("Wb"));
    const auto forces = [&variables, &bodies](QChar body, const QString &name, const QString &single,
                                              const QString &first, const QString &other) {
        const int count = bodies.count(body);
        for (int i = 1; i <= count; ++i) {
            if (count == 1)
                variables.append({name, single, tr("N")});
            else
                variables.append({name + QString::number(i), i == 1 ? first : other.arg(i), tr("N")});
        }
    };
    forces(QLatin1Char('R'), QStringLiteral("Fn_rotor"),
           tr("Electromagnetic normal force on rotor (by Maxwell stress tensor)"),
           tr("Electromagnetic normal force on rotor #1 (bottom) (by Maxwell stress tensor)"),
           tr("Electromagnetic normal force on rotor #%1 (by Maxwell stress tensor)"));
    forces(QLatin1Char('S'), QStringLiteral("Fn_stator"),
           tr("Electromagnetic normal force on stator (by Maxwell stress tensor)"),
           tr("Electromagnetic normal force on stator #1 (bottom) (by Maxwell stress tensor)"),
           tr("Electromagnetic normal force on stator #%1 (by Maxwell stress tensor)"));
    return variables;
}

int VarsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_variables.size();
}

int VarsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant VarsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_variables.size() || role != Qt::DisplayRole)
        return {};
    const Variable &variable = m_variables.at(index.row());
    switch (index.column()) {
    case NameColumn:
        return variable.name;
    case DescriptionColumn:
        return variable.description;
    case UnitsColumn:
        return variable.units;
    default:
        return {};
    }
}

QVariant VarsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case NameColumn:
        return tr("Name");
    case DescriptionColumn:
        return tr("Description");
    case UnitsColumn:
        return tr("Units");
    default:
        return {};
    }
}
