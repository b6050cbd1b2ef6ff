#include "QmlScripting/ScriptDescribeList.h"
#include "QtPrinters.h"
#include "base/Machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

const Machine::Type allTypes[] = {Machine::SR, Machine::SRS, Machine::SRSRS, Machine::RSR, Machine::RSRSR};

// A catalogue folder with one script file in it.
struct CatalogueFolder {
    CatalogueFolder()
        : list(dir.path())
    {
        QFile script(dir.filePath(QStringLiteral("Present.js")));
        script.open(QIODevice::WriteOnly);
    }
    void load(const QByteArray &json)
    {
        QFile file(dir.filePath(QStringLiteral(".stators.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(json);
        file.close();
        list.load(QStringLiteral(".stators.json"));
    }
    QStringList names() const
    {
        QStringList names;
        for (const ScriptDescribe &entry : list)
            names << entry.name();
        return names;
    }
    QString absolute(const QString &name) const { return QFileInfo(dir.filePath(name)).absoluteFilePath(); }

    QTemporaryDir dir;
    ScriptDescribeList list;
};

} // namespace

TEST(MachineTest, ApplicabilityTextsIgnoreCaseAndRsIsSr)
{
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("SR")), Machine::ApplicabilitySR);
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("rs")), Machine::ApplicabilitySR);
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("Srs")), Machine::ApplicabilitySRS);
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("SRSRS")), Machine::ApplicabilitySRSRS);
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("rsr")), Machine::ApplicabilityRSR);
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("RSRSR")), Machine::ApplicabilityRSRSR);
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("ANYTYPE")), Machine::AnyType);
    EXPECT_EQ(Machine::applicabilityFromString(QStringLiteral("SRR")), Machine::UnknownApplicability);
    EXPECT_EQ(Machine::applicabilityFromString(QString()), Machine::UnknownApplicability);
}

TEST(MachineTest, TypeTextsAreThoseOfTheCatalogueKeys)
{
    EXPECT_EQ(Machine::typeText(Machine::UnknownType), QStringLiteral("UnknowType"));
    EXPECT_EQ(Machine::typeText(Machine::SRSRS), QStringLiteral("SRSRS"));
    EXPECT_EQ(Machine::typeText(Machine::RSR), QStringLiteral("RSR"));
    EXPECT_EQ(Machine::typeText(static_cast<Machine::Type>(9)), QStringLiteral("UnknowType"));
}

TEST(ScriptCatalogueTest, EntriesKeepTheFileOrderWithSeparatorsAndMissingScripts)
{
    CatalogueFolder folder;
    folder.load(R"([
        {"name": "First", "script": "Present.js", "applicability": ["SR", "RSR"]},
        "not an entry",
        {"name": "separator", "script": "Present.js", "applicability": ["anyType"]},
        {"name": "Second", "script": "Absent.js", "applicability": ["anyType"]},
        {"script": "present.JS"}
    ])");

    ASSERT_EQ(folder.names(), (QStringList{QStringLiteral("First"), QStringLiteral("separator"),
                                           QStringLiteral("Second"), QString()}));
    const ScriptDescribe &first = folder.list.at(0);
    EXPECT_EQ(first.script(), QStringLiteral("Present.js"));
    EXPECT_TRUE(first.fileExists());
    EXPECT_EQ(first.applicability(), Machine::ApplicabilitySR | Machine::ApplicabilityRSR);

    const ScriptDescribe &separator = folder.list.at(1);
    EXPECT_TRUE(separator.isSeparator());
    EXPECT_TRUE(separator.script().isEmpty()) << "a separator takes nothing but its name";
    EXPECT_EQ(separator.applicability(), 0);

    EXPECT_FALSE(folder.list.at(2).fileExists());
    EXPECT_EQ(folder.list.at(2).script(), QStringLiteral("Absent.js"));
    EXPECT_FALSE(folder.list.at(3).fileExists()) << "the script name is taken as written";
    EXPECT_EQ(folder.list.folder(), folder.dir.path());
}

TEST(ScriptCatalogueTest, ApplicabilityByMachineType)
{
    CatalogueFolder folder;
    folder.load(R"([
        {"name": "Rotor between stators", "applicability": ["srs", "SRSRS"]},
        {"name": "Anything", "applicability": ["anyType"]},
        {"name": "Nothing said"},
        {"name": "All listed", "applicability": ["SR", "SRS", "SRSRS", "RSR", "RSRSR"]}
    ])");

    const ScriptDescribe &between = folder.list.at(0);
    EXPECT_FALSE(between.isApplicable(Machine::SR));
    EXPECT_TRUE(between.isApplicable(Machine::SRS));
    EXPECT_TRUE(between.isApplicable(Machine::SRSRS));
    EXPECT_FALSE(between.isApplicable(Machine::RSR));
    EXPECT_FALSE(between.isApplicable(Machine::UnknownType));
    for (Machine::Type type : allTypes) {
        EXPECT_TRUE(folder.list.at(1).isApplicable(type));
        EXPECT_FALSE(folder.list.at(2).isApplicable(type));
        EXPECT_TRUE(folder.list.at(3).isApplicable(type));
    }
    EXPECT_TRUE(folder.list.at(1).isApplicable(Machine::UnknownType));
    EXPECT_TRUE(folder.list.at(3).isApplicable(Machine::UnknownType)) << "all five are any type";
}

TEST(ScriptCatalogueTest, PicturesAndManualsAreAbsoluteAndLowerCased)
{
    CatalogueFolder folder;
    folder.load(R"([{
        "name": "Slotted",
        "Picture": "Pictures/Slotted.PNG",
        "picture_SRS_Yokeless": "srs-yokeless.png",
        "MANUAL_sr_yoke": "Manuals/SR.pdf",
        "manual": "general.pdf"
    }])");
    const ScriptDescribe &entry = folder.list.at(0);

    EXPECT_EQ(entry.pictures().keys(),
              (QStringList{QStringLiteral("picture"), QStringLiteral("picture_srs_yokeless")}));
    EXPECT_EQ(entry.picture(Machine::UnknownType, ElementTypes::Yoke),
              folder.absolute(QStringLiteral("pictures/slotted.png")));
    EXPECT_EQ(entry.picture(Machine::SRS, ElementTypes::UnknownType),
              folder.absolute(QStringLiteral("pictures/slotted.png")));
    EXPECT_EQ(entry.picture(Machine::SRS, ElementTypes::Yokeless), folder.absolute(QStringLiteral("srs-yokeless.png")));
    EXPECT_EQ(entry.picture(Machine::SRS, ElementTypes::Yoke), QStringLiteral(":/prohibition.png"))
        << "a machine without its own picture is not shown the general one";

    EXPECT_EQ(entry.manual(Machine::SR, ElementTypes::Yoke), folder.absolute(QStringLiteral("manuals/sr.pdf")));
    EXPECT_EQ(entry.manual(Machine::UnknownType, ElementTypes::UnknownType),
              folder.absolute(QStringLiteral("general.pdf")));
    EXPECT_TRUE(entry.manual(Machine::RSR, ElementTypes::Yoke).isEmpty());

    const ScriptDescribe bare;
    EXPECT_TRUE(bare.picture(Machine::UnknownType, ElementTypes::UnknownType).isEmpty());
}

TEST(ScriptCatalogueTest, ALookUpFindsTheFirstEntryOfAScriptInAnyCase)
{
    CatalogueFolder folder;
    folder.load(R"([
        {"name": "One", "script": "Shared.js"},
        {"name": "Two", "script": "shared.js"}
    ])");

    EXPECT_EQ(folder.list.findScript(QStringLiteral("SHARED.JS")).name(), QStringLiteral("One"));

    const ScriptDescribe &unknown = folder.list.findScript(QStringLiteral("Other.js"));
    EXPECT_EQ(unknown.name(), QStringLiteral("Script not found"));
    EXPECT_FALSE(unknown.fileExists());
    for (Machine::Type type : allTypes)
        EXPECT_TRUE(unknown.isApplicable(type));
}

TEST(ScriptCatalogueTest, ACatalogueWithoutEntriesHoldsTheEmptyListEntry)
{
    const QByteArray unusable[] = {"[]", "[1, 2]", "{\"name\": \"not in an array\"}", "[{\"name\": "};
    for (const QByteArray &json : unusable) {
        CatalogueFolder folder;
        folder.load(json);
        ASSERT_EQ(folder.names(), QStringList{QStringLiteral("Cannot load script config")}) << json.constData();
        for (Machine::Type type : allTypes)
            EXPECT_FALSE(folder.list.at(0).isApplicable(type));
    }

    ScriptDescribeList missing(QStringLiteral("/no/such/folder"));
    missing.load(QStringLiteral(".rotors.json"));
    EXPECT_EQ(missing.size(), 1);
    EXPECT_EQ(missing.at(0).name(), QStringLiteral("Cannot load script config"));
}

TEST(ScriptCatalogueTest, HoldsOnlyScriptsInsideItsFolder)
{
    const ScriptDescribeList list(QStringLiteral("/opt/zds/assets/scripts/stator"));
    for (const char *inside : {"Slotted.js", "sub/Slotted.js", "sub/../Slotted.js", "./Slotted.js"})
        EXPECT_TRUE(list.holds(QString::fromLatin1(inside))) << inside;
    for (const char *outside : {"", "../rotor/Rotor.js", "../../../../tmp/x.js", "sub/../../x.js", "/tmp/x.js",
                                "/opt/zds/assets/scripts/stator/Slotted.js", "..", "../stator2/x.js"})
        EXPECT_FALSE(list.holds(QString::fromLatin1(outside))) << outside;
}

TEST(ScriptCatalogueTest, AFailedReloadKeepsTheEntriesThatWereRead)
{
    CatalogueFolder folder;
    folder.load(R"([{"name": "Kept"}])");
    folder.load("[{");
    EXPECT_EQ(folder.names(), QStringList{QStringLiteral("Kept")});
}

// The catalogues that ship with the program, read once through the process-wide lists.
TEST(ScriptCatalogueTest, TheShippedCataloguesListScriptsForEveryMachine)
{
    ScriptDescribeList::setScriptsRoot(QStringLiteral(ZDS_SOURCE_DIR "/assets/scripts"));

    const ScriptDescribeList *lists[] = {&ScriptDescribeList::stators(), &ScriptDescribeList::rotors(),
                                         &ScriptDescribeList::endturns()};
    for (const ScriptDescribeList *list : lists) {
        SCOPED_TRACE(list->folder().toStdString());
        for (Machine::Type type : allTypes) {
            const bool served = std::any_of(list->begin(), list->end(), [type](const ScriptDescribe &entry) {
                return !entry.isSeparator() && entry.isApplicable(type);
            });
            EXPECT_TRUE(served) << Machine::typeText(type).toStdString();
        }
        for (const ScriptDescribe &entry : *list) {
            EXPECT_TRUE(entry.isSeparator() || entry.script().endsWith(QLatin1String(".js")))
                << entry.name().toStdString();
            EXPECT_TRUE(entry.isSeparator() || entry.fileExists()) << entry.name().toStdString() << " names no shipped file";
        }
    }
    EXPECT_EQ(&ScriptDescribeList::stators(), lists[0]) << "read once";
    EXPECT_EQ(ScriptDescribeList::stators().folder(), QStringLiteral(ZDS_SOURCE_DIR "/assets/scripts/stator"));
    EXPECT_EQ(ScriptDescribeList::endturns().at(0).script(), QStringLiteral("WindingEndturns.js"));
}
