#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "analysis/MagnetostaticAnalysis.h"
#include "ui/Controls/ProgressIndicator.h"
#include "ui/DocumentWindow.h"
#include "ui/GlassWidget.h"
#include "ui/ProtectedBanner.h"

// What lies over a window while it can't be worked with: the pane of a running
// analysis and the banner of a protected file.

namespace {

QImage filled(const QSize &size, const QColor &color)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

TEST(GlassWidgetTest, CoversItsParentFollowsItsSizeAndChangesItsTexts)
{
    QWidget parent;
    parent.resize(400, 300);
    parent.setStyleSheet(QStringLiteral("background: white;"));
    parent.show();
    GlassWidget glass(QStringLiteral("Working..."), &parent);
    EXPECT_EQ(glass.geometry(), parent.rect());
    EXPECT_TRUE(glass.spinner()->isAnimated());
    EXPECT_FALSE(glass.spinner()->isHidden());

    parent.resize(500, 320);
    EXPECT_EQ(glass.size(), QSize(500, 320));
    // The frosted picture of the parent: darker than the white it covers.
    const QImage background = glass.pixmap(Qt::ReturnByValue).toImage();
    ASSERT_EQ(background.size(), QSize(500, 320));
    const QColor middle = background.pixelColor(250, 160);
    EXPECT_LT(middle.red(), 255);
    EXPECT_GT(middle.red(), 200);

    glass.setStatus(QStringLiteral("step 1/2"));
    glass.setMessage(QStringLiteral("Done"), QStringLiteral("all good"));
    EXPECT_EQ(glass.message(), QStringLiteral("Done"));
    EXPECT_EQ(glass.note(), QStringLiteral("all good"));
    EXPECT_TRUE(glass.status().isEmpty());

    glass.setMessage(QString(), QString());
    EXPECT_TRUE(glass.spinner()->isHidden());
}

TEST(ProgressIndicatorTest, TurnsOnlyWhileAnimated)
{
    ProgressIndicator spinner;
    spinner.setAnimationDelay(5);
    spinner.startAnimation();
    QTest::qWait(40);
    EXPECT_NE(spinner.angle(), 0);
    spinner.stopAnimation();
    const int angle = spinner.angle();
    QTest::qWait(20);
    EXPECT_EQ(spinner.angle(), angle);
    EXPECT_FALSE(spinner.isAnimated());
}

TEST(ProtectedBannerTest, OffersTheWayBackOnlyInSlaveMode)
{
    const QImage picture = filled(QSize(200, 100), Qt::darkBlue);
    ProtectedBanner plain(picture, false);
    EXPECT_TRUE(plain.textLabel()->text().contains(QStringLiteral("File is protected from viewing")));
    EXPECT_FALSE(plain.textLabel()->text().contains(QStringLiteral("<a ")));

    ProtectedBanner slave(picture, true);
    slave.resize(800, 600);
    slave.show();
    EXPECT_TRUE(slave.textLabel()->text().contains(QStringLiteral("Zolvane main window")));
    QSignalSpy spy(&slave, &QLabel::linkActivated);
    emit slave.textLabel()->linkActivated(QStringLiteral("Go back the Zolvane main window"));
    EXPECT_EQ(spy.count(), 1);
    // The text stands in the middle, over the picture.
    const QRect text = slave.textLabel()->geometry();
    EXPECT_NEAR(text.center().x(), 400, 2);
    EXPECT_LE(text.width(), 700);
}

TEST(DocumentWindowOverlayTest, ARunningAnalysisCoversTheWindowUntilItStops)
{
    DocumentWindow window(Document::GeometryMotor);
    window.resize(800, 600);
    window.show();
    MagnetostaticAnalysis *analysis = window.document()->analysis();
    emit analysis->analysisStarted();
    auto *glass = window.findChild<GlassWidget *>();
    ASSERT_NE(glass, nullptr);
    EXPECT_EQ(glass->message(), QStringLiteral("Analysis running..."));
    emit analysis->analysisProgress(QStringLiteral("runMStimestepping (2/2)"));
    EXPECT_EQ(glass->status(), QStringLiteral("runMStimestepping (2/2)"));

    EXPECT_TRUE(glass->findChild<QPushButton *>(QStringLiteral("buttonStopAnalysis")));

    emit analysis->analysisStoped();
    EXPECT_EQ(window.findChild<GlassWidget *>(), nullptr);
}

} // namespace
