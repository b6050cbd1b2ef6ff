#include <QDir>
#include <QFile>
#include <QtMath>
#include <gtest/gtest.h>

#include "QmlScripting/ScriptDescribeList.h"
#include "document/Document.h"
#include "support/ConsoleSpies.h"
#include "winding/WindingObject.h"
#include "OneEndturnCoil.h"

namespace {

// An arc from each end's begin to its end through a point lifted 10 mm above their middle.
const char *archedBody = R"(
    function arch(end) {
        var a = end.begin.center, b = end.end.center;
        var middle = Geom.point3((a.x + b.x) / 2, (a.y + b.y) / 2, a.z + 10);
        return Geom.arc(a, middle, b);
    }
    var paths = [];
    for (var i = 0; i < endturns.length; ++i)
        paths.push({ innerPath: arch(endturns[i].inner), outerPath: %1 });
    return { paths: paths };
)";

std::string joined(const QSignalSpy &spy)
{
    QStringList texts;
    for (const QList<QVariant> &signal : spy)
        texts << signal.at(1).toString();
    return texts.join('\n').toStdString();
}

bool anyContains(const QSignalSpy &spy, const QString &text)
{
    return std::any_of(spy.cbegin(), spy.cend(),
                       [&text](const QList<QVariant> &signal) { return signal.at(1).toString().contains(text); });
}

// Each test writes its end-turn script beside the shipped ones and takes it away again.
class EndturnScriptTest : public ::testing::Test
{
protected:
    ~EndturnScriptTest() override { QFile::remove(path); }

    bool load(const QString &text)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Text));
        file.write(text.toUtf8());
        file.close();
        winding->setEndturnsScript(name);
        return winding->loadEndturnScript();
    }

    QString archedScript(const QString &outerPath) const
    {
        return QStringLiteral("function calcEndturnPaths(width, height, innerRadius, outerRadius, endturns, "
                              "autoOverhang, generate) {")
               + QString::fromLatin1(archedBody).arg(outerPath) + QStringLiteral("}");
    }

    // Named after the process: tests run side by side.
    const QString name = QStringLiteral("TestEndturns-%1.js").arg(QCoreApplication::applicationPid());
    const QString path = ScriptDescribeList::endturns().folder() + QLatin1Char('/') + name;
    Document doc{nullptr};
    WindingObject *winding = doc.winding();
    ConsoleSpies console{winding->console()};
    QVector<Winding::Endturns> coils = oneCoil();
};

} // namespace

TEST_F(EndturnScriptTest, PathsThatMeetTheSlotCentresAreTaken)
{
    ASSERT_TRUE(load(archedScript("arch(endturns[i].outer)")));
    EXPECT_TRUE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    EXPECT_EQ(console.error.count(), 0) << joined(console.error);
    EXPECT_TRUE(anyContains(console.log, ">>> call calcEndturnPaths(0, 0, 50, 100, endturns[1])"));
    EXPECT_TRUE(anyContains(console.log, ">>> calcEndturnPaths completed"));
    ASSERT_FALSE(coils.first().outer.path.is_null());
    ASSERT_FALSE(coils.first().inner.path.is_null());
    // A circular arc of 30 degrees' chord on radius 100, lifted 10 mm: longer than the chord.
    const double chord = 2 * 100.0 * std::sin(qDegreesToRadians(15.0));
    EXPECT_GT(coils.first().outer.path.length(), chord);
    EXPECT_FALSE(winding->windingErrors() & (CoreMotorElement::InnerFilaments | CoreMotorElement::OuterFilaments
                                             | CoreMotorElement::EndWindingFailed));
}

TEST_F(EndturnScriptTest, APathMissingTheSlotCentreIsRefusedWithBothPoints)
{
    ASSERT_TRUE(load(archedScript(
        "Geom.segment(endturns[i].outer.begin.center, Geom.point3(endturns[i].outer.end.center.x + 2e-7, "
        "endturns[i].outer.end.center.y, endturns[i].outer.end.center.z))")));
    EXPECT_FALSE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    EXPECT_TRUE(anyContains(console.error, "Layout #1, phase A, outer S1.L1-S2.L1 CCW, for outer endturn the end of "
                                           "path: "))
        << joined(console.error);
    EXPECT_TRUE(anyContains(console.error, "must equal the center of slot: "));
    EXPECT_TRUE(coils.first().outer.path.is_null());
    EXPECT_FALSE(coils.first().inner.path.is_null());
    const WindingErrors errors = winding->windingErrors();
    EXPECT_TRUE(errors.testFlag(CoreMotorElement::OuterFilaments));
    EXPECT_FALSE(errors.testFlag(CoreMotorElement::InnerFilaments));
    EXPECT_TRUE(errors.testFlag(CoreMotorElement::EndWindingFailed));

    // Put right, the script clears the bits again.
    ASSERT_TRUE(load(archedScript("arch(endturns[i].outer)")));
    EXPECT_TRUE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    EXPECT_FALSE(winding->windingErrors() & (CoreMotorElement::OuterFilaments | CoreMotorElement::EndWindingFailed));
}

TEST_F(EndturnScriptTest, BrokenScriptsAreReportedAndLeaveTheWindingUsable)
{
    EXPECT_FALSE(load("function calcEndturnPaths(a, b, c, d, e, f, g) { return { paths: [ }; }"));
    EXPECT_FALSE(winding->isEndturnScriptLoaded());
    EXPECT_GE(console.error.count(), 1);
    EXPECT_FALSE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));

    console.error.clear();
    ASSERT_TRUE(load("function calcEndturnPaths(a, b, c, d, e, f) { return { paths: [] }; }"));
    EXPECT_FALSE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    EXPECT_TRUE(anyContains(console.error, "The function 'calcEndturnPaths' must has 7 arguments"))
        << joined(console.error);
    EXPECT_TRUE(coils.first().outer.path.is_null());

    console.error.clear();
    ASSERT_TRUE(load("function calcEndturnPaths(a, b, c, d, e, f, g) { return { paths: [] }; }"));
    EXPECT_FALSE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    EXPECT_TRUE(anyContains(console.error, "with the size(0) equals the size(1) of the array of endturns"))
        << joined(console.error);

    console.error.clear();
    ASSERT_TRUE(load("function calcEndturnPaths(a, b, c, d, e, f, g) { throw new Error('no room'); }"));
    EXPECT_FALSE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    EXPECT_TRUE(anyContains(console.error, ">>> calcEndturnPaths completed with error"));
    EXPECT_TRUE(anyContains(console.error, "no room"));

    EXPECT_FALSE(load("var nothing = 1;") && winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    EXPECT_TRUE(anyContains(console.error, "Not found function 'calcEndturnPaths'"));

    winding->setNumberTurns(7);
    EXPECT_EQ(winding->numberTurns(), 7);
}

// An edited script is read again on its own; what the old one got wrong is forgotten, and
// a broken edit says so and leaves the script unloaded.
TEST_F(EndturnScriptTest, AnEditedScriptIsReadAgainAndItsFaultsForgotten)
{
    ASSERT_TRUE(load(archedScript("Geom.segment(endturns[i].outer.begin.center, endturns[i].outer.begin.center)")));
    EXPECT_FALSE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));
    ASSERT_TRUE(winding->windingErrors().testFlag(CoreMotorElement::EndWindingFailed));

    QSignalSpy loaded(winding, &WindingObject::endturnsScriptLoaded);
    const auto rewrite = [this](const QString &text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text));
        file.write(text.toUtf8());
    };
    rewrite(archedScript("arch(endturns[i].outer)"));
    ASSERT_TRUE(loaded.wait(5000));
    EXPECT_TRUE(winding->isEndturnScriptLoaded());
    EXPECT_TRUE(anyContains(console.log, QStringLiteral("Script '%1' changed").arg(QDir::toNativeSeparators(path))))
        << joined(console.log);
    EXPECT_FALSE(winding->windingErrors() & (CoreMotorElement::OuterFilaments | CoreMotorElement::EndWindingFailed));
    EXPECT_TRUE(winding->calcEndturnPaths(1, 50.0, 100.0, coils));

    loaded.clear();
    console.error.clear();
    rewrite(QStringLiteral("function calcEndturnPaths(a, b, c, d, e, f, g) { return [ }"));
    EXPECT_FALSE(loaded.wait(1500));
    EXPECT_FALSE(winding->isEndturnScriptLoaded());
    EXPECT_GE(console.error.count(), 1);

    rewrite(archedScript("arch(endturns[i].outer)"));
    console.log.clear();
    loaded.wait(5000);
    loaded.clear();
    winding->reReadEndturnScript();
    EXPECT_EQ(loaded.count(), 1) << "read at once on request";
    EXPECT_TRUE(anyContains(console.log, QStringLiteral("Re-read Script '")));
}
