#pragma once

#include <QString>
#include <memory>

class QLockFile;

// Tells other instances of the program that a design is open for editing here. The
// lock lives in the user's runtime folder, named after the design's canonical path, so
// that nothing is written beside the design; a lock left by a crashed process is taken
// over.
class DesignFileLock
{
public:
    DesignFileLock();
    ~DesignFileLock();
    DesignFileLock(DesignFileLock &&other) noexcept;
    DesignFileLock &operator=(DesignFileLock &&other) noexcept;

    // False when another live process, or another window of this one, holds the design.
    bool lock(const QString &designPath);
    void unlock();
    bool isLocked() const { return m_lock != nullptr; }
    // The design this lock holds, canonical; empty when it holds none.
    QString designPath() const { return m_designPath; }
    // The process holding the design after a failed lock; 0 when unknown.
    qint64 holderProcess() const { return m_holderProcess; }

    static QString lockFilePath(const QString &designPath);

private:
    std::unique_ptr<QLockFile> m_lock;
    QString m_designPath;
    qint64 m_holderProcess = 0;
};
