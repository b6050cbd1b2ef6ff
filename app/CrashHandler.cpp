#include "app/CrashHandler.h"

#include <QFile>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include "app/Logging.h"

namespace {

// Paths are prepared outside the handler: a signal handler must not allocate.
char runLogPath[4096];
char crashLogPath[4096];

void copyPath(char *target, size_t size, const QString &path)
{
    const QByteArray bytes = QFile::encodeName(path);
    const size_t length = qMin(size - 1, size_t(bytes.size()));
    std::memcpy(target, bytes.constData(), length);
    target[length] = '\0';
}

// "dd.MM.yyyy hh:mm:ss.zzz" without QDateTime, which isn't safe in a handler.
int formatNow(char *buffer, size_t size)
{
    timeval tv{};
    gettimeofday(&tv, nullptr);
    tm local{};
    localtime_r(&tv.tv_sec, &local);
    return std::snprintf(buffer, size, "%02d.%02d.%04d %02d:%02d:%02d.%03d", local.tm_mday, local.tm_mon + 1,
                         local.tm_year + 1900, local.tm_hour, local.tm_min, local.tm_sec, int(tv.tv_usec / 1000));
}

void appendToFile(const char *path, const char *text, int length)
{
    if (path[0] == '\0' || length <= 0)
        return;
    const int fd = ::open(path, O_WRONLY | O_CREAT | O_APPEND, 0644);
    if (fd < 0)
        return;
    ssize_t ignored = ::write(fd, text, size_t(length));
    (void)ignored;
    ::close(fd);
}

} // namespace

void setCrashLogFilePath(const QString &path)
{
    copyPath(runLogPath, sizeof runLogPath, path);
    copyPath(crashLogPath, sizeof crashLogPath, logsPath() + QStringLiteral("/Crashed_Zolvane_DS.log"));
}

void unhandleCrashHandler(int signalNumber)
{
    char now[64];
    formatNow(now, sizeof now);
    char line[1024];

    // The crashing thread may hold the log mutex: never wait for it.
    if (logMutex().try_lock()) {
        const int length = std::snprintf(line, sizeof line,
                                          "%s Critical:  ****** Application crashed ******\n (%s:L%d, func:%s)\n",
                                          now, "CrashHandler.cpp", __LINE__, "unhandleCrashHandler");
        appendToFile(runLogPath, line, length);
        logMutex().unlock();
    }

    const int length = std::snprintf(line, sizeof line, "%s Crash process pid:%d\n", now, int(::getpid()));
    appendToFile(crashLogPath, line, length);
    _exit(128 + signalNumber);
}

void installCrashHandler()
{
    struct sigaction action{};
    action.sa_handler = unhandleCrashHandler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESETHAND;
    for (int signalNumber : {SIGSEGV, SIGABRT, SIGFPE, SIGILL, SIGBUS})
        sigaction(signalNumber, &action, nullptr);
}
