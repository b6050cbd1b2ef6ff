#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "analysis/MAT_Converter.h"
#include "analysis/MatExchangeFile.h"

// The file between the program and a solver step: what is written under a name is
// read back under that name, whatever the variable was called before.
TEST(MatExchangeFile, VariablesAreWrittenUnderTheirNamesInOrder)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("exchange.mat");
    const MatVarPointer kept(MAT_Converter::matVar(QStringLiteral("state"), QStringLiteral("Private_out")));

    ASSERT_TRUE(MatExchangeFile::write(path, {{"Private", kept},
                                              {"speed", MatVarPointer(MAT_Converter::matVar(1000.0, "speed"))},
                                              {"Coefs3D", MatVarPointer(MAT_Converter::empty("Coefs3D"))}}));

    const auto variables = MatExchangeFile::read(path);
    ASSERT_TRUE(variables.has_value());
    EXPECT_EQ(variables->size(), 3);
    EXPECT_EQ(MAT_Converter::toVariant(variables->value("Private").data()).toString(), "state");
    EXPECT_EQ(MAT_Converter::toVariant(variables->value("speed").data()).toDouble(), 1000.0);
    EXPECT_TRUE(variables->contains("Coefs3D"));
    EXPECT_STREQ(kept->name, "Private_out") << "the given variable is left as it was";

    mat_t *mat = Mat_Open(QFile::encodeName(path).constData(), MAT_ACC_RDONLY);
    ASSERT_NE(mat, nullptr);
    size_t count = 0;
    char **names = Mat_GetDir(mat, &count);
    ASSERT_EQ(count, 3u);
    EXPECT_STREQ(names[0], "Private");
    EXPECT_STREQ(names[2], "Coefs3D");
    Mat_Close(mat);
}

TEST(MatExchangeFile, AMissingVariableIsWrittenWithoutItAndReported)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("exchange.mat");
    EXPECT_FALSE(MatExchangeFile::write(path, {{"Geometry", MatVarPointer()},
                                               {"Mesh", MatVarPointer(MAT_Converter::matVar(2.0, "Mesh"))}}));
    const auto variables = MatExchangeFile::read(path);
    ASSERT_TRUE(variables.has_value());
    EXPECT_EQ(variables->keys(), QList<QString>({"Mesh"}));
}

TEST(MatExchangeFile, WhatIsNoMatFileCantBeRead)
{
    QTemporaryDir dir;
    EXPECT_FALSE(MatExchangeFile::read(dir.filePath("missing.mat")).has_value());
    EXPECT_FALSE(MatExchangeFile::write(dir.filePath("no/such/folder/exchange.mat"), {}));
}
