#include <QApplication>
#include <gtest/gtest.h>

#include "document/DocumentTypes.h"
#include "meshing/NetgenMesher.h"

// Elements are QObjects that need an application object; tests run without a display.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName("Quorlan");
    QCoreApplication::setApplicationName("Zolvane Design Studio Tests");
    // As the first document of the program does: engines made without one in a test
    // know the design's classes too.
    registerDocumentTypes();
    const NetgenSession netgen;
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
