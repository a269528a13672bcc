// Tests that only one CTranslatorMgr is created when several threads ask for the first one at once.
// This needs a program of its own, because it happens once in a process.

#include "lang/CTranslatorMgr.h"

#include "support/Interpose.h"

#include <QTest>
#include <QTranslator>

#include <array>
#include <atomic>
#include <chrono>
#include <new>
#include <thread>
#include <vector>

namespace {

const int threadCount = 8;
std::atomic<int> threadsAtInstance {0};
std::atomic<int> constructions {0};
bool memoryIsOut = false;

} // namespace

// Delays the plug-in's construction of a translator until all threads are waiting for it.
INTERPOSE(QTranslator *, constructor, (QTranslator * self, QObject *parent))
{
    if (memoryIsOut)
        throw std::bad_alloc();
    ++constructions;
    while (threadsAtInstance < threadCount)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    return ORIGINAL(constructor)(self, parent);
}

class tst_CTranslatorMgr_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failedConstructionIsRepeated();
    void firstThreadCreatesTheInstanceOfAll();
};

void tst_CTranslatorMgr_threads::failedConstructionIsRepeated()
{
    memoryIsOut = true;
    QVERIFY_EXCEPTION_THROWN(CTranslatorMgr::instance(), std::bad_alloc);
    QVERIFY_EXCEPTION_THROWN(CTranslatorMgr::instance(), std::bad_alloc);
    memoryIsOut = false;
}

void tst_CTranslatorMgr_threads::firstThreadCreatesTheInstanceOfAll()
{
    std::array<const CTranslatorMgr *, threadCount> instances {};
    std::array<const QTranslator *, threadCount> translators {};
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            ++threadsAtInstance;
            instances.at(i) = CTranslatorMgr::instance();
            translators.at(i) = instances.at(i)->translator();
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    QCOMPARE(constructions.load(), 1);
    for (int i = 0; i < threadCount; ++i) {
        QCOMPARE(instances.at(i), CTranslatorMgr::instance());
        // It's complete when a thread gets it.
        QVERIFY(translators.at(i));
        QCOMPARE(translators.at(i), CTranslatorMgr::instance()->translator());
    }
}

QTEST_APPLESS_MAIN(tst_CTranslatorMgr_threads)
#include "tst_CTranslatorMgr_threads.moc"
