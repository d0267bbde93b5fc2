#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QFrame>

class QLabel;

namespace sceneeditor
{
//! A line above the window's contents. What went well leaves by itself; what did not stays until it is dismissed or
//! something went well.
class MessageBar final : public QFrame
{
    Q_OBJECT
public:
    enum Severity
    {
        Information,
        Warning,
        Error
    };

    explicit MessageBar(QWidget* parent = nullptr);

    //! The text is shown as it is; a newer one takes its place.
    void show(Severity severity, const QString& text);
    QString text() const;

private:
    QLabel* m_icon = nullptr; // these belong to the bar
    QLabel* m_text = nullptr;
    QTimer m_leave;
};
} // namespace sceneeditor
