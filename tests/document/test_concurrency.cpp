#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include <tbb/global_control.h>

#include "document/Document.h"
#include "geometry/Stator.h"

// Readers on other threads while the main thread changes what they read. Each test
// checks what the readers saw; built with ZDS_SANITIZE_THREAD they also prove that
// every shared member is read and written under its lock.

namespace {

constexpr int readerCount = 4;
constexpr int leastReads = 100;

// Runs `read` on readerCount threads of their own (plain threads, whose start and join
// ThreadSanitizer sees, unlike a Qt pool's) until `write` has run `rounds` times here,
// and more until the readers have read leastReads times.
template <typename Read, typename Write>
int readWhileWriting(int rounds, Read read, Write write)
{
    // ThreadSanitizer does not see oneTBB's own synchronisation (the library is not
    // instrumented): its tasks run in the thread that starts them here, so that what is
    // checked is the readers against the writer.
    const tbb::global_control serialTasks(tbb::global_control::max_allowed_parallelism, 1);
    std::atomic<bool> stop{false};
    std::atomic<int> reads{0};
    std::vector<std::thread> readers;
    for (int i = 0; i < readerCount; ++i) {
        readers.emplace_back([&] {
            while (!stop.load()) {
                read();
                ++reads;
            }
        });
    }
    for (int round = 0; round < rounds || reads.load() < leastReads; ++round)
        write(round);
    stop = true;
    for (std::thread &reader : readers)
        reader.join();
    return reads.load();
}

} // namespace

TEST(DocumentConcurrency, PiecesAreCopiedWhileTheMainThreadDropsThem)
{
    Document doc(nullptr);
    std::atomic<int> nonEmpty{0};
    const int reads = readWhileWriting(
        500, [&] { nonEmpty += doc.pieces().isEmpty() ? 0 : 1; }, [&](int) { doc.resetPieces(); });
    EXPECT_GE(reads, leastReads);
    EXPECT_EQ(nonEmpty.load(), 0) << "a design without scripts has no pieces";
}

TEST(DocumentConcurrency, TheSimulationDomainIsReadWhileTheScriptTellsIt)
{
    Document doc(nullptr);
    doc.start();
    Stator *stator = doc.stator();
    ASSERT_TRUE(stator->readScript(Document::scriptsPath() + QStringLiteral("/stator/SlottedStator.js")));
    const double outer = stator->outerDiameter() / 2.0;
    const double inner = stator->innerDiameter() / 2.0;

    std::atomic<int> outside{0};
    const int reads = readWhileWriting(
        20,
        [&] {
            const SimDomain domain = stator->simDomain();
            if (domain.inner < inner - 1e-9 || domain.outer > outer + 1e-9 || domain.inner >= domain.outer)
                ++outside;
            stator->scriptErrorText();
        },
        [&](int) { stator->geometry(1); });
    EXPECT_GE(reads, leastReads);
    EXPECT_EQ(outside.load(), 0) << "every domain read lies within the stator's diameters";
}
