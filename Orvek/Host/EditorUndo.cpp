#include <Orvek/Host/EditorUndo.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorActs.h>
#include <Orvek/Host/EditorTree.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSlider>
#include <QUndoStack>

#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orvek::host
{
namespace
{
constexpr int stepId = 0x4f45; // lets the stack offer steps for merging

struct Value
{
    EditorValue known;
    QVariant other; // of a type that EditorValue cannot hold
};

bool operator==(const Value& a, const Value& b)
{
    return a.known == b.known && a.other == b.other;
}

bool operator!=(const Value& a, const Value& b)
{
    return !(a == b);
}

const char* propertyOf(const QWidget* editor)
{
    return editor->metaObject()->indexOfProperty("filename") >= 0 ? "filename" : "value";
}

Value readAny(const QWidget* editor)
{
    if (const auto* box = qobject_cast<const QCheckBox*>(editor))
        return {{{double(box->checkState())}, QString()}, QVariant()};
    if (const auto* button = qobject_cast<const QAbstractButton*>(editor))
        return {{{double(button->isChecked())}, QString()}, QVariant()};
    Value value = {readValue(editor), QVariant()};
    if (!value.known.isKnown)
        value.other = editor->property(propertyOf(editor));
    return value;
}

template <typename Editor>
Value readNumber(const QWidget* editor)
{
    return {{{static_cast<const Editor*>(editor)->value().toDouble()}, QString()}, QVariant()};
}

// Looking up a property by name would be most of the work when a host has all values read again on each push. Most
// editors in a panel are of these kinds.
Value (*readerFor(const QWidget* editor))(const QWidget*)
{
    if (qobject_cast<const QSliderEdit*>(editor))
        return readNumber<QSliderEdit>;
    if (qobject_cast<const QIntSliderEdit*>(editor))
        return readNumber<QIntSliderEdit>;
    if (qobject_cast<const QVectorEdit*>(editor))
        return [](const QWidget* widget) -> Value
        {
            const QVector3D value = static_cast<const QVectorEdit*>(widget)->value();
            return {{{double(value.x()), double(value.y()), double(value.z())}, QString()}, QVariant()};
        };
    return readAny;
}

// Editors emit nothing when set; buttons emit toggled() but not clicked().
void writeAny(QWidget* editor, const Value& value)
{
    if (auto* box = qobject_cast<QCheckBox*>(editor))
        box->setCheckState(Qt::CheckState(int(value.known.numbers.value(0))));
    else if (auto* button = qobject_cast<QAbstractButton*>(editor))
        button->setChecked(value.known.numbers.value(0) != 0.0);
    else if (value.known.isKnown)
        writeValue(editor, value.known);
    else
        editor->setProperty(propertyOf(editor), value.other);
}

QString titleOfAny(const QWidget* editor)
{
    const auto* button = qobject_cast<const QAbstractButton*>(editor);
    return button ? button->text().remove(QLatin1Char('&')) : titleOf(editor);
}

bool isStepKey(int key)
{
    switch (key)
    {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return false;
    }
}

// A section's own check box has no value.
bool isRowCheckBox(const QWidget* widget)
{
    if (!qobject_cast<const QCheckBox*>(widget))
        return false;
    const QWidget* parent = widget->parentWidget();
    return !(parent && widget->objectName() == QLatin1String("accordionCheckBox") && isSection(parent));
}
} // namespace

struct EditorUndo::Private
{
    // What the user is doing. A change without any preceding input is an act of its own.
    enum Kind
    {
        Other,
        Press,   // of the mouse, until its release
        KeyStep, // of an arrow key
        Commit,  // of a field
        UntouchedCommit
    };

    explicit Private(EditorUndo* undo, QUndoStack* undoStack) : q(undo), stack(undoStack) {}

    EditorFollower* find(QWidget* editor) const;
    void enter(QWidget* widget);
    void begin(EditorFollower* by, Kind what, QObject* with);
    void endSoon();
    void changed(EditorFollower* by);
    void push(const EditorFollower& of, const Value& before, const Value& after);
    void restore(QWidget* editor, EditorSource* source, const QVariant& stepContext, const Value& value);

    EditorUndo* const q;
    const QPointer<QUndoStack> stack;
    std::unordered_map<QWidget*, std::unique_ptr<EditorFollower>> followers;
    QSet<QWidget*> removed;
    std::vector<std::shared_ptr<EditorTree>> trees;
    QVariant context;
    int repeatInterval = 1000;
    bool keepsUntouched = true;
    bool passesUndoKeys = true;

    int act = 0; // changes with the same number are one step
    Kind kind = Other;
    const EditorFollower* follower = nullptr; // only for comparison
    QPointer<QObject> child;
    int keyAct = 0;             // of the last key step; 0: the next one is a new act
    QElapsedTimer sinceKeyStep; // valid after the first one
};

// One per editor. Its connections and event filters end with it.
class EditorFollower final : public QObject
{
    Q_OBJECT
public:
    EditorFollower(QWidget* widget, EditorUndo::Private* undo, std::shared_ptr<EditorSource> behind);

    Value read() const { return source ? Value{{}, source->state()} : m_read(editor); }
    bool isSame(const Value& a, const Value& b) const { return source ? source->isSame(a.other, b.other) : a == b; }
    // Not needed with a source, which still has the old state after the editor has changed.
    void remember()
    {
        if (!source)
            before = read();
    }
    void finishTyping();

    QWidget* const editor;
    const std::shared_ptr<EditorSource> source; // null for most
    Value before;                               // of the next change
    std::optional<Value> start;                 // of the act between beginAct() and endAct()

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void onStartedEdit();
    void onValueChanged();

private:
    void connectTo(const char* signal, const char* slot);
    void watch(QWidget* part);
    bool onKey(QObject* child, const QKeyEvent* key);
    EditorUndo::Private::Kind commitOf(const QLineEdit* field) const;

    Value (*const m_read)(const QWidget*);
    EditorUndo::Private* const m_undo;
    QVector<QPointer<QLineEdit>> m_fields;
    QMetaObject::Connection m_editing; // to the focused field
    QPointer<QLineEdit> m_typed;       // its text was changed by the user since it got the focus
};

class EditorUndo::Step : public QUndoCommand
{
public:
    Step(EditorUndo* undo, const EditorFollower& of, Value before, Value after)
        : QUndoCommand(EditorUndo::tr("Change of %1").arg(of.source ? of.source->title() : titleOfAny(of.editor))),
          m_undo(undo),
          m_editor(of.editor),
          m_source(of.source),
          m_context(undo->d->context),
          m_before(std::move(before)),
          m_after(std::move(after)),
          m_act(undo->d->act)
    {
    }

    int id() const override { return stepId; }
    void undo() override { restore(m_before); }
    void redo() override
    {
        // The stack redoes each new step, but this one is already done.
        if (m_done)
            restore(m_after);
        m_done = true;
    }
    bool mergeWith(const QUndoCommand* command) override
    {
        const auto* next = static_cast<const Step*>(command);
        if (next->m_undo != m_undo || next->m_act != m_act || next->m_editor != m_editor)
            return false;
        m_after = next->m_after;
        setObsolete(m_source ? m_source->isSame(m_before.other, m_after.other) : m_before == m_after);
        return true;
    }

private:
    void restore(const Value& value)
    {
        if (m_undo && (m_editor || m_source))
            m_undo->d->restore(m_editor, m_source.get(), m_context, value);
    }

    const QPointer<EditorUndo> m_undo;
    const QPointer<QWidget> m_editor;
    const std::shared_ptr<EditorSource> m_source;
    const QVariant m_context;
    const Value m_before;
    Value m_after;
    const int m_act;
    bool m_done = false;
};

EditorFollower::EditorFollower(QWidget* widget, EditorUndo::Private* undo, std::shared_ptr<EditorSource> behind)
    : editor(widget), source(std::move(behind)), m_read(readerFor(widget)), m_undo(undo)
{
    remember();
    if (auto* button = qobject_cast<QAbstractButton*>(editor))
    {
        connect(button, &QAbstractButton::clicked, this, &EditorFollower::onValueChanged);
    }
    else
    {
        // By name, as the editors have no base class with these signals.
        connectTo("valueChanged()", "onValueChanged()");
        connectTo("startedEdit()", "onStartedEdit()");
    }
    watch(editor);
    const auto children = editor->findChildren<QWidget*>();
    for (QWidget* child : children)
        watch(child);
}

void EditorFollower::connectTo(const char* signal, const char* slot)
{
    const QMetaObject* theirs = editor->metaObject();
    const int index = theirs->indexOfSignal(signal);
    if (index >= 0)
        connect(editor, theirs->method(index), this, staticMetaObject.method(staticMetaObject.indexOfSlot(slot)));
}

void EditorFollower::watch(QWidget* part)
{
    if (qobject_cast<QLabel*>(part))
        return; // mouse presses on it reach the editor itself
    part->installEventFilter(this);
    if (auto* field = qobject_cast<QLineEdit*>(part))
        m_fields << field;
    // Buttons are not only clicked by the mouse, but also by a shortcut, an assistive tool or the host.
    else if (auto* button = qobject_cast<QAbstractButton*>(part))
        connect(button, &QAbstractButton::pressed, this,
                [this, button]
                {
                    // A repeating button is pressed again and again while the mouse holds it.
                    if (m_undo->kind != EditorUndo::Private::Press || m_undo->child != button)
                        m_undo->begin(this, EditorUndo::Private::Other, button);
                });
}

// Setting the text clears the field's own undo history, so that it cannot go back beyond the commit.
void EditorFollower::finishTyping()
{
    m_typed = nullptr;
    for (const QPointer<QLineEdit>& field : std::as_const(m_fields))
    {
        if (!field || !field->isModified())
            continue;
        const int cursor = field->cursorPosition();
        field->setText(field->text());
        field->setCursorPosition(cursor);
    }
}

// Handles only the undo keys; all other events go on to the editor and its other filters.
bool EditorFollower::eventFilter(QObject* watched, QEvent* event)
{
    auto* field = qobject_cast<QLineEdit*>(watched);
    switch (event->type())
    {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        return onKey(watched, static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_undo->begin(this, field ? EditorUndo::Private::Other : EditorUndo::Private::Press, watched);
        break;
    case QEvent::MouseButtonRelease:
        m_undo->endSoon();
        break;
    case QEvent::FocusIn:
        if (field)
        {
            // Moves ahead of filters installed later: they may consume a key, and a change they make is an act too.
            field->installEventFilter(this);
            m_typed = nullptr;
            disconnect(m_editing);
            m_editing = connect(field, &QLineEdit::textEdited, this, [this, field] { m_typed = field; });
        }
        break;
    case QEvent::FocusOut:
        if (field)
        {
            disconnect(m_editing);
            m_undo->begin(this, commitOf(field), field);
        }
        break;
    case QEvent::ChildAdded:
        // For example a button that the host adds beside the value.
        if (watched == editor && static_cast<QChildEvent*>(event)->child()->isWidgetType())
            static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
        break;
    default:
        break;
    }
    return false;
}

bool EditorFollower::onKey(QObject* child, const QKeyEvent* key)
{
    const auto* field = qobject_cast<const QLineEdit*>(child);
    EditorUndo::Private::Kind kind = EditorUndo::Private::Other;
    if (isStepKey(key->key()))
        kind = EditorUndo::Private::KeyStep;
    else if (field && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter))
        kind = commitOf(field);
    m_undo->begin(this, kind, child);
    // If nobody accepts the override, the key goes to the window's shortcut.
    return key->type() == QEvent::ShortcutOverride && m_undo->passesUndoKeys && field && !field->isModified() &&
           (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo));
}

// A slot of textEdited() may have set the text; then the field does not count as modified.
EditorUndo::Private::Kind EditorFollower::commitOf(const QLineEdit* field) const
{
    return field->isModified() || field == m_typed ? EditorUndo::Private::Commit : EditorUndo::Private::UntouchedCommit;
}

void EditorFollower::onStartedEdit()
{
    remember();
}

void EditorFollower::onValueChanged()
{
    m_undo->changed(this);
}

EditorUndo::EditorUndo(QUndoStack* stack, QObject* parent) : QObject(parent), d(new Private(this, stack))
{
    EditorActs* acts = EditorActs::instance();
    connect(acts, &EditorActs::aboutToChange, this,
            [this](QWidget* editor)
            {
                if (EditorFollower* follower = d->find(editor))
                    follower->remember();
            });
    connect(acts, &EditorActs::begun, this, &EditorUndo::beginAct);
    connect(acts, &EditorActs::ended, this, &EditorUndo::endAct);
}

EditorUndo::~EditorUndo() = default;

void EditorUndo::follow(QWidget* root)
{
    if (!root)
        return;
    const std::shared_ptr<EditorTree> tree = EditorTree::of(root);
    for (const auto& known : d->trees)
        if (known == tree)
            return;
    d->trees.push_back(tree);
    connect(tree.get(), &EditorTree::entered, this, [this](QWidget* widget) { d->enter(widget); });
    connect(tree.get(), &EditorTree::left, this, [this](QWidget* widget) { d->followers.erase(widget); });
    const QVector<QWidget*> widgets = tree->widgets();
    for (QWidget* widget : widgets)
        d->enter(widget);
}

bool EditorUndo::add(QWidget* editor)
{
    return d->find(editor) || add(editor, nullptr);
}

bool EditorUndo::add(QWidget* editor, std::shared_ptr<EditorSource> source)
{
    if (!editor)
        return false;
    d->removed.remove(editor);
    d->followers.erase(editor);
    const auto* button = qobject_cast<const QAbstractButton*>(editor);
    const char* missing = nullptr;
    if (button)
        missing = button->isCheckable() ? nullptr : "is a button that cannot be checked";
    else if (editor->metaObject()->indexOfSignal("valueChanged()") < 0)
        missing = "has no signal valueChanged()";
    const bool hasSource = source != nullptr;
    std::unique_ptr<EditorFollower> follower;
    if (!missing)
    {
        follower = std::make_unique<EditorFollower>(editor, d.get(), std::move(source));
        if (!hasSource && !follower->before.known.isKnown && !follower->before.other.isValid())
            missing = "has no property \"value\" or \"filename\"";
    }
    if (missing)
    {
        qWarning("EditorUndo: not followed: %s \"%s\" %s", editor->metaObject()->className(),
                 qPrintable(editor->objectName()), missing);
        return false;
    }
    connect(editor, &QObject::destroyed, follower.get(), [this, editor] { d->followers.erase(editor); });
    d->followers.emplace(editor, std::move(follower));
    return true;
}

void EditorUndo::remove(QWidget* editor)
{
    if (!editor || d->removed.contains(editor))
        return;
    d->followers.erase(editor);
    d->removed.insert(editor);
    connect(editor, &QObject::destroyed, this, [this, editor] { d->removed.remove(editor); });
}

void EditorUndo::reread()
{
    for (const auto& entry : d->followers)
        entry.second->remember();
}

void EditorUndo::setContext(const QVariant& context)
{
    d->context = context;
}

void EditorUndo::beginAct(QWidget* editor)
{
    EditorFollower* follower = d->find(editor);
    if (!follower || follower->start)
        return;
    d->begin(follower, Private::Other, nullptr);
    follower->start = follower->read();
}

void EditorUndo::endAct(QWidget* editor)
{
    EditorFollower* follower = d->find(editor);
    if (!follower || !follower->start)
        return;
    const Value start = *std::exchange(follower->start, std::nullopt);
    d->begin(follower, Private::Other, nullptr);
    const Value end = follower->read();
    if (!follower->isSame(start, end))
        d->push(*follower, start, end);
}

int EditorUndo::repeatInterval() const
{
    return d->repeatInterval;
}

void EditorUndo::setRepeatInterval(int milliseconds)
{
    d->repeatInterval = milliseconds;
}

bool EditorUndo::keepsUntouched() const
{
    return d->keepsUntouched;
}

void EditorUndo::setKeepsUntouched(bool keep)
{
    d->keepsUntouched = keep;
}

bool EditorUndo::passesUndoKeys() const
{
    return d->passesUndoKeys;
}

void EditorUndo::setPassesUndoKeys(bool pass)
{
    d->passesUndoKeys = pass;
}

EditorFollower* EditorUndo::Private::find(QWidget* editor) const
{
    const auto found = followers.find(editor);
    return found == followers.end() ? nullptr : found->second.get();
}

void EditorUndo::Private::enter(QWidget* widget)
{
    if (!removed.contains(widget) && (isEditor(widget) || isRowCheckBox(widget)))
        q->add(widget);
}

// Called for each input before the editor receives it, while the editor still has its old value.
void EditorUndo::Private::begin(EditorFollower* by, Kind what, QObject* with)
{
    // A key during a drag, for example a modifier, does not end the drag.
    const auto* held = qobject_cast<const QAbstractSlider*>(child.data());
    if (what != Press && kind == Press && follower == by && held && held->isSliderDown())
        return;
    by->remember();
    const bool repeats = what == KeyStep && act == keyAct && follower == by && sinceKeyStep.elapsed() < repeatInterval;
    if (!repeats)
        ++act;
    kind = what;
    follower = by;
    child = with;
    if (what != Other && what != Press)
        endSoon();
}

// All changes caused by an input come before control returns to the event loop.
void EditorUndo::Private::endSoon()
{
    QMetaObject::invokeMethod(
        q,
        [this, number = act]
        {
            if (act == number)
                kind = Other;
        },
        Qt::QueuedConnection);
}

void EditorUndo::Private::changed(EditorFollower* by)
{
    const QPointer<EditorFollower> alive(by);
    const QPointer<EditorUndo> self(q);
    QWidget* editor = by->editor;
    const std::shared_ptr<EditorSource> source = by->source;
    const Value before = source ? by->read() : by->before;
    if (source || by->read() != before)
    {
        const bool isTheirs = follower == by && kind != Other;
        if (isTheirs && kind == UntouchedCommit && keepsUntouched)
        {
            if (source)
                source->show();
            else
                writeAny(editor, before);
            return;
        }
        if (!isTheirs)
            ++act;
        if (source)
            source->take();
        if (!self || !alive)
            return;
        if (!source || !by->isSame(before, by->read()))
            Q_EMIT q->edited(editor);
        if (!self || !alive)
            return;
    }
    by->finishTyping();
    const Value after = by->read(); // a slot of the stack's signals may delete the follower
    by->before = source ? Value() : after;
    if (by->isSame(before, after) || by->start)
        return;
    if (kind == KeyStep && follower == by)
    {
        keyAct = act;
        sinceKeyStep.start();
    }
    push(*by, before, after);
}

void EditorUndo::Private::push(const EditorFollower& of, const Value& before, const Value& after)
{
    if (stack)
        stack->push(new Step(q, of, before, after));
}

void EditorUndo::Private::restore(QWidget* editor, EditorSource* source, const QVariant& stepContext,
                                  const Value& value)
{
    const QPointer<QWidget> alive(editor);
    const QPointer<EditorUndo> self(q);
    keyAct = 0;
    Q_EMIT q->aboutToRestore(editor, stepContext);
    if (source)
        source->restore(value.other);
    else if (alive)
        writeAny(editor, value);
    if (!self || !alive)
        return;
    if (EditorFollower* followed = find(editor))
    {
        followed->remember();
        if (followed->start)
            followed->start = followed->read();
    }
    Q_EMIT q->edited(editor);
}
} // namespace orvek::host

#include "EditorUndo.moc"
