#pragma once

#include <QtWidgets/QFrame>

class QLabel;

namespace sceneeditor
{
//! A line above the window's contents for what went wrong. It stays until it is dismissed or something went well.
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

    //! The text is shown as it is; a newer one takes its place.
    void show(Severity severity, const QString& text);

private:
    QLabel* m_icon = nullptr; // these belong to the bar
    QLabel* m_text = nullptr;
};
} // namespace sceneeditor
