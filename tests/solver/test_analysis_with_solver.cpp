#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "analysis/MAT_Converter.h"
#include "analysis/MagnetostaticAnalysis.h"
#include "document/Document.h"
#include "support/ConsoleSpies.h"

// The analysis as a user runs it on the bundled example: the program starts itself for
// each step, and the steps load our solver from beside it.
TEST(AnalysisWithSolver, ExampleRunsAndStoresResults)
{
    QTemporaryDir home;
    const QByteArray previousDataHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    const QString design = home.filePath(QStringLiteral("design.zva"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva"), design));
    Document document;
    document.start();
    ASSERT_TRUE(document.load(design));
    document.setFilePath(design);
    document.setPreparing(false);
    MagnetostaticAnalysis *analysis = document.analysis();
    analysis->setSolverProgram(QStringLiteral(ZDS_EXECUTABLE));
    ConsoleSpies console(analysis->console());

    analysis->run();
    qputenv("XDG_DATA_HOME", previousDataHome);

    QStringList errors;
    for (const QList<QVariant> &signal : console.error)
        errors << signal.at(1).toString();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    const QVariantMap magnetostatic = analysis->dataSimulation().value(QStringLiteral("Magnetostatic")).toMap();
    const MatVarPointer results = MAT_Converter::fromByteArray(magnetostatic.value(QStringLiteral("Results")).toByteArray(),
                                                               QStringLiteral("Results"));
    ASSERT_TRUE(results);
    const QVariantMap values = MAT_Converter::toVariant(results.data()).toMap();
    EXPECT_EQ(values.value(QStringLiteral("speed")).toDouble(), analysis->mechanicalSpeed());
    EXPECT_TRUE(values.value(QStringLiteral("torque")).canConvert<double>());
    EXPECT_GT(values.value(QStringLiteral("Bmax_airgap")).toDouble(), 0.5);
    EXPECT_EQ(values.value(QStringLiteral("Piron")).toString(), QStringLiteral("not computed"));
    // The lists of the air gaps and the rotors stay lists, of one entry too.
    EXPECT_EQ(values.value(QStringLiteral("torque_airgap")).type(), QVariant::List);
    const QVariant other = values.value(QStringLiteral("OtherECloss"));
    ASSERT_EQ(other.type(), QVariant::List);
    EXPECT_FALSE(other.toList().isEmpty());
    for (const QVariant &rotor : other.toList())
        EXPECT_EQ(rotor.toDouble(), 0.0);
    EXPECT_GT(values.value(QStringLiteral("Error")).toDouble(), 0.0);
}
