#include <gtest/gtest.h>

#include "document/Document.h"
#include "geometry/Stator.h"
#include "scripting/QtPrinters.h"
#include "winding/BlockStream.h"
#include "winding/CoilHelpers.h"
#include "winding/LayoutFaces.h"
#include "winding/WindingObject.h"

namespace {

Winding::Layout baseLayout()
{
    Winding::Layout layout;
    layout[Winding::A] << coil(0, 3, 0, 1, 1) << coil(6, 9, 0, 1, 2);
    layout[Winding::B] << coil(4, 7, 0, 1, 1);
    layout[Winding::C] << coil(8, 11, 1, 0, 1);
    return layout;
}

Winding::Layout faceLayout()
{
    Winding::Layout layout;
    layout[Winding::A] << coil(1, 4, 1, 0, 1);
    layout[Winding::C] << coil(5, 8, 0, 1, 1);
    return layout;
}

// Written by hand so that the format is checked apart from the program's operators.
void writeLayout(QDataStream &out, const Winding::Layout &layout)
{
    out << qint32(layout.size());
    for (const Winding::CoilList &list : layout) {
        out << qint32(list.size());
        for (const Winding::Coil &c : list)
            out << qint32(c.slotFrom) << qint32(c.slotTo) << qint32(c.parallelPath) << qint32(c.layerFrom)
                << qint32(c.layerTo);
    }
}

// A winding block as each version of the program wrote it, field by field.
struct OldBlock
{
    QByteArray bytes(qint32 version) const
    {
        return streamBytes([this, version](QDataStream &out) {
            out << version << qint32(Winding::Delta);
            if (version == 4)
                out << qint32(Winding::Connection_1p2);
            else
                out << QString("1||2");
            out << qint32(2) << qint32(12) << qint32(3) << qint32(Winding::SWG) << QString("7/0 SWG") << 0.8 << 0.6
                << 0.45;
            if (version != 2)
                writeLayout(out, baseLayout());
            if (version >= 2) {
                out << qint32(faces.size());
                for (const Winding::Layout &face : faces)
                    writeLayout(out, face);
            }
            out << qint32(Winding::Manual);
            if (version >= 6)
                out << qint32(2) << false << true;
            out << coilSpan << autoCalcCoilSpan;
            if (version >= 13)
                out << qint32(Winding::Toroidal);
            out << numberLayers << orientation;
            if (version >= 4)
                out << false << 0.003 << false << 0.25;
            if (version >= 11) {
                out << 42.5 << QString("Other.js") << false << 3.5 << 2.5 << 4.5 << 5.5;
            } else {
                if (version >= 7)
                    out << 42.5 << true;
                if (version >= 8)
                    out << 3.5;
                if (version >= 9)
                    out << true << 2.5;
                if (version >= 10)
                    out << qint32(77) << qint32(88);
            }
            if (version >= 12)
                out << true;
        });
    }

    QVector<Winding::Layout> faces{faceLayout(), Winding::Layout(), Winding::Layout(), Winding::Layout()};
    qint32 coilSpan = 3;
    bool autoCalcCoilSpan = false;
    qint32 numberLayers = 2;
    qint32 orientation = Winding::UpperLower;
};

class WindingStreamTest : public ::testing::Test
{
protected:
    // What the stator and the machine type, read before the winding, leave behind.
    static void prepare(Document &document)
    {
        document.setMachineType(Machine::SRS);
        document.stator()->setNumberSlots(12);
    }

    void SetUp() override { prepare(doc); }

    LoadResult load(const QByteArray &bytes) { return loadBlock(*winding, bytes); }

    Document doc{nullptr};
    WindingObject *winding = doc.winding();
    OldBlock block;
};

} // namespace

TEST_F(WindingStreamTest, EveryFieldSurvivesSaveAndLoad)
{
    winding->setCircuit(Winding::Delta);
    winding->setConnection("1||2");
    winding->setParallelPaths(2);
    winding->setNumberTurns(12);
    winding->setStrandsConductor(3);
    winding->setWireSizeMethod(Winding::SWG);
    winding->setWireSize("18 SWG");
    winding->setWireSizeMethod(Winding::FillFactor);
    winding->setCoilFillFactor(0.6);
    winding->setWireSizeMethod(Winding::WireDiameter);
    winding->setWireDiameter(0.8);
    winding->setSlotFillFactor(0.45);
    winding->setType(Winding::Toroidal);
    winding->setNumberLayers(2);
    winding->setAutoCalcCoilSpan(false);
    winding->setCoilSpan(4);
    winding->setModeLayout(Winding::Manual);
    winding->setLayout(baseLayout());
    winding->setReverseLayersLayouts({true, false});
    winding->setAutoCalcEndInductance(false);
    winding->setEndInductance(0.003);
    winding->setAutoCalcPhaseResistance(false);
    winding->setPhaseResistance(0.25);
    winding->setEndturnsScript("Other.js");
    winding->setAutoCalcOverhangEndturns(false);
    winding->setRadialOverhangOuterEndturn(3.5);
    winding->setRadialOverhangInnerEndturn(2.5);
    winding->setHeightOuterEndturn(4.5);
    winding->setHeightInnerEndturn(5.5);
    winding->setEndturnShapeGenerated(true);

    Document other(nullptr);
    prepare(other);
    WindingObject &read = *other.winding();
    const LoadResult result = loadBlock(read, savedBlock(*winding));
    EXPECT_TRUE(result.accepted);
    EXPECT_TRUE(result.usedUp);

    EXPECT_EQ(read.circuit(), Winding::Delta);
    EXPECT_EQ(read.connection(), "1||2");
    EXPECT_EQ(read.parallelPaths(), 2);
    EXPECT_EQ(read.numberTurns(), 12);
    EXPECT_EQ(read.strandsConductor(), 3);
    EXPECT_EQ(read.wireSizeMethod(), Winding::WireDiameter);
    EXPECT_EQ(read.wireSize(), "18 SWG");
    EXPECT_DOUBLE_EQ(read.wireDiameter(), 0.8);
    EXPECT_DOUBLE_EQ(read.slotFillFactor(), 0.45);
    EXPECT_EQ(read.type(), Winding::Toroidal);
    EXPECT_EQ(read.numberLayers(), 2);
    EXPECT_EQ(read.layersOrientation(), Winding::UpperLower);
    EXPECT_EQ(read.coilSpan(), 4);
    EXPECT_FALSE(read.autoCalcCoilSpan());
    EXPECT_EQ(read.modeLayout(), Winding::Manual);
    EXPECT_EQ(read.layout(), winding->layout());
    EXPECT_EQ(read.coilLayouts(), winding->coilLayouts());
    EXPECT_EQ(read.reverseLayersLayouts(), QVector<bool>({true, false}));
    EXPECT_FALSE(read.autoCalcEndInductance());
    EXPECT_DOUBLE_EQ(read.endInductance(), 0.003);
    EXPECT_EQ(read.methodCalcEndInductance(), "Manual");
    EXPECT_FALSE(read.autoCalcPhaseResistance());
    EXPECT_DOUBLE_EQ(read.phaseResistance(), 0.25);
    EXPECT_DOUBLE_EQ(read.wireLength(), winding->wireLength());
    EXPECT_EQ(read.endturnsScript(), "Other.js");
    EXPECT_FALSE(read.autoCalcOverhangEndturns());
    EXPECT_DOUBLE_EQ(read.radialOverhangOuterEndturn(), 3.5);
    EXPECT_DOUBLE_EQ(read.radialOverhangInnerEndturn(), 2.5);
    EXPECT_DOUBLE_EQ(read.heightOuterEndturn(), 4.5);
    EXPECT_DOUBLE_EQ(read.heightInnerEndturn(), 5.5);

    // Generated shapes are never taken from a file.
    EXPECT_FALSE(read.isEndturnShapeGenerated());
    EXPECT_TRUE(read.windingWarnings().testFlag(CoreMotorElement::EndWindingStale));

    // The given fill factor is kept beside the given diameter.
    read.setWireSizeMethod(Winding::FillFactor);
    EXPECT_DOUBLE_EQ(read.coilFillFactor(), 0.6);
}

TEST_F(WindingStreamTest, WriterPutsEveryFieldWhereTheFormatHasIt)
{
    // The layouts of the faces are derived from the base layout: here the second
    // one has its stacked layers reversed, as the block says.
    block.faces = {baseLayout(), baseLayout(), Winding::Layout(), Winding::Layout()};
    Winding::swapLayers(block.faces[1]);
    const QByteArray bytes = block.bytes(13);
    ASSERT_TRUE(load(bytes).usedUp);
    EXPECT_EQ(savedBlock(*winding), bytes);
    EXPECT_EQ(savedBlock(*winding), savedBlock(*winding));
}

TEST_F(WindingStreamTest, Version1HasOnlyTheBaseLayoutAndNoLumpedValues)
{
    const QVector<bool> reversals = winding->reverseLayersLayouts();
    EXPECT_TRUE(load(block.bytes(1)).usedUp);

    EXPECT_EQ(winding->circuit(), Winding::Delta);
    EXPECT_EQ(winding->connection(), "1||2");
    EXPECT_EQ(winding->parallelPaths(), 2);
    EXPECT_EQ(winding->numberTurns(), 12);
    EXPECT_EQ(winding->strandsConductor(), 3);
    EXPECT_EQ(winding->wireSizeMethod(), Winding::SWG);
    EXPECT_EQ(winding->wireSize(), "7/0 SWG");
    EXPECT_DOUBLE_EQ(winding->slotFillFactor(), 0.45);
    EXPECT_EQ(winding->modeLayout(), Winding::Manual);
    EXPECT_EQ(winding->coilSpan(), 3);
    EXPECT_FALSE(winding->autoCalcCoilSpan());
    EXPECT_EQ(winding->numberLayers(), 2);
    EXPECT_EQ(withoutOrientations(winding->layout()), baseLayout());

    EXPECT_EQ(withoutOrientations(winding->coilLayouts().first()), baseLayout());
    EXPECT_EQ(winding->reverseLayersLayouts(), reversals);
    EXPECT_EQ(winding->type(), Winding::Planar);
    EXPECT_TRUE(winding->autoCalcEndInductance());
    EXPECT_TRUE(winding->autoCalcPhaseResistance());
    EXPECT_DOUBLE_EQ(winding->wireLength(), 0.0);
}

TEST_F(WindingStreamTest, Version2TakesTheBaseLayoutFromTheFirstLayoutOfTheFaces)
{
    EXPECT_TRUE(load(block.bytes(2)).usedUp);
    EXPECT_EQ(withoutOrientations(winding->layout()), faceLayout());
    ASSERT_EQ(winding->coilLayouts().size(), 4);
    EXPECT_EQ(withoutOrientations(winding->coilLayouts().first()), faceLayout());
}

TEST_F(WindingStreamTest, Version3HasBothTheBaseLayoutAndTheLayoutsOfTheFaces)
{
    EXPECT_TRUE(load(block.bytes(3)).usedUp);
    EXPECT_EQ(withoutOrientations(winding->layout()), baseLayout());
    // The faces follow the base layout, whatever the file held for them.
    EXPECT_EQ(withoutOrientations(winding->coilLayouts().first()), baseLayout());
}

TEST_F(WindingStreamTest, Version4StoresTheConnectionAsANumberAndAddsTheLumpedValues)
{
    const QVector<bool> reversals = winding->reverseLayersLayouts();
    EXPECT_TRUE(load(block.bytes(4)).usedUp);

    EXPECT_EQ(winding->connection(), "1||2");
    EXPECT_FALSE(winding->autoCalcEndInductance());
    EXPECT_DOUBLE_EQ(winding->endInductance(), 0.003);
    EXPECT_EQ(winding->methodCalcEndInductance(), "Manual");
    EXPECT_FALSE(winding->autoCalcPhaseResistance());
    EXPECT_DOUBLE_EQ(winding->phaseResistance(), 0.25);
    EXPECT_EQ(winding->reverseLayersLayouts(), reversals);

    // The stored values are the manual ones to come back to.
    winding->setAutoCalcEndInductance(true);
    winding->setAutoCalcEndInductance(false);
    EXPECT_DOUBLE_EQ(winding->endInductance(), 0.003);
}

TEST_F(WindingStreamTest, Version7AddsTheReversalsAndTheWireLength)
{
    const double overhang = winding->radialOverhangOuterEndturn();
    EXPECT_TRUE(load(block.bytes(7)).usedUp);
    EXPECT_EQ(winding->reverseLayersLayouts(), QVector<bool>({false, true}));
    EXPECT_DOUBLE_EQ(winding->wireLength(), 42.5);
    EXPECT_DOUBLE_EQ(winding->radialOverhangOuterEndturn(), overhang);
}

TEST_F(WindingStreamTest, Version10SkipsTheFieldsBetweenTheOverhangs)
{
    const QString script = winding->endturnsScript();
    const double height = winding->heightOuterEndturn();
    const bool automatic = winding->autoCalcOverhangEndturns();
    EXPECT_TRUE(load(block.bytes(10)).usedUp);

    EXPECT_DOUBLE_EQ(winding->wireLength(), 42.5);
    EXPECT_DOUBLE_EQ(winding->radialOverhangOuterEndturn(), 3.5);
    EXPECT_DOUBLE_EQ(winding->radialOverhangInnerEndturn(), 2.5);
    EXPECT_DOUBLE_EQ(winding->heightOuterEndturn(), height);
    EXPECT_EQ(winding->autoCalcOverhangEndturns(), automatic);
    EXPECT_EQ(winding->endturnsScript(), script);
}

TEST_F(WindingStreamTest, Version12HasTheEndturnSettingsButNoType)
{
    winding->setType(Winding::Toroidal);
    EXPECT_TRUE(load(block.bytes(12)).usedUp);

    EXPECT_EQ(winding->type(), Winding::Toroidal);
    EXPECT_EQ(winding->endturnsScript(), "Other.js");
    EXPECT_FALSE(winding->autoCalcOverhangEndturns());
    EXPECT_DOUBLE_EQ(winding->radialOverhangOuterEndturn(), 3.5);
    EXPECT_DOUBLE_EQ(winding->radialOverhangInnerEndturn(), 2.5);
    EXPECT_DOUBLE_EQ(winding->heightOuterEndturn(), 4.5);
    EXPECT_DOUBLE_EQ(winding->heightInnerEndturn(), 5.5);
    EXPECT_FALSE(winding->isEndturnShapeGenerated());
    EXPECT_TRUE(winding->windingWarnings().testFlag(CoreMotorElement::EndWindingStale));
}

TEST_F(WindingStreamTest, NewerVersionIsRefusedWithoutAChange)
{
    const LoadResult result = load(block.bytes(14));
    EXPECT_FALSE(result.accepted);
    EXPECT_EQ(winding->circuit(), Winding::Star);
    EXPECT_EQ(winding->connection(), "UnknownConnection");
    EXPECT_EQ(winding->numberTurns(), 1);
}

TEST_F(WindingStreamTest, CoilSpanIsBroughtIntoItsLimitsAfterLoading)
{
    // A single layer takes the automatic span: the pole pitch of 3 slots fills them all.
    block.numberLayers = 1;
    load(block.bytes(13));
    EXPECT_TRUE(winding->autoCalcCoilSpan());
    EXPECT_EQ(winding->coilSpan(), 3);

    block.numberLayers = 2;
    block.orientation = Winding::LeftRight;
    load(block.bytes(13));
    EXPECT_TRUE(winding->autoCalcCoilSpan());
    EXPECT_EQ(winding->coilSpan(), 1);

    block.orientation = Winding::UpperLower;
    block.coilSpan = 1;
    load(block.bytes(13));
    EXPECT_FALSE(winding->autoCalcCoilSpan());
    EXPECT_EQ(winding->coilSpan(), 2);

    block.coilSpan = 9;
    load(block.bytes(13));
    EXPECT_EQ(winding->coilSpan(), 6);
}

TEST_F(WindingStreamTest, ConnectionIsClearedWithOneLayout)
{
    doc.setMachineType(Machine::SR);
    load(block.bytes(13));
    EXPECT_EQ(winding->connection(), "");
}

TEST_F(WindingStreamTest, GaugeNameOfAFileIsRememberedForItsTable)
{
    load(block.bytes(13));
    ASSERT_EQ(winding->wireSize(), "7/0 SWG");
    winding->setWireSizeMethod(Winding::AWG);
    EXPECT_EQ(winding->wireSize(), "25 AWG");
    winding->setWireSizeMethod(Winding::SWG);
    EXPECT_EQ(winding->wireSize(), "7/0 SWG");
}

TEST_F(WindingStreamTest, AGaugeReadFromAFileGivesItsWireAtOnce)
{
    load(block.bytes(13));
    winding->setWireSizeMethod(Winding::SWG);
    EXPECT_NEAR(winding->wireDiameter(), 12.7, 1e-9) << "7/0 SWG is half an inch";
    Document other(nullptr);
    prepare(other);
    WindingObject &read = *other.winding();
    ASSERT_TRUE(loadBlock(read, savedBlock(*winding)).accepted);
    EXPECT_NEAR(read.wireDiameter(), 12.7, 1e-9) << "before anything else asks for it";
}

TEST(WindingTypes, RegisteredNamesRoundTripInsideAVariant)
{
    registerWindingTypes();
    expectVariantRoundTrip("Winding::ModeLayout", Winding::Manual);
    expectVariantRoundTrip("Winding::Type", Winding::Toroidal);
    expectVariantRoundTrip("Winding::LayersOrientation", Winding::LeftRight);
    expectVariantRoundTrip("Winding::WireSizeMethod", Winding::WireDiameter);
    expectVariantRoundTrip("Winding::Circuit", Winding::Delta);
    expectVariantRoundTrip("Winding::Connection", Winding::UnknownConnection);
    expectVariantRoundTrip("Winding::Coil", coil(1, 4, 0, 1, 2));
    expectVariantRoundTrip("Winding::CoilList", Winding::CoilList{coil(1, 4, 0, 1, 2), coil(2, 5, 1, 0, 1)});
    expectVariantRoundTrip("Winding::Layout", baseLayout());
    expectVariantRoundTrip("QVector<bool>", QVector<bool>{true, false, true});
}

TEST(WindingTypes, ValuesAreStoredAsTheirPlainFields)
{
    registerWindingTypes();
    QByteArray bytes;
    variantRoundTrip(QVariant::fromValue(Winding::Connection_1s4_p_2s3), &bytes);
    EXPECT_EQ(bytes.right(4).toHex(), "00000008");
    variantRoundTrip(QVariant::fromValue(Winding::UnknownConnection), &bytes);
    EXPECT_EQ(bytes.right(4).toHex(), "ffffffff");

    const QByteArray coilBytes = "0000000100000004000000020000000000000001";
    EXPECT_EQ(streamBytes([](QDataStream &out) { out << coil(1, 4, 0, 1, 2); }).toHex(), coilBytes);
    EXPECT_EQ(streamBytes([](QDataStream &out) { out << Winding::CoilList{coil(1, 4, 0, 1, 2)}; }).toHex(),
              "00000001" + coilBytes);
}

TEST(WindingTypes, LayoutReadFromAStreamHasAListPerPhase)
{
    const QByteArray bytes = streamBytes([](QDataStream &out) {
        out << qint32(1) << qint32(1) << qint32(1) << qint32(4) << qint32(2) << qint32(0) << qint32(1);
    });
    QDataStream in(bytes);
    setFileVersion(in);
    Winding::Layout layout;
    in >> layout;
    ASSERT_EQ(layout.size(), int(Winding::Count));
    EXPECT_EQ(layout.at(Winding::A), Winding::CoilList{coil(1, 4, 0, 1, 2)});
    EXPECT_TRUE(layout.at(Winding::B).isEmpty());
}

TEST(WindingTypes, LayoutsHaveATextForTheUndoList)
{
    registerWindingTypes();
    Winding::Layout layout;
    layout[Winding::A] << coil(1, 4, 0, 1, 2);
    EXPECT_EQ(QVariant::fromValue(layout).toString(), "A: 2 S1.L0-S4.L1 Zero; B: ; C: ");
    EXPECT_EQ(QVariant::fromValue(layout.at(Winding::A)).toString(), "2 S1.L0-S4.L1 Zero");
}
