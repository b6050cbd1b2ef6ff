#pragma once

#include <QString>
#include <memory>

#include "document/Document.h"
#include "geometry/Rotor.h"
#include "geometry/Stator.h"

// The bundled example (12 slots, 10 poles) grown with its slot count: diameters
// scale so that slot and pole shapes stay the same. Null when it does not load.
inline std::unique_ptr<Document> scaledExample(int slotCount)
{
    auto doc = std::make_unique<Document>(nullptr);
    doc->start();
    if (!doc->load(QStringLiteral(ZDS_SOURCE_DIR "/examples/new_motor.zva")))
        return nullptr;
    const double scale = slotCount / 12.0;
    for (MotorElement *element :
         {static_cast<MotorElement *>(doc->stator()), static_cast<MotorElement *>(doc->rotor())}) {
        const double inner = element->innerDiameter();
        const double outer = element->outerDiameter();
        element->setOuterDiameter(outer * scale);
        element->setInnerDiameter(inner * scale);
    }
    doc->stator()->setNumberSlots(slotCount);
    doc->rotor()->setNumberPolePairs(slotCount * 5 / 12);
    return doc;
}
