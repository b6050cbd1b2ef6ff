#include <QFile>
#include <QTemporaryDir>
#include <QtMath>
#include <TopAbs_ShapeEnum.hxx>
#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <limits>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "geometry/EndturnShape.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "geometry/servoce/curve.h"
#include "support/ConsoleSpies.h"
#include "support/LogCatcher.h"
#include "winding/WindingObject.h"

// What the shipped end-turn scripts say of their own end turns: on the example's tooth
// coils, and on crossing and tooth coils of one and two layers.

namespace {

const QString example = QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva");

struct Verdict
{
    bool outer;
    bool inner;
    QStringList distances;
};

struct WindingCase
{
    const char *name;
    int numberSlots;
    int polePairs;
    int layers;
    Winding::LayersOrientation orientation;
    // What the layout generator makes of it: the end turns of coils wider than one slot
    // pitch cross those of their neighbours.
    int span;
    double innerDiameter = 100.0;
};

const WindingCase distributedTwoLayers{"24 slots, 4 poles, two layers one above the other", 24, 2, 2,
                                       Winding::UpperLower, 6};
const WindingCase windingCases[] = {
    distributedTwoLayers,
    {"24 slots, 4 poles, one layer", 24, 2, 1, Winding::UpperLower, 5},
    {"12 slots, 10 poles, two layers one above the other", 12, 5, 2, Winding::UpperLower, 2},
    {"12 slots, 10 poles, two layers side by side", 12, 5, 2, Winding::LeftRight, 1},
    {"24 slots, 4 poles, two layers side by side", 24, 2, 2, Winding::LeftRight, 1},
    // Deep staircases on a wide bore: their corners must still pass the bend check.
    {"36 slots, 6 poles, two layers one above the other", 36, 3, 2, Winding::UpperLower, 6, 160.0},
    {"48 slots, 8 poles, two layers one above the other", 48, 4, 2, Winding::UpperLower, 6, 160.0},
};

const char *const statorScripts[] = {"SlottedStator.js", "SlottedStatorToothTips.js"};

class ShippedEndturnsOverlapTest : public ::testing::Test
{
protected:
    ShippedEndturnsOverlapTest() { doc.start(); }

    void makeMachine(const char *statorScript, const WindingCase &windingCase, Machine::Type machine = Machine::SR)
    {
        doc.markAsMade();
        doc.setMachineType(machine);
        for (MotorElement *element : {static_cast<MotorElement *>(doc.stator()), static_cast<MotorElement *>(doc.rotor())}) {
            element->setInnerDiameter(windingCase.innerDiameter);
            element->setOuterDiameter(300.0);
        }
        doc.stator()->setTypeMiddleItem(MotorElement::Yoke);
        doc.stator()->setNumberSlots(windingCase.numberSlots);
        doc.rotor()->setNumberPolePairs(windingCase.polePairs);
        for (StatorItem *item : doc.stator()->items())
            item->setHeight(40.0);
        winding->setNumberLayers(windingCase.layers);
        winding->setLayersOrientation(windingCase.orientation);
        doc.stator()->setScript(QString::fromLatin1(statorScript));
    }

    // The script's own verdict; a path that misses a slot centre, or bends too sharply,
    // would be told on the console or in the winding's errors.
    Verdict verdictOf(const char *script)
    {
        winding->setEndturnsScript(QString::fromLatin1(script));
        winding->dropEndturns();
        console.log.clear();
        console.error.clear();
        winding->updateEndturns();
        EXPECT_TRUE(winding->hasEndturns());
        EXPECT_TRUE(console.error.isEmpty()) << joined(console.error);
        EXPECT_FALSE(winding->windingErrors()
                     & (CoreMotorElement::InnerFilaments | CoreMotorElement::OuterFilaments
                        | CoreMotorElement::EndWindingFailed));
        Verdict verdict{winding->windingWarnings().testFlag(CoreMotorElement::OuterEndturnsOverlap),
                        winding->windingWarnings().testFlag(CoreMotorElement::InnerEndturnsOverlap),
                        {}};
        for (const QList<QVariant> &signal : console.log) {
            if (signal.at(1).toString().contains(QLatin1String(" end turns: closest ")))
                verdict.distances << signal.at(1).toString();
        }
        std::cout << script << ": " << verdict.distances.join("; ").toStdString() << std::endl;
        return verdict;
    }

    // Sweeps every end turn of every layout to the coil's cross-section, side by side as the
    // 3D view does: each a solid that holds the coil's section along its path.
    void expectEveryEndturnSweepsToTheCoilsSection()
    {
        struct Sweep
        {
            const Winding::Endturn *end;
            QString name;
            servoce::shape bundle;
        };
        const QVector<QVector<Winding::Endturns>> layouts = winding->endturns();
        std::vector<Sweep> sweeps;
        for (int layout = 0; layout < layouts.size(); ++layout) {
            for (int coil = 0; coil < layouts.at(layout).size(); ++coil) {
                const Winding::Endturns &ends = layouts.at(layout).at(coil);
                for (const Winding::Endturn *end : {&ends.outer, &ends.inner})
                    sweeps.push_back({end, QStringLiteral("layout %1, coil %2, %3 end turn").arg(layout).arg(coil).arg(
                                               end == &ends.outer ? "outer" : "inner"),
                                      {}});
            }
        }
        std::vector<const Winding::Endturn *> endturns;
        for (const Sweep &sweep : sweeps)
            endturns.push_back(sweep.end);
        const std::vector<servoce::shape> solids = Winding::endturnSolids(endturns, 0.0);
        for (std::size_t k = 0; k < sweeps.size(); ++k)
            sweeps[k].bundle = solids[k];
        // The coil's section fills most of the box that the winding measures round it: the
        // whole of it where the layers lie one above the other, less where a side of two lies
        // slanted in its half of the slot.
        const double box = winding->widthWindingCoil() * winding->heightWindingCoil();
        const double least = winding->isOrientationLeftRight() ? 0.5 * box : 0.95 * box;
        for (const Sweep &sweep : sweeps) {
            SCOPED_TRACE(sweep.name.toStdString());
            const double area = sweep.end->begin.profile.area();
            EXPECT_GT(area, least);
            EXPECT_LT(area, 1.001 * box);
            EXPECT_NEAR(sweep.end->end.profile.area(), area, 1e-6 * area);
            ASSERT_FALSE(sweep.bundle.is_null());
            EXPECT_EQ(sweep.bundle.shape_type(), int(TopAbs_SOLID));
            // Where the end turn runs: a solid made as a turned copy of another lies there too.
            const servoce::boundbox around = sweep.bundle.bounding_box();
            for (const Winding::CoilSide *side : {&sweep.end->begin, &sweep.end->end}) {
                EXPECT_TRUE(side->center.x > around.xmin && side->center.x < around.xmax && side->center.y > around.ymin
                            && side->center.y < around.ymax && side->center.z > around.zmin && side->center.z < around.zmax);
            }
            const double expected = area * sweep.end->path.length();
            EXPECT_NEAR(sweep.bundle.volume(), expected, 0.03 * expected);
        }
    }

    // The lowest and the highest point of a layout's end turns along the axis.
    static QPair<double, double> heightRange(const QVector<Winding::Endturns> &coils)
    {
        QPair<double, double> range{std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
        for (const Winding::Endturns &coil : coils) {
            for (const Winding::Endturn *end : {&coil.outer, &coil.inner}) {
                for (const servoce::point3 &point : servoce::deflection_points(end->path, 0.5)) {
                    range.first = std::min(range.first, point.z);
                    range.second = std::max(range.second, point.z);
                }
            }
        }
        return range;
    }

    const StatorItem *itemOfLayout(int index) const
    {
        for (const StatorItem *item : doc.stator()->items()) {
            if (item->id() == winding->statorItemOfLayout(index))
                return item;
        }
        return nullptr;
    }

    static std::string joined(const QSignalSpy &spy)
    {
        QStringList texts;
        for (const QList<QVariant> &signal : spy)
            texts << signal.at(1).toString();
        return texts.join('\n').toStdString();
    }

    QTemporaryDir folder;
    Document doc{nullptr};
    WindingObject *winding = doc.winding();
    ConsoleSpies console{winding->console()};
};

} // namespace

// Inside, neighbouring coils leave their shared slot touching, closer together than the
// bundle is thick where the coil is widest: that is no overlap.
TEST_F(ShippedEndturnsOverlapTest, TheExamplesToothCoilsOverlapWithNeitherScript)
{
    const QString copy = folder.filePath(QStringLiteral("new_motor.zva"));
    ASSERT_TRUE(QFile::copy(example, copy));
    ASSERT_TRUE(doc.load(copy));
    for (const char *script : {"WindingEndturns.js", "StackedEndturns.js"}) {
        SCOPED_TRACE(script);
        const Verdict verdict = verdictOf(script);
        // One layout: a line for each side.
        EXPECT_EQ(verdict.distances.size(), 2);
        EXPECT_FALSE(verdict.outer);
        EXPECT_FALSE(verdict.inner);
    }
}

// The simple arches of neighbouring coils cross where their spans overlap: the price of the
// plain shape, and told as such.
TEST_F(ShippedEndturnsOverlapTest, TheArchesOfADistributedWindingOverlap)
{
    makeMachine(statorScripts[0], distributedTwoLayers);
    const Verdict arched = verdictOf("WindingEndturns.js");
    EXPECT_TRUE(arched.outer);
    EXPECT_TRUE(arched.inner);
}

TEST_F(ShippedEndturnsOverlapTest, StackedEndturnsOverlapOnNoWindingOfEitherStator)
{
    for (const char *statorScript : statorScripts) {
        for (const WindingCase &windingCase : windingCases) {
            SCOPED_TRACE(QStringLiteral("%1, %2").arg(statorScript, windingCase.name).toStdString());
            makeMachine(statorScript, windingCase);
            ASSERT_EQ(winding->coilSpan(), windingCase.span);
            const Verdict stacked = verdictOf("StackedEndturns.js");
            EXPECT_EQ(stacked.distances.size(), 2);
            EXPECT_FALSE(stacked.outer);
            EXPECT_FALSE(stacked.inner);
        }
    }
}

// Between two rotors the faces of the stator look onto gaps on either side: those of two stators,
// or of one body with a winding on each face. Each face's staircase goes into its own body, never
// into a gap, and on a body with two faces no further than its middle, where the other's begins.
TEST_F(ShippedEndturnsOverlapTest, StackedEndturnsStepIntoTheStatorFromTheGapOfEachFace)
{
    const std::pair<Machine::Type, WindingCase> machines[] = {{Machine::SRS, distributedTwoLayers},
                                                              {Machine::RSR, windingCases[1]},
                                                              {Machine::RSR, distributedTwoLayers}};
    for (const auto &[machine, windingCase] : machines) {
        SCOPED_TRACE(QStringLiteral("%1, %2").arg(Machine::typeText(machine), windingCase.name).toStdString());
        makeMachine(statorScripts[0], windingCase, machine);
        for (StatorItem *item : doc.stator()->items())
            item->setHeight(80.0);
        ASSERT_EQ(winding->countLayouts(), 2);
        const Verdict stacked = verdictOf("StackedEndturns.js");
        EXPECT_EQ(stacked.distances.size(), 4);
        EXPECT_FALSE(stacked.outer);
        EXPECT_FALSE(stacked.inner);
        const QVector<QVector<Winding::Endturns>> layouts = winding->endturns();
        ASSERT_EQ(layouts.size(), 2);
        for (int index = 0; index < layouts.size(); ++index) {
            SCOPED_TRACE(index);
            const StatorItem *item = itemOfLayout(index);
            ASSERT_TRUE(item);
            const double middle = (item->posBottom() + item->posTop()) / 2.0;
            const bool upperFace = layouts.at(index).first().outer.begin.center.z > middle;
            const double face = upperFace ? item->posTop() : item->posBottom();
            const double back = item->isMiddle() ? middle : (upperFace ? item->posBottom() : item->posTop());
            const QPair<double, double> range = heightRange(layouts.at(index));
            EXPECT_GE(range.first, std::min(face, back) - 1e-6);
            EXPECT_LE(range.second, std::max(face, back) + 1e-6);
        }
    }
}

// On a thin body between two rotors, the staircases of its two faces reach its middle from either
// side: where they come closer than the bundles are thick, the winding warns of it, though each
// face's script found its own end turns apart.
TEST_F(ShippedEndturnsOverlapTest, EndturnsOfTheTwoFacesOfAThinBodyThatMeetAreReported)
{
    const QString meet = QStringLiteral("The outer end turns of the two faces of stator1 meet");
    for (const double height : {80.0, 40.0}) {
        SCOPED_TRACE(height);
        makeMachine(statorScripts[0], distributedTwoLayers, Machine::RSR);
        for (StatorItem *item : doc.stator()->items())
            item->setHeight(height);
        console.warn.clear();
        const Verdict stacked = verdictOf("StackedEndturns.js");
        const bool thin = height < 50.0;
        EXPECT_EQ(stacked.outer, thin);
        EXPECT_EQ(joined(console.warn).find(meet.toStdString()) != std::string::npos, thin) << joined(console.warn);
    }
}

// The 3D view sweeps each end turn to the coil's cross-section where it leaves its slots: either
// script's end turns of every winding give solids.
TEST_F(ShippedEndturnsOverlapTest, EveryEndturnOfEitherScriptSweepsTheCoilsSection)
{
    for (const WindingCase &windingCase : windingCases) {
        for (const char *script : {"WindingEndturns.js", "StackedEndturns.js"}) {
            SCOPED_TRACE(QStringLiteral("%1, %2").arg(script, windingCase.name).toStdString());
            makeMachine(statorScripts[0], windingCase);
            verdictOf(script);
            const LogCatcher log;
            expectEveryEndturnSweepsToTheCoilsSection();
            EXPECT_FALSE(log.contains(QStringLiteral("Critical error while creating endturn shape")));
        }
    }
}
