#include <Orvek/Host/EditorAccessibility.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorActs.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QVariant>
#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAccessibleWidget>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvek::host
{
namespace
{
// -- Names -----------------------------------------------------------------------------------------------------------

// The title on the screen; a file editor's window title differs until a title is set.
QString spokenTitle(const QWidget* editor)
{
    const QLabel* label = partsOf(editor).label;
    const QString title = label && !label->text().isEmpty() ? label->text() : titleOf(editor);
    return Qt::mightBeRichText(title) ? QTextDocumentFragment::fromHtml(title).toPlainText() : title;
}

// The context of these texts. lupdate needs it spelt out beside each one.
constexpr char Context[] = "orvek::host::EditorAccessibility";
struct ChildName
{
    const char* child;
    const char* name;
};
const ChildName childNames[] = {
    {"lineEdit", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, value")},
    {"slider", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, slider")},
    {"reset", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, reset to default")},
    {"decrement", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, decrease")},
    {"increment", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, increase")},
    {"browse", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, browse")},
    {"x", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, X")},
    {"y", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, Y")},
    {"z", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, Z")},
    {"red", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, red")},
    {"green", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, green")},
    {"blue", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, blue")},
    {"alpha", QT_TRANSLATE_NOOP("orvek::host::EditorAccessibility", "%1, alpha")},
};

// Null for a child without a role in an editor.
const char* nameOfChild(const QWidget* editor, const QString& child)
{
    QString role = child;
    if (editor->property("colourEdit").toBool())
        role = child == QLatin1String("x")   ? QStringLiteral("red")
               : child == QLatin1String("y") ? QStringLiteral("green")
               : child == QLatin1String("z") ? QStringLiteral("blue")
                                             : child;
    for (const ChildName& known : childNames)
        if (role == QLatin1String(known.child))
            return known.name;
    return nullptr;
}

QString nameOf(const QWidget* widget)
{
    if (!widget->accessibleName().isEmpty())
        return widget->accessibleName();
    const QWidget* parent = widget->parentWidget();
    if (isEditor(widget))
        return spokenTitle(widget);
    if (isSection(widget))
        return titleOf(widget);
    if (qobject_cast<const QRenderWidget*>(widget))
        return widget->windowTitle().isEmpty()
                   ? EditorAccessibility::tr("Rendered view")
                   : EditorAccessibility::tr("%1, rendered view").arg(widget->windowTitle());
    if (!parent)
        return {};
    if (qobject_cast<const QPropertyPanel*>(parent))
        return parent->windowTitle().isEmpty() || parent->windowTitle() == QLatin1String("QPropertyPanel")
                   ? EditorAccessibility::tr("Search")
                   : EditorAccessibility::tr("%1, search").arg(parent->windowTitle());
    if (isSection(parent))
        return EditorAccessibility::tr("%1, section").arg(titleOf(parent));
    const char* name = isEditor(parent) ? nameOfChild(parent, widget->objectName()) : nullptr;
    return name ? QCoreApplication::translate(Context, name).arg(spokenTitle(parent)) : QString();
}

// -- Interfaces ------------------------------------------------------------------------------------------------------

class Named;
// All existing ones. Qt's cache owns them.
QSet<Named*>& instances()
{
    static QSet<Named*> all;
    return all;
}

// A widget with a name from this library; the rest is Qt's.
class Named : public QAccessibleWidget
{
public:
    Named(QWidget* widget, QAccessible::Role role) : QAccessibleWidget(widget, role) { instances().insert(this); }

    QString text(QAccessible::Text kind) const override
    {
        const QString name = kind == QAccessible::Name ? nameOf(widget()) : QString();
        return name.isEmpty() ? QAccessibleWidget::text(kind) : name;
    }

protected:
    ~Named() override { instances().remove(this); }
};

// Tools keep names, so they must know when the title changes.
void announceNames(QWidget* widget)
{
    if (!QAccessible::isActive())
        return;
    auto widgets = widget->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    widgets.prepend(widget);
    for (QWidget* named : std::as_const(widgets))
    {
        QAccessibleEvent event(named, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

// Reports its children in the order of the components.
class EditorInterface final : public Named
{
public:
    explicit EditorInterface(QWidget* editor) : Named(editor, QAccessible::Grouping)
    {
        QObject::connect(editor, &QWidget::windowTitleChanged, &m_context, [editor] { announceNames(editor); });
    }

    QAccessibleInterface* child(int index) const override
    {
        return QAccessible::queryAccessibleInterface(inOrder().value(index));
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child ? inOrder().indexOf(child->object()) : -1;
    }

private:
    // The fields fill the positions of fields in order; a label created last comes first.
    QVector<QObject*> inOrder() const
    {
        const EditorParts parts = partsOf(widget());
        QVector<QObject*> children;
        int next = 0;
        for (int i = 0; i < QAccessibleWidget::childCount(); ++i)
        {
            QAccessibleInterface* child = QAccessibleWidget::child(i);
            QObject* object = child ? child->object() : nullptr;
            if (object && object == parts.label)
                children.prepend(object);
            else if (parts.fields.contains(qobject_cast<QLineEdit*>(object)))
                children << parts.fields[next++];
            else
                children << object;
        }
        return children;
    }

    QObject m_context; // of the connection
};

// A push button or a section's check box.
class ButtonInterface final : public Named
{
public:
    explicit ButtonInterface(QAbstractButton* button)
        : Named(button, button->isCheckable() ? QAccessible::CheckBox : QAccessible::PushButton)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = Named::state();
        state.checkable = button()->isCheckable();
        state.checked = button()->isChecked();
        state.pressed = button()->isDown();
        if (button()->isCheckable())
        {
            state.expandable = true;
            state.expanded = button()->isChecked();
            state.collapsed = !button()->isChecked();
        }
        return state;
    }
    QStringList actionNames() const override
    {
        QStringList names;
        if (button()->isEnabled())
        {
            if (button()->isCheckable())
                names << toggleAction();
            names << pressAction();
        }
        return names << Named::actionNames();
    }
    void doAction(const QString& name) override
    {
        if (name == pressAction() || (name == toggleAction() && button()->isCheckable()))
            button()->click();
        else
            Named::doAction(name);
    }
    QStringList keyBindingsForAction(const QString& name) const override
    {
        const bool ours = name == pressAction() || name == toggleAction();
        const QString keys = button()->shortcut().toString();
        return ours && !keys.isEmpty() ? QStringList{keys} : QStringList();
    }

private:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(widget()); }
};

class SectionInterface final : public Named
{
public:
    explicit SectionInterface(QWidget* section) : Named(section, QAccessible::Grouping)
    {
        QCheckBox* line = checkBox();
        QObject::connect(line, &QCheckBox::toggled, &m_context,
                         [section, line]
                         {
                             QAccessible::State changed;
                             changed.expanded = changed.collapsed = true;
                             for (QWidget* widget : {section, static_cast<QWidget*>(line)})
                             {
                                 QAccessibleStateChangeEvent event(widget, changed);
                                 QAccessible::updateAccessibility(&event);
                             }
                         });
        QObject::connect(section, &QWidget::windowTitleChanged, &m_context, [section] { announceNames(section); });
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = Named::state();
        if (const QCheckBox* line = checkBox())
        {
            state.expandable = true;
            state.expanded = line->isChecked();
            state.collapsed = !line->isChecked();
        }
        return state;
    }
    QStringList actionNames() const override
    {
        return QStringList{toggleAction(), pressAction()} << Named::actionNames();
    }
    void doAction(const QString& name) override
    {
        QCheckBox* line = checkBox();
        if (line && (name == pressAction() || name == toggleAction()))
            line->click();
        else
            Named::doAction(name);
    }

private:
    QCheckBox* checkBox() const
    {
        return widget()->findChild<QCheckBox*>(QStringLiteral("accordionCheckBox"), Qt::FindDirectChildrenOnly);
    }

    QObject m_context; // of the connections
};

// Announces an editor's value once the editor has it; Qt announces the handle's move before that. A host's own editor
// can be of any class, so its signal is connected by name.
class ValueNews final : public QObject
{
    Q_OBJECT
public:
    ValueNews(QSlider* slider, const QAccessibleValueInterface* value) : m_slider(slider), m_value(value)
    {
        connect(slider->parentWidget(), SIGNAL(valueChanged()), this, SLOT(announce()));
    }

private Q_SLOTS:
    void announce()
    {
        QAccessibleValueChangeEvent event(m_slider, m_value->currentValue());
        QAccessible::updateAccessibility(&event);
    }

private:
    QSlider* const m_slider; // outlives the interface that owns this object
    const QAccessibleValueInterface* const m_value;
};

// Reads and sets the editor's value instead of the handle's position. If the editor's value is not a number, the
// position is used.
class SliderInterface final : public Named, public QAccessibleValueInterface
{
public:
    explicit SliderInterface(QSlider* slider) : Named(slider, QAccessible::Slider), m_news(slider, this) {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return Named::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override
    {
        const bool isValue = kind == QAccessible::Value;
        // Tools do not read a value's name or unit from a slider, but they do read descriptions.
        const bool isDescription = kind == QAccessible::Description && Named::text(kind).isEmpty();
        if (!isValue && !isDescription)
            return Named::text(kind);
        if (editor()->property("mixed").toBool())
            return EditorAccessibility::tr("different values");
        const QString value = textsOfValue(editor()).value(0);
        const QLabel* units = partsOf(editor()).units;
        const bool hasUnits = units && !units->text().isEmpty();
        bool isNumber = false;
        static_cast<void>(value.toDouble(&isNumber));
        if (isDescription && isNumber && !hasUnits)
            return {};
        return hasUnits ? EditorAccessibility::tr("%1 %2", "value and units").arg(value, units->text()) : value;
    }

    QVariant currentValue() const override { return read("value", slider()->value()); }
    QVariant minimumValue() const override { return read("minimum", slider()->minimum()); }
    QVariant maximumValue() const override { return read("maximum", slider()->maximum()); }
    QVariant minimumStepSize() const override
    {
        const double positions = double(slider()->maximum()) - slider()->minimum();
        const bool hasValue = hasNumber() && !qobject_cast<QIntSliderEdit*>(editor());
        if (!hasValue || positions <= 0)
            return slider()->singleStep();
        return (maximumValue().toDouble() - minimumValue().toDouble()) / positions;
    }
    // Like a change by the user: it is clamped, shown and announced.
    void setCurrentValue(const QVariant& value) override
    {
        bool ok = false;
        const double number = value.toDouble(&ok);
        if (!ok || !std::isfinite(number) || !slider()->isEnabled())
            return;
        Q_EMIT EditorActs::instance()->aboutToChange(editor());
        const auto* integers = qobject_cast<const QIntSliderEdit*>(editor());
        if (integers || !hasNumber())
        {
            // Each position is one value or one power of two.
            const double position = integers && integers->powerOfTwo() ? std::log2(std::max(1.0, number)) : number;
            slider()->setValue(
                int(std::lround(qBound(double(slider()->minimum()), position, double(slider()->maximum())))));
            return;
        }
        const EditorValue before = readValue(editor());
        const QPointer<QWidget> alive(editor());
        editor()->setProperty("value", number);
        if (alive && readValue(alive) != before)
            QMetaObject::invokeMethod(alive, "valueChanged", Qt::DirectConnection);
    }

private:
    QSlider* slider() const { return static_cast<QSlider*>(widget()); }
    QWidget* editor() const { return widget()->parentWidget(); }
    bool hasNumber() const { return readValue(editor()).numbers.size() == 1; }
    QVariant read(const char* property, int position) const
    {
        const QVariant value = hasNumber() ? editor()->property(property) : QVariant();
        return value.isValid() ? value : QVariant(position);
    }

    ValueNews m_news;
};

// Qt's own class for fields cannot be derived from, so this one provides the same from public parts of QLineEdit.
class FieldInterface final : public Named, public QAccessibleTextInterface, public QAccessibleEditableTextInterface
{
public:
    explicit FieldInterface(QLineEdit* field) : Named(field, QAccessible::EditableText) {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return Named::interface_cast(type);
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = Named::state();
        state.selectableText = true;
        state.editable = true; // Qt's own sets this for read-only fields as well
        state.readOnly = field()->isReadOnly();
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value)
            return field()->displayText();
        if (kind == QAccessible::Description && Named::text(kind).isEmpty())
            return field()->placeholderText();
        return Named::text(kind);
    }
    void setText(QAccessible::Text kind, const QString& text) override
    {
        if (kind == QAccessible::Value)
            replaceText(0, characterCount(), text);
        else
            Named::setText(kind, text);
    }

    void selection(int index, int* start, int* end) const override
    {
        *start = index == 0 ? field()->selectionStart() : 0; // -1 if nothing is selected
        *end = index == 0 ? *start + field()->selectedText().size() : 0;
    }
    int selectionCount() const override { return field()->hasSelectedText() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int index) override
    {
        if (index == 0)
            field()->deselect();
    }
    void setSelection(int index, int start, int end) override
    {
        if (index == 0)
            field()->setSelection(start, end - start);
    }
    int cursorPosition() const override { return field()->cursorPosition(); }
    void setCursorPosition(int position) override { field()->setCursorPosition(position); }
    QString text(int start, int end) const override { return field()->displayText().mid(start, end - start); }
    int characterCount() const override { return field()->displayText().size(); }
    QRect characterRect(int offset) const override
    {
        // Computed from the cursor, the only position that a field reveals.
        const QString text = field()->displayText();
        const QFontMetrics metrics = field()->fontMetrics();
        const QRect cursor = field()->inputMethodQuery(Qt::ImCursorRectangle).toRect();
        const int toCursor = metrics.horizontalAdvance(text.left(field()->cursorPosition()));
        const int left = cursor.center().x() + metrics.horizontalAdvance(text.left(offset)) - toCursor;
        const int width = metrics.horizontalAdvance(text.mid(offset, 1));
        return {field()->mapToGlobal(QPoint(left, cursor.top())), QSize(width, cursor.height())};
    }
    int offsetAtPoint(const QPoint& point) const override
    {
        return field()->cursorPositionAt(field()->mapFromGlobal(point));
    }
    void scrollToSubstring(int start, int end) override
    {
        field()->setCursorPosition(end);
        field()->setCursorPosition(start);
    }
    QString attributes(int, int* start, int* end) const override
    {
        *start = *end = field()->cursorPosition();
        return {};
    }

    void deleteText(int start, int end) override { replaceText(start, end, QString()); }
    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    // Like typing: it can be undone and counts as the user's.
    void replaceText(int start, int end, const QString& text) override
    {
        if (field()->isReadOnly() || !field()->isEnabled())
            return;
        field()->setSelection(start, end - start);
        if (start == end)
            field()->setCursorPosition(start);
        field()->insert(text);
    }

private:
    QLineEdit* field() const { return static_cast<QLineEdit*>(widget()); }
};

// -- Installation ----------------------------------------------------------------------------------------------------

bool installed = false;

// Qt also asks while an editor is still under construction, and caches the answer. So a child is recognised by its
// name, and its parent is checked each time the name is requested.
bool isNamedPart(const QWidget* widget)
{
    const QWidget* parent = widget->parentWidget();
    if (!parent || widget->objectName().isEmpty())
        return false;
    if (qobject_cast<const QPropertyPanel*>(parent))
        return widget->objectName() == QLatin1String("search");
    if (widget->objectName() == QLatin1String("accordionCheckBox"))
        return isSection(parent);
    return nameOfChild(parent, widget->objectName()) && parent->metaObject()->indexOfSignal("valueChanged()") >= 0;
}

// Null for other widgets.
QAccessibleInterface* interfaceOf(const QString&, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto* widget = static_cast<QWidget*>(object);
    if (auto* field = qobject_cast<QLineEdit*>(widget))
        return isNamedPart(field) ? new FieldInterface(field) : nullptr;
    if (auto* slider = qobject_cast<QSlider*>(widget))
        return isNamedPart(slider) ? new SliderInterface(slider) : nullptr;
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        return isNamedPart(button) ? new ButtonInterface(button) : nullptr;
    if (qobject_cast<QLabel*>(widget)) // the most frequent of all widgets
        return nullptr;
    if (isEditor(widget))
        return new EditorInterface(widget);
    if (isSection(widget))
        return new SectionInterface(widget);
    if (qobject_cast<QRenderWidget*>(widget))
        return new Named(widget, QAccessible::Canvas);
    return nullptr;
}

void forget(QAccessibleInterface* interface)
{
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(interface));
}
} // namespace

void EditorAccessibility::install()
{
    if (installed)
        return;
    installed = true;
    QAccessible::installFactory(interfaceOf);
    // Qt asks for every widget that it shows, and caches the answer.
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets)
        if (QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget))
            if (!dynamic_cast<Named*>(interface))
                forget(interface);
}

void EditorAccessibility::uninstall()
{
    if (!installed)
        return;
    installed = false;
    QAccessible::removeFactory(interfaceOf);
    const QSet<Named*> ours = instances();
    for (Named* interface : ours)
        forget(interface);
}

bool EditorAccessibility::isInstalled()
{
    return installed;
}
} // namespace orvek::host

#include "EditorAccessibility.moc"
