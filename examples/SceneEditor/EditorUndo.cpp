#include <examples/SceneEditor/EditorUndo.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>

#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>
#include <QtGui/QVector3D>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QUndoStack>

#include <algorithm>

namespace sceneeditor
{
namespace
{
constexpr int stepId = 0x4f45; // lets the stack offer steps for merging

const char* valueProperty(const QWidget* editor)
{
    if (qobject_cast<const QAbstractButton*>(editor))
        return "checked";
    return editor->metaObject()->indexOfProperty("filename") >= 0 ? "filename" : "value";
}

// In the order of the components.
QVector<QLineEdit*> fieldsOf(const QWidget* editor)
{
    QVector<QLineEdit*> fields;
    for (const char* name : {"lineEdit", "x", "y", "z", "red", "green", "blue", "alpha"})
    {
        if (auto* field = editor->findChild<QLineEdit*>(QLatin1String(name)))
            fields << field;
    }
    return fields;
}

QStringList textsOf(const QWidget* editor)
{
    QStringList texts;
    const QVector<QLineEdit*> fields = fieldsOf(editor);
    for (const QLineEdit* field : fields)
        texts << field->text();
    return texts;
}

bool isTyping(const QWidget* editor)
{
    const QVector<QLineEdit*> fields = fieldsOf(editor);
    return std::any_of(fields.cbegin(), fields.cend(), [](const QLineEdit* field) { return field->isModified(); });
}

// From here on the fields' own undo does not go back behind what was taken over.
void finishTyping(const QWidget* editor)
{
    const QVector<QLineEdit*> fields = fieldsOf(editor);
    for (QLineEdit* field : fields)
    {
        if (!field->isModified())
            continue;
        const int cursor = field->cursorPosition();
        field->setText(field->text());
        field->setCursorPosition(cursor);
    }
}

QString titleOf(const QWidget* editor)
{
    const auto* button = qobject_cast<const QAbstractButton*>(editor);
    return button ? button->text() : editor->windowTitle();
}
} // namespace

class EditorUndo::Step : public QUndoCommand
{
public:
    Step(EditorUndo* undo, QWidget* editor, const Value& before, const Value& after)
        : QUndoCommand(EditorUndo::tr("Change of %1").arg(titleOf(editor))),
          m_undo(undo),
          m_editor(editor),
          m_context(undo->m_context),
          m_before(before),
          m_after(after),
          m_act(undo->m_act)
    {
    }

    int id() const override { return stepId; }
    void undo() override
    {
        if (m_editor && m_undo)
            m_undo->restore(m_editor, m_context, m_before);
    }
    void redo() override
    {
        // The stack redoes each new step; the user has done this one already.
        if (m_done && m_editor && m_undo)
            m_undo->restore(m_editor, m_context, m_after);
        m_done = true;
    }
    bool mergeWith(const QUndoCommand* command) override
    {
        const auto* next = static_cast<const Step*>(command);
        if (next->m_undo != m_undo || next->m_act != m_act)
            return false;
        m_after = next->m_after;
        setObsolete(equal(m_before, m_after));
        return true;
    }

private:
    const QPointer<EditorUndo> m_undo;
    const QPointer<QWidget> m_editor;
    const QVariant m_context;
    const Value m_before;
    Value m_after;
    const int m_act;
    bool m_done = false;
};

EditorUndo::EditorUndo(QUndoStack* stack, QObject* parent) : QObject(parent), m_stack(stack) {}

void EditorUndo::add(QWidget* editor)
{
    State& state = m_states[editor];
    state.slider = editor->findChild<QAbstractSlider*>(QStringLiteral("slider"));
    remember(editor);
    connect(editor, &QObject::destroyed, this,
            [this, editor]
            {
                m_states.erase(editor);
                if (m_dragged == editor)
                    m_dragged = nullptr;
            });
    if (auto* button = qobject_cast<QAbstractButton*>(editor))
    {
        connect(button, &QAbstractButton::clicked, this, &EditorUndo::onValueChanged);
        return;
    }
    // By name, as the editors have no base class with these signals.
    connect(editor, SIGNAL(valueChanged()), this, SLOT(onValueChanged()));
    if (editor->metaObject()->indexOfSignal("startedEdit()") >= 0)
        connect(editor, SIGNAL(startedEdit()), this, SLOT(onStartedEdit()));
    if (QAbstractSlider* slider = state.slider)
    {
        // The release is announced before the value that it sets, so a handle off its value is not at the end yet.
        connect(slider, &QAbstractSlider::sliderReleased, this,
                [this, slider, editor]
                {
                    if (m_dragged == editor && slider->sliderPosition() == slider->value())
                        m_dragged = nullptr;
                });
    }
    const QVector<QLineEdit*> fields = fieldsOf(editor);
    for (QLineEdit* field : fields)
        field->installEventFilter(this);
}

void EditorUndo::reread()
{
    for (const auto& entry : m_states)
        remember(entry.first);
}

void EditorUndo::setContext(const QVariant& context)
{
    m_context = context;
}

bool EditorUndo::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (!key->matches(QKeySequence::Undo) && !key->matches(QKeySequence::Redo))
        return false;
    return !static_cast<QLineEdit*>(watched)->isModified();
}

void EditorUndo::onStartedEdit()
{
    auto* editor = qobject_cast<QWidget*>(sender());
    const auto it = m_states.find(editor);
    if (it == m_states.end() || !it->second.slider || !it->second.slider->isSliderDown())
        return;
    m_dragged = editor;
    ++m_act;
}

void EditorUndo::onValueChanged()
{
    auto* editor = qobject_cast<QWidget*>(sender());
    const auto it = m_states.find(editor);
    if (it == m_states.end())
        return;
    const State before = it->second;
    const bool dragged = m_dragged == editor;
    if (dragged && !before.slider->isSliderDown())
        m_dragged = nullptr;

    const Value value = read(editor);
    if (!equal(value, before.value))
    {
        if (!dragged && onlyConfirmed(editor, before, value))
        {
            write(editor, before.value);
            return;
        }
        Q_EMIT edited(editor);
    }
    finishTyping(editor);
    remember(editor);
    const Value after = read(editor);
    if (equal(after, before.value))
        return;
    if (!dragged)
        ++m_act;
    m_stack->push(new Step(this, editor, before.value, after));
}

bool EditorUndo::equal(const Value& a, const Value& b)
{
    return a.numbers == b.numbers && a.text == b.text;
}

EditorUndo::Value EditorUndo::read(const QWidget* editor)
{
    if (const auto* colourEdit = qobject_cast<const QColourEdit*>(editor))
    {
        const double* colour = colourEdit->colour();
        return {{colour[0], colour[1], colour[2], colour[3]}, QString()};
    }
    const QVariant value = editor->property(valueProperty(editor));
    if (value.userType() == QMetaType::QString)
        return {{}, value.toString()};
    if (value.userType() == QMetaType::QVector3D)
    {
        const auto vector = value.value<QVector3D>();
        return {{double(vector.x()), double(vector.y()), double(vector.z())}, QString()};
    }
    return {{value.toDouble()}, QString()};
}

// Silent: neither the editors' setters nor setChecked() send what onValueChanged() listens to.
void EditorUndo::write(QWidget* editor, const Value& value)
{
    if (auto* colourEdit = qobject_cast<QColourEdit*>(editor))
    {
        colourEdit->setColour(value.numbers.constData());
        // Its fields show only what is typed.
        const QVector<QLineEdit*> fields = fieldsOf(editor);
        for (int i = 0; i < fields.size(); ++i)
            fields[i]->setText(QString::number(value.numbers[i]));
        return;
    }
    const char* property = valueProperty(editor);
    if (value.numbers.isEmpty())
        editor->setProperty(property, value.text);
    else if (value.numbers.size() == 3)
        editor->setProperty(property,
                            QVector3D(float(value.numbers[0]), float(value.numbers[1]), float(value.numbers[2])));
    else
        editor->setProperty(property, value.numbers[0]);
}

// A field that nobody has typed into was taken over: from its text come the rounded number, or 0 for a name.
bool EditorUndo::onlyConfirmed(const QWidget* editor, const State& before, const Value& after)
{
    if (isTyping(editor) || after.numbers.size() != before.texts.size() || textsOf(editor) != before.texts)
        return false;
    const bool isVector = before.texts.size() == 3; // of floats
    for (int i = 0; i < before.texts.size(); ++i)
    {
        const double shown = before.texts[i].toDouble();
        if (after.numbers[i] != before.value.numbers[i] &&
            after.numbers[i] != (isVector ? double(float(shown)) : shown))
            return false;
    }
    return true;
}

void EditorUndo::restore(QWidget* editor, const QVariant& context, const Value& value)
{
    Q_EMIT aboutToRestore(editor, context);
    write(editor, value);
    remember(editor);
    Q_EMIT edited(editor);
}

void EditorUndo::remember(QWidget* editor)
{
    State& state = m_states[editor];
    state.value = read(editor);
    state.texts = textsOf(editor);
}
} // namespace sceneeditor
