#include "base/UserMessage.h"

#include <mutex>

namespace UserMessage {

namespace {

std::mutex presenterMutex;
Presenter criticalPresenter;

} // namespace

void setCriticalPresenter(Presenter presenter)
{
    const std::lock_guard locker(presenterMutex);
    criticalPresenter = std::move(presenter);
}

void critical(const QString &text)
{
    Presenter presenter;
    {
        const std::lock_guard locker(presenterMutex);
        presenter = criticalPresenter;
    }
    if (presenter)
        presenter(text);
}

} // namespace UserMessage
