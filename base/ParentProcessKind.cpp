#include "base/ParentProcessKind.h"

#include <atomic>

namespace {

std::atomic<ParentProcessKind> processParent{ParentProcessKind::None};

} // namespace

ParentProcessKind parentProcessKind()
{
    return processParent.load();
}

void setParentProcessKind(ParentProcessKind kind)
{
    processParent.store(kind);
}
