#pragma once

#include <QtWidgets/QApplication>
#include <QtWidgets/QFrame>

namespace sceneeditor
{
//! Holds a render widget in a form. When created, the widget makes its ancestors native windows, unless they refuse; in
//! a form only their constructors run early enough for that. So this frame becomes native, and the widgets around it,
//! with all the editors, do not.
//!
//! Its margins show whether the view has the focus, which the view itself cannot show.
class ViewFrame final : public QFrame
{
    Q_OBJECT
public:
    explicit ViewFrame(QWidget* parent = nullptr) : QFrame(parent)
    {
        setAttribute(Qt::WA_DontCreateNativeAncestors);
        setAutoFillBackground(true);
        connect(qApp, &QApplication::focusChanged, this,
                [this](const QWidget*, const QWidget* now)
                { setBackgroundRole(now && isAncestorOf(now) ? QPalette::Highlight : QPalette::Window); });
    }
};
} // namespace sceneeditor
