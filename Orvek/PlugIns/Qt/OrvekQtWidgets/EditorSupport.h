#pragma once

#include <QtCore/QEvent>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QWidget>

#include <initializer_list>

// Code that several editors share. Nothing in here has a meta-object, so each editor keeps exactly the properties,
// signals and slots that it declares.
namespace EditorSupport
{
// Unlike QSignalBlocker it always unblocks at the end, even if the host had blocked the object before. So an inner one
// on the same object ends the outer one's silence, too.
class SignalMute
{
public:
    explicit SignalMute(QObject* object) : m_object(object) { m_object->blockSignals(true); }
    ~SignalMute() { m_object->blockSignals(false); }

private:
    Q_DISABLE_COPY(SignalMute)
    QObject* const m_object; // not owned
};

// The section search compares window titles, so an editor's always follows its title.
inline void setTitle(QWidget* editor, QLabel* label, const QString& title)
{
    label->setText(title);
    editor->setWindowTitle(label->text());
}

// Qt warns about widths that no widget can have; the child gets the nearest possible one.
inline void setWidth(QWidget* editor, QWidget* child, int width)
{
    child->setFixedWidth(qBound(0, width, QWIDGETSIZE_MAX));
    editor->update();
}

// Exact comparison: a value that differs in the last bit can still be reset.
template <typename T>
void updateReset(QPushButton* reset, bool allowed, const T& value, const T& defaultValue)
{
    reset->setEnabled(allowed && value != defaultValue);
}

// The wheel scrolls panels and must not change the values that pass beneath the pointer. Qt passes the event to a
// filter un-accepted: returning true alone would let it go on to the parents.
inline bool consumeWheel(const QObject* slider, const QObject* watched, QEvent* event)
{
    if (watched != slider || event->type() != QEvent::Wheel)
        return false;
    event->accept();
    return true;
}

inline void shareWhatsThis(const QWidget* editor, std::initializer_list<QWidget*> children)
{
    for (QWidget* child : children)
        child->setWhatsThis(editor->whatsThis());
}
} // namespace EditorSupport
