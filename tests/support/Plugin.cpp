#include "support/Plugin.h"

#include <QTest>

Plugin::Plugin(const QString &fileName)
    : m_library(fileName)
{
}

void Plugin::load()
{
    QVERIFY2(m_library.load(), qPrintable(m_library.errorString()));
    m_newInterface = reinterpret_cast<NewInterfaceFunction>(m_library.resolve("NewInterface"));
    m_releaseInterface =
        reinterpret_cast<ReleaseInterfaceFunction>(m_library.resolve("ReleaseInterface"));
    QVERIFY(m_newInterface);
    QVERIFY(m_releaseInterface);
}

void Plugin::unload()
{
    QVERIFY2(m_library.unload(), qPrintable(m_library.errorString()));
}
