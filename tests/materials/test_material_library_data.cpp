#include <QDir>
#include <QFile>
#include <QTextStream>
#include <cmath>
#include <gtest/gtest.h>

#include "materials/MaterialIronEngine.h"

// Library files against the published tables they were copied from, so that a slip of
// transcription shows. The collected tables sit beside the repository.
namespace {

const QString libraryPath = QStringLiteral(ZDS_SOURCE_DIR "/assets/materials/Iron/Electrical steel/");
const QString publishedPath = QStringLiteral(ZDS_SOURCE_DIR "/../shared/material-data/");
const double mu0 = 4e-7 * M_PI;

// The rows of table n of a collected file: the comma-separated lines after its header
// row, up to the first blank line.
QList<QList<double>> publishedTable(const QString &fileName, int n)
{
    QFile file(publishedPath + fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QTextStream stream(&file);
    const QString opening = QStringLiteral("# [Table %1]").arg(n);
    QString line;
    do
        line = stream.readLine();
    while (!stream.atEnd() && !line.startsWith(opening));
    // Notes, then the header row.
    do
        line = stream.readLine();
    while (!stream.atEnd() && line.startsWith('#'));
    QList<QList<double>> rows;
    while (!stream.atEnd()) {
        line = stream.readLine().trimmed();
        if (line.isEmpty())
            break;
        QList<double> row;
        for (const QString &field : line.split(',')) {
            bool isNumber = false;
            row << field.toDouble(&isNumber);
            EXPECT_TRUE(isNumber) << line.toStdString();
        }
        rows << row;
    }
    return rows;
}

class PublishedData : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!QDir(publishedPath).exists())
            GTEST_SKIP() << "no collected tables at " << publishedPath.toStdString();
    }

    static MaterialIronDescribe steel(const QString &name) { return MaterialIronEngine::readFromFile(libraryPath + name + ".txt"); }

    // The library curve holds the published points first, then goes on at the slope mu0.
    static void expectCurveStartsWith(const MaterialIronDescribe &iron, const QList<QList<double>> &published)
    {
        ASSERT_FALSE(published.isEmpty());
        ASSERT_EQ(iron.curveH.size(), published.size() + 1);
        for (int i = 0; i < published.size(); ++i) {
            EXPECT_EQ(iron.curveH.at(i), published.at(i).at(0)) << i;
            EXPECT_EQ(iron.curveB.at(i), published.at(i).at(1)) << i;
        }
        const int last = published.size();
        const double polarisation = iron.curveB.at(last) - mu0 * iron.curveH.at(last);
        EXPECT_NEAR(polarisation, iron.curveB.at(last - 1) - mu0 * iron.curveH.at(last - 1), 1e-6);
    }
};

} // namespace

TEST_F(PublishedData, M270_35AHoldsTheTypicalDataOfItsSheet)
{
    const MaterialIronDescribe iron = steel("M270-35A");
    expectCurveStartsWith(iron, publishedTable("M270-35A.txt", 1));

    const QList<QList<double>> losses = publishedTable("M270-35A.txt", 2);
    ASSERT_EQ(losses.size(), 47);
    ASSERT_EQ(iron.lossFrequency.size(), losses.size());
    for (int i = 0; i < losses.size(); ++i) {
        EXPECT_EQ(iron.lossFrequency.at(i), losses.at(i).at(0)) << i;
        EXPECT_EQ(iron.lossFluxDensity.at(i), losses.at(i).at(1)) << i;
        EXPECT_EQ(iron.lossValue.at(i), losses.at(i).at(2)) << i;
    }
}

TEST_F(PublishedData, M270_50AHoldsEveryFrequencyButTheUnexplainedZero)
{
    const MaterialIronDescribe iron = steel("M270-50A");
    QList<QList<double>> curve = publishedTable("M270-50A_thyssenkrupp.txt", 1);
    for (QList<double> &point : curve)
        point = point.mid(0, 2); // the polarisation column stays out
    expectCurveStartsWith(iron, curve);

    QList<QList<double>> losses;
    for (const QList<double> &row : publishedTable("M270-50A_thyssenkrupp.txt", 2)) {
        if (row.at(0) != 0.0)
            losses << row;
    }
    ASSERT_EQ(iron.lossFrequency.size(), losses.size());
    for (int i = 0; i < losses.size(); ++i) {
        EXPECT_EQ(iron.lossFrequency.at(i), losses.at(i).at(0)) << i;
        EXPECT_EQ(iron.lossFluxDensity.at(i), losses.at(i).at(1)) << i;
        EXPECT_EQ(iron.lossValue.at(i), losses.at(i).at(2)) << i;
    }
    EXPECT_EQ(iron.massDensity, 7600.0);
}

TEST_F(PublishedData, NO20GivesTheFluxDensityOfThePublishedPolarisation)
{
    const MaterialIronDescribe iron = steel("NO20");
    const QList<QList<double>> sheet = publishedTable("NO20.txt", 1); // f, J, H, P
    ASSERT_EQ(sheet.size(), 95);
    ASSERT_EQ(iron.lossFrequency.size(), sheet.size());
    QList<QList<double>> curve = {{0.0, 0.0}};
    for (int i = 0; i < sheet.size(); ++i) {
        const QList<double> &row = sheet.at(i);
        EXPECT_EQ(iron.lossFrequency.at(i), row.at(0)) << i;
        EXPECT_NEAR(iron.lossFluxDensity.at(i), row.at(1) + mu0 * row.at(2), 1e-6) << i;
        EXPECT_EQ(iron.lossValue.at(i), row.at(3)) << i;
        if (row.at(0) == 50.0)
            curve << QList<double>{row.at(2), row.at(1) + mu0 * row.at(2)};
    }
    ASSERT_EQ(iron.curveH.size(), curve.size() + 1);
    for (int i = 0; i < curve.size(); ++i) {
        EXPECT_EQ(iron.curveH.at(i), curve.at(i).at(0)) << i;
        EXPECT_NEAR(iron.curveB.at(i), curve.at(i).at(1), 1e-6) << i;
    }
}
