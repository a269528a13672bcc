#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

class QDialog;
class QMessageBox;

/// Stands for the person at the machine: sees every message box and modal dialog that opens in
/// the process, in order, acts on it and closes it. A box is answered with its Ok button, a dialog
/// is rejected, unless the function set for it has closed it already.
class Operator : public QObject
{
    Q_OBJECT

public:
    explicit Operator(QObject *parent = nullptr);

    /// What a box looks like in takeBoxes(): icon, title, text, buttons and parent.
    static QString box(const char *icon, const QString &title, const QString &text,
                       const char *parent = "none");

    /// The boxes seen since the last call, in order.
    QStringList takeBoxes();

    /// The dialogs other than boxes seen since the last call, by object name.
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
