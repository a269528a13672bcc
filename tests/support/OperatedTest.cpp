#include "support/OperatedTest.h"

#include "support/Deployment.h"
#include "support/TestOnEveryQt.h"
#include "support/Warnings.h"

#include <QApplication>

void OperatedTest::initTestCase()
{
    Warnings::collect();
}

void OperatedTest::init()
{
    takeAll(); // What a failed test has left
    Deployment::clear();
    Deployment::installTwoLanguages();
    m_operator.onBox = nullptr;
    m_operator.onDialog = nullptr;
    m_machine.onSetLanguage = nullptr;
    m_machine.onNotify = nullptr;
    m_machine.accepts = true;
}

void OperatedTest::cleanup()
{
    QCOMPARE(m_operator.takeBoxes(), QStringList());
    QCOMPARE(m_operator.takeDialogs(), QStringList());
    QCOMPARE(m_machine.takeCalls(), QStringList());
    for (const QString &warning : Warnings::take())
        QCOMPARE(warning, Warnings::unconnectedSlot());
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(!QApplication::overrideCursor());
}

void OperatedTest::takeAll()
{
    m_operator.takeBoxes();
    m_operator.takeDialogs();
    m_machine.takeCalls();
    Warnings::take();
}
