#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

class QDialog;
class QMessageBox;

/// Acts as the operator: records every message box and modal dialog that opens in the
/// process, in order, and closes it. A message box is answered with its Ok button. A dialog is
/// rejected, unless onDialog has closed it already.
class Operator : public QObject
{
    Q_OBJECT

public:
    explicit Operator(QObject *parent = nullptr);

    /// Returns a message box with an Ok button as takeBoxes() describes it.
    static QString box(const char *icon, const QString &title, const QString &text,
                       const char *parent = "none");

    /// Returns the message boxes since the last call, in order.
    QStringList takeBoxes();

    /// Returns the object names of the other dialogs since the last call, in order.
    QStringList takeDialogs();

    std::function<void(QDialog &)> onDialog;
    std::function<void(QMessageBox &)> onBox;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void answer(QMessageBox &box) const;
    void work(QDialog &dialog) const;

    QStringList m_boxes;
    QStringList m_dialogs;
};
