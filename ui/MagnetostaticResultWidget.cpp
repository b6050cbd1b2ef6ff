#include "ui/MagnetostaticResultWidget.h"

#include <QDebug>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QVBoxLayout>
#include <cmath>

#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "ui/Controls/Spoiler.h"

namespace {

const QString invalidStyle = QStringLiteral("QLineEdit {border: 1px solid red;}");
const QString noteStyle = QStringLiteral("QLineEdit {color: gray; font-style: italic;}");

// Rows that a single-point run leaves empty.
const QStringList notForSinglePoint = {
    QStringLiteral("TorqueRipple"), QStringLiteral("Piron"),      QStringLiteral("Piron_eddy"),
    QStringLiteral("Piron_hyst"),   QStringLiteral("magnetloss_rotor"), QStringLiteral("otherECloss_rotor"),
    QStringLiteral("Error"),        QStringLiteral("DemagH_max"), QStringLiteral("DemagHpercent_max"),
};

// Results that only detail the tool tips of rows.
const QStringList detailKeys = {
    QStringLiteral("torque_airgap"),     QStringLiteral("nWindingsInSeries"), QStringLiteral("MagnetLoss"),
    QStringLiteral("OtherECloss"),       QStringLiteral("Efficiency_tooltip"), QStringLiteral("Piron_tooltip"),
    QStringLiteral("Piron_hyst_stator"), QStringLiteral("Piron_hyst_rotor"),  QStringLiteral("Piron_eddy_stator"),
    QStringLiteral("Piron_eddy_rotor"),
};

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

// The torque of each rotor from the torques of the air gaps, bottom to top: a rotor
// between two gaps takes both. The count of gaps that the machine type needs.
QStringList torquePerRotor(Machine::Type type, const QVariantList &gaps, int *needed)
{
    auto t = [&gaps](int i) { return gaps.at(i).toDouble(); };
    switch (type) {
    case Machine::SR:
        *needed = 1;
        return gaps.size() < 1 ? QStringList() : QStringList{numberText(t(0))};
    case Machine::SRS:
        *needed = 2;
        return gaps.size() < 2 ? QStringList() : QStringList{numberText(t(0) + t(1))};
    case Machine::SRSRS:
        *needed = 4;
        return gaps.size() < 4 ? QStringList() : QStringList{numberText(t(0) + t(1)), numberText(t(2) + t(3))};
    case Machine::RSR:
        *needed = 2;
        return gaps.size() < 2 ? QStringList() : QStringList{numberText(t(0)), numberText(t(1))};
    case Machine::RSRSR:
        *needed = 4;
        return gaps.size() < 4 ? QStringList()
                               : QStringList{numberText(t(0)), numberText(t(1) + t(2)), numberText(t(3))};
    default:
        *needed = 0;
        return {};
    }
}

QString joinedNumbers(const QVariant &list)
{
    QStringList texts;
    for (const QVariant &value : list.toList())
        texts.append(numberText(value.toDouble()));
    return texts.join(QStringLiteral(", "));
}

} // namespace

MagnetostaticResultWidget::MagnetostaticResultWidget(Document *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_analysis(document->analysis())
{
    setObjectName(QStringLiteral("MagnetostaticResultWidget"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    const QString percent = QStringLiteral("%");
    addRows(addSection(layout, tr("General Results"), QStringLiteral("SpoilerGeneralResults")),
            {{"speed", tr("Rotor speed:"), tr("RPM")},
             {"gamma", tr("Advance angle:"), tr("el.deg.")},
             {"f1", tr("Supply frequency:"), tr("Hz")},
             {"torque", tr("Total torque:"), tr("N · m")},
             {"torque_reluctance", tr("Reluctance torque:"), tr("N · m")},
             {"torque_magnet", tr("Magnet torque:"), tr("N · m")},
             {"TorqueRipple", tr("Torque ripple:"), percent},
             {"Is", tr("RMS current (supply | phase):"), tr("A")},
             {"Vs", tr("RMS voltage (supply | phase):"), tr("V")},
             {"CurrentDensity", tr("RMS current density:"), tr("A/mm²")},
             {"DemagH_max", tr("Max. demag. field:"), tr("A/m")},
             {"DemagHpercent_max", tr("Max. demag. field (% of Hcj):"), percent},
             {"Efficiency", tr("Efficiency:"), percent},
             {"Error", tr("Discretization error:"), percent},
             {"Id", tr("Average d-axis phase current:"), tr("A")},
             {"Iq", tr("Average q-axis phase current:"), tr("A")},
             {"Pinput", tr("Input electrical power:"), tr("W")},
             {"Piron", tr("Total iron core loss:"), tr("W")},
             {"Piron_eddy", tr("Eddy current iron core loss:"), tr("W")},
             {"Piron_hyst", tr("Hysteresis iron core loss:"), tr("W")},
             {"Pmech", tr("Output mechanical power:"), tr("W")},
             {"PowerFactor", tr("Power factor:"), QString()},
             {"Ps", tr("Stator winding loss:"), tr("W")},
             {"Vd", tr("Average d-axis phase voltage:"), tr("V")},
             {"Vq", tr("Average q-axis phase voltage:"), tr("V")},
             {"backEMF", tr("RMS phase back-EMF:"), tr("V")},
             {"magnetloss_rotor", tr("Magnet eddy current loss:"), tr("W")},
             {"otherECloss_rotor", tr("Other eddy current loss:"), tr("W")}});
    addRows(addSection(layout, tr("Machine Constants"), QStringLiteral("SpoilerMachineConstants")),
            {{"Kv_rms", tr("Velocity constant (Kv):"), tr("RPM/V")},
             {"Kv_rad", tr("Velocity constant (Kv):"), tr("rad/s/V")},
             {"Ke_rms", tr("Back-EMF constant (Ke):"), tr("V/RPM")},
             {"Ke_rad", tr("Back-EMF constant (Ke):"), tr("V/(rad/s)")},
             {"Kt", tr("Torque constant (Kt):"), tr("N · m/A")},
             {"Km", tr("Motor constant (Km):"), tr("N · m/√W")}});
    addRows(addSection(layout, tr("Flux Density Levels"), QStringLiteral("SpoilerFluxDensityLevels")),
            {{"Bav_airgap", tr("Average airgap flux density:"), tr("T")},
             {"Bmax_airgap", tr("Maximum airgap flux density:"), tr("T")},
             {"Bav_max_tooth", tr("Peak of stator tooth average flux density:"), tr("T")},
             {"Bav_max_backiron_stator", tr("Peak of stator back iron average flux density:"), tr("T")},
             {"Bav_max_backiron_rotor", tr("Peak of rotor back iron average flux density:"), tr("T")}});
    addRows(addSection(layout, tr("Inductances"), QStringLiteral("SpoilerInductance")),
            {{"Ld", tr("D-axis inductance (Ld):"), tr("H")},
             {"Lq", tr("Q-axis inductance (Lq):"), tr("H")},
             {"Lself", tr("Phase self inductance (Lself):"), tr("H")},
             {"Lmutual", tr("Phase mutual inductance (Lmutual):"), tr("H")}});
    layout->addStretch();

    connect(m_analysis, &MagnetostaticAnalysis::resultsChanged, this, &MagnetostaticResultWidget::resultsChanged);
    resultsChanged();
}

QGridLayout *MagnetostaticResultWidget::addSection(QVBoxLayout *layout, const QString &title,
                                                   const QString &settingsKey)
{
    auto *spoiler = new Spoiler(title, this);
    spoiler->setObjectName(settingsKey);
    auto *body = new QWidget(this);
    body->setObjectName(settingsKey + QLatin1String("Body"));
    auto *grid = new QGridLayout(body);
    grid->setContentsMargins(6, 2, 6, 2);
    layout->addWidget(spoiler);
    layout->addWidget(body);

    const QString key = QStringLiteral("Settings/") + settingsKey;
    const bool open = QSettings().value(key, false).toBool();
    spoiler->setChecked(open);
    body->setVisible(open);
    connect(spoiler, &Spoiler::toggled, body, [body, key](bool checked) {
        body->setVisible(checked);
        QSettings().setValue(key, checked);
    });
    return grid;
}

void MagnetostaticResultWidget::addRows(QGridLayout *grid, const QVector<Result> &rows)
{
    QWidget *parent = grid->parentWidget();
    for (const Result &result : rows) {
        const int row = grid->rowCount();
        const QString name = QLatin1String(result.name);
        auto *edit = new QLineEdit(parent);
        edit->setObjectName(name);
        edit->setReadOnly(true);
        grid->addWidget(new QLabel(result.label, parent), row, 0);
        grid->addWidget(edit, row, 1);
        grid->addWidget(new QLabel(result.unit, parent), row, 2);
        m_editors.insert(name, edit);
    }
}

void MagnetostaticResultWidget::clear()
{
    const bool singlePoint = m_analysis->accuracy() == MagnetostaticAnalysis::SinglePoint;
    for (auto it = m_editors.cbegin(); it != m_editors.cend(); ++it) {
        QLineEdit *edit = it.value();
        edit->clear();
        edit->setStyleSheet(QString());
        const bool notComputed = singlePoint && notForSinglePoint.contains(it.key());
        edit->setToolTip(notComputed ? tr("This parameter is not calculated for single point simulation setup")
                                     : QString());
    }
}

void MagnetostaticResultWidget::resultsChanged()
{
    clear();
    const QVariantMap results = m_analysis->solverOutput(QStringLiteral("Results"));
    if (results.isEmpty())
        return;
    for (auto it = results.cbegin(); it != results.cend(); ++it) {
        QLineEdit *edit = m_editors.value(it.key());
        if (!edit && detailKeys.contains(it.key()))
            continue;
        if (!edit) {
            qCritical().noquote() << "Not found editor for" << it.key();
            continue;
        }
        edit->setToolTip(it.key());
        showValue(edit, it.value());
    }
    if (QLineEdit *efficiency = m_editors.value(QStringLiteral("Efficiency"));
        results.contains(QStringLiteral("Efficiency_tooltip")))
        efficiency->setToolTip(results.value(QStringLiteral("Efficiency_tooltip")).toString());
    describeTorque(results);
    describeLosses(results);
    describeComposite(results, "Is", tr("Total input phase voltage at machine terminals: %1\nPhase current per winding:"),
                      tr(" %1 x %2"));
    describeComposite(results, "Vs", tr("Total input phase voltage at machine terminals: %1\nPhase voltage per winding:"),
                      tr(" %1 x %2"));
}

void MagnetostaticResultWidget::showValue(QLineEdit *editor, const QVariant &value) const
{
    // A text is the solver's note on the row, such as "not computed".
    if (value.type() == QVariant::String) {
        editor->setText(value.toString());
        editor->setStyleSheet(noteStyle);
        return;
    }
    bool valid = false;
    const double number = value.toDouble(&valid);
    if (valid && std::isfinite(number)) {
        editor->setText(numberText(number));
        return;
    }
    editor->setText(tr("invalid"));
    editor->setStyleSheet(invalidStyle);
}

void MagnetostaticResultWidget::describeTorque(const QVariantMap &results) const
{
    const QString name = QStringLiteral("torque");
    if (!results.contains(name))
        return;
    const QVariantList gaps = results.value(QStringLiteral("torque_airgap")).toList();
    int needed = 0;
    const QStringList perRotor = torquePerRotor(m_document->machineType(), gaps, &needed);
    QString tip = tr("Total torque: %1").arg(numberText(results.value(name).toDouble()));
    if (perRotor.isEmpty() && needed > 0)
        qCritical().noquote() << "varTorqueAirgapList.size() = " << gaps.size() << QStringLiteral("must >= %1").arg(needed);
    else if (!perRotor.isEmpty())
        tip += tr("\nTorque for each rotor (from bottom to top): ") + perRotor.join(QStringLiteral(", "));
    m_editors.value(name)->setToolTip(tip);
}

void MagnetostaticResultWidget::describeLosses(const QVariantMap &results) const
{
    const QString perRotor = tr("Losses for each rotor (from bottom to top): %1");
    if (results.contains(QStringLiteral("MagnetLoss")))
        m_editors.value(QStringLiteral("magnetloss_rotor"))
            ->setToolTip(perRotor.arg(joinedNumbers(results.value(QStringLiteral("MagnetLoss")))));
    if (results.contains(QStringLiteral("OtherECloss")))
        m_editors.value(QStringLiteral("otherECloss_rotor"))
            ->setToolTip(perRotor.arg(joinedNumbers(results.value(QStringLiteral("OtherECloss")))));

    const QStringList ironRows = {QStringLiteral("Piron"), QStringLiteral("Piron_hyst"), QStringLiteral("Piron_eddy")};
    if (results.contains(QStringLiteral("Piron_tooltip"))) {
        for (const QString &row : ironRows)
            m_editors.value(row)->setToolTip(results.value(QStringLiteral("Piron_tooltip")).toString());
    }
    const QStringList parts = {QStringLiteral("Piron_hyst_stator"), QStringLiteral("Piron_hyst_rotor"),
                               QStringLiteral("Piron_eddy_stator"), QStringLiteral("Piron_eddy_rotor")};
    for (const QString &part : parts) {
        if (!results.contains(part))
            return;
    }
    auto value = [&results](const QString &key) { return results.value(key).toDouble(); };
    const double hystStator = value(parts[0]);
    const double hystRotor = value(parts[1]);
    const double eddyStator = value(parts[2]);
    const double eddyRotor = value(parts[3]);
    m_editors.value(ironRows[1])->setToolTip(tr("Hysteresis iron core loss:\nstator: %1\nrotor: %2")
                                                  .arg(numberText(hystStator), numberText(hystRotor)));
    m_editors.value(ironRows[2])->setToolTip(tr("Eddy current iron core loss:\nstator: %1\nrotor: %2")
                                                  .arg(numberText(eddyStator), numberText(eddyRotor)));
    m_editors.value(ironRows[0])->setToolTip(tr("Total iron core loss:\nstator: %1\nrotor: %2")
                                                  .arg(numberText(hystStator + eddyStator),
                                                       numberText(hystRotor + eddyRotor)));
}

// The supply value and the value of each winding of a phase in series.
void MagnetostaticResultWidget::describeComposite(const QVariantMap &results, const char *name, const QString &total,
                                                  const QString &perWinding) const
{
    const QString key = QLatin1String(name);
    const QString windings = QStringLiteral("nWindingsInSeries");
    if (!results.contains(key) || !results.contains(windings))
        return;
    const QVariantList values = results.value(key).toList();
    if (values.size() < 2)
        return;
    const double supply = values.at(0).toDouble();
    const double phase = values.at(1).toDouble();
    const int count = qMax(1, results.value(windings).toInt());
    QLineEdit *edit = m_editors.value(key);
    edit->setStyleSheet(QString());
    edit->setText(QStringLiteral("%1 | %2").arg(numberText(supply), numberText(phase)));
    edit->setToolTip(total.arg(numberText(supply)) + perWinding.arg(count).arg(numberText(phase / count)));
}
