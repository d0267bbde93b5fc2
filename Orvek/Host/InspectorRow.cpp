#include <Orvek/Host/InspectorRow.h>

#include <Orvek/Host/ColourButton.h>
#include <Orvek/Host/ObjectType.h>
#include <Orvek/Host/PropertyEditors.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtCore/QScopedValueRollback>
#include <QtGui/QColor>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orvek::host
{
namespace
{
constexpr double blank = std::numeric_limits<double>::quiet_NaN(); // differs from anything the user enters
constexpr QChar dash(0x2014);

// The value of a text editor while the texts differ. Nobody types this, so any other text is an edit.
QString blankText()
{
    return QString(dash) + QChar(0x200B);
}

// Unrounded.
QVector<double> exactNumbers(const QVariant& value)
{
    if (value.userType() == QMetaType::QColor)
    {
        const auto colour = value.value<QColor>();
        return {double(colour.redF()), double(colour.greenF()), double(colour.blueF()), double(colour.alphaF())};
    }
    return shownNumbers(value);
}

double clamped(const Property& property, double number)
{
    const bool hasRange = property.kind == PropertyKind::Number || property.kind == PropertyKind::Integer ||
                          property.kind == PropertyKind::PowerOfTwo || property.kind == PropertyKind::Vector ||
                          property.kind == PropertyKind::Colour;
    if (!hasRange || std::isnan(number))
        return number;
    return std::min(std::max(number, property.minimum), property.maximum);
}

QColor withComponent(QColor colour, int component, double number)
{
    // Not QColor::setRedF() and the like: they print warnings, and in other colour models change the other components.
    QRgba64 rgba = colour.rgba64();
    const auto part = quint16(std::lround(qBound(0.0, number, 1.0) * 65535.0));
    switch (component)
    {
    case 0:
        rgba.setRed(part);
        break;
    case 1:
        rgba.setGreen(part);
        break;
    case 2:
        rgba.setBlue(part);
        break;
    default:
        rgba.setAlpha(part);
        break;
    }
    return QColor::fromRgba64(rgba);
}

QVariant withNumber(const Property& property, const QVariant& old, int component, double number)
{
    if (!std::isfinite(number))
        return old;
    const double inRange = clamped(property, number);
    if (old.userType() == QMetaType::QVector3D)
    {
        auto vector = old.value<QVector3D>();
        vector[component] = float(inRange);
        return vector;
    }
    if (old.userType() == QMetaType::QColor)
        return withComponent(old.value<QColor>(), component, inRange);
    switch (property.kind)
    {
    case PropertyKind::PowerOfTwo:
        return int(std::ldexp(1.0, int(std::lround(std::log2(std::max(1.0, inRange))))));
    case PropertyKind::Integer:
        return int(std::lround(inRange));
    default:
        return inRange;
    }
}

// Float and double of the same number count as equal, as many objects hold floats.
bool sameNumber(double a, double b)
{
    return a == b || float(a) == float(b) || (std::isnan(a) && std::isnan(b));
}

void setMark(QWidget* widget, bool mixed)
{
    if (!widget || widget->property("mixed").toBool() == mixed)
        return;
    widget->setProperty("mixed", mixed ? QVariant(true) : QVariant());
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

bool isAround(const QWidget* editor, const QWidget* inner)
{
    while (inner && inner != editor)
        inner = inner->parentWidget();
    return inner;
}
} // namespace

InspectorRow::InspectorRow(const Property& description, QString path, QWidget* editor, QWidget* row, Edited edited)
    : m_description(description),
      m_path(std::move(path)),
      m_editor(editor),
      m_row(row),
      m_box(qobject_cast<QCheckBox*>(editor)),
      m_edited(std::move(edited))
{
    const EditorParts parts = partsOf(editor);
    for (QLineEdit* field : parts.fields)
        m_fields << field;
    m_slider = parts.slider;
    if (m_box || qobject_cast<QColourEdit*>(editor))
        m_reset = row->findChild<QPushButton*>(QStringLiteral("reset"), Qt::FindDirectChildrenOnly);
    if (m_reset)
        m_resetting = QObject::connect(m_reset, &QPushButton::clicked, editor, [this] { reset(); });
}

InspectorRow::~InspectorRow()
{
    QObject::disconnect(m_resetting);
}

void InspectorRow::bind(std::shared_ptr<Selection> selection, const SharedProperty& property)
{
    const bool wasBound = bool(m_selection);
    m_selection = std::move(selection);
    m_property = property;
    // Typed text was meant for the previous objects.
    if (std::any_of(m_fields.cbegin(), m_fields.cend(), [](const auto& field) { return field && field->isModified(); }))
        m_isShown = false;
    m_hasEnabledWhen = m_hasShownWhen = false;
    if (!m_selection)
    {
        if (m_editor)
            m_editor->setEnabled(false);
        return;
    }
    if (m_editor && !wasBound && !m_description.readOnly)
        m_editor->setEnabled(true);
    m_selection->forEachDescription(m_property,
                                    [this](const Property& described)
                                    {
                                        m_hasEnabledWhen = m_hasEnabledWhen || described.enabledWhen;
                                        m_hasShownWhen = m_hasShownWhen || described.shownWhen;
                                    });
}

bool InspectorRow::refresh()
{
    if (!m_editor || !m_selection)
        return true;
    if (m_hasEnabledWhen || m_hasShownWhen)
        askConditions();
    QVariant value = m_selection->first(m_property);
    const unsigned mixed = m_selection->differences(m_property);
    if (m_isShown && mixed == m_mixed && identical(value, m_value))
        return true;
    if (m_isShown && isUsed())
        return false;
    show(value, mixed);
    return true;
}

// An edit changes all objects, so all of them must allow it.
void InspectorRow::askConditions()
{
    bool isEnabled = true;
    bool isVisible = true;
    m_selection->forEach(m_property,
                         [&](const ObjectType& type, int index, void* object)
                         {
                             const Property& described = type.properties().at(index);
                             isEnabled = isEnabled && (!described.enabledWhen || described.enabledWhen(object));
                             isVisible = isVisible && (!described.shownWhen || described.shownWhen(object));
                             return isEnabled || isVisible;
                         });
    if (m_hasEnabledWhen && !m_description.readOnly)
        m_row->setEnabled(isEnabled);
    if (m_hasShownWhen && m_isHidden == isVisible)
    {
        m_isHidden = !isVisible;
        m_row->setVisible(isVisible);
    }
}

bool InspectorRow::isUsed() const
{
    for (const QPointer<QLineEdit>& field : m_fields)
        if (field && field->isModified() && field->window()->focusWidget() == field)
            return true;
    if (m_slider && m_slider->isSliderDown())
        return true;
    const auto* swatch = m_editor->findChild<ColourButton*>(QString(), Qt::FindDirectChildrenOnly);
    return (swatch && swatch->dialog()) || isAround(m_editor, QApplication::activePopupWidget()) ||
           isAround(m_editor, QApplication::activeModalWidget());
}

QVariant InspectorRow::state() const
{
    const auto state = std::make_shared<Selection::State>();
    if (m_selection)
    {
        state->selection = m_selection;
        state->property = m_property;
        state->path = m_path;
        state->values = m_selection->values(m_property);
    }
    return QVariant::fromValue(std::shared_ptr<const Selection::State>(state));
}

bool InspectorRow::isSame(const QVariant& a, const QVariant& b) const
{
    const auto first = a.value<std::shared_ptr<const Selection::State>>();
    const auto second = b.value<std::shared_ptr<const Selection::State>>();
    return first && second && first->selection == second->selection &&
           std::equal(first->values.cbegin(), first->values.cend(), second->values.cbegin(), second->values.cend(),
                      [](const QVariant& one, const QVariant& other) { return identical(one, other); });
}

void InspectorRow::take()
{
    if (!m_editor || !m_selection || m_isShowing)
        return;
    const std::shared_ptr<Selection> selection = m_selection;
    selection->resolve();
    EditorValue now;
    if (m_box)
        now.numbers << (m_box->checkState() == Qt::Unchecked ? 0.0 : 1.0);
    else
        now = readValue(m_editor);
    // Each object gets its own value back, with the digits that the editor lacks.
    if (m_start.isValid() && now == m_startShown)
    {
        restore(QVariant(m_start));
        return;
    }
    const unsigned components = editedComponents(now);
    bool isChanged = false;
    selection->forEach(m_property,
                       [&](const ObjectType& type, int index, void* object)
                       {
                           const QVariant old = type.read(object, index);
                           const QVariant value = m_change ? related(old) : changed(old, now, components);
                           if (!identical(old, value))
                               isChanged = type.write(object, index, value) || isChanged;
                           return true;
                       });
    const QVariant value = selection->first(m_property);
    const unsigned mixed = selection->differences(m_property);
    if (!m_change && isShowing(value, mixed, now))
    {
        m_value = value;
        m_mixed = mixed;
        m_shown = now;
        mark();
    }
    else
        show(value, mixed);
    if (!isChanged)
        return;
    m_edited(selection->roots(), m_path);
    // A slot that rejects the value has stored another one: show it at once, even while the field has the focus.
    const QVariant kept = selection->first(m_property);
    if (m_editor && m_selection == selection && !identical(kept, m_value))
        show(kept, selection->differences(m_property));
}

void InspectorRow::show()
{
    if (m_selection && m_editor)
        show(m_selection->first(m_property), m_selection->differences(m_property));
}

void InspectorRow::restore(const QVariant& state)
{
    const auto stored = state.value<std::shared_ptr<const Selection::State>>();
    if (!stored || !stored->selection)
        return;
    stored->selection->resolve();
    stored->selection->write(stored->property, stored->values);
    show();
    m_edited(stored->selection->roots(), stored->path);
}

void InspectorRow::change(int component, const Relative& edit)
{
    m_change = Change{component, edit};
    QMetaObject::invokeMethod(m_editor, "valueChanged", Qt::DirectConnection);
    m_change.reset();
}

void InspectorRow::beginAct()
{
    m_start = state();
    m_startShown = m_shown;
}

// Acts through the editor, so it is an undo step like any other edit.
void InspectorRow::reset()
{
    const QVariant& value = m_description.defaultValue;
    if (!value.isValid() || !m_editor)
        return;
    if (m_box)
    {
        m_box->setCheckState(value.toBool() ? Qt::Checked : Qt::Unchecked);
        Q_EMIT m_box->clicked(value.toBool());
        return;
    }
    {
        const QScopedValueRollback<bool> guard(m_isShowing, true);
        writeValue(m_editor, editorValue(value, 0));
    }
    QMetaObject::invokeMethod(m_editor, "valueChanged", Qt::DirectConnection);
}

// The components changed by the user: those that differ from what was shown, including blank ones.
unsigned InspectorRow::editedComponents(const EditorValue& now) const
{
    if (m_box || now.numbers.size() == 1)
        return 1;
    if (now.numbers.isEmpty())
        return unsigned(now.text != m_shown.text);
    unsigned components = 0;
    for (int i = 0; i < now.numbers.size(); ++i)
    {
        const double shown = m_shown.numbers.value(i, blank);
        if (!std::isnan(now.numbers[i]) && now.numbers[i] != shown)
            components |= 1U << i;
    }
    return components;
}

// The object's new value if the editor has this value now.
QVariant InspectorRow::changed(const QVariant& old, const EditorValue& now, unsigned components) const
{
    if (!components)
        return old;
    switch (m_description.kind)
    {
    case PropertyKind::Flag:
        return now.numbers.value(0) != 0.0;
    case PropertyKind::Text:
    case PropertyKind::File:
        return now.text;
    case PropertyKind::Choice:
    {
        const int index = int(now.numbers.value(0, -1.0));
        const bool isChoice = index >= 0 && index < m_description.choices.size();
        return isChoice ? QVariant(m_description.choices[index].value) : old;
    }
    default:
        break;
    }
    QVariant value = old;
    const int count = int(shownNumbers(old).size());
    for (int i = 0; i < now.numbers.size() && i < count; ++i)
        if (components & (1U << i))
            value = withNumber(m_description, value, i, now.numbers[i]);
    return value;
}

QVariant InspectorRow::related(const QVariant& old) const
{
    const QVector<double> numbers = exactNumbers(old);
    if (m_change->component >= numbers.size())
        return old;
    return withNumber(m_description, old, m_change->component, m_change->edit.of(numbers[m_change->component]));
}

// A value that differs from the default if any object has one: the editor's own reset button depends on its value.
QVariant InspectorRow::unlikeDefault() const
{
    QVariant found;
    m_selection->forEach(m_property,
                         [&](const ObjectType& type, int index, void* object)
                         {
                             found = type.read(object, index);
                             return m_description.defaultValue.isValid() &&
                                    identical(found, m_description.defaultValue);
                         });
    return found;
}

// For a choice it also adds an entry for a value that is not a choice, or a dash for differing ones.
EditorValue InspectorRow::editorValue(const QVariant& value, unsigned mixed)
{
    switch (m_description.kind)
    {
    case PropertyKind::Text:
    case PropertyKind::File:
        return {{}, mixed ? blankText() : value.toString()};
    case PropertyKind::Choice:
    {
        const QVector<PropertyChoice>& choices = m_description.choices;
        int index = 0;
        while (index < choices.size() && choices[index].value != value.toInt())
            ++index;
        const bool isMore = mixed || index == choices.size();
        const QString more = !isMore ? QString() : mixed ? QString(dash) : value.toString();
        if (more != m_moreChoice)
            setChoices(m_editor, m_description, more);
        m_moreChoice = more;
        return {{double(isMore ? choices.size() : index)}, QString()};
    }
    case PropertyKind::Number:
        if (mixed && !qobject_cast<QSliderEdit*>(m_editor))
            return {shownNumbers(unlikeDefault()), QString()};
        break;
    case PropertyKind::Integer:
    case PropertyKind::PowerOfTwo:
        return {shownNumbers(mixed ? unlikeDefault() : value), QString()};
    default:
        break;
    }
    EditorValue shown{shownNumbers(value), QString()};
    for (int i = 0; i < shown.numbers.size(); ++i)
        if (mixed & (1U << i))
            shown.numbers[i] = blank;
    const int count = int(readValue(m_editor).numbers.size());
    while (shown.numbers.size() < count)
        shown.numbers << 1.0; // alpha of a colour that has none
    shown.numbers.resize(count);
    return shown;
}

// Whether the editor already shows this value, as after an edit; then its text and handle stay as the user left them.
bool InspectorRow::isShowing(const QVariant& value, unsigned mixed, const EditorValue& now) const
{
    if (m_box || m_description.kind == PropertyKind::Choice)
        return false;
    if (now.numbers.isEmpty())
        return !mixed && now.text == value.toString();
    const QVector<double> numbers = shownNumbers(value);
    for (int i = 0; i < now.numbers.size() && i < numbers.size(); ++i)
    {
        const bool isMixed = mixed & (1U << i);
        if (isMixed ? !std::isnan(now.numbers[i]) : !sameNumber(now.numbers[i], numbers[i]))
            return false;
    }
    return true;
}

void InspectorRow::show(const QVariant& value, unsigned mixed)
{
    const QScopedValueRollback<bool> guard(m_isShowing, true);
    m_isShown = true;
    m_value = value;
    m_mixed = mixed;
    if (m_box)
    {
        showFlag(value.toBool(), mixed);
        return;
    }
    const EditorValue shown = editorValue(value, mixed);
    if (auto* slider = qobject_cast<QSliderEdit*>(m_editor))
        slider->setValue(shown.numbers[0]);
    else if (auto* vector = qobject_cast<QVectorEdit*>(m_editor))
        vector->setValue(QVector3D(float(shown.numbers[0]), float(shown.numbers[1]), float(shown.numbers[2])));
    else
        writeValue(m_editor, shown);
    m_shown = readValue(m_editor);
    mark();
    if (m_reset && m_description.defaultValue.isValid())
        m_reset->setEnabled(mixed || !identical(value, m_description.defaultValue));
}

void InspectorRow::showFlag(bool value, bool mixed)
{
    const QSignalBlocker silence(m_box);
    m_box->setTristate(mixed);
    m_box->setCheckState(mixed ? Qt::PartiallyChecked : value ? Qt::Checked : Qt::Unchecked);
    setMark(m_box, mixed);
    const QVariant& reset = m_description.defaultValue;
    if (m_reset)
        m_reset->setEnabled(reset.isValid() && !m_description.readOnly && (mixed || value != reset.toBool()));
}

// Blanks the fields of components that differ.
void InspectorRow::mark()
{
    const auto* list = m_editor->findChild<QComboBox*>(QStringLiteral("choiceButton"), Qt::FindDirectChildrenOnly);
    setMark(const_cast<QComboBox*>(list), m_mixed);
    for (int i = 0; i < m_fields.size(); ++i)
    {
        QLineEdit* field = m_fields[i];
        const unsigned bit = 1U << i;
        if (!field || !((m_mixed | m_marked) & bit))
            continue;
        if (m_mixed & bit && m_description.kind != PropertyKind::Choice)
            field->setText(QString()); // clear() would count as typed
        field->setPlaceholderText(m_mixed & bit ? QString(dash) : QString());
        setMark(field, m_mixed & bit);
    }
    setMark(m_editor, m_mixed);
    m_marked = m_mixed;
}
} // namespace orvek::host
