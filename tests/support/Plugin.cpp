#include "support/Plugin.h"

#include <QFile>
#include <QTest>

#ifdef Q_OS_WIN
#    include <windows.h>
#endif

namespace {

bool isMapped(const QString &fileName)
{
#ifdef Q_OS_WIN
    return GetModuleHandleW(reinterpret_cast<const wchar_t *>(fileName.utf16()));
#else
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(fileName.toUtf8());
#endif
}

} // namespace

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
    QVERIFY(isMapped(fileName()));
}

void Plugin::unload()
{
    QVERIFY2(m_library.unload(), qPrintable(m_library.errorString()));
    QVERIFY(!isMapped(fileName()));
}
