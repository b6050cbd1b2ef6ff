#pragma once

#include <QString>
#include <QVector>

struct TransistorDescribe
{
    QString fileName; // full path; empty for the built-in entry
    QString name;     // the file's complete base name
    QString description;
    QString type;     // only the built-in entry states it
};

// The power switches offered by the drive settings: the built-in ideal switch first,
// then the files of the library folder "/Transistor" in name order.
class TransistorDescriptorEngine
{
public:
    // Reads "<libraryPath>/Transistor"; the program's catalogue is instance().
    explicit TransistorDescriptorEngine(const QString &libraryPath);

    // The catalogue of the library folder of this program, built on first use.
    static const TransistorDescriptorEngine &instance();

    const QVector<TransistorDescribe> &transistors() const { return m_transistors; }
    // Null for a name the catalogue lacks.
    const TransistorDescribe *describe(const QString &name) const;

private:
    QVector<TransistorDescribe> m_transistors;
};
