#pragma once

#include <QDataStream>
#include <QObject>

class Document;

// Rated values of the machine as the user states them; no range, no rounding.
class RatedData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double supplyCurrent READ supplyCurrent WRITE setSupplyCurrent NOTIFY supplyCurrentChanged)
    Q_PROPERTY(double electricalPower READ electricalPower WRITE setElectricalPower NOTIFY electricalPowerChanged)
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged)
    Q_PROPERTY(double momentInertia READ momentInertia WRITE setMomentInertia NOTIFY momentInertiaChanged)

public:
    explicit RatedData(Document *document);

    Document *document() const { return m_document; }
    double supplyCurrent() const { return m_supplyCurrent; }
    void setSupplyCurrent(double value);
    double electricalPower() const { return m_electricalPower; }
    void setElectricalPower(double value);
    double speed() const { return m_speed; }
    void setSpeed(double value);
    double momentInertia() const { return m_momentInertia; }
    void setMomentInertia(double value);

    // The block of a document file; false for a block of a newer program.
    void save(QDataStream &out) const;
    bool load(QDataStream &in);

signals:
    void supplyCurrentChanged(double value);
    void electricalPowerChanged(double value);
    void speedChanged(double value);
    void momentInertiaChanged(double value);
    void changed();

private:
    template <typename Signal>
    void assign(double &field, double value, Signal signal);

    Document *m_document;
    double m_supplyCurrent = 0.0;
    double m_electricalPower = 0.0;
    double m_speed = 0.0;
    double m_momentInertia = 0.0;
};
