#include "QmlScripting/JSEngine.h"
#include "QmlScripting/ScriptDescribeList.h"
#include "QmlScripting/ScriptObject.h"
#include "document/Document.h"
#include "geometry/Piece.h"
#include "geometry/Rotor.h"
#include "geometry/SimDomain.h"
#include "geometry/Stator.h"
#include "materials/BasicMaterials.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// The parts every stator script needs; the tests give getGeometry and the panel.
const char scriptHead[] = "var StatorGeom = function() {};\n"
                          "var stator = { slotWidth: 10, slotDepth: 20 };\n";

// A stator whose script is written for each test; console errors are collected.
class ElementScriptTest : public ::testing::Test
{
protected:
    ElementScriptTest()
        : stator(doc.stator())
        , errors(stator->console(), &ScriptConsole::signalError)
    {
    }

    QString write(const QString &body, const QString &name = QStringLiteral("stator.js"))
    {
        const QString path = folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(body.toUtf8());
        return path;
    }

    bool read(const QString &body) { return stator->readScript(write(QLatin1String(scriptHead) + body)); }

    QStringList errorTexts() const
    {
        QStringList texts;
        for (const QList<QVariant> &signal : errors)
            texts << signal.at(1).toString();
        return texts;
    }

    // The result of body 1 for a getGeometry that returns the expression.
    QVariantMap geometryOf(const QString &expression)
    {
        EXPECT_TRUE(read(QStringLiteral("stator.getGeometry = function(id) { return %1; };").arg(expression)));
        return stator->geometry(QStringLiteral("stator"), 1);
    }

    static PieceList piecesOf(const QVariantMap &result)
    {
        return result.value(QStringLiteral("pieces")).value<PieceList>();
    }

    QTemporaryDir folder;
    Document doc{nullptr};
    Stator *stator;
    QSignalSpy errors;
};

template <typename Material>
bool isA(const Piece &piece)
{
    return dynamic_cast<const Material *>(piece.material().data()) != nullptr;
}

} // namespace

TEST_F(ElementScriptTest, AScriptMustDefineItsGeometryObjectAndItsVariables)
{
    EXPECT_FALSE(stator->readScript(folder.filePath(QStringLiteral("missing.js"))));
    EXPECT_TRUE(errorTexts().last().startsWith(QStringLiteral("File "))) << errorTexts().last().toStdString();
    EXPECT_TRUE(errorTexts().last().endsWith(QStringLiteral("does not exist")));

    EXPECT_FALSE(stator->readScript(write(QStringLiteral("var stator = {};"))));
    EXPECT_EQ(errorTexts().last(), QStringLiteral("Script does not contain function 'StatorGeom'"));

    EXPECT_FALSE(stator->readScript(write(QStringLiteral("function StatorGeom() {} var other = {};"))));
    EXPECT_EQ(errorTexts().last(), QStringLiteral("Script does not contain variable 'stator'"));

    EXPECT_FALSE(stator->readScript(write(QStringLiteral("var StatorGeom = {}; var stator = {;"))));
    EXPECT_TRUE(errorTexts().last().startsWith(QStringLiteral("Error in file"))) << errorTexts().last().toStdString();
    EXPECT_EQ(stator->scriptErrorText(), errorTexts().last());
}

TEST_F(ElementScriptTest, TheScriptsVariablesBecomePropertiesOfTheScriptObject)
{
    ASSERT_TRUE(read(QStringLiteral("stator.getGeometry = function(id) { return Geom.box(1); };")));
    EXPECT_EQ(stator->scriptObject()->property("slotWidth").toInt(), 10);
    EXPECT_EQ(stator->scriptObject()->property("slotDepth").toInt(), 20);
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("StatorObject.objectName")).toString(),
              QStringLiteral("stator"));
    EXPECT_TRUE(stator->engine()->evaluate(QStringLiteral("scriptFile")).toString().endsWith("stator.js"));
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("motor.stator")).toQObject(), stator) << "the design is there";
    EXPECT_TRUE(stator->engine()->evaluate(QStringLiteral("StatorObject.isLower(StatorItem.ID1)")).toBool());

    QSignalSpy changed(stator, &MotorElement::scriptPropertyChanged);
    stator->scriptObject()->setProperty("slotWidth", 12);
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("stator.slotWidth")).toInt(), 12);
    EXPECT_EQ(changed.size(), 1);
}

TEST_F(ElementScriptTest, ScriptsReachTheBodiesByIdAndASpareOneOtherwise)
{
    ASSERT_TRUE(read(QString()));
    stator->items().at(1)->setHeight(33.0);
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("StatorObject.item(2).height")).toNumber(), 33.0);
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("StatorObject.item(StatorItem.ID1).objectName")).toString(),
              QStringLiteral("statorItem1"));
    const QJSValue spare = stator->engine()->evaluate(QStringLiteral("StatorObject.item(7)"));
    ASSERT_TRUE(spare.isQObject());
    EXPECT_EQ(spare.toQObject(), stator->engine()->evaluate(QStringLiteral("StatorObject.item('x')")).toQObject());
    EXPECT_FALSE(stator->items().contains(qobject_cast<StatorItem *>(spare.toQObject())));
}

TEST_F(ElementScriptTest, GeometryCallsTheScriptWithTheBodysIdAndReadsItsPieces)
{
    ASSERT_TRUE(read(QStringLiteral(
        "stator.getGeometry = function(id) { return { pieces: [Geom.piece(Geom.box(id, 1, 1), IronMaterial())],"
        " simDomain: { inner: 50, outer: 150 }, simRadialOuterDomain: 195 }; };")));
    const QVariantMap result = stator->geometry(QStringLiteral("stator"), 2);
    const PieceList pieces = piecesOf(result);
    ASSERT_EQ(pieces.size(), 1);
    EXPECT_NEAR(pieces.first().shape().volume(), 2.0, 1e-9);
    const SimDomain domain = result.value(QStringLiteral("simDomain")).value<SimDomain>();
    EXPECT_EQ(domain.inner, 50.0);
    EXPECT_EQ(domain.outer, 150.0);
    EXPECT_EQ(result.value(QStringLiteral("simRadialOuterDomain")).toDouble(), 195.0);
    EXPECT_TRUE(errorTexts().isEmpty()) << errorTexts().join('\n').toStdString();
}

TEST_F(ElementScriptTest, ShapesAloneHaveNoRoleAndInAnArrayTheDummyOne)
{
    PieceList pieces = piecesOf(geometryOf(QStringLiteral("Geom.box(1)")));
    ASSERT_EQ(pieces.size(), 1);
    EXPECT_TRUE(isA<EmptyMaterial>(pieces.first()));

    pieces = piecesOf(geometryOf(QStringLiteral("[Geom.box(1), Geom.piece(Geom.box(2), GeneralMaterial()), 7]")));
    ASSERT_EQ(pieces.size(), 2);
    EXPECT_TRUE(isA<DummyMaterial>(pieces.at(0)));
    EXPECT_FALSE(isA<DummyMaterial>(pieces.at(1)));
    EXPECT_TRUE(errorTexts().last().startsWith(QStringLiteral("Function 'getGeometry' returned array of an "
                                                              "unsupported type: ")));
}

TEST_F(ElementScriptTest, WhatDoesNotFitIsReportedAndTheRestStillCounts)
{
    QVariantMap result = geometryOf(QStringLiteral("{ foo: 1, simDomain: { inner: 1 }, Nmagnetsegments: 3,"
                                                   " pieces: [Geom.box(1), Geom.piece(Geom.box(1), 'red')] }"));
    EXPECT_EQ(result.value(QStringLiteral("Nmagnetsegments")).toInt(), 3);
    EXPECT_FALSE(result.contains(QStringLiteral("simDomain")));
    EXPECT_EQ(piecesOf(result).size(), 1);
    EXPECT_TRUE(errorTexts().contains(QStringLiteral("Function 'getGeometry' returned unsupported variable: foo")));
    EXPECT_TRUE(errorTexts().contains(QStringLiteral("'simDomain' must contain field 'outer'")));
    EXPECT_TRUE(errorTexts().contains(QStringLiteral("Function 'getGeometry' returned unsupported type: QmlShape")));

    errors.clear();
    EXPECT_TRUE(geometryOf(QStringLiteral("Geom.difference(Geom.box(1), Geom.box(2))")).isEmpty());
    EXPECT_TRUE(errorTexts().contains(QStringLiteral("Function 'getGeometry' returned empty shape")));

    EXPECT_TRUE(geometryOf(QStringLiteral("42")).isEmpty());
    EXPECT_TRUE(errorTexts().last().startsWith(QStringLiteral("Function 'getGeometry' returned unsupported type: ")));
    EXPECT_EQ(stator->scriptErrorText(), errorTexts().last());
}

TEST_F(ElementScriptTest, AFailingGetGeometryGivesNothingAndLeavesItsText)
{
    EXPECT_TRUE(geometryOf(QStringLiteral("undefinedName.x")).isEmpty());
    EXPECT_TRUE(stator->scriptErrorText().contains(QStringLiteral("undefinedName")));

    EXPECT_TRUE(stator->geometry(QStringLiteral("rotor"), 1).isEmpty());
    EXPECT_EQ(errorTexts().last(), QStringLiteral("Object 'rotor' does not exist"));

    ASSERT_TRUE(read(QString()));
    EXPECT_TRUE(stator->geometry(QStringLiteral("stator"), 1).isEmpty());
    EXPECT_EQ(errorTexts().last(), QStringLiteral("function 'stator.getGeometry' does not exist"));
    EXPECT_TRUE(stator->scriptErrorText().isEmpty()) << "a missing function is no failure of the script";
}

// Scripts chosen by name lie in the stator catalogue's folder; the test's own, named
// after its process since tests run side by side, goes again at its end.
class CatalogueScriptTest : public ElementScriptTest
{
protected:
    CatalogueScriptTest()
        : name(QStringLiteral("element-script-test-%1.js").arg(QCoreApplication::applicationPid()))
        , path(ScriptDescribeList::stators().folder() + QLatin1Char('/') + name)
    {
    }
    ~CatalogueScriptTest() override { QFile::remove(path); }

    void choose(const QString &body)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(QByteArray(scriptHead) + body.toUtf8());
        file.close();
        stator->setScript(name);
        ASSERT_TRUE(stator->isScriptLoaded()) << errorTexts().join('\n').toStdString();
    }

    const QString name;
    const QString path;
};

TEST_F(CatalogueScriptTest, ThePanelNamesTheEditedVariablesAndTheScriptKeepsItsValues)
{
    choose(QStringLiteral("function createStatorUI(widget) {"
                          "  var grid = QGridLayout(widget);"
                          "  var width = NumberEdit(widget); width.objectName = 'slotWidth';"
                          "  var again = NumberEdit(widget); again.objectName = 'slotWidth';"
                          "  var label = QLabel('Depth', widget); label.objectName = 'slotDepth';"
                          "  var plain = QLabel('plain', widget);"
                          "  grid.addWidgets(label, width); grid.addWidgets(again, plain);"
                          "  stator.slotWidth = 99;"
                          "}"));
    stator->scriptObject()->setProperty("slotWidth", 11);
    doc.setModified(false);
    doc.setGeometryModified(false);

    EXPECT_EQ(stator->scriptEditedProperties(), (QVariantMap{{QStringLiteral("slotWidth"), 11}}));
    EXPECT_EQ(stator->scriptObject()->property("slotWidth").toInt(), 11) << "the panel's own writes are undone";
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("stator.slotWidth")).toInt(), 11);
    EXPECT_FALSE(doc.isModified());
    EXPECT_FALSE(doc.isGeometryModified());
}

TEST_F(CatalogueScriptTest, APanelFunctionTakesExactlyOneArgument)
{
    choose(QStringLiteral("function createStatorUI(widget, more) {}"));
    EXPECT_TRUE(stator->scriptEditedProperties().isEmpty());
    EXPECT_EQ(errorTexts().last(), QStringLiteral("The function 'createStatorUI' must has 1 argument"));
}

TEST_F(CatalogueScriptTest, ValuesOfAMapGoOnlyToTheScriptTheyCameFrom)
{
    choose(QString());
    stator->setProperties({{QStringLiteral("scriptFile"), name},
                           {QStringLiteral("scriptProps"), QVariantMap{{QStringLiteral("slotWidth"), 5}}}});
    EXPECT_EQ(stator->scriptObject()->property("slotWidth").toInt(), 5);
    EXPECT_EQ(stator->properties().value(QStringLiteral("scriptFile")).toString(), name);

    stator->setProperties({{QStringLiteral("scriptFile"), QStringLiteral("no-such-script.js")},
                           {QStringLiteral("scriptName"), QStringLiteral("Another stator")},
                           {QStringLiteral("scriptProps"), QVariantMap{{QStringLiteral("slotWidth"), 7}}}});
    EXPECT_FALSE(stator->isScriptLoaded());
    EXPECT_TRUE(errorTexts().last().startsWith(QStringLiteral("For stator can't set the properties of script")));
    EXPECT_TRUE(errorTexts().last().endsWith(QStringLiteral("from other script 'Another stator'")));
    EXPECT_NE(stator->scriptObject()->property("slotWidth").toInt(), 7);
}

TEST_F(CatalogueScriptTest, TheCataloguesSpellingOfANameWins)
{
    choose(QString());
    const ScriptDescribe &first = ScriptDescribeList::stators().at(0);
    stator->setScript(first.script().toUpper());
    EXPECT_EQ(stator->script(), first.script());
    EXPECT_EQ(stator->nameScript(), first.name());
}

TEST_F(CatalogueScriptTest, AnEditedScriptIsReadAgainWithTheUsersValues)
{
    choose(QString());
    stator->scriptObject()->setProperty("slotWidth", 15);
    QSignalSpy loaded(stator, &MotorElement::scriptLoaded);
    QSignalSpy infos(stator->console(), &ScriptConsole::signalInfo);

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("var StatorGeom = {}; var stator = { slotWidth: 10, slotDepth: 20, toothTip: 2 };");
    file.close();

    ASSERT_TRUE(loaded.wait(5000));
    EXPECT_TRUE(stator->isScriptLoaded());
    EXPECT_EQ(stator->scriptObject()->property("slotWidth").toInt(), 15);
    EXPECT_EQ(stator->engine()->evaluate(QStringLiteral("stator.slotWidth")).toInt(), 15);
    EXPECT_EQ(stator->scriptObject()->property("toothTip").toInt(), 2);
    ASSERT_FALSE(infos.isEmpty());
    EXPECT_TRUE(infos.last().at(1).toString().startsWith(QStringLiteral("Script '")));
}

TEST_F(ElementScriptTest, TheStatorTakesItsSimulationDomainAndWarnsWhenItChanges)
{
    QSignalSpy warnings(stator->console(), &ScriptConsole::signalWarn);
    ASSERT_TRUE(read(QStringLiteral(
        "stator.getGeometry = function(id) { return { pieces: [], simDomain: { inner: 40 + id, outer: 140 },"
        " simRadialOuterDomain: 180 }; };")));
    stator->geometry(1);
    EXPECT_TRUE(warnings.isEmpty());
    EXPECT_EQ(stator->simDomain().inner, 41.0);
    EXPECT_EQ(stator->simRadialOuterDomain(), 180.0);

    stator->geometry(2);
    ASSERT_EQ(warnings.size(), 1);
    EXPECT_EQ(warnings.at(0).at(1).toString(), QStringLiteral("getGeometry() return 'simDomain.inner=42' which is not "
                                                               "equal to that returned from the previos call (41)"));
    EXPECT_EQ(stator->simDomain().inner, 42.0) << "the new value counts all the same";

    ASSERT_TRUE(read(QStringLiteral("stator.getGeometry = function(id) { return { pieces: [] }; };")));
    warnings.clear();
    stator->geometry(1);
    ASSERT_EQ(warnings.size(), 2);
    EXPECT_EQ(warnings.at(0).at(1).toString(), QStringLiteral("getGeometry() must return field 'simDomain'"));
    EXPECT_EQ(warnings.at(1).at(1).toString(),
              QStringLiteral("getGeometry() must return field 'simRadialOuterDomain'"));
}

TEST(RotorScriptTest, TheRotorTakesItsMagnetSegmentsAndKeepsThemWhenTheScriptIsSilent)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("rotor.js"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("var RotorGeom = {}; var rotor = { segments: 3 };\n"
               "rotor.getGeometry = function(id) { return id === 1"
               " ? { pieces: [], coefs3D: [1, 2], Nmagnetsegments: rotor.segments } : { pieces: [] }; };");
    file.close();
    Document doc(nullptr);
    Rotor *rotor = doc.rotor();
    ASSERT_TRUE(rotor->readScript(path));
    QSignalSpy warnings(rotor->console(), &ScriptConsole::signalWarn);

    rotor->geometry(1);
    EXPECT_EQ(rotor->magnetSegmentsRadialDirection(), 3);
    EXPECT_EQ(rotor->coefs3D().toList().size(), 2);
    EXPECT_TRUE(warnings.isEmpty());

    rotor->geometry(2);
    EXPECT_EQ(rotor->magnetSegmentsRadialDirection(), 3);
    ASSERT_EQ(warnings.size(), 2);
    EXPECT_EQ(warnings.at(0).at(1).toString(),
              QStringLiteral("Geometry script of rotor item 2 is not return 'coefs3D'"));
    EXPECT_EQ(warnings.at(1).at(1).toString(),
              QStringLiteral("Geometry script of rotor item 2 is not return 'Nmagnetsegments'"));
}
