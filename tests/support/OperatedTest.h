#pragma once

#include "support/Operator.h"
#include "support/RecordingMachine.h"

#include <QObject>

/// A test with a deployment of two languages, an operator and a machine. After each test function,
/// no message box, dialog, call or warning may be left that the function hasn't taken, except for
/// the warning that each language page logs.
class OperatedTest : public QObject
{
    Q_OBJECT

protected:
    /// Forgets the boxes, dialogs, calls and warnings so far.
    void takeAll();

    Operator m_operator;
    RecordingMachine m_machine;

protected Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
};
