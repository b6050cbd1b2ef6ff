#pragma once

#include <mutex>
#include <QStringList>
#include <cmath>
#include <gtest/gtest.h>

// Collects every log line written while it lives, from any thread.
class ShapeLog
{
public:
    ShapeLog()
        : m_previous(qInstallMessageHandler(&ShapeLog::handle))
    {
        const std::lock_guard locker(s_mutex);
        s_lines.clear();
    }
    ~ShapeLog() { qInstallMessageHandler(m_previous); }

    bool contains(const QString &text) const
    {
        const std::lock_guard locker(s_mutex);
        for (const QString &line : s_lines) {
            if (line.contains(text))
                return true;
        }
        return false;
    }

    QStringList lines() const
    {
        const std::lock_guard locker(s_mutex);
        return s_lines;
    }

private:
    static void handle(QtMsgType, const QMessageLogContext &, const QString &text)
    {
        const std::lock_guard locker(s_mutex);
        s_lines << text;
    }

    static inline std::mutex s_mutex;
    static inline QStringList s_lines;
    QtMessageHandler m_previous;
};

// Kernel measures of exact geometry agree with closed forms to many digits;
// those of approximated surfaces (fillets, general scales) to fewer.
inline ::testing::AssertionResult closeTo(double actual, double expected, double relative = 1e-7)
{
    const double tolerance = relative * std::max(1.0, std::abs(expected));
    if (std::abs(actual - expected) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << actual << " differs from " << expected << " by more than " << tolerance;
}
