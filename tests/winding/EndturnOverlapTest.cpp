#include <QCoreApplication>
#include <QFile>
#include <QtMath>
#include <gtest/gtest.h>

#include "QmlScripting/ScriptDescribeList.h"
#include "document/Document.h"
#include "support/ConsoleSpies.h"
#include "winding/WindingObject.h"
#include "OneEndturnCoil.h"

namespace {

QStringList texts(const QSignalSpy &spy)
{
    QStringList result;
    for (const QList<QVariant> &signal : spy)
        result << signal.at(1).toString();
    return result;
}

// A script whose straight paths always fit; the probe runs before it returns, and its
// result takes the extra fields.
const char *probeScript = R"(
    function report(what, work) {
        try {
            console.log(what + " = " + work());
        } catch (e) {
            console.log(what + " threw " + e.message);
        }
    }
    function rounded(value) {
        return Math.round(value * 1e6) / 1e6;
    }
    function item(path) {
        var e = endturns[0].outer;
        return { dir: e.dir, begin: e.begin, end: e.end, path: path };
    }
    function calcEndturnPaths(width, height, innerRadius, outerRadius, turns, autoOverhang, generate) {
        endturns = turns;
        var paths = [];
        for (var i = 0; i < turns.length; ++i) {
            paths.push({ innerPath: Geom.segment(turns[i].inner.begin.center, turns[i].inner.end.center),
                         outerPath: Geom.segment(turns[i].outer.begin.center, turns[i].outer.end.center) });
        }
        var winding = motor.winding;
        %1
        var result = { paths: paths };
        %2
        return result;
    }
    var endturns = [];
)";

class EndturnOverlapTest : public ::testing::Test
{
protected:
    ~EndturnOverlapTest() override { QFile::remove(path); }

    // Runs the probe inside the script's call for the paths; what it logged comes back.
    QStringList probe(const QString &code, const QString &result = QString())
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Text));
        file.write(QString::fromLatin1(probeScript).arg(code, result).toUtf8());
        file.close();
        winding->setEndturnsScript(name);
        EXPECT_TRUE(winding->loadEndturnScript());
        console.log.clear();
        EXPECT_TRUE(winding->calcEndturnPaths(layoutNumber, 50.0, 100.0, coils))
            << texts(console.error).join('\n').toStdString();
        return texts(console.log);
    }

    const QString name = QStringLiteral("TestOverlap-%1.js").arg(QCoreApplication::applicationPid());
    const QString path = ScriptDescribeList::endturns().folder() + QLatin1Char('/') + name;
    Document doc{nullptr};
    WindingObject *winding = doc.winding();
    ConsoleSpies console{winding->console()};
    QVector<Winding::Endturns> coils = oneCoil();
    int layoutNumber = 1;
};

} // namespace

TEST_F(EndturnOverlapTest, DistanceRefusesWhatIsNoListOfEndturns)
{
    const QStringList log = probe(R"(
        report("none", function () { return winding.distanceBetweenEndturns([]); });
        report("one", function () { return winding.distanceBetweenEndturns([item(paths[0].outerPath)]); });
        report("number", function () { return winding.distanceBetweenEndturns(5); });
        report("numbers", function () { return winding.distanceBetweenEndturns([1, 2]); });
        report("pathless", function () {
            return winding.distanceBetweenEndturns([item(paths[0].outerPath), { dir: 1, begin: {}, end: {} }]);
        });
        report("profileless", function () {
            var bare = item(paths[0].outerPath);
            bare.end = { slot: 2, layer: 1, center: bare.end.center };
            return winding.distanceBetweenEndturns([item(paths[0].outerPath), bare]);
        });
        report("empty", function () {
            return winding.distanceBetweenEndturns([item(undefined), item(undefined), item(paths[0].outerPath)])
                   === Number.MAX_VALUE;
        });
    )");
    EXPECT_EQ(log.count(QStringLiteral("call distanceBetweenEndturns()")), 7) << log.join('\n').toStdString();
    EXPECT_TRUE(log.contains("distanceBetweenEndturns, for 0 item(s) check skipped"));
    EXPECT_TRUE(log.contains("none = 0"));
    EXPECT_TRUE(log.contains("distanceBetweenEndturns, for 1 item(s) check skipped"));
    EXPECT_TRUE(log.contains("one = 0"));
    EXPECT_TRUE(log.contains("number threw The function 'distanceBetweenEndturns' must be with second argument of array"));
    EXPECT_TRUE(log.contains("numbers threw Must be with second argument of array of objects"));
    EXPECT_TRUE(log.contains("pathless threw Item is not contains variable 'path'"));
    EXPECT_TRUE(log.contains("profileless threw Item is not contains variable 'profile'"));
    // Fewer than two items with a path: nothing is near.
    EXPECT_TRUE(log.contains("empty = true"));
}

TEST_F(EndturnOverlapTest, DistanceIsTheClosestOfAnyTwoPathsAndExtremaTellWhere)
{
    const QStringList log = probe(R"(
        var along = Geom.segment(Geom.point3(0, 0, 0), Geom.point3(10, 0, 0));
        var above = Geom.segment(Geom.point3(5, -5, 2), Geom.point3(5, 5, 2));
        var far = Geom.segment(Geom.point3(0, 50, 0), Geom.point3(10, 50, 0));
        report("distance", function () {
            return rounded(winding.distanceBetweenEndturns([item(far), item(along), item(above)]));
        });
        report("apart", function () { return rounded(winding.distanceBetweenEndturns([item(along), item(far)])); });
        report("extrema", function () {
            var e = winding.extremaBetweenEndturns(along, above);
            return [e.p1.x, e.p1.y, e.p1.z, e.p2.x, e.p2.y, e.p2.z].map(rounded).join(",");
        });
        report("first", function () { return winding.extremaBetweenEndturns(1, above); });
        report("second", function () { return winding.extremaBetweenEndturns(along, "above"); });
        report("check", function () { return winding.checkOverlapEndturns([]); });
        report("volume", function () { return winding.volumeOverlapEndturns(null); });
    )");
    // The skew pair, 2 mm apart where one passes over the other; the far one is 50 mm away.
    EXPECT_TRUE(log.contains("distance = 2")) << log.join('\n').toStdString();
    EXPECT_TRUE(log.contains("apart = 50"));
    EXPECT_TRUE(log.contains("extrema = 5,0,0,5,0,2"));
    EXPECT_TRUE(log.contains("first threw The first argument must be type of 'shape'"));
    EXPECT_TRUE(log.contains("second threw The second argument must be type of 'shape'"));
    EXPECT_TRUE(log.contains("checkOverlapEndturns() always return true!!!"));
    EXPECT_TRUE(log.contains("check = true"));
    EXPECT_TRUE(log.contains("call volumeOverlapEndturns()"));
    EXPECT_TRUE(log.contains("volume = 0"));
}

TEST_F(EndturnOverlapTest, OverlapWarningsFollowTheScriptsFlags)
{
    winding->clearEndWindingStale();
    const WindingErrors inner = CoreMotorElement::InnerEndturnsOverlap;
    const WindingErrors outer = CoreMotorElement::OuterEndturnsOverlap;
    EXPECT_EQ(int(inner), 8192);
    EXPECT_EQ(int(outer), 16384);
    EXPECT_TRUE(winding->windingWarningsText(true).isEmpty());

    QSignalSpy warningsSpy(winding, &WindingObject::windingWarningsChanged);
    probe(QString(), "result.outerOverlap = true;");
    EXPECT_EQ(winding->windingWarnings() & (inner | outer), outer);
    EXPECT_EQ(warningsSpy.count(), 1);
    EXPECT_EQ(texts(console.warn), QStringList{"Some inner and outer end turns overlap."});
    EXPECT_EQ(winding->windingWarningsText(false), "Some inner and outer end turns overlap.");

    // A further layout adds its overlap to that of the first.
    layoutNumber = 2;
    probe(QString(), "result.innerOverlap = true;");
    EXPECT_EQ(winding->windingWarnings() & (inner | outer), inner | outer);
    EXPECT_EQ(winding->windingWarningsText(false), "Some inner and outer end turns overlap.");
    EXPECT_EQ(console.warn.count(), 1);

    layoutNumber = 1;
    probe(QString(), "result.innerOverlap = true; result.outerOverlap = false;");
    EXPECT_EQ(winding->windingWarnings() & (inner | outer), inner);

    // With stale end windings too, the lines are joined, the stale one with its link.
    winding->setEndturnShapeGenerated(true);
    winding->setEndturnShapeGenerated(false);
    ASSERT_TRUE(winding->windingWarnings().testFlag(CoreMotorElement::EndWindingStale));
    EXPECT_EQ(winding->windingWarningsText(false),
              "Some inner and outer end turns overlap.\nEnd winding needs to be regenerated");
    EXPECT_EQ(winding->windingWarningsText(true),
              "Some inner and outer end turns overlap.<br>End winding needs to be regenerated, <a href=\"generate\">"
              "<span style=\"text-decoration: underline; color:#0000ff;\">click to generate end winding</span></a>");

    // Absent flags are no overlap.
    probe(QString());
    EXPECT_FALSE(winding->windingWarnings() & (inner | outer));
    EXPECT_EQ(winding->windingWarningsText(false), "End winding needs to be regenerated");
}
