#include "support/PluginTest.h"

#include <QTest>

void PluginTest::init()
{
    OperatedTest::init();
    load();
}

void PluginTest::cleanup()
{
    unload();
    OperatedTest::cleanup();
}

void PluginTest::load()
{
    m_plugin.load();
    m_mgr = m_plugin.newInterface();
    QVERIFY(m_mgr);
}

/// Does nothing if the plug-in isn't loaded.
void PluginTest::unload()
{
    if (!m_plugin.isLoaded())
        return;
    m_plugin.releaseInterface(m_mgr);
    m_mgr = nullptr;
    m_plugin.unload();
}
