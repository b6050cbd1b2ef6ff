#include <QSignalSpy>
#include <gtest/gtest.h>

#include "document/Airgap.h"
#include "document/Document.h"
#include "geometry/Stator.h"
#include "geometry/StatorItem.h"
#include "geometry/Piece.h"

TEST(AirgapLayers, AnyGapSetsAllFourThroughTheMaster)
{
    Document doc;
    QSignalSpy master(doc.airgap(1), &Airgap::numberLayersChanged);
    doc.airgap(3)->setNumberLayers(4);
    for (int id = 1; id <= 4; ++id)
        EXPECT_EQ(doc.airgap(id)->numberLayers(), 5) << id;
    EXPECT_EQ(master.count(), 1);

    doc.airgap(2)->setNumberLayers(100);
    EXPECT_EQ(doc.airgap(4)->numberLayers(), 9);
}

TEST(AirgapLayers, CorrectionToOddCountsFromThreeToNine)
{
    EXPECT_EQ(Airgap::correctedNumberLayers(4), 5);
    EXPECT_EQ(Airgap::correctedNumberLayers(8), 9);
    EXPECT_EQ(Airgap::correctedNumberLayers(10), 9);
    EXPECT_EQ(Airgap::correctedNumberLayers(0), 3);
    EXPECT_EQ(Airgap::correctedNumberLayers(-7), 3);
    EXPECT_EQ(Airgap::correctedNumberLayers(7), 7);
}

TEST(AirgapLayers, CorrectedRequestSignalsEvenWithoutChange)
{
    Document doc;
    QSignalSpy spy(doc.airgap(1), &Airgap::numberLayersChanged);
    doc.airgap(1)->setNumberLayers(3);
    EXPECT_EQ(spy.count(), 0);
    doc.airgap(1)->setNumberLayers(2);
    EXPECT_EQ(spy.count(), 1) << "an editor that showed 2 must learn that it is 3";
    EXPECT_EQ(doc.airgap(1)->numberLayers(), 3);
}

TEST(AirgapThickness, RoundedToFiveDecimalsAndShared)
{
    Document doc;
    QSignalSpy spy(doc.airgap(1), &Airgap::thicknessChanged);
    QSignalSpy changed(doc.airgap(1), &Airgap::airgapChanged);
    doc.airgap(2)->setThickness(1.0);
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(changed.count(), 1);
    doc.airgap(1)->setThickness(1.000001);
    EXPECT_EQ(spy.count(), 1);
    EXPECT_DOUBLE_EQ(doc.airgap(1)->thickness(), 1.0);
    doc.airgap(4)->setThickness(1.234567);
    for (int id = 1; id <= 4; ++id)
        EXPECT_DOUBLE_EQ(doc.airgap(id)->thickness(), 1.23457) << id;
}

TEST(AirgapThickness, ZeroIsStoredAndFlaggedAtTheNextCheck)
{
    Document doc;
    Airgap *gap = doc.airgap(1);
    gap->setThickness(0.0);
    EXPECT_DOUBLE_EQ(gap->thickness(), 0.0);
    EXPECT_TRUE(gap->elementErrors().isEmpty());

    QSignalSpy spy(gap, &Airgap::geometryErrorsChanged);
    doc.checkElements();
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(gap->elementErrors(), "Thickness of the airgap1 is zero.");
    EXPECT_EQ(doc.geometryErrorText(), "Thickness of the airgap1 is zero.");
    EXPECT_EQ(doc.errorText(), "Thickness of the airgap1 is zero.");
}

TEST(AirgapPosition, CountsFromTheBottomOfTheFirstBody)
{
    Document doc;
    const double statorHeight = doc.stator()->items().at(0)->height();
    EXPECT_DOUBLE_EQ(doc.airgap(1)->posBottom(), statorHeight);
    EXPECT_DOUBLE_EQ(doc.airgap(1)->posTop(), statorHeight + 3.0);
    EXPECT_DOUBLE_EQ(doc.airgap(1)->posMiddle(), statorHeight + 1.5);
}

// Each body reaches to the middle of its gaps; on a middle the stator is asked first.
TEST(AirgapPosition, ScopeAtAHeightIsTheBodyUpToTheMiddleOfItsGaps)
{
    Document doc;
    doc.setMachineType(Machine::RSR);
    const double lowerMiddle = doc.airgap(1)->posMiddle();
    const double upperMiddle = doc.airgap(2)->posMiddle();
    EXPECT_EQ(doc.scopeAt({7.0, 0.0}), quint32(Piece::Rotor1));
    EXPECT_EQ(doc.scopeAt({0.0, lowerMiddle - 1e-3}), quint32(Piece::Rotor1));
    EXPECT_EQ(doc.scopeAt({0.0, lowerMiddle}), quint32(Piece::Stator1));
    EXPECT_EQ(doc.scopeAt({0.0, upperMiddle}), quint32(Piece::Stator1));
    EXPECT_EQ(doc.scopeAt({0.0, upperMiddle + 1e-3}), quint32(Piece::Rotor2));
    EXPECT_EQ(doc.scopeAt({0.0, doc.height()}), quint32(Piece::Rotor2));
    EXPECT_EQ(doc.scopeAt({0.0, doc.height() + 1.0}), 0u);
    EXPECT_EQ(doc.scopeAt({0.0, -1.0}), 0u);
}

TEST(ErrorMessages, OneFlagOneMessage)
{
    EXPECT_EQ(geometryErrorMessage(CoreMotorElement::ThicknessZero), "Thickness of the %1 is zero.");
    for (int value : {2, 4, 8})
        EXPECT_EQ(geometryErrorMessage(GeometryErrors(value)), "Unknown geometry error!") << value;
    EXPECT_EQ(geometryErrorMessage(CoreMotorElement::ThicknessZero | CoreMotorElement::HeightZero),
              "Unknown geometry error!");
    EXPECT_EQ(materialErrorMessage(CoreMotorElement::IronNotFound | CoreMotorElement::MagnetNotFound),
              "Unknown material error!");
    EXPECT_EQ(windingErrorMessage(CoreMotorElement::EndWindingStale), "End winding needs to be regenerated");
    EXPECT_EQ(windingErrorMessage(CoreMotorElement::Unbalanced | CoreMotorElement::NotSupported),
              "Unknown winding error!");
    EXPECT_EQ(meshErrorMessage(MeshErrors(2)), "Unknown mesh error!");
    EXPECT_EQ(meshErrorMessage(CoreMotorElement::MeshBuildFailed), "Critical error while building mesh.");
}

TEST(ErrorMessages, ElementTextFollowsTheGivenOrderAndName)
{
    const GeometryErrors errors = CoreMotorElement::BodiesOverlap | CoreMotorElement::DiametersOrder;
    EXPECT_EQ(elementErrorText(errors, {CoreMotorElement::DiametersOrder, CoreMotorElement::BodiesOverlap}, "rotor",
                               geometryErrorMessage),
              "The outer diameter of the rotor must be larger than the inner diameter of the rotor.\n"
              "The rotor geometry dimensions are inconsistent: some bodies overlap.");
    EXPECT_EQ(elementErrorText(GeometryErrors(), {CoreMotorElement::DiametersOrder}, "rotor", geometryErrorMessage),
              QString());
}
