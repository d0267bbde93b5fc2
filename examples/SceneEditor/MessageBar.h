#pragma once

#include <QtWidgets/QFrame>

class QLabel;

namespace sceneeditor
{
//! A line above the window's contents for warnings and errors. It stays until it is dismissed or something succeeds.
class MessageBar final : public QFrame
{
    Q_OBJECT
public:
    enum Severity
    {
        Warning,
        Error
    };

    explicit MessageBar(QWidget* parent = nullptr);

    //! Plain text; it replaces the one shown before.
    void show(Severity severity, const QString& text);

private:
    QLabel* m_icon = nullptr; // these belong to the bar
    QLabel* m_text = nullptr;
};
} // namespace sceneeditor
