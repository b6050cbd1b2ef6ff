#pragma once

#include <QObject>
#include <QString>

namespace Machine {
Q_NAMESPACE

// Bodies along the axis from the bottom: stator and rotor bodies alternate.
enum Type {
    UnknownType = 0,
    SR = 1,
    SRS = 2,
    SRSRS = 3,
    RSR = 4,
    RSRSR = 5,
};
Q_ENUM_NS(Type)

// The machine types that a catalogue entry serves; an entry holds an OR of these.
enum ApplicabilityFlag {
    UnknownApplicability = 0,
    ApplicabilitySR = 1,
    ApplicabilitySRS = 2,
    ApplicabilitySRSRS = 4,
    ApplicabilityRSR = 8,
    ApplicabilityRSRSR = 16,
    AnyType = 31,
};
Q_ENUM_NS(ApplicabilityFlag)

// The slot counts a design may have; beyond them no body script or winding layout is
// meant to work, and a file that holds another count is damaged.
constexpr int fewestSlots = 6;
constexpr int mostSlots = 501;
// The pole pairs a design may have, for the same reasons.
constexpr int mostPolePairs = 250;

// The text of a type in catalogue keys: "SR" and so on, "UnknowType" for anything else.
QString typeText(Type type);

// The flag of one type; none for UnknownType.
ApplicabilityFlag applicabilityOf(Type type);

// A type text of a catalogue, in any case; "RS" is the same as "SR" and "anyType"
// stands for all. Anything else is logged and gives no flag.
ApplicabilityFlag applicabilityFromString(const QString &text);

} // namespace Machine
