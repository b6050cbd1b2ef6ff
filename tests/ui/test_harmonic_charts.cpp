#include <QImage>
#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QValueAxis>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "ui/HarmonicBarChart.h"
#include "ui/HarmonicFactorView.h"
#include "ui/MmfSpectrumView.h"
#include "winding/LayoutGenerator.h"

// The two harmonic charts of a winding, drawn for twelve slots and ten poles with
// tooth coils in two layers side by side.

namespace {

Winding::LayoutSettings toothCoils(int numberSlots, int polePairs)
{
    Winding::LayoutSettings settings;
    settings.numberSlots = numberSlots;
    settings.polePairs = polePairs;
    settings.numberLayers = 2;
    settings.layersOrientation = Winding::LeftRight;
    return settings;
}

Winding::Layout generate(const Winding::LayoutSettings &settings)
{
    return Winding::LayoutGenerator(settings).baseLayout().value().layout;
}

int pixelsOfColour(const QImage &image, const QColor &colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y).rgb() == colour.rgb() ? 1 : 0;
    }
    return count;
}

// Shows the window of the chart as a user would see it and counts the pixels of its bars.
int barPixels(QWidget &window, HarmonicBarChart &chart)
{
    window.resize(640, 400);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    const QImage image = chart.grab().toImage();
    EXPECT_FALSE(image.isNull());
    return pixelsOfColour(image, chart.barSet()->color());
}

// The drawn height of each category's bar: the tallest run of bar pixels in its columns.
QVector<int> drawnHeights(HarmonicBarChart &chart, int categories)
{
    const QImage image = chart.grab().toImage();
    const QRectF plot = chart.chart()->plotArea();
    const QRgb bar = chart.barSet()->color().rgb();
    QVector<int> heights(categories, 0);
    for (int x = int(plot.left()); x < int(plot.right()); ++x) {
        int height = 0;
        for (int y = int(plot.top()); y < int(plot.bottom()); ++y)
            height += image.pixel(x, y) == bar ? 1 : 0;
        int &tallest = heights[int((x - plot.left()) * categories / plot.width())];
        tallest = std::max(tallest, height);
    }
    return heights;
}

} // namespace

TEST(HarmonicFactorViewTest, ShowsTheFactorsOfTheOddHarmonicsAndDeletesItselfOnClose)
{
    const Winding::LayoutSettings settings = toothCoils(12, 5);
    auto *view = new HarmonicFactorView(settings, generate(settings).at(Winding::A));
    QPointer<HarmonicFactorView> guard(view);
    EXPECT_EQ(view->windowTitle(), "Harmonic winding factors");

    HarmonicBarChart *chart = view->findChild<HarmonicBarChart *>("chartView");
    ASSERT_EQ(chart, view->chartView());
    QtCharts::QBarSet *factors = chart->barSet();
    EXPECT_EQ(factors->label(), "Factor");
    EXPECT_EQ(chart->orderAxis()->titleText(), "Harmonic");
    EXPECT_EQ(chart->valueAxis()->titleText(), "Winding factor");
    ASSERT_EQ(factors->count(), 40);
    ASSERT_EQ(chart->orderAxis()->count(), 40);
    EXPECT_EQ(chart->orderAxis()->at(0), "1");
    EXPECT_EQ(chart->orderAxis()->at(39), "79");
    // sin^2 of 15 degrees times the order: a phase alone keeps its triplen harmonics.
    const double expected[] = {0.933013, 0.5, 0.066987, 0.066987, 0.5, 0.933013};
    for (int i = 0; i < 6; ++i)
        EXPECT_NEAR(factors->at(i), expected[i], 5e-7) << "harmonic " << 2 * i + 1;

    EXPECT_GT(barPixels(*view, *chart), 500);
    view->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(guard.isNull());
}

TEST(HarmonicFactorViewTest, HoveringABarShowsItsValueWithRoundingNoiseAsZero)
{
    // Coils that span two thirds of a pole pitch cancel the third harmonic.
    const Winding::LayoutSettings settings = toothCoils(6, 2);
    HarmonicFactorView view(settings, generate(settings).at(Winding::A));
    view.setAttribute(Qt::WA_DeleteOnClose, false);
    QtCharts::QBarSet *factors = view.chartView()->barSet();
    ASSERT_LT(std::abs(factors->at(1)), 1e-7);

    auto *label = view.chartView()->findChild<QLabel *>("labelValue");
    ASSERT_TRUE(label);
    EXPECT_FALSE(label->isVisibleTo(&view));
    emit factors->hovered(true, 0);
    EXPECT_TRUE(label->isVisibleTo(&view));
    EXPECT_EQ(label->text(), "0.866025");
    emit factors->hovered(true, 1);
    EXPECT_EQ(label->text(), "0");
    emit factors->hovered(false, 1);
    EXPECT_FALSE(label->isVisibleTo(&view));
}

TEST(MmfSpectrumViewTest, ShowsTheMmfByMechanicalOrderWithTheSubharmonicAndTheSeventh)
{
    const Winding::LayoutSettings settings = toothCoils(12, 5);
    const Winding::Layout layout = generate(settings);
    MmfSpectrumView view;
    view.setWinding(settings, layout, 10, 2.0);

    QtCharts::QBarSet *bars = view.barSet();
    ASSERT_EQ(bars->count(), 24);
    ASSERT_EQ(view.orderAxis()->count(), 24);
    EXPECT_EQ(view.orderAxis()->at(4), "5");
    // Four coils of ten turns a phase: 1.5 x 4/pi x 40 x 2 A x kw / 10.
    const double working = 1.5 * 4.0 / M_PI * 40 * 2.0 * 0.933013 / 10;
    EXPECT_NEAR(bars->at(4), working, 1e-4);
    EXPECT_NEAR(bars->at(6), working * 5 / 7, 1e-4);
    EXPECT_NEAR(bars->at(0), working * 5 * 0.066987 / 0.933013, 1e-4);
    for (int order : {2, 3, 4, 6, 8, 9, 12})
        EXPECT_NEAR(bars->at(order - 1), 0.0, 1e-9) << "order " << order;
    EXPECT_GE(view.valueAxis()->max(), working);

    EXPECT_GT(barPixels(view, view), 500);
    const QVector<int> heights = drawnHeights(view, 24);
    EXPECT_EQ(std::max_element(heights.cbegin(), heights.cend()) - heights.cbegin(), 4) << "order 5 is the tallest";
    EXPECT_NEAR(double(heights.at(6)) / heights.at(4), 5.0 / 7.0, 0.05);
    EXPECT_EQ(heights.at(1), 0);
    EXPECT_GT(heights.at(0), heights.at(10));

    // Another winding replaces the bars: one coil a phase has no more room than its slots.
    Winding::LayoutSettings fullPitch;
    fullPitch.numberSlots = 6;
    fullPitch.polePairs = 1;
    view.setWinding(fullPitch, generate(fullPitch), 10, 2.0);
    EXPECT_EQ(bars->count(), 12);
    EXPECT_EQ(view.orderAxis()->count(), 12);
    EXPECT_NEAR(bars->at(0), 1.5 * 4.0 / M_PI * 10 * 2.0 / 2, 1e-9);
}
