#include <QFile>
#include <QPointF>
#include <QTemporaryDir>
#include <cstring>
#include <gtest/gtest.h>

#include "analysis/MAT_Converter.h"

namespace {

// Writes the variables into a fresh Level 5 file and opens it again, so that each
// test sees what libmatio itself reads back.
class MatConverterTest : public ::testing::Test
{
protected:
    void write(const QVector<matvar_t *> &variables)
    {
        mat_t *mat = Mat_CreateVer(path.constData(), nullptr, MAT_FT_MAT5);
        ASSERT_NE(mat, nullptr);
        for (matvar_t *variable : variables) {
            ASSERT_NE(variable, nullptr);
            EXPECT_EQ(Mat_VarWrite(mat, variable, MAT_COMPRESSION_NONE), 0) << variable->name;
            Mat_VarFree(variable);
        }
        Mat_Close(mat);
    }

    MatVarPointer read(const char *name)
    {
        mat_t *mat = Mat_Open(path.constData(), MAT_ACC_RDONLY);
        EXPECT_NE(mat, nullptr);
        if (!mat)
            return MatVarPointer();
        MatVarPointer variable(Mat_VarRead(mat, name));
        Mat_Close(mat);
        return variable;
    }

    MatVarPointer roundTrip(matvar_t *variable)
    {
        const QByteArray name = variable ? QByteArray(variable->name) : QByteArray();
        write({variable});
        return read(name.constData());
    }

    static QVector<double> numbers(const matvar_t *variable)
    {
        const double *data = static_cast<const double *>(variable->data);
        return QVector<double>(data, data + variable->dims[0] * variable->dims[1]);
    }

    QTemporaryDir dir;
    QByteArray path = QFile::encodeName(dir.filePath("converted.mat"));
};

} // namespace

TEST_F(MatConverterTest, NumbersAreDoublesAndBoolsPlainBytes)
{
    write({MAT_Converter::matVar(2.5, "d"), MAT_Converter::matVar(7, "i"), MAT_Converter::matVar(true, "b"),
           MAT_Converter::matVar(QVector<double>{1, 2, 3}, "v"),
           MAT_Converter::matrix({1, 2, 3, 4, 5, 6}, 2, "m")});

    const MatVarPointer d = read("d");
    ASSERT_TRUE(d);
    EXPECT_EQ(d->class_type, MAT_C_DOUBLE);
    EXPECT_EQ(d->dims[0], 1u);
    EXPECT_EQ(d->dims[1], 1u);
    EXPECT_EQ(MAT_Converter::toVariant(d.data()), QVariant(2.5));

    const MatVarPointer i = read("i");
    ASSERT_TRUE(i);
    EXPECT_EQ(i->class_type, MAT_C_DOUBLE);
    EXPECT_EQ(numbers(i.data()), QVector<double>{7});

    const MatVarPointer b = read("b");
    ASSERT_TRUE(b);
    EXPECT_EQ(b->class_type, MAT_C_UINT8);
    EXPECT_EQ(b->data_type, MAT_T_UINT8);
    EXPECT_FALSE(b->isLogical);
    EXPECT_EQ(*static_cast<const quint8 *>(b->data), 1);

    const MatVarPointer v = read("v");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->dims[0], 1u);
    EXPECT_EQ(v->dims[1], 3u);
    EXPECT_EQ(MAT_Converter::toVariant(v.data()), QVariant(QVariantList{1.0, 2.0, 3.0}));

    // Column-major in the file, rows in the variant.
    const MatVarPointer m = read("m");
    ASSERT_TRUE(m);
    EXPECT_EQ(m->dims[0], 2u);
    EXPECT_EQ(m->dims[1], 3u);
    EXPECT_EQ(numbers(m.data()), (QVector<double>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(MAT_Converter::toVariant(m.data()),
              QVariant(QVariantList{QVariantList{1.0, 3.0, 5.0}, QVariantList{2.0, 4.0, 6.0}}));
}

TEST_F(MatConverterTest, TextIsUtf8WhenAsciiAndUtf16Otherwise)
{
    const QString plain = QStringLiteral("stator-rotor");
    const QString wide = QStringLiteral("Wicklung \u00e4\u00df \u03a9 \u6587");
    write({MAT_Converter::matVar(plain, "plain"), MAT_Converter::matVar(wide, "wide"),
           MAT_Converter::matVar(QString(), "none"), MAT_Converter::matVar(QByteArray("a. b"), "bytes")});

    const MatVarPointer ascii = read("plain");
    ASSERT_TRUE(ascii);
    EXPECT_EQ(ascii->class_type, MAT_C_CHAR);
    EXPECT_EQ(ascii->dims[0], 1u);
    EXPECT_EQ(ascii->dims[1], size_t(plain.size()));
    EXPECT_EQ(Mat_SizeOf(ascii->data_type), 1u);
    EXPECT_EQ(MAT_Converter::toVariant(ascii.data()).toString(), plain);

    const MatVarPointer utf16 = read("wide");
    ASSERT_TRUE(utf16);
    EXPECT_EQ(utf16->class_type, MAT_C_CHAR);
    EXPECT_EQ(utf16->dims[1], size_t(wide.size()));
    EXPECT_EQ(Mat_SizeOf(utf16->data_type), 2u);
    EXPECT_EQ(MAT_Converter::toVariant(utf16.data()).toString(), wide);

    const MatVarPointer none = read("none");
    ASSERT_TRUE(none);
    EXPECT_EQ(none->class_type, MAT_C_CHAR);
    EXPECT_EQ(MAT_Converter::toVariant(none.data()).toString(), QString());

    const MatVarPointer bytes = read("bytes");
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->class_type, MAT_C_CHAR);
    EXPECT_EQ(Mat_SizeOf(bytes->data_type), 1u);
    EXPECT_EQ(MAT_Converter::toVariant(bytes.data()).toString(), QStringLiteral("a. b"));
}

TEST_F(MatConverterTest, EmptyValuesKeepTheirNames)
{
    write({MAT_Converter::empty("Nothing"), MAT_Converter::matVar(QVariant(), "Invalid"),
           MAT_Converter::matVar(QVariantList(), "NoList")});

    mat_t *mat = Mat_Open(path.constData(), MAT_ACC_RDONLY);
    ASSERT_NE(mat, nullptr);
    size_t count = 0;
    char **names = Mat_GetDir(mat, &count);
    QStringList listed;
    for (size_t i = 0; i < count; ++i)
        listed << QString::fromUtf8(names[i]);
    Mat_Close(mat);
    EXPECT_EQ(listed, (QStringList{"Nothing", "Invalid", "NoList"}));

    const MatVarPointer nothing = read("Nothing");
    ASSERT_TRUE(nothing);
    EXPECT_EQ(nothing->dims[0] * nothing->dims[1], 0u);
    EXPECT_FALSE(MAT_Converter::toVariant(nothing.data()).isValid());
    EXPECT_EQ(MAT_Converter::toVariant(read("NoList").data()).toString(), QStringLiteral("list is empty"));
}

TEST_F(MatConverterTest, VariantsBecomeStructsCellsAndVectors)
{
    const QVariantMap nested{{"name", "yoke"}, {"height", 12.5}};
    const QVariantMap map{
        {"zeta", 3},
        {"alpha", true},
        {"numbers", QVariantList{1, 2.5, 4}},
        {"texts", QVariantList{"a", 2, QVariantMap{{"k", "v"}}}},
        {"nested", nested},
        {"point", QPointF(1, 2)},
    };
    const MatVarPointer props = roundTrip(MAT_Converter::matVar(map, "props"));
    ASSERT_TRUE(props);
    ASSERT_EQ(props->class_type, MAT_C_STRUCT);
    EXPECT_EQ(props->dims[0] * props->dims[1], 1u);

    // The fields stand in key order.
    QStringList fields;
    char *const *names = Mat_VarGetStructFieldnames(props.data());
    for (unsigned i = 0; i < Mat_VarGetNumberOfFields(props.data()); ++i)
        fields << QString::fromUtf8(names[i]);
    EXPECT_EQ(fields, (QStringList{"alpha", "nested", "numbers", "point", "texts", "zeta"}));

    const matvar_t *numbersField = Mat_VarGetStructFieldByName(props.data(), "numbers", 0);
    ASSERT_NE(numbersField, nullptr);
    EXPECT_EQ(numbersField->class_type, MAT_C_DOUBLE);
    EXPECT_EQ(numbers(numbersField), (QVector<double>{1, 2.5, 4}));
    const matvar_t *textsField = Mat_VarGetStructFieldByName(props.data(), "texts", 0);
    ASSERT_NE(textsField, nullptr);
    EXPECT_EQ(textsField->class_type, MAT_C_CELL);
    EXPECT_EQ(textsField->dims[1], 3u);

    const QVariantMap back = MAT_Converter::toVariant(props.data()).toMap();
    EXPECT_EQ(back.value("zeta"), QVariant(3.0));
    EXPECT_EQ(back.value("alpha"), QVariant(1.0));
    EXPECT_EQ(back.value("numbers"), QVariant(QVariantList{1.0, 2.5, 4.0}));
    EXPECT_EQ(back.value("texts"), QVariant(QVariantList{"a", 2.0, QVariantMap{{"k", "v"}}}));
    EXPECT_EQ(back.value("nested").toMap(), nested);
    EXPECT_EQ(back.value("point").toString(), QStringLiteral("Unsupported type 'QPointF'"));
}

TEST_F(MatConverterTest, OrderedStructsLeaveOutFailedFieldsAndArraysKeepThemEmpty)
{
    const MatVarPointer ordered = roundTrip(MAT_Converter::structVar(
        "Geometry", {{"motortype", MAT_Converter::matVar("stator-rotor", "motortype")},
                     {"broken", nullptr},
                     {"Ns", MAT_Converter::matVar(12, "Ns")}}));
    ASSERT_TRUE(ordered);
    ASSERT_EQ(Mat_VarGetNumberOfFields(ordered.data()), 2u);
    char *const *names = Mat_VarGetStructFieldnames(ordered.data());
    EXPECT_STREQ(names[0], "motortype");
    EXPECT_STREQ(names[1], "Ns");

    const MatVarPointer array = roundTrip(MAT_Converter::structArray(
        "SubdomainProperties", {"position", "fillcoef"},
        {{MAT_Converter::matVar("rotor1", "position"), MAT_Converter::matVar(0.9, "fillcoef")},
         {MAT_Converter::matVar("stator1", "position"), nullptr}}));
    ASSERT_TRUE(array);
    ASSERT_EQ(array->class_type, MAT_C_STRUCT);
    EXPECT_EQ(array->dims[0], 1u);
    EXPECT_EQ(array->dims[1], 2u);
    const QVariantList elements = MAT_Converter::toVariant(array.data()).toList();
    ASSERT_EQ(elements.size(), 2);
    EXPECT_EQ(elements.at(0).toMap().value("position").toString(), "rotor1");
    EXPECT_EQ(elements.at(0).toMap().value("fillcoef"), QVariant(0.9));
    EXPECT_EQ(elements.at(1).toMap().value("position").toString(), "stator1");
    EXPECT_FALSE(elements.at(1).toMap().value("fillcoef").isValid());
}

TEST_F(MatConverterTest, CellsHoldVariablesOfAnyKind)
{
    const MatVarPointer cell = roundTrip(MAT_Converter::matVar(
        QVector<matvar_t *>{MAT_Converter::matrix({0, 0, 1, 0}, 2, QString()), MAT_Converter::matVar("Iron", QString()),
                            MAT_Converter::matVar(QVector<matvar_t *>{}, QString())},
        "p"));
    ASSERT_TRUE(cell);
    ASSERT_EQ(cell->class_type, MAT_C_CELL);
    EXPECT_EQ(cell->dims[0], 1u);
    EXPECT_EQ(cell->dims[1], 3u);
    const matvar_t *first = Mat_VarGetCell(cell.data(), 0);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->dims[0], 2u);
    EXPECT_EQ(first->dims[1], 2u);
    const QVariantList back = MAT_Converter::toVariant(cell.data()).toList();
    ASSERT_EQ(back.size(), 3);
    EXPECT_EQ(back.at(1).toString(), "Iron");
    EXPECT_TRUE(back.at(2).toList().isEmpty());
}

// Results travel inside the document as the bytes of one-variable files.
TEST_F(MatConverterTest, AVariableSurvivesTheTripThroughBytes)
{
    const QVariantMap torque{{"values", QVariantList{1.5, 2.5}}, {"unit", "Nm"}};
    const MatVarPointer original(MAT_Converter::matVar(torque, "Torque"));
    const QByteArray bytes = MAT_Converter::toByteArray(original.data());
    EXPECT_TRUE(bytes.startsWith("MATLAB 5.0 MAT-file"));

    const MatVarPointer back = MAT_Converter::fromByteArray(bytes, "Torque");
    ASSERT_TRUE(back);
    EXPECT_EQ(MAT_Converter::toVariant(back.data()).toMap(), torque);

    EXPECT_FALSE(MAT_Converter::fromByteArray(bytes, "Speed"));
    EXPECT_FALSE(MAT_Converter::fromByteArray(QByteArray("no MAT file at all"), "Torque"));
    const MatVarPointer none = MAT_Converter::fromByteArray(QByteArray(), "Torque");
    ASSERT_TRUE(none);
    EXPECT_STREQ(none->name, "Torque");
    EXPECT_FALSE(MAT_Converter::toVariant(none.data()).isValid());
}
