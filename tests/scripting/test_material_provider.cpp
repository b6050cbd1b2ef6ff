#include "QmlScripting/JSEngine.h"
#include "QmlScripting/QmlMaterials.h"
#include "QtPrinters.h"
#include "base/ScriptConsole.h"
#include "geometry/Piece.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

class MaterialProviderTest : public ::testing::Test
{
protected:
    MaterialProviderTest()
        : console(ScriptConsole::Rotor)
        , errors(&console, &ScriptConsole::signalError)
    {
        engine.installObject(QStringLiteral("console"), &console);
    }

    template <typename Material>
    Material material(const QString &program)
    {
        const QVariant value = engine.evaluate(program).toVariant();
        EXPECT_EQ(value.userType(), qMetaTypeId<Material>()) << qPrintable(program);
        return value.value<Material>();
    }

    Piece piece(const QString &material)
    {
        return engine.evaluate(QStringLiteral("Geom.piece(Geom.box(1), %1)").arg(material)).toVariant().value<Piece>();
    }

    JSEngine engine;
    ScriptConsole console;
    QSignalSpy errors;
};

} // namespace

TEST_F(MaterialProviderTest, PrologueFunctionsMakeEachKind)
{
    EXPECT_EQ(material<QmlEmptyMaterial>("EmptyMaterial()").kind(), AbstractMaterial::EmptyKind);
    EXPECT_EQ(material<QmlGeneralMaterial>("GeneralMaterial()").kind(), AbstractMaterial::GeneralKind);
    EXPECT_EQ(material<QmlConductorMaterial>("ConductorMaterial()").kind(), AbstractMaterial::ConductorKind);
    EXPECT_EQ(material<QmlEndturnMaterial>("EndturnMaterial()").kind(), AbstractMaterial::EndturnKind);

    // IronMaterial() reaches the two-argument slot with nothing in either argument.
    const QmlIronMaterial plainIron = material<QmlIronMaterial>("IronMaterial()");
    EXPECT_TRUE(plainIron.fillCoefs().isEmpty());
    EXPECT_EQ(plainIron.dsomaloy(), 0.0);
    const QmlIronMaterial iron = material<QmlIronMaterial>("IronMaterial([0.95, 0.97], 0.5)");
    EXPECT_EQ(iron.fillCoefs(), QVector<double>({0.95, 0.97}));
    EXPECT_EQ(iron.dsomaloy(), 0.5);

    EXPECT_EQ(material<QmlWindingMaterial>("WindingMaterial()").layer(), 0);
    EXPECT_EQ(material<QmlWindingMaterial>("WindingMaterial(2)").layer(), 2);
    EXPECT_EQ(material<QmlWindingMaterial>("Material.winding()").layer(), 0);
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(MaterialProviderTest, ListsKeepOnlyTheNumbersHeldAsDoubles)
{
    const QmlMagnetParallelMaterial magnet =
        material<QmlMagnetParallelMaterial>("MagnetParallelMaterial(0, [10, 20.5])");
    EXPECT_EQ(magnet.segmentRadiuses(), QVector<double>({20.5}));
    EXPECT_TRUE(magnet.savePoleBorder());

    const QmlMagnetParallelMaterial turned =
        material<QmlMagnetParallelMaterial>("MagnetParallelMaterial(30.5, [11.5, 'x', 12.25], false)");
    EXPECT_EQ(turned.angle, 30.5);
    EXPECT_EQ(turned.segmentRadiuses(), QVector<double>({11.5, 12.25}));
    EXPECT_FALSE(turned.savePoleBorder());

    const QmlMagnetParallelMaterial bare = material<QmlMagnetParallelMaterial>("Material.magnetParallel()");
    EXPECT_EQ(bare.angle, 0.0);
    EXPECT_TRUE(bare.segmentRadiuses().isEmpty());
    EXPECT_TRUE(bare.savePoleBorder());
}

TEST_F(MaterialProviderTest, RadialMagnetsTakeTheEnumerationsOfMagnetization)
{
    EXPECT_EQ(engine.evaluate("[Magnetization.From, Magnetization.Toward, Magnetization.CW, Magnetization.CCW]")
                  .toVariant()
                  .toList(),
              QVariantList({0, 1, 2, 3}));

    const QmlMagnetRadialMaterial plain = material<QmlMagnetRadialMaterial>("MagnetRadialMaterial()");
    EXPECT_EQ(plain.direction, Magnetization::Direction::From);
    EXPECT_EQ(plain.center, QPointF());

    const QmlMagnetRadialMaterial toward =
        material<QmlMagnetRadialMaterial>("MagnetRadialMaterial(Magnetization.Toward)");
    EXPECT_EQ(toward.direction, Magnetization::Direction::Toward);

    const QmlMagnetRadialMaterial full = material<QmlMagnetRadialMaterial>(
        "Material.magnetRadial(Magnetization.CCW, Geom.fromPolar(2, 90), [5.5, 7, 8.5])");
    EXPECT_EQ(full.direction, Magnetization::Direction::CCW);
    EXPECT_NEAR(full.center.x(), 0.0, 1e-12);
    EXPECT_NEAR(full.center.y(), 2.0, 1e-12);
    EXPECT_EQ(full.segmentRadiuses(), QVector<double>({5.5, 8.5}));
}

TEST_F(MaterialProviderTest, CustomMaterialsAreRedUnlessAColourIsGiven)
{
    EXPECT_EQ(material<QmlCustomMaterial>("CustomMaterial()").color(), QColor(Qt::red));
    EXPECT_EQ(material<QmlCustomMaterial>("Material.custom()").color(), QColor(Qt::red));
    EXPECT_EQ(material<QmlCustomMaterial>("CustomMaterial('#00ff00')").color(), QColor(0, 255, 0));
}

TEST_F(MaterialProviderTest, ScriptsReadAndWriteTheFieldsAndTheText)
{
    EXPECT_EQ(engine.evaluate("WindingMaterial(1).toString()").toString(),
              QStringLiteral("Winding, layer 1, slot 0, layout 0"));
    EXPECT_EQ(engine.evaluate("var w = WindingMaterial(1); w.layer = 3; w.layer").toInt(), 3);
    EXPECT_EQ(engine.evaluate("var m = MagnetParallelMaterial(15); m.angle = m.angle + 30; m.angle").toNumber(), 45.0);
    EXPECT_EQ(engine.evaluate("var r = MagnetRadialMaterial(); r.direction = Magnetization.CW; r.direction").toInt(),
              int(Magnetization::Direction::CW));
    EXPECT_EQ(engine.evaluate("CustomMaterial('#0000ff').toString()").toString(),
              material<QmlCustomMaterial>("CustomMaterial('#0000ff')").description());
}

TEST_F(MaterialProviderTest, PiecesCarryTheirOwnCopyOfEachScriptMaterial)
{
    const Piece winding = piece(QStringLiteral("WindingMaterial(2)"));
    ASSERT_FALSE(winding.material().isNull());
    const auto *layered = dynamic_cast<const WindingMaterial *>(winding.material().data());
    ASSERT_NE(layered, nullptr);
    EXPECT_EQ(layered->layer(), 2);

    const Piece magnet = piece(QStringLiteral("MagnetParallelMaterial(60, [3.5])"));
    const auto *parallel = dynamic_cast<const MagnetParallelMaterial *>(magnet.material().data());
    ASSERT_NE(parallel, nullptr);
    EXPECT_EQ(parallel->angle, 60.0);
    EXPECT_EQ(parallel->segmentRadiuses(), QVector<double>({3.5}));

    for (const char *program : {"GeneralMaterial()", "IronMaterial()", "EndturnMaterial()", "ConductorMaterial()",
                                "MagnetRadialMaterial()", "CustomMaterial('#123456')"}) {
        const Piece made = piece(QString::fromLatin1(program));
        ASSERT_FALSE(made.material().isNull()) << program;
        EXPECT_TRUE(made.material()->equals(*QmlMaterials::pieceMaterial(engine.evaluate(program).toVariant())))
            << program;
    }
    EXPECT_TRUE(errors.isEmpty());

    // An empty role is what a piece without a role gets anyway, so it is reported.
    EXPECT_EQ(piece(QStringLiteral("EmptyMaterial()")).material()->kind(), AbstractMaterial::EmptyKind);
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.last().at(1).toString(),
              QStringLiteral("Function piece() contains argument of an unsupported type: QmlEmptyMaterial"));
}
