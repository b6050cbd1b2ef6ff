#include <QByteArray>
#include <QDataStream>
#include <QVariant>
#include <gtest/gtest.h>

#include "base/Numeric.h"
#include "materials/BasicMaterials.h"
#include "materials/MagnetMaterial.h"
#include "materials/Magnetization.h"
#include "materials/WindingMaterial.h"

namespace {

Magnetization parallelMagnetization(double angle, Magnetization::Direction direction)
{
    Magnetization magnetization;
    magnetization.type = Magnetization::Type::Parallel;
    magnetization.direction = direction;
    magnetization.angle = angle;
    return magnetization;
}

QByteArray savedBytes(const AbstractMaterial &material)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    material.save(out);
    return bytes;
}

// A fresh object of the same class, loaded from what the given one saves.
QSharedPointer<AbstractMaterial> reloaded(const AbstractMaterial &material)
{
    const QByteArray bytes = savedBytes(material);
    QSharedPointer<AbstractMaterial> copy = material.persistenceKey().create();
    QDataStream in(bytes);
    copy->load(in);
    EXPECT_TRUE(in.atEnd()) << material.persistenceKey().className.constData();
    EXPECT_EQ(in.status(), QDataStream::Ok);
    return copy;
}

template <class Material>
bool isA(const AbstractMaterial *material)
{
    return dynamic_cast<const Material *>(material) != nullptr;
}

} // namespace

TEST(NormalizeAngle, BringsAnglesIntoOneTurn)
{
    EXPECT_DOUBLE_EQ(Numeric::normalizeAngle(-30.0), 330.0);
    EXPECT_DOUBLE_EQ(Numeric::normalizeAngle(-390.0), 330.0);
    EXPECT_DOUBLE_EQ(Numeric::normalizeAngle(370.0), 10.0);
    EXPECT_DOUBLE_EQ(Numeric::normalizeAngle(359.5), 359.5);
    EXPECT_DOUBLE_EQ(Numeric::normalizeAngle(45.0), 45.0);
}

TEST(NormalizeAngle, FullTurnsAndTinyValuesAreZero)
{
    EXPECT_EQ(Numeric::normalizeAngle(360.0), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(720.0), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(-360.0), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(-1080.0), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(1e-8), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(-1e-8), 0.0);
    EXPECT_EQ(Numeric::normalizeAngle(1e-7), 0.0);
    EXPECT_NEAR(Numeric::normalizeAngle(360.0 * (1.0 + 1e-14)), 0.0, 1e-10);
}

TEST(NormalizeAngle, ResultLiesInHalfOpenTurn)
{
    for (double degrees = -2000.0; degrees <= 2000.0; degrees += 12.5) {
        const double result = Numeric::normalizeAngle(degrees);
        EXPECT_GE(result, 0.0) << degrees;
        EXPECT_LT(result, 360.0) << degrees;
    }
    EXPECT_GT(Numeric::normalizeAngle(-2e-7), 359.0);
}

TEST(Magnetization, EffectiveAngleTurnsBackwardSensesByHalfATurn)
{
    using Direction = Magnetization::Direction;
    EXPECT_DOUBLE_EQ(parallelMagnetization(30.0, Direction::From).effectiveAngle(), 30.0);
    EXPECT_DOUBLE_EQ(parallelMagnetization(30.0, Direction::CW).effectiveAngle(), 30.0);
    EXPECT_DOUBLE_EQ(parallelMagnetization(270.0, Direction::Toward).effectiveAngle(), 90.0);
    EXPECT_DOUBLE_EQ(parallelMagnetization(180.0, Direction::CCW).effectiveAngle(), 0.0);
    EXPECT_DOUBLE_EQ(parallelMagnetization(-90.0, Direction::From).effectiveAngle(), 270.0);
}

TEST(Magnetization, EqualityComparesAllFieldsAndAnglesWithRelativeTolerance)
{
    const Magnetization base = parallelMagnetization(45.0, Magnetization::Direction::From);

    Magnetization same = base;
    same.angle = 45.0 * (1.0 + 1e-14);
    EXPECT_EQ(base, same);

    Magnetization otherAngle = base;
    otherAngle.angle = 45.0 * (1.0 + 1e-9);
    EXPECT_NE(base, otherAngle);

    Magnetization otherType = base;
    otherType.type = Magnetization::Type::Radial;
    EXPECT_NE(base, otherType);

    Magnetization otherDirection = base;
    otherDirection.direction = Magnetization::Direction::Toward;
    EXPECT_NE(base, otherDirection);

    Magnetization otherCenter = base;
    otherCenter.center = QPointF(1.0, 0.0);
    EXPECT_NE(base, otherCenter);
}

TEST(Magnetization, ZeroAngleComparesWithAbsoluteTolerance)
{
    const Magnetization zero = parallelMagnetization(0.0, Magnetization::Direction::From);
    EXPECT_EQ(zero, parallelMagnetization(1e-13, Magnetization::Direction::From));
    EXPECT_EQ(parallelMagnetization(-1e-13, Magnetization::Direction::From), zero);
    EXPECT_NE(zero, parallelMagnetization(1e-11, Magnetization::Direction::From));
}

TEST(Magnetization, StreamWritesTypeCenterDirectionAngle)
{
    Magnetization magnetization;
    magnetization.type = Magnetization::Type::Radial;
    magnetization.direction = Magnetization::Direction::CCW;
    magnetization.center = QPointF(1.5, -2.25);
    magnetization.angle = 12.5;

    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << magnetization;
    }

    QDataStream raw(bytes);
    qint32 type = 0;
    QPointF center;
    qint32 direction = 0;
    double angle = 0.0;
    raw >> type >> center >> direction >> angle;
    EXPECT_EQ(type, 0);
    EXPECT_EQ(center, QPointF(1.5, -2.25));
    EXPECT_EQ(direction, 3);
    EXPECT_EQ(angle, 12.5);
    EXPECT_TRUE(raw.atEnd());

    Magnetization read;
    QDataStream in(bytes);
    in >> read;
    EXPECT_EQ(read, magnetization);
}

TEST(Magnetization, UnknownValuesRoundTrip)
{
    const Magnetization unknown;
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << unknown;
    }
    Magnetization read = parallelMagnetization(10.0, Magnetization::Direction::From);
    QDataStream in(bytes);
    in >> read;
    EXPECT_EQ(read.type, Magnetization::Type::Unknown);
    EXPECT_EQ(read.direction, Magnetization::Direction::Unknown);
}

TEST(Magnetization, TravelsInQVariantStreamsByTypeName)
{
    Magnetization::registerMetaType();
    Magnetization::registerMetaType();
    ASSERT_NE(QMetaType::type("Magnetization"), int(QMetaType::UnknownType));

    const Magnetization magnetization = parallelMagnetization(75.0, Magnetization::Direction::Toward);
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << QVariant::fromValue(magnetization);
    }
    QVariant read;
    QDataStream in(bytes);
    in >> read;
    ASSERT_EQ(in.status(), QDataStream::Ok);
    EXPECT_STREQ(read.typeName(), "Magnetization");
    EXPECT_EQ(read.value<Magnetization>(), magnetization);
    EXPECT_EQ(read.toString(), magnetization.text());
}

TEST(Magnetization, TextShowsPatternDetails)
{
    Magnetization radial;
    radial.type = Magnetization::Type::Radial;
    radial.direction = Magnetization::Direction::CW;
    radial.center = QPointF(1.5, -2);
    EXPECT_EQ(radial.text(), QStringLiteral("Radial Clockwise center (1.5, -2)"));

    EXPECT_EQ(parallelMagnetization(30.0, Magnetization::Direction::Toward).text(),
              QString::fromUtf8("Parallel 210°"));

    EXPECT_EQ(Magnetization().text(), QStringLiteral("UnknownMagnetization"));
    EXPECT_EQ(Magnetization::directionText(Magnetization::Direction::CCW), QStringLiteral("Counter-clockwise"));
    EXPECT_EQ(Magnetization::directionText(Magnetization::Direction::Unknown), QStringLiteral("UnknownDirect"));
}

TEST(MaterialKinds, TextsAndColoursOfKnownAndUnknownKinds)
{
    EXPECT_EQ(materialTypeName(AbstractMaterial::EmptyKind), QStringLiteral("Not assigned"));
    EXPECT_EQ(materialTypeName(AbstractMaterial::EndturnKind), QStringLiteral("EndTurn"));
    EXPECT_EQ(materialTypeName(AbstractMaterial::DummyKind), QStringLiteral("Unknown material type"));
    EXPECT_EQ(materialTypeName(42), QStringLiteral("Unknown material type"));
    EXPECT_EQ(materialTypeName(-1), QStringLiteral("Unknown material type"));

    EXPECT_EQ(materialTypeColor(AbstractMaterial::EmptyKind), QColor(245, 245, 245, 0));
    EXPECT_EQ(materialTypeColor(AbstractMaterial::DummyKind), QColor(153, 153, 204));
    EXPECT_EQ(materialTypeColor(42), QColor(128, 128, 128));
}

TEST(MaterialRegistry, EveryConcreteClassIsMadeFromItsName)
{
    const struct
    {
        const char *className;
        AbstractMaterial::Kind kind;
        bool (*isOfClass)(const AbstractMaterial *);
    } expected[] = {
        {"EmptyMaterial", AbstractMaterial::EmptyKind, &isA<EmptyMaterial>},
        {"GeneralMaterial", AbstractMaterial::GeneralKind, &isA<GeneralMaterial>},
        {"IronMaterial", AbstractMaterial::IronKind, &isA<IronMaterial>},
        {"MagnetParallelMaterial", AbstractMaterial::MagnetKind, &isA<MagnetParallelMaterial>},
        {"MagnetRadialMaterial", AbstractMaterial::MagnetKind, &isA<MagnetRadialMaterial>},
        {"WindingMaterial", AbstractMaterial::WindingKind, &isA<WindingMaterial>},
        {"ConductorMaterial", AbstractMaterial::ConductorKind, &isA<ConductorMaterial>},
        {"EndturnMaterial", AbstractMaterial::EndturnKind, &isA<EndturnMaterial>},
        {"CustomMaterial", AbstractMaterial::CustomKind, &isA<CustomMaterial>},
        {"DummyMaterial", AbstractMaterial::DummyKind, &isA<DummyMaterial>},
    };

    for (const auto &entry : expected) {
        SCOPED_TRACE(entry.className);
        const AbstractMaterial::Record *record = AbstractMaterial::registered(entry.className);
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->version, 1);
        const QSharedPointer<AbstractMaterial> material = record->create();
        ASSERT_FALSE(material.isNull());
        EXPECT_EQ(material->kind(), entry.kind);
        EXPECT_TRUE(entry.isOfClass(material.data()));
        EXPECT_EQ(&material->persistenceKey(), record);
    }
    EXPECT_EQ(AbstractMaterial::registered("MagnetMaterial"), nullptr);
    EXPECT_EQ(AbstractMaterial::registered("AbstractMaterial"), nullptr);
}

TEST(MaterialStreams, StreamedFieldsRoundTrip)
{
    WindingMaterial winding(3);
    EXPECT_EQ(savedBytes(winding).size(), 4);
    EXPECT_TRUE(reloaded(winding)->equals(winding));

    const MagnetParallelMaterial parallel(123.5);
    EXPECT_TRUE(reloaded(parallel)->equals(parallel));

    const MagnetRadialMaterial radial(Magnetization::Direction::CCW, QPointF(4.0, -7.5));
    const auto radialCopy = qSharedPointerDynamicCast<MagnetRadialMaterial>(reloaded(radial));
    ASSERT_FALSE(radialCopy.isNull());
    EXPECT_EQ(radialCopy->direction, Magnetization::Direction::CCW);
    EXPECT_EQ(radialCopy->center, QPointF(4.0, -7.5));
}

TEST(MaterialStreams, RolesWithoutStreamedFieldsWriteNothing)
{
    EXPECT_TRUE(savedBytes(EmptyMaterial()).isEmpty());
    EXPECT_TRUE(savedBytes(GeneralMaterial()).isEmpty());
    EXPECT_TRUE(savedBytes(ConductorMaterial()).isEmpty());
    EXPECT_TRUE(savedBytes(DummyMaterial()).isEmpty());
    EXPECT_TRUE(savedBytes(CustomMaterial(Qt::green)).isEmpty());
    EXPECT_TRUE(savedBytes(IronMaterial({0.95}, 1.0)).isEmpty());
    EXPECT_TRUE(savedBytes(EndturnMaterial(2, 1)).isEmpty());
}

TEST(MaterialClone, KeepsKindAndAllFields)
{
    WindingMaterial winding(2);
    winding.setSlot(7);
    winding.setLayout(1);
    const auto windingCopy = qSharedPointerDynamicCast<WindingMaterial>(winding.clone());
    ASSERT_FALSE(windingCopy.isNull());
    EXPECT_TRUE(windingCopy->equals(winding));
    EXPECT_EQ(windingCopy->slot(), 7);

    const IronMaterial iron({0.9, 0.95}, 2.5);
    const auto ironCopy = qSharedPointerDynamicCast<IronMaterial>(iron.clone());
    ASSERT_FALSE(ironCopy.isNull());
    EXPECT_EQ(ironCopy->fillCoefs(), QVector<double>({0.9, 0.95}));
    EXPECT_EQ(ironCopy->dsomaloy(), 2.5);

    MagnetParallelMaterial parallel(30.0, {10.0, 20.0}, false);
    parallel.setAxial(true);
    const auto parallelCopy = qSharedPointerDynamicCast<MagnetParallelMaterial>(parallel.clone());
    ASSERT_FALSE(parallelCopy.isNull());
    EXPECT_TRUE(parallelCopy->equals(parallel));
    EXPECT_EQ(parallelCopy->segmentRadiuses(), QVector<double>({10.0, 20.0}));

    const CustomMaterial custom(Qt::blue);
    EXPECT_EQ(custom.clone()->color(), QColor(Qt::blue));
    EXPECT_EQ(EndturnMaterial(1, 2).clone()->kind(), AbstractMaterial::EndturnKind);
    EXPECT_EQ(DummyMaterial().clone()->kind(), AbstractMaterial::DummyKind);
}

TEST(MaterialEquals, DifferentKindsDiffer)
{
    const EmptyMaterial empty;
    const GeneralMaterial general;
    const ConductorMaterial conductor;
    const IronMaterial iron;
    EXPECT_TRUE(empty.equals(EmptyMaterial()));
    EXPECT_FALSE(empty.equals(general));
    EXPECT_FALSE(conductor.equals(general));
    EXPECT_FALSE(general.equals(conductor));
    EXPECT_FALSE(iron.equals(WindingMaterial()));
    EXPECT_FALSE(WindingMaterial().equals(iron));
}

TEST(MaterialEquals, IronComparesByKindAlone)
{
    EXPECT_TRUE(IronMaterial({0.9}, 1.0).equals(IronMaterial()));
}

TEST(MaterialEquals, WindingAndEndturnCompareAllTheirFields)
{
    WindingMaterial a(1);
    WindingMaterial b(1);
    EXPECT_TRUE(a.equals(b));
    b.setSlot(4);
    EXPECT_FALSE(a.equals(b));
    b.setSlot(0);
    b.setLayout(2);
    EXPECT_FALSE(a.equals(b));
    EXPECT_FALSE(a.equals(WindingMaterial(2)));

    EXPECT_TRUE(EndturnMaterial(1, 2).equals(EndturnMaterial(1, 2)));
    EXPECT_FALSE(EndturnMaterial(1, 2).equals(EndturnMaterial(0, 2)));
    EXPECT_FALSE(EndturnMaterial(1, 2).equals(EndturnMaterial(1, 3)));
}

TEST(MaterialEquals, CustomComparesColour)
{
    EXPECT_TRUE(CustomMaterial(Qt::green).equals(CustomMaterial(Qt::green)));
    EXPECT_FALSE(CustomMaterial(Qt::green).equals(CustomMaterial(Qt::blue)));
    EXPECT_NE(CustomMaterial(Qt::green).key(), CustomMaterial(Qt::blue).key());
}

TEST(MaterialEquals, MagnetsCompareMagnetizationRadiusesAndFlags)
{
    const MagnetParallelMaterial parallel(30.0, {5.0});
    EXPECT_TRUE(parallel.equals(MagnetParallelMaterial(30.0, {5.0})));
    EXPECT_FALSE(parallel.equals(MagnetParallelMaterial(31.0, {5.0})));
    EXPECT_FALSE(parallel.equals(MagnetParallelMaterial(30.0)));
    EXPECT_FALSE(parallel.equals(MagnetParallelMaterial(30.0, {5.0}, false)));

    MagnetParallelMaterial axial(30.0, {5.0});
    axial.setAxial(true);
    EXPECT_FALSE(parallel.equals(axial));
    EXPECT_FALSE(axial.equals(parallel));

    const MagnetRadialMaterial radial(Magnetization::Direction::Toward, QPointF(1.0, 2.0));
    EXPECT_TRUE(radial.equals(MagnetRadialMaterial(Magnetization::Direction::Toward, QPointF(1.0, 2.0))));
    EXPECT_FALSE(radial.equals(MagnetRadialMaterial(Magnetization::Direction::From, QPointF(1.0, 2.0))));
    EXPECT_FALSE(radial.equals(MagnetRadialMaterial(Magnetization::Direction::Toward)));
    EXPECT_FALSE(radial.equals(MagnetParallelMaterial()));
    EXPECT_FALSE(MagnetParallelMaterial().equals(MagnetRadialMaterial()));
}

TEST(MaterialDescription, NamesRoleAndFields)
{
    EXPECT_EQ(WindingMaterial().description(), QStringLiteral("Winding, layer None, slot 0, layout 0"));
    WindingMaterial winding(2);
    winding.setSlot(5);
    winding.setLayout(1);
    EXPECT_EQ(winding.description(), QStringLiteral("Winding, layer 2, slot 5, layout 1"));

    EXPECT_EQ(EndturnMaterial(1, 0).description(), QStringLiteral("EndTurn"));
    EXPECT_EQ(EndturnMaterial(1, 2).description(), QStringLiteral("EndTurn, phase B, layout 2"));

    EXPECT_EQ(MagnetRadialMaterial(Magnetization::Direction::Toward, QPointF(1, 2)).description(),
              QStringLiteral("Magnet, Radial Toward center (1, 2), 1 segment(s)"));
    EXPECT_EQ(MagnetParallelMaterial(30.0, {5.0, 10.0}).description(),
              QString::fromUtf8("Magnet, Parallel 30°, 3 segment(s)"));

    EXPECT_EQ(CustomMaterial(Qt::green).description(), QStringLiteral("Custom, color #00ff00"));
    EXPECT_EQ(CustomMaterial(Qt::green).key(), QStringLiteral("Custom_#00ff00"));
    EXPECT_EQ(IronMaterial().description(), QStringLiteral("Iron"));
    EXPECT_EQ(IronMaterial().key(), QStringLiteral("Iron"));
}

TEST(MaterialColour, FollowsRoleAndFields)
{
    EXPECT_EQ(MagnetRadialMaterial(Magnetization::Direction::Toward).color(), QColor(96, 96, 255));
    EXPECT_EQ(MagnetRadialMaterial(Magnetization::Direction::CCW).color(), QColor(96, 96, 255));
    EXPECT_EQ(MagnetRadialMaterial(Magnetization::Direction::From).color(), QColor(255, 96, 96));
    EXPECT_EQ(MagnetParallelMaterial(0.0).color(), QColor(255, 96, 96));

    EXPECT_EQ(WindingMaterial(-1).color(), QColor(253, 124, 110));
    EXPECT_EQ(WindingMaterial(0).color(), QColor(255, 130, 105));
    EXPECT_EQ(WindingMaterial(3).color(), QColor(255, 180, 105));
    EXPECT_EQ(WindingMaterial(2).color(), QColor(230, 255, 105));

    EXPECT_EQ(CustomMaterial().color(), QColor(Qt::red));
    EXPECT_EQ(IronMaterial().brush(), QBrush(QColor(213, 221, 224)));
}
