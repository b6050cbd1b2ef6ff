#pragma once

#include <QString>

// Writes that lose nothing: a file is written beside its target and takes its place
// only when complete, a target that its owner made read-only is not replaced, and a
// write that fails says so in the log with the path and the reason.
namespace SafeWrite {

// Whether the file at `path` may be written; when not, the reason is logged as a
// failed write.
bool mayWrite(const QString &path);

// Logs the critical "Error: ..." line of a failed write; returns false, for the caller
// to pass on.
bool failed(const QString &path, const QString &reason);

// For writers that take a path of their own (matio, Open CASCADE): a temporary name
// beside the target, removed unless committed, and the move over the target.
class Replacement
{
public:
    explicit Replacement(const QString &target);
    ~Replacement();
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    QString temporaryPath() const { return m_temporary; }

    // Flushes the written file to the disk and moves it over the target in one step;
    // false, logged, when it can't.
    bool commit();

private:
    QString m_target;
    QString m_temporary;
    bool m_committed = false;
};

} // namespace SafeWrite
