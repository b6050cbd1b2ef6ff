#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <gtest/gtest.h>

#include "base/Polylabel.h"
#include "materials/BasicMaterials.h"
#include "materials/MagnetMaterial.h"
#include "materials/WindingMaterial.h"

namespace {

const int imageSize = 200;

// A section view: scale pixels per unit, y axis up, the origin in the middle.
class SectionView
{
public:
    explicit SectionView(double scale)
        : m_scale(scale)
        , m_image(imageSize, imageSize, QImage::Format_ARGB32)
    {
        m_image.fill(Qt::transparent);
    }

    const QImage &draw(const AbstractMaterial &material, const QPainterPath &path, bool noOutline = false,
                       const QRectF &clipRect = QRectF(-100, -100, 200, 200))
    {
        QPainter painter(&m_image);
        painter.translate(imageSize / 2, imageSize / 2);
        painter.scale(m_scale, -m_scale);
        material.draw(&painter, path, m_scale, clipRect, noOutline);
        return m_image;
    }

private:
    double m_scale;
    QImage m_image;
};

QPainterPath rectangle(double left, double bottom, double width, double height)
{
    QPainterPath path;
    path.addRect(left, bottom, width, height);
    return path;
}

// Pixels of that colour, give or take a little for blending, in the device rectangle.
int countColour(const QImage &image, const QColor &colour, const QRect &where = QRect(0, 0, imageSize, imageSize))
{
    int count = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() == 255 && std::abs(pixel.red() - colour.red()) <= 2
                && std::abs(pixel.green() - colour.green()) <= 2 && std::abs(pixel.blue() - colour.blue()) <= 2)
                ++count;
        }
    }
    return count;
}

// Painted pixels of none of the given colours: what a pattern adds to a fill.
int countOther(const QImage &image, const QList<QColor> &colours, const QRect &where)
{
    int count = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            count += pixel.alpha() > 0 && !colours.contains(pixel);
        }
    }
    return count;
}

int countPainted(const QImage &image, const QRect &where)
{
    int count = 0;
    for (int y = where.top(); y <= where.bottom(); ++y) {
        for (int x = where.left(); x <= where.right(); ++x)
            count += image.pixelColor(x, y).alpha() > 0;
    }
    return count;
}

QRect boxOfColour(const QImage &image, const QColor &colour)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (countColour(image, colour, QRect(x, y, 1, 1)))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

} // namespace

TEST(MaterialPixmap, RoundSwatchWithTheKindsLetterCachedByKindAndSize)
{
    QPixmapCache::clear();
    const IronMaterial iron;
    const QPixmap swatch = pixmapOf(iron, 16);
    ASSERT_EQ(swatch.size(), QSize(16, 16));
    const QImage image = swatch.toImage().convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(image.pixelColor(15, 15).alpha(), 0);
    EXPECT_GT(countColour(image, iron.color(), QRect(0, 0, 16, 16)), 40);
    EXPECT_GT(countPainted(image, QRect(0, 0, 16, 16)) - countColour(image, iron.color(), QRect(0, 0, 16, 16)), 0);

    EXPECT_EQ(pixmapOf(IronMaterial({0.9}, 1.0), 16).cacheKey(), swatch.cacheKey());
    EXPECT_NE(pixmapOf(ConductorMaterial(), 16).cacheKey(), swatch.cacheKey());
    EXPECT_EQ(pixmapOf(iron, 32).size(), QSize(32, 32));
}

TEST(MaterialDraw, FillsWithTheBrushAndOutlinesUnlessAsked)
{
    const IronMaterial iron;
    const QPainterPath square = rectangle(-4, -4, 8, 8);
    const QColor outline = iron.color().darker(150);

    SectionView outlined(10.0);
    const QImage withOutline = outlined.draw(iron, square);
    EXPECT_EQ(withOutline.pixelColor(100, 100), iron.color());
    EXPECT_GT(countColour(withOutline, outline), 100);
    EXPECT_EQ(countPainted(withOutline, QRect(0, 0, 50, 200)), 0);

    SectionView bare(10.0);
    const QImage withoutOutline = bare.draw(iron, square, true);
    EXPECT_EQ(countColour(withoutOutline, outline), 0);
    EXPECT_GT(countColour(withoutOutline, iron.color()), 1500);
}

TEST(MaterialDraw, WindingMarksItsLayerWithAMarkOfConstantScreenSize)
{
    const QPainterPath slot = rectangle(-8, -2, 16, 4);
    SectionView near(10.0);
    const QRect nearMark = boxOfColour(near.draw(WindingMaterial(2), slot), Qt::black);
    SectionView far(5.0);
    const QRect farMark = boxOfColour(far.draw(WindingMaterial(2), rectangle(-16, -4, 32, 8)), Qt::black);

    ASSERT_TRUE(nearMark.isValid());
    EXPECT_NEAR(nearMark.center().x(), 100, 3);
    EXPECT_NEAR(nearMark.center().y(), 100, 3);
    EXPECT_LT(nearMark.width(), 60);
    EXPECT_NEAR(farMark.width(), nearMark.width(), 2);
    EXPECT_NEAR(farMark.height(), nearMark.height(), 2);

    SectionView unmarked(10.0);
    EXPECT_FALSE(boxOfColour(unmarked.draw(WindingMaterial(0), slot), Qt::black).isValid());
}

TEST(MaterialDraw, AxialMagnetShowsItsFieldOnlyAlongTheAxis)
{
    const QPainterPath square = rectangle(-4, -4, 8, 8);
    MagnetParallelMaterial sideways(90.0);
    sideways.setAxial(true);
    SectionView nothing(10.0);
    EXPECT_EQ(countPainted(nothing.draw(sideways, square), QRect(0, 0, imageSize, imageSize)), 0);

    MagnetParallelMaterial outward(0.0);
    outward.setAxial(true);
    SectionView dots(10.0);
    EXPECT_GT(countColour(dots.draw(outward, square), QColor(96, 96, 255)), 1000);

    MagnetParallelMaterial inward(180.0);
    inward.setAxial(true);
    SectionView crosses(10.0);
    const QImage image = crosses.draw(inward, square);
    EXPECT_GT(countColour(image, QColor(255, 96, 96)), 1000);
    EXPECT_GT(countOther(image, {QColor(255, 96, 96)}, QRect(62, 62, 76, 76)), 50);
}

TEST(MaterialDraw, FieldPatternStaysInsideTheBodyAndTheExposedRectangle)
{
    const QPainterPath square = rectangle(-4, -4, 8, 8);
    const QList<QColor> fill = {QColor(96, 96, 255), QColor(255, 96, 96)};
    // Away from the vertical line where the fill turns from blue to red.
    const QRect upperLeft(62, 62, 30, 30);
    const QRect lowerRight(110, 110, 28, 28);

    const MagnetParallelMaterial parallel(0.0);
    SectionView whole(10.0);
    const QImage image = whole.draw(parallel, square, true);
    EXPECT_GT(countOther(image, fill, upperLeft), 10);
    EXPECT_GT(countOther(image, fill, lowerRight), 10);
    EXPECT_EQ(countPainted(image, QRect(0, 0, 58, 200)), 0);
    EXPECT_EQ(countPainted(image, QRect(142, 0, 58, 200)), 0);

    // Exposed: the upper left quarter of the body, in section units.
    SectionView quarter(10.0);
    const QImage quarterImage = quarter.draw(parallel, square, true, QRectF(-5, 0, 5, 5));
    EXPECT_GT(countOther(quarterImage, fill, upperLeft), 10);
    EXPECT_EQ(countOther(quarterImage, fill, lowerRight), 0);

    const MagnetRadialMaterial radial(Magnetization::Direction::Toward, QPointF(-6, 0));
    SectionView rings(10.0);
    const QImage radialImage = rings.draw(radial, square, true);
    const QColor shade = radial.brush().gradient()->stops().first().second;
    EXPECT_GT(countOther(radialImage, {shade, radial.brush().gradient()->stops().last().second}, upperLeft), 10);
    EXPECT_EQ(countPainted(radialImage, QRect(0, 0, 58, 200)), 0);
}

TEST(Polylabel, FindsTheInnerPointFarthestFromTheOutline)
{
    const QPolygonF square({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    const QPointF centre = polylabel({square}, 0.01);
    EXPECT_NEAR(centre.x(), 5.0, 0.05);
    EXPECT_NEAR(centre.y(), 5.0, 0.05);

    const QPointF strip = polylabel({QPolygonF({{0, 0}, {100, 0}, {100, 10}, {0, 10}})}, 0.01);
    EXPECT_NEAR(strip.y(), 5.0, 0.05);
    EXPECT_GE(strip.x(), 5.0);
    EXPECT_LE(strip.x(), 95.0);

    // An L: the centroid lies outside the thin arms. The best point is in the bend, as far
    // from the outer walls as from the inner corner (4, 4): x = sqrt(2) (4 - x).
    const QPolygonF ell({{0, 0}, {40, 0}, {40, 4}, {4, 4}, {4, 40}, {0, 40}});
    const QPointF corner = polylabel({ell}, 0.01);
    const double bend = 4.0 * std::sqrt(2.0) / (1.0 + std::sqrt(2.0));
    EXPECT_NEAR(corner.x(), bend, 0.02);
    EXPECT_NEAR(corner.y(), bend, 0.02);
}

TEST(Polylabel, HolesAreNeverTheAnswer)
{
    const QPolygonF outer({{0, 0}, {30, 0}, {30, 30}, {0, 30}});
    const QPolygonF hole({{8, 8}, {22, 8}, {22, 22}, {8, 22}});
    const QPointF point = polylabel({outer, hole}, 0.01);
    EXPECT_FALSE(QRectF(8, 8, 14, 14).contains(point));
    // The ring around the hole is 8 wide; best are its corners, as far from the outline as
    // from the hole's corner: d = sqrt(2) (8 - d).
    const double toOutline = std::min({point.x(), point.y(), 30 - point.x(), 30 - point.y()});
    EXPECT_NEAR(toOutline, 8.0 * std::sqrt(2.0) / (1.0 + std::sqrt(2.0)), 0.02);
}

TEST(Polylabel, DegenerateInput)
{
    EXPECT_EQ(polylabel({}), QPointF(0, 0));
    EXPECT_EQ(polylabel({QPolygonF()}), QPointF(0, 0));
    EXPECT_EQ(polylabel({QPolygonF(QVector<QPointF>{{1, 2}, {5, 2}})}), QPointF(1, 2));
    // A precision of nothing still ends.
    const QPointF centre = polylabel({QPolygonF({{0, 0}, {2, 0}, {2, 2}, {0, 2}})}, 0.0);
    EXPECT_NEAR(centre.x(), 1.0, 1e-6);
}
