#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRep_Tool.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Pnt.hxx>
#include <gtest/gtest.h>

#include "geometry/Piece.h"
#include "geometry/PoleArrangement.h"

namespace {

gp_Pnt pointOf(const servoce::shape &vertex)
{
    return BRep_Tool::Pnt(TopoDS::Vertex(vertex.Shape()));
}

servoce::shape vertexAt(double x, double y, double z)
{
    return servoce::shape(BRepBuilderAPI_MakeVertex(gp_Pnt(x, y, z)).Vertex());
}

} // namespace

TEST(Piece, TranslateMovesItsShapeAndLeavesCopiesWhereTheyWere)
{
    const Piece original(vertexAt(1.0, 2.0, 3.0), nullptr, Piece::Stator2);
    Piece moved = original;

    moved.translate(10.0, 0.0, -3.0);

    const gp_Pnt movedPoint = pointOf(moved.shape());
    EXPECT_DOUBLE_EQ(movedPoint.X(), 11.0);
    EXPECT_DOUBLE_EQ(movedPoint.Y(), 2.0);
    EXPECT_DOUBLE_EQ(movedPoint.Z(), 0.0);
    EXPECT_EQ(moved.scope(), Piece::Stator2);
    const gp_Pnt originalPoint = pointOf(original.shape());
    EXPECT_DOUBLE_EQ(originalPoint.X(), 1.0);
    EXPECT_DOUBLE_EQ(originalPoint.Z(), 3.0);
}

TEST(Piece, NullShapeStaysNullWhenTranslated)
{
    Piece piece;
    ASSERT_TRUE(piece.shape().is_null());

    piece.translate(1.0, 2.0, 3.0);

    EXPECT_TRUE(piece.shape().is_null());
    EXPECT_TRUE(piece.shape().Shape().IsNull());
}

TEST(PoleArrangement, TextsRoundTripAndUnknownHasNone)
{
    const QVector<QPair<PoleArrangement::Type, QString>> table{
        {PoleArrangement::NN, "N-N"},         {PoleArrangement::NS, "N-S"},
        {PoleArrangement::NSNS, "N-S-N-S"},   {PoleArrangement::NSSN, "N-S-S-N"},
        {PoleArrangement::NNSS, "N-N-S-S"},   {PoleArrangement::NNNN, "N-N-N-N"},
    };
    for (const auto &entry : table) {
        EXPECT_EQ(PoleArrangement::text(entry.first), entry.second);
        EXPECT_EQ(PoleArrangement::fromText(entry.second), entry.first);
    }
    EXPECT_TRUE(PoleArrangement::text(PoleArrangement::Unknown).isEmpty());
    EXPECT_EQ(PoleArrangement::fromText("S-N"), PoleArrangement::Unknown);
    EXPECT_EQ(PoleArrangement::fromText(QString()), PoleArrangement::Unknown);
}
