#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QTest>
#include <cmath>
#include <gtest/gtest.h>

#include "ui/QDRuler.h"
#include "ui/RuleZoomViewer.h"

// The rulers of the flat views: round steps that follow the zoom, ticks where the scene
// values stand on screen, and the y axis pointing up.

namespace {

bool isRoundStep(double step)
{
    const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-12));
    return std::abs(mantissa - 1.0) < 1e-9 || std::abs(mantissa - 2.0) < 1e-9 || std::abs(mantissa - 5.0) < 1e-9;
}

} // namespace

TEST(Rulers, TicksStandAtRoundValuesWhereTheSceneShowsThem)
{
    QGraphicsScene scene;
    scene.addRect(QRectF(0.0, 0.0, 100.0, 50.0));
    RuleZoomViewer view;
    view.setScene(&scene);
    view.resize(640, 400);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.zoomFit();

    for (QDRuler *ruler : {view.horizontalRuler(), view.verticalRuler()}) {
        const double step = ruler->tickStep();
        EXPECT_TRUE(isRoundStep(step)) << step;
        const QVector<double> ticks = ruler->tickValues();
        ASSERT_GE(ticks.size(), 2);
        for (int i = 1; i < ticks.size(); ++i) {
            EXPECT_NEAR(ticks[i] - ticks[i - 1], step, 1e-9 * step);
            EXPECT_GE(std::abs(ruler->pixelOf(ticks[i]) - ruler->pixelOf(ticks[i - 1])), 59.0);
        }
    }
    // The ruler's pixel of a value is where the view shows it.
    const QPoint corner = view.mapFromScene(QPointF(100.0, 50.0));
    EXPECT_NEAR(view.horizontalRuler()->pixelOf(100.0), corner.x(), 1.0);
    EXPECT_NEAR(view.verticalRuler()->pixelOf(50.0), corner.y(), 1.0);
    // Up is positive.
    EXPECT_LT(view.verticalRuler()->pixelOf(50.0), view.verticalRuler()->pixelOf(0.0));

    // Zoomed in, the steps get finer.
    const double before = view.horizontalRuler()->tickStep();
    view.zoomIn(8.0);
    EXPECT_LT(view.horizontalRuler()->tickStep(), before);
    EXPECT_TRUE(isRoundStep(view.horizontalRuler()->tickStep()));
}
