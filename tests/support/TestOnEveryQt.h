#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QList>
#include <QStringList>
#include <QTest>
#include <QWidget>
#include <QWindow>

// Qt Test for programs that run on each version since 5.6. Compiled with newer headers, QCOMPARE of
// some types and Qt Test's waiting, also in QTRY_VERIFY and mouseClick(), call functions that older
// versions lack.

#undef QCOMPARE
#define QCOMPARE(actual, expected)                                                                 \
    do {                                                                                           \
        if (!QTest::qCompare(TestOnEveryQt::comparable(actual),                                    \
                             TestOnEveryQt::comparable(expected), #actual, #expected, __FILE__,    \
                             __LINE__))                                                            \
            return;                                                                                \
    } while (false)

namespace TestOnEveryQt {

/// Returns a value of a type that every Qt Test compares.
template<typename T>
const T &comparable(const T &value)
{
    return value;
}

inline qint64 comparable(int value)
{
    return value;
}

inline QByteArray comparable(const QString &value)
{
    return value.toUtf8();
}

inline QList<QByteArray> comparable(const QStringList &value)
{
    QList<QByteArray> result;
    for (const QString &string : value)
        result += string.toUtf8();
    return result;
}

/// Handles events until the condition is true. Returns false if it isn't after 5 seconds.
template<typename Condition>
bool waitFor(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(5000))
            return false;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTest::qSleep(10);
    }
    return true;
}

inline bool waitForExposed(const QWidget &window)
{
    return waitFor([&window] { return window.windowHandle()->isExposed(); });
}

} // namespace TestOnEveryQt
