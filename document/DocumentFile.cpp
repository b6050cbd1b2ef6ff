#include "document/Document.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTimer>
#include <matio.h>

#include "QmlScripting/ConfigObject.h"
#include "analysis/DriveSettings.h"
#include "analysis/MAT_Parcer.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "base/SafeWrite.h"
#include "base/ScriptConsole.h"
#include "base/StreamChecks.h"
#include "base/UserMessage.h"
#include "document/Airgap.h"
#include "document/DocumentTypes.h"
#include "document/ModelRanges.h"
#include "document/RatedData.h"
#include "document/UndoStack.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "meshing/Mesh.h"
#include "winding/WindingObject.h"

namespace {

const quint32 magicProtectedFile = 0x7061767A;
const quint32 magicDocumentFile = 0x61767A66;

// A stored enumerator is taken only within its enumeration: the model indexes its
// tables by these, and a damaged file must not send it past their ends.
bool within(qint32 value, int first, int last)
{
    return value >= first && value <= last;
}
const qint32 fileVersion = 5;
const int streamVersion = QDataStream::Qt_5_13;

QString applicationName()
{
    return QCoreApplication::applicationName();
}

// The shell shows a busy cursor while a file is written, where there is a screen.
class WaitCursor
{
public:
    WaitCursor()
    {
        if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~WaitCursor()
    {
        if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
            QGuiApplication::restoreOverrideCursor();
    }
};

// Silences the consoles of the elements while the history replays old states.
class MutedConsoles
{
public:
    explicit MutedConsoles(QList<ScriptConsole *> consoles)
        : m_consoles(std::move(consoles))
    {
        for (ScriptConsole *console : qAsConst(m_consoles))
            console->setMuted(true);
    }
    ~MutedConsoles()
    {
        for (ScriptConsole *console : qAsConst(m_consoles))
            console->setMuted(false);
    }

private:
    QList<ScriptConsole *> m_consoles;
};

// Data of version 4 and up are compressed; an empty array compresses to a header alone.
bool readSimulationData(const QByteArray &stored, qint32 version, QByteArray &data)
{
    if (version < 4) {
        data = stored;
        return true;
    }
    return StreamChecks::uncompress(stored, data);
}

// The preview of a protected design is only its picture: one beyond these bounds is
// left out rather than decoded into memory that the design doesn't need.
const int maxPreviewSide = 4096;
const qint64 maxPreviewBytes = 8 * 1024 * 1024;

// A preview in QImage's stream form: a marker for a null picture, then the picture as
// PNG to the end of the file. False when the picture is damaged; a picture past the
// bounds leaves `preview` null, with a warning.
bool readPreview(QDataStream &in, const QString &path, QImage &preview)
{
    preview = QImage();
    qint32 present = 0;
    in >> present;
    if (in.status() != QDataStream::Ok)
        return false;
    if (!present)
        return true;
    QIODevice *device = in.device();
    if (device->bytesAvailable() > maxPreviewBytes) {
        qWarning().noquote() << QStringLiteral("The preview of %1 is left out: its %2 bytes are more than %3.")
                                    .arg(path)
                                    .arg(device->bytesAvailable())
                                    .arg(maxPreviewBytes);
        return true;
    }
    QImageReader reader(device, "png");
    const QSize size = reader.size();
    if (size.width() > maxPreviewSide || size.height() > maxPreviewSide) {
        qWarning().noquote() << QStringLiteral("The preview of %1 is left out: its %2×%3 pixels are more than %4×%4.")
                                    .arg(path)
                                    .arg(size.width())
                                    .arg(size.height())
                                    .arg(maxPreviewSide);
        return true;
    }
    preview = reader.read();
    if (preview.isNull()) {
        in.setStatus(QDataStream::ReadCorruptData);
        return false;
    }
    return true;
}

// A MAT file that says "no simulation data" to a parent program.
bool writeDummyMatFile(const QString &path)
{
    SafeWrite::Replacement replacement(path);
    const QByteArray temporaryName = QFile::encodeName(QDir::toNativeSeparators(replacement.temporaryPath()));
    mat_t *mat = Mat_CreateVer(temporaryName.constData(), nullptr, MAT_FT_MAT5);
    if (!mat)
        return SafeWrite::failed(path, QStringLiteral("the MAT file can't be made"));
    size_t dims[2] = {1, 1};
    matvar_t *dummy = Mat_VarCreateStruct("Dummy", 2, dims, nullptr, 0);
    const bool written = dummy && Mat_VarWrite(mat, dummy, MAT_COMPRESSION_NONE) == 0;
    Mat_VarFree(dummy);
    Mat_Close(mat);
    if (!written)
        return SafeWrite::failed(path, QStringLiteral("the MAT variable can't be written"));
    return replacement.commit();
}

} // namespace

bool Document::errorVersionMessage()
{
    qCritical().noquote() << QStringLiteral("This file was created with a newer version of %1.").arg(applicationName());
    UserMessage::critical(tr("<b>%1<br>Please update %1 to open it.</b>").arg(applicationName()));
    setModified(false);
    return false;
}

bool Document::loadFailure(const QString &text)
{
    qCritical().noquote() << "Error:" << text;
    if (m_showMessageBoxes)
        UserMessage::critical(text);
    return false;
}

bool Document::streamFailure(const QDataStream &in, const QString &path)
{
    const QString damage = StreamChecks::damage(in);
    if (damage.isEmpty())
        return loadFailure(tr("The file %1 is damaged or incomplete.").arg(path));
    return loadFailure(tr("The file %1 is damaged: %2.").arg(path, damage));
}

bool Document::save(const QString &path, const QImage *picture)
{
    if (QFileInfo::exists(path) && !isModified() && !m_modeChangedSinceSave)
        return true;
    if (!SafeWrite::mayWrite(path))
        return false;
    // Written beside the target and renamed over it only when complete.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return SafeWrite::failed(path, file.errorString());
    QDataStream out(&file);
    out.setVersion(streamVersion);

    const bool protectedForm = m_protectedFile || QFileInfo(path).suffix().toLower() == zvapSuffix();
    if (protectedForm) {
        const QImage preview = m_protectedFile ? m_previewImage : (picture ? *picture : QImage());
        out << magicProtectedFile << fileVersion << qCompress(m_dataMA, -1) << preview;
    } else {
        writeDocumentForm(out);
    }
    if (out.status() != QDataStream::Ok) {
        file.cancelWriting();
        return SafeWrite::failed(path, file.errorString());
    }
    if (!file.commit())
        return SafeWrite::failed(path, file.errorString());
    setModified(false);
    m_modeChangedSinceSave = false;
    return true;
}

void Document::writeDocumentForm(QDataStream &out) const
{
    out << magicDocumentFile << fileVersion << qint32(m_machineType) << qint32(m_boundaryConditionMode)
        << qint32(m_boundaryCondition) << qint32(m_mode) << qCompress(m_dataMA, -1);
    m_stator->save(out);
    m_rotor->save(out);
    m_winding->save(out);
    m_mesh->save(out);
    m_ratedData->save(out);
    m_driveSettings->save(out);
    m_analysis->save(out);
    m_undoStack->save(out);
    out << m_config->properties();
    out << qint32(m_airgaps.size());
    for (const Airgap *gap : m_airgaps)
        gap->save(out);
}

bool Document::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return loadFailure(tr("Can't open file %1 for reading.").arg(path));
    QDataStream in(&file);
    in.setVersion(streamVersion);
    quint32 magic = 0;
    in >> magic;
    if (magic == magicProtectedFile) {
        if (!readProtectedForm(in, path))
            return false;
    } else if (magic == magicDocumentFile) {
        if (!readDocumentForm(in, path))
            return false;
    } else {
        return loadFailure(tr("The file %1 is not a file of %2").arg(path, applicationName()));
    }
    file.close();
    // The configuration script writes its values back into the elements, which
    // would drop the results that were just read.
    const QVariantMap results = m_analysis->dataSimulation();
    pushConfigToScript();

    setBoundaryCondition(m_boundaryConditionMode == Manual ? m_boundaryCondition
                                                           : computePeriodicity().second);
    m_analysis->setDataSimulation(results);
    qInfo() << "Document loaded **********************************************";
    setGeometryModified(false);
    markAsMade();
    return true;
}

bool Document::readProtectedForm(QDataStream &in, const QString &path)
{
    qint32 version = 0;
    in >> version;
    if (in.status() != QDataStream::Ok || version < 1)
        return streamFailure(in, path);
    if (version > fileVersion)
        return errorVersionMessage();
    QByteArray data;
    QImage preview;
    in >> data;
    if (in.status() != QDataStream::Ok || !readPreview(in, path, preview))
        return streamFailure(in, path);
    if (!readSimulationData(data, version, m_dataMA))
        return streamFailure(in, path);
    m_previewImage = preview;
    m_protectedFile = true;
    return true;
}

bool Document::readDocumentForm(QDataStream &in, const QString &path)
{
    qint32 version = 0;
    in >> version;
    if (in.status() != QDataStream::Ok || version < 1)
        return streamFailure(in, path);
    if (version > fileVersion)
        return errorVersionMessage();
    // Only a program newer than this one writes blocks newer than its own: in a file
    // of an older version such a block is damage, not news.
    const auto blockRefused = [&] { return version < fileVersion ? streamFailure(in, path) : errorVersionMessage(); };

    qint32 machineType = 0;
    qint32 boundaryConditionMode = 0;
    qint32 boundaryCondition = 0;
    qint32 mode = 0;
    QByteArray data;
    in >> machineType >> boundaryConditionMode >> boundaryCondition >> mode >> data;
    if (in.status() != QDataStream::Ok)
        return streamFailure(in, path);
    if (!within(machineType, Machine::SR, Machine::RSRSR))
        return loadFailure(tr("The file %1 is damaged: the machine type %2 is unknown.").arg(path).arg(machineType));
    if (!within(boundaryConditionMode, Automatic, Manual) || !within(boundaryCondition, UnknownBoundaryCondition, None))
        return loadFailure(tr("The file %1 is damaged: the boundary condition is unknown.").arg(path));
    if (!within(mode, UnknownMode, AnalysisDynamicDQ))
        return loadFailure(tr("The file %1 is damaged: the page %2 is unknown.").arg(path).arg(mode));
    setMachineType(Machine::Type(machineType));
    m_boundaryConditionMode = BoundaryConditionMode(boundaryConditionMode);
    m_boundaryCondition = BoundaryCondition(boundaryCondition);
    m_mode = (mode == GeometryStator || mode == GeometryRotor) ? GeometryMotor : Mode(mode);
    if (!readSimulationData(data, version, m_dataMA))
        return streamFailure(in, path);

    const bool blocksReadable = m_stator->load(in) && m_rotor->load(in) && m_winding->load(in) && m_mesh->load(in)
                             && (version < 4 || m_ratedData->load(in))
                             && (version < 5 || (m_driveSettings->load(in) && m_analysis->load(in)));
    // A block that found damage marks the stream; only a block that refused its
    // version leaves it good.
    if (in.status() != QDataStream::Ok)
        return streamFailure(in, path);
    if (!blocksReadable)
        return blockRefused();

    const BoundaryCondition boundaryConditionRead = m_boundaryCondition;
    const double sizeBound = m_mesh->sizeBound();
    const double overhangOuter = m_winding->radialOverhangOuterEndturn();
    const double overhangInner = m_winding->radialOverhangInnerEndturn();
    const double endInductance = m_winding->endInductance();
    const double phaseResistance = m_winding->phaseResistance();
    const bool autoOverhangs = m_winding->autoCalcOverhangEndturns();
    // Replaying the history passes through design changes, which drop results.
    const QVariantMap results = m_analysis->dataSimulation();

    {
        const MutedConsoles muted({m_console, m_stator->console(), m_rotor->console(), m_winding->console(),
                                   m_mesh->console()});
        const QSignalBlocker blocker(m_undoStack);
        m_undoStack->restore(in, this);
    }
    if (in.status() != QDataStream::Ok)
        return streamFailure(in, path);

    if (version >= 2) {
        QVariantMap config;
        StreamChecks::readVariantMap(in, config);
        // A map that can't be read is dropped, but a file that ends early, or whose
        // counts or nesting are beyond reason, is refused.
        if (in.status() == QDataStream::ReadPastEnd || !StreamChecks::damage(in).isEmpty())
            return streamFailure(in, path);
        const QString outOfRange = ModelRanges::check(config);
        if (!outOfRange.isEmpty())
            return loadFailure(tr("The file %1 is damaged: %2.").arg(path, outOfRange));
        if (in.status() == QDataStream::Ok && !config.isEmpty()) {
            const QSignalBlocker blocker(m_config);
            m_config->setProperties(config);
        }
    }
    if (version >= 3 && in.status() == QDataStream::Ok) {
        qint32 count = 0;
        in >> count;
        for (int i = 0; i < m_airgaps.size() && i < count; ++i) {
            if (!m_airgaps.at(i)->load(in))
                return blockRefused();
        }
        if (in.status() != QDataStream::Ok)
            return streamFailure(in, path);
    }

    if (m_mesh->autoSizeBound())
        m_mesh->adjustSizeBound();
    else
        m_mesh->setSizeBound(sizeBound);
    m_winding->setAutoCalcOverhangEndturns(false);
    m_winding->setRadialOverhangOuterEndturn(overhangOuter);
    m_winding->setRadialOverhangInnerEndturn(overhangInner);
    m_winding->setAutoCalcOverhangEndturns(autoOverhangs);
    const bool autoInductance = m_winding->autoCalcEndInductance();
    m_winding->setAutoCalcEndInductance(false);
    m_winding->setEndInductance(endInductance);
    m_winding->setAutoCalcEndInductance(autoInductance);
    const bool autoResistance = m_winding->autoCalcPhaseResistance();
    m_winding->setAutoCalcPhaseResistance(false);
    m_winding->setPhaseResistance(phaseResistance);
    m_winding->setAutoCalcPhaseResistance(autoResistance);

    m_analysis->setDataSimulation(results);
    if (m_boundaryConditionMode == Manual)
        m_boundaryCondition = boundaryConditionRead;
    else
        setBoundaryCondition(computePeriodicity().second);
    return true;
}

bool Document::loadDataSimulationFromFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCritical() << "Error: Can't open file" << path << "for read";
        return false;
    }
    const QByteArray data = file.readAll();
    if (data != m_dataMA) {
        m_dataMA = data;
        emit dataSimulationChanged();
        setModified(true);
    }
    return true;
}

bool Document::saveDataSimulationToFile(const QString &path) const
{
    if (!SafeWrite::mayWrite(path))
        return false;
    if (m_dataMA.isEmpty())
        return writeDummyMatFile(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qCritical() << "Error: Can't open file" << path << "for write";
        return false;
    }
    if (file.write(m_dataMA) != m_dataMA.size()) {
        qCritical() << "Error: Written bytes != m_dataMA.count()";
        file.cancelWriting();
        return false;
    }
    return file.commit() || SafeWrite::failed(path, file.errorString());
}

bool Document::exportToJson(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (!SafeWrite::mayWrite(path))
        return false;
    const WaitCursor waitCursor;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return SafeWrite::failed(path, file.errorString());
    const QJsonObject json{{QStringLiteral("fileType"), QStringLiteral("Zolvane")}};
    file.write(QJsonDocument(json).toJson(QJsonDocument::Indented));
    return file.commit() || SafeWrite::failed(path, file.errorString());
}

bool Document::writeExchangeFile(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (!SafeWrite::mayWrite(path))
        return false;
    const WaitCursor waitCursor;
    ensureData();
    MAT_Parcer parcer(this);
    parcer.setShowMessageBoxes(m_showMessageBoxes);
    return parcer.write(QDir::toNativeSeparators(path));
}

QString zvaSuffix()
{
    static const QString suffix = QStringLiteral("zva");
    return suffix;
}

QString zvapSuffix()
{
    static const QString suffix = QStringLiteral("zvap");
    return suffix;
}
