#include "base/UserMessage.h"

#include <QMutex>
#include <QMutexLocker>

namespace UserMessage {

namespace {

QMutex presenterMutex;
Presenter criticalPresenter;

} // namespace

void setCriticalPresenter(Presenter presenter)
{
    QMutexLocker locker(&presenterMutex);
    criticalPresenter = std::move(presenter);
}

void critical(const QString &text)
{
    Presenter presenter;
    {
        QMutexLocker locker(&presenterMutex);
        presenter = criticalPresenter;
    }
    if (presenter)
        presenter(text);
}

} // namespace UserMessage
