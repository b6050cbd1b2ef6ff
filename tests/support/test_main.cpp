#include <QApplication>
#include <gtest/gtest.h>

// Elements are QObjects that need an application object; tests run without a display.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName("Quorlan");
    QCoreApplication::setApplicationName("Zolvane Design Studio Tests");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
