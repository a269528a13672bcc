#pragma once

#include "support/OperatedTest.h"
#include "support/Plugin.h"
#include "support/TestFile.h"

/// A test that loads the plug-in before each test function and creates a manager.
class PluginTest : public OperatedTest
{
    Q_OBJECT

protected:
    void load();
    void unload();

    Plugin m_plugin {testFile(QStringLiteral(PLUGIN_FILE))};
    IZendelMgr *m_mgr = nullptr;

protected Q_SLOTS:
    void init();
    void cleanup();
};
