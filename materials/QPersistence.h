#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QHash>
#include <QSharedPointer>

// Root of objects that store themselves in a stream, copy themselves and can be made
// again from their class name. Root is the base class that copies are handed out as.
template <class Root>
class QPersistence
{
public:
    // What a concrete class registers under its name.
    struct Record
    {
        QByteArray className;
        int version;
        QSharedPointer<Root> (*create)();
    };

    // Keeps a record in the process-wide registry for as long as it lives; each concrete
    // class holds one as a static object, so that records come in at program start and
    // go at its end.
    class Registration
    {
    public:
        explicit Registration(const Record &record)
            : m_record(record)
        {
            records().insert(record.className, &record);
        }
        ~Registration() { records().remove(m_record.className); }
        Q_DISABLE_COPY(Registration)

    private:
        const Record &m_record;
    };

    virtual ~QPersistence() = default;

    virtual const Record &persistenceKey() const = 0;
    virtual void save(QDataStream &out) const { Q_UNUSED(out) }
    virtual void load(QDataStream &in) { Q_UNUSED(in) }
    virtual QSharedPointer<Root> clone() const = 0;

    // The record of that class name, or null if no class has registered it.
    static const Record *registered(const QByteArray &className) { return records().value(className); }

    // The creator of a record: a default object of the concrete class.
    template <class Concrete>
    static QSharedPointer<Root> createDefault()
    {
        return QSharedPointer<Concrete>::create();
    }

protected:
    QPersistence() = default;
    QPersistence(const QPersistence &) = default;
    QPersistence &operator=(const QPersistence &) = default;

private:
    static QHash<QByteArray, const Record *> &records()
    {
        static QHash<QByteArray, const Record *> registry;
        return registry;
    }
};
