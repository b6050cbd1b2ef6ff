#include "TestMCRCtrlPlugin.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QThread>
#include <matio.h>
#include <unistd.h>
#include <vector>

namespace {

const QStringList assembleInputs{"file", "motorProps"};
const QStringList assembleOutputs{"Geometry", "Mesh", "Windings", "RadMesh", "Materials", "SubdomainProperty"};
const QStringList timesteppingInputs{"Private",   "Geometry", "Mesh", "Windings", "settingsMagnetostatic", "RadMesh",
                                     "Materials", "SubdomainProperty", "SwitchDutyCycle", "Coefs3D"};

matvar_t *text(const QString &name, const QString &value)
{
    const QByteArray bytes = value.toUtf8();
    size_t dims[2] = {1, size_t(bytes.size())};
    return Mat_VarCreate(name.toUtf8().constData(), MAT_C_CHAR, MAT_T_UTF8, 2, dims,
                         const_cast<char *>(bytes.constData()), 0);
}

matvar_t *numbers(const QString &name, std::vector<double> values)
{
    size_t dims[2] = {1, values.size()};
    return Mat_VarCreate(name.toUtf8().constData(), MAT_C_DOUBLE, MAT_T_DOUBLE, 2, dims, values.data(), 0);
}

// The variables of a MAT file by name, with the text of the char ones; false for
// any other file.
bool readInputs(const QString &path, QStringList &names, QHash<QString, QString> &texts)
{
    mat_t *mat = Mat_Open(QFile::encodeName(path).constData(), MAT_ACC_RDONLY);
    if (!mat)
        return false;
    while (matvar_t *variable = Mat_VarReadNext(mat)) {
        const QString name = QString::fromUtf8(variable->name);
        names << name;
        if (variable->class_type == MAT_C_CHAR && variable->data)
            texts.insert(name, QString::fromUtf8(static_cast<const char *>(variable->data), int(variable->nbytes)));
        Mat_VarFree(variable);
    }
    Mat_Close(mat);
    return true;
}

// The solver overwrites its exchange file with its answer.
void answer(const QString &path, const std::vector<matvar_t *> &variables)
{
    mat_t *mat = Mat_CreateVer(QFile::encodeName(path).constData(), nullptr, MAT_FT_MAT5);
    for (matvar_t *variable : variables) {
        if (mat)
            Mat_VarWrite(mat, variable, MAT_COMPRESSION_NONE);
        Mat_VarFree(variable);
    }
    if (mat)
        Mat_Close(mat);
}

QString missingInput(const QStringList &names, const QStringList &expected)
{
    for (const QString &name : expected) {
        if (!names.contains(name))
            return name;
    }
    return QString();
}

} // namespace

void TestMCRCtrlPlugin::setConsole(MCRCtrlInterface::Console *console)
{
    m_console = console;
}

void TestMCRCtrlPlugin::runMStimestepping(const QString &exchangeFile)
{
    runStep(QStringLiteral("runMStimestepping"), exchangeFile);
}

void TestMCRCtrlPlugin::runAssembleZVA(const QString &exchangeFile)
{
    runStep(QStringLiteral("runAssembleZVA"), exchangeFile);
}

void TestMCRCtrlPlugin::runStep(const QString &step, const QString &exchangeFile)
{
    if (m_console) {
        m_console->info(step + QLatin1String(" started"));
        m_console->error(step + QLatin1String(" on ") + exchangeFile);
    }
    QStringList names;
    QHash<QString, QString> texts;
    if (!readInputs(exchangeFile, names, texts)) {
        QFile file(exchangeFile);
        if (file.open(QIODevice::Append | QIODevice::Text))
            file.write(step.toUtf8() + '\n');
        return;
    }

    const QByteArray mode = qgetenv("ZDS_TEST_SOLVER");
    if (mode == "sleep")
        QThread::sleep(60);
    if (mode == "exit")
        ::_exit(3);
    const bool assemble = step == QLatin1String("runAssembleZVA");
    const QString missing = missingInput(names, assemble ? assembleInputs : timesteppingInputs);
    if (!missing.isEmpty()) {
        answer(exchangeFile, {text("Error", "missing input '" + missing + "'")});
        return;
    }
    if (mode == "error") {
        answer(exchangeFile, {text("Error", step + " failed")});
        return;
    }

    if (assemble) {
        if (!QFileInfo::exists(texts.value("file"))) {
            answer(exchangeFile, {text("Error", "no design at '" + texts.value("file") + "'")});
            return;
        }
        std::vector<matvar_t *> outputs;
        for (const QString &name : assembleOutputs) {
            if (name != QLatin1String("RadMesh") || mode != "no-RadMesh")
                outputs.push_back(text(name, name + " assembled"));
        }
        answer(exchangeFile, outputs);
        return;
    }
    // A run after a first one gets back what the solver kept.
    if (m_console)
        m_console->info(texts.value("Private").isEmpty() ? QStringLiteral("no private data")
                                                         : "private data: " + texts.value("Private"));
    answer(exchangeFile, {numbers("Timesteppingdata", {0.0, 0.5, 1.0}), numbers("Results", {42.0}),
                          text("Private_out", "kept by the solver")});
}
