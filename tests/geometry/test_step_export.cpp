#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "geometry/servoce/solid.h"
#include "geometry/servoce/step.h"

using namespace servoce;

TEST(StepExport, EveryBodyKeepsItsVolumeAndNullBodiesAreLeftOut)
{
    QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("scene.step")).toStdString();
    const std::vector<coloured_shape> bodies{{box(10, 10, 10, false), 1.0, 0.0, 0.0},
                                             {shape(), 0.0, 1.0, 0.0},
                                             {box(5, 5, 5, false).translated(20, 0, 0), 0.0, 0.0, 1.0}};
    ASSERT_TRUE(write_step(bodies, path));
    QFile file(QString::fromStdString(path));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_EQ(text.count("MANIFOLD_SOLID_BREP"), 2) << "one shape for each body";
    EXPECT_EQ(text.count("STYLED_ITEM("), 2) << "each with its colour";
    EXPECT_NEAR(read_step(path).volume(), 1000.0, 1e-6) << "the first body as it was";
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path + ".part")));
}

TEST(StepExport, AnEmptySceneWritesAFileWithoutShapes)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("empty.step"));
    ASSERT_TRUE(write_step(std::vector<coloured_shape>{}, path.toStdString()));
    EXPECT_TRUE(QFile::exists(path));
}

TEST(StepExport, AFailedWriteLeavesTheFileThatWasThere)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("missing/scene.step"));
    EXPECT_FALSE(write_step(std::vector<coloured_shape>{{box(1, 1, 1, false)}}, path.toStdString()));
    EXPECT_FALSE(QFile::exists(path));
}
