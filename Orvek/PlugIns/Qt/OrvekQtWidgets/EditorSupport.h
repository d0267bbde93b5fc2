#pragma once

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QWidget>

#include <initializer_list>

// What several editors do alike. Nothing in here has a meta-object, so that each editor keeps exactly the properties,
// signals and slots that it declares.
namespace EditorSupport
{
// Unlike QSignalBlocker it always unblocks at the end, also if the host had blocked the object before.
// So an inner one on the same object ends the outer one's silence too.
class SignalMute
{
public:
    explicit SignalMute(QObject* object) : m_object(object) { m_object->blockSignals(true); }
    ~SignalMute()
    {
        if (m_object)
            m_object->blockSignals(false);
    }

private:
    Q_DISABLE_COPY(SignalMute)
    const QPointer<QObject> m_object; // not owned; a host's slot may delete it meanwhile
};

// A host may delete any child of the form. The form's pointer then leads to another one that is never seen, so that
// whatever the editor does with its children stays harmless.
template <typename Editor, typename Child>
void replaceDeleted(Editor* editor, Child*& child)
{
    const auto replace = [editor = static_cast<QObject*>(editor), &child]
    {
        // The children go with the editor as well, when only its base is left of it.
        auto* alive = qobject_cast<Editor*>(editor);
        if (!alive)
            return;
        // Not inside the editor: its window may be the one that is being destroyed, with the child.
        auto* nowhere = new QWidget;
        QObject::connect(editor, &QObject::destroyed, nowhere, [nowhere] { delete nowhere; });
        child = new Child(nowhere);
        child->setFixedSize(0, 0);
        child->hide();
        replaceDeleted(alive, child);
    };
    QObject::connect(child, &QObject::destroyed, editor, replace);
}
template <typename Editor, typename... Children>
void replaceDeletedChildren(Editor* editor, Children*&... children)
{
    (replaceDeleted(editor, children), ...);
}

// Whether the editor lies somewhere in its own former child, where a host may have put it: to take that child back
// would close a ring.
inline bool holds(const QWidget* child, const QWidget* editor)
{
    const QWidget* ancestor = editor->parentWidget();
    while (ancestor && ancestor != child)
        ancestor = ancestor->parentWidget();
    return ancestor != nullptr;
}

// The section search compares window titles, so an editor's always follows its title.
inline void setTitle(QWidget* editor, QLabel* label, const QString& title)
{
    label->setText(title);
    editor->setWindowTitle(label->text());
}

// Qt warns about widths that no widget can have; a child takes the nearest one that it can.
inline void setWidth(QWidget* editor, QWidget* child, int width)
{
    child->setFixedWidth(qBound(0, width, QWIDGETSIZE_MAX));
    editor->update();
}

// Whether writing the text that the field has would change nothing about its cursor and its history.
inline bool isUntouched(const QLineEdit* field, const QString& text)
{
    return !field->isModified() && field->cursorPosition() == text.size() && !field->hasSelectedText() &&
           !field->isUndoAvailable() && !field->isRedoAvailable() && QApplication::focusWidget() != field;
}

// Hosts push all their values each frame, and a text costs more than all the rest of a value.
inline void showText(QLineEdit* field, const QString& text)
{
    if (field->text() != text || !isUntouched(field, text))
        field->setText(text);
}

// Exact comparison: a value that differs in the last bit can still be reset.
template <typename T>
void updateReset(QPushButton* reset, bool allowed, const T& value, const T& defaultValue)
{
    const bool enabled = allowed && value != defaultValue;
    if (reset->testAttribute(Qt::WA_ForceDisabled) == enabled)
        reset->setEnabled(enabled);
}

// The wheel scrolls panels and must not change the values that pass beneath the pointer. Qt hands the event to a filter
// un-accepted: returning true alone would let it travel on to the parents.
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
