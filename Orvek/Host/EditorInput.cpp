#include <Orvek/Host/EditorInput.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorActs.h>
#include <Orvek/Host/EditorTree.h>
#include <Orvek/Host/Expression.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <QtCore/QHash>
#include <QtCore/QMimeData>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QSignalBlocker>
#include <QtGui/QClipboard>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>
#include <utility>

namespace orvek::host
{
namespace
{
// The exact numbers that accompany the rounded "#rrggbb" of a colour.
QString exactFormat()
{
    return QStringLiteral("application/x-orvek-numbers");
}

struct Switches
{
    bool keepsUntouched = true;
    bool restoresOnEscape = true;
    bool holdsReturn = true;
    bool scrollsWithWheel = true;
    bool typesPoint = true;
    bool stepsWithArrows = true;
    bool checksText = true;
    bool evaluates = true;
    bool copiesWhole = true;
    bool tabsToReset = true;

    // Whether this class decides when a field commits, and what.
    bool decide() const { return keepsUntouched || checksText || evaluates || copiesWhole; }
};

// The fewest digits that read back as the same number; a vector's numbers are floats.
QString exactText(double number, bool isFloat)
{
    QString text;
    for (int digits = 6; digits <= 17; ++digits)
    {
        text = QString::number(number, 'g', digits);
        const double back = text.toDouble();
        if (isFloat ? float(back) == float(number) : back == number)
            break;
    }
    return text;
}

bool isInteger(const QWidget* editor)
{
    return editor->property("value").userType() == QMetaType::Int;
}

// Three or four components; empty if the text is anything else.
QVector<double> componentsOf(const QString& text, bool fromColour)
{
    const QString trimmed = text.trimmed();
    if (fromColour && trimmed.startsWith(QLatin1Char('#')) && QColor::isValidColor(trimmed))
    {
        const QColor colour(trimmed);
        QVector<double> components = {colour.red() / 255.0, colour.green() / 255.0, colour.blue() / 255.0};
        if (trimmed.size() == 9)
            components << colour.alpha() / 255.0;
        return components;
    }
    static const QRegularExpression separator(QStringLiteral(R"([\s,;()\[\]{}]+)"));
    const QStringList parts = trimmed.split(separator, Qt::SkipEmptyParts);
    QVector<double> components;
    for (const QString& part : parts)
    {
        bool ok = false;
        components << part.toDouble(&ok);
        if (!ok || !std::isfinite(components.last()))
            return {};
    }
    return components.size() == 3 || components.size() == 4 ? components : QVector<double>();
}

// The editor's reading of a text. Unknown if a host's own editor has no textToValue() that Qt can invoke.
struct Reading
{
    bool isKnown = false;
    bool isValue = false;
    double number = 0.0;
};
Reading readByEditor(QWidget* editor, const QString& text)
{
    Reading reading;
    if (auto* sliderEdit = qobject_cast<QSliderEdit*>(editor))
    {
        reading.isKnown = true;
        reading.number = sliderEdit->textToValue(text, &reading.isValue);
    }
    else if (auto* integerEdit = qobject_cast<QIntSliderEdit*>(editor))
    {
        // textToValue() returns 0 both for "0" and for a text that is not a number.
        reading.isKnown = true;
        const int number = integerEdit->textToValue(text);
        reading.number = number;
        bool isPlain = false;
        static_cast<void>(text.toInt(&isPlain));
        reading.isValue = isPlain || number != 0 || text == integerEdit->valueToText(0);
    }
    else if (readValue(editor).numbers.size() > 1)
    {
        reading.isKnown = true;
        reading.number = text.toDouble(&reading.isValue);
    }
    else if (editor->metaObject()->indexOfMethod("textToValue(QString,bool*)") >= 0)
    {
        reading.isKnown = QMetaObject::invokeMethod(editor, "textToValue", Q_RETURN_ARG(double, reading.number),
                                                    Q_ARG(QString, text), Q_ARG(bool*, &reading.isValue));
    }
    reading.isValue = reading.isValue && !std::isnan(reading.number);
    return reading;
}

// Handles one editor; the editor and its fields are guarded.
class Row final : public QObject
{
public:
    Row(QWidget* editor, const Switches& switches, QObject* parent);
    ~Row() override;
    //! Stops acting. May be called while one of the row's own functions is inside a call to the editor.
    void letGo();
    void markFields();
    void setTabsToReset(bool tabs);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Field
    {
        QPointer<QLineEdit> edit;
        QString text; // before typing began
        bool isWatched = false;
    };

    static QHash<QWidget*, QVector<Row*>>& registry();
    bool acts() const { return m_editor && registry().value(m_key).value(0) == this; }
    bool isNumber() const { return !readValue(m_editor).numbers.isEmpty(); }
    static bool isTouched(const Field& field) { return field.edit->isModified() && field.edit->text() != field.text; }
    void remember(int index);
    void mark(int index);
    bool keyPressed(int index, QKeyEvent* event);
    bool focusLost(int index, QFocusEvent* event);
    void finish(int index, bool leaving);
    bool commit(int index, const QString& text);
    std::optional<Relative> relativeOf(int index, const QString& text) const;
    void commitRelative(int index, const Relative& edit);
    QString textToCommit(int index, const QString& text) const;
    QString withoutUnits(int index, const QString& text) const;
    QString storedText(int index) const;
    bool isStored(int index, const QString& text) const;
    double stepsOf(const QKeyEvent* event) const;
    void step(int index, double count);
    void stepEach(int index, double count);
    double stepped(double number, double count) const;
    void change(const EditorValue& value);
    void copy() const;
    static QString pastedText();
    EditorValue withComponents(const QString& text) const;
    bool setComponents(const QString& text);
    void paste();
    void showMenu(const QPoint& position);

    QWidget* const m_key; // in the registry; the editor may be gone
    QPointer<QWidget> m_editor;
    QPointer<QSlider> m_slider;
    QPointer<QLabel> m_label;
    QPointer<QPushButton> m_reset;
    Qt::FocusPolicy m_resetPolicy = Qt::NoFocus; // from before this row acted
    QVector<Field> m_fields;
    const Switches& m_switches;
};

Row::Row(QWidget* editor, const Switches& switches, QObject* parent)
    : QObject(parent), m_key(editor), m_editor(editor), m_switches(switches)
{
    registry()[m_key] << this;
    const EditorParts parts = partsOf(editor);
    m_slider = parts.slider;
    m_label = parts.label;
    m_reset = parts.reset;
    for (QLineEdit* edit : parts.fields)
    {
        m_fields << Field{edit, QString()};
        edit->installEventFilter(this);
    }
    // Installed after the editor's own filter, so called before it.
    if (m_slider)
        m_slider->installEventFilter(this);
    if (m_label)
        m_label->installEventFilter(this);
    if (m_reset)
        m_resetPolicy = m_reset->focusPolicy();
    setTabsToReset(switches.tabsToReset);
}

Row::~Row()
{
    letGo();
}

void Row::letGo()
{
    setTabsToReset(true);
    const auto rows = registry().find(m_key);
    if (rows != registry().end())
    {
        rows->removeAll(this);
        if (rows->isEmpty())
            registry().erase(rows);
    }
    m_editor = nullptr;
    markFields();
    for (const Field& field : std::as_const(m_fields))
        if (field.edit)
            field.edit->disconnect(this);
    m_fields.clear();
}

QHash<QWidget*, QVector<Row*>>& Row::registry()
{
    static QHash<QWidget*, QVector<Row*>> rows;
    return rows;
}

bool Row::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type())
    {
    case QEvent::Wheel:
        if (watched != m_slider || !m_switches.scrollsWithWheel || !acts())
            return false;
        // Left un-accepted, it goes on to the parents, past the slider and the editor's own filter.
        event->ignore();
        return true;
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::Drop:
    case QEvent::ContextMenu:
        break;
    default:
        return false;
    }
    if (!acts())
        return false;
    if (watched == m_label && event->type() == QEvent::ContextMenu)
    {
        if (!m_switches.copiesWhole || m_label->contextMenuPolicy() != Qt::DefaultContextMenu)
            return false;
        showMenu(static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    int index = 0;
    while (index < m_fields.size() && m_fields[index].edit != watched)
        ++index;
    if (index == m_fields.size())
        return false;
    remember(index);
    if (event->type() == QEvent::FocusOut)
        return focusLost(index, static_cast<QFocusEvent*>(event));
    if (event->type() == QEvent::KeyPress)
        return keyPressed(index, static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::ShortcutOverride)
    {
        // The field's keys take precedence over the window's shortcuts.
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool escapes =
            m_switches.restoresOnEscape && key->matches(QKeySequence::Cancel) && m_fields[index].edit->isModified();
        if (!escapes && (stepsOf(key) == 0.0 || m_fields[index].edit->isReadOnly()))
            return false;
        event->accept();
        return true;
    }
    return false;
}

// Called before any event that can change the text, so a field that is not modified still has its original text. If it
// was modified before this row began to act, the value's text is used instead.
void Row::remember(int index)
{
    Field& field = m_fields[index];
    if (!field.edit->isModified())
        field.text = field.edit->text();
    else if (!field.isWatched)
        field.text = storedText(index);
    if (!std::exchange(field.isWatched, true))
        connect(field.edit, &QLineEdit::textChanged, this, [this, index] { mark(index); });
}

void Row::markFields()
{
    for (int i = 0; i < m_fields.size(); ++i)
        mark(i);
}

void Row::setTabsToReset(bool tabs)
{
    if (m_reset && acts())
        m_reset->setFocusPolicy(tabs ? m_resetPolicy : Qt::ClickFocus);
}

void Row::mark(int index)
{
    const Field& field = m_fields[index];
    if (!field.edit)
        return;
    const bool wasInvalid = field.edit->property("invalid").toBool();
    const bool isInvalid = acts() && m_switches.checksText && isTouched(field) &&
                           textToCommit(index, field.edit->text()).isNull() &&
                           !(m_switches.copiesWhole && withComponents(field.edit->text()).isKnown) &&
                           !relativeOf(index, field.edit->text());
    if (isInvalid == wasInvalid)
        return;
    field.edit->setProperty("invalid", isInvalid ? QVariant(true) : QVariant());
    QStyle* style = field.edit->style();
    style->unpolish(field.edit);
    style->polish(field.edit);
}

bool Row::keyPressed(int index, QKeyEvent* event)
{
    QLineEdit* edit = m_fields[index].edit;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    {
        const bool holds = m_switches.holdsReturn;
        if (!holds && !m_switches.decide())
            return false;
        const QPointer<Row> alive(this);
        if (edit->hasAcceptableInput())
            QMetaObject::invokeMethod(edit, "returnPressed");
        if (alive && m_editor)
            finish(index, false);
        event->setAccepted(holds);
        return true;
    }
    if (m_switches.restoresOnEscape && event->matches(QKeySequence::Cancel) && edit->isModified())
    {
        edit->setText(m_fields[index].text);
        return true;
    }
    const bool isPointKey = event->modifiers().testFlag(Qt::KeypadModifier) && event->text() == QLatin1String(",");
    if (m_switches.typesPoint && isPointKey && isNumber())
    {
        QKeyEvent point(QEvent::KeyPress, Qt::Key_Period, event->modifiers(), QStringLiteral("."),
                        event->isAutoRepeat());
        QCoreApplication::sendEvent(edit, &point);
        return true;
    }
    const double count = stepsOf(event);
    if (count != 0.0 && !edit->isReadOnly())
    {
        step(index, count);
        return true;
    }
    if (!m_switches.copiesWhole)
        return false;
    if (event->matches(QKeySequence::Copy) && !edit->hasSelectedText() && isNumber())
    {
        copy();
        return true;
    }
    return event->matches(QKeySequence::Paste) && !edit->isReadOnly() && setComponents(pastedText());
}

bool Row::focusLost(int index, QFocusEvent* event)
{
    const Field& field = m_fields[index];
    const QWidget* popup = QApplication::activePopupWidget();
    const bool isOwnMenu = event->reason() == Qt::PopupFocusReason && popup && popup->parentWidget() == field.edit;
    if (isOwnMenu || !m_switches.decide() || (!isTouched(field) && !m_switches.keepsUntouched))
        return false;
    // When another window or a menu takes the focus, it will return, and a half-typed expression may be finished then.
    const bool leaves = event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason;
    // The field does everything as usual except emit editingFinished(); finish() does that when it is due.
    const QPointer<Row> alive(this);
    {
        const QSignalBlocker silence(field.edit);
        static_cast<QObject*>(field.edit)->event(event);
    }
    if (alive && m_editor)
        finish(index, leaves);
    return true;
}

void Row::finish(int index, bool leaving)
{
    Field& field = m_fields[index];
    if (!field.edit)
        return;
    const QString typed = field.edit->text();
    if (!isTouched(field))
    {
        if (!m_switches.keepsUntouched)
            QMetaObject::invokeMethod(field.edit, "editingFinished");
        else if (leaving)
            field.edit->setModified(false);
        return;
    }
    if (const std::optional<Relative> edit = relativeOf(index, typed))
    {
        commitRelative(index, *edit);
        return;
    }
    if ((m_switches.copiesWhole && setComponents(typed)) || commit(index, typed))
        return;
    if (m_switches.checksText)
    {
        if (leaving)
            field.edit->setText(field.text);
        return;
    }
    QMetaObject::invokeMethod(field.edit, "editingFinished");
}

// Returns false if the text is not a value.
bool Row::commit(int index, const QString& text)
{
    const QPointer<QLineEdit> edit = m_fields[index].edit;
    const QString ready = textToCommit(index, text);
    if (!edit || ready.isNull())
        return false;
    if (ready != edit->text())
        edit->setText(ready);
    if (!edit->hasAcceptableInput())
        return false;
    edit->setModified(true);
    const QPointer<Row> alive(this);
    QMetaObject::invokeMethod(edit, "editingFinished");
    if (!alive || !m_editor || !edit)
        return true;
    if (ready != text || (m_switches.checksText && !isStored(index, text)))
        edit->setText(storedText(index));
    edit->setModified(false);
    mark(index);
    return true;
}

// Empty if the text is not a relative edit or the editor has names. A summand is in the units shown; a factor is not.
std::optional<Relative> Row::relativeOf(int index, const QString& text) const
{
    const std::optional<RelativeText> typed = m_switches.evaluates ? relativeText(text) : std::nullopt;
    if (!typed || !isNumber() || !m_editor->property("enums").toStringList().isEmpty())
        return {};
    std::optional<double> operand = evaluate(withoutUnits(index, typed->operand));
    const bool adds = typed->operation == '+' || typed->operation == '-';
    if (operand && adds && !isInteger(m_editor))
    {
        const Reading reading = readByEditor(m_editor, exactText(*operand, false));
        if (reading.isValue)
            operand = reading.number;
    }
    if (!operand || (typed->operation == '/' && *operand == 0.0))
        return {};
    return Relative{typed->operation, *operand};
}

void Row::commitRelative(int index, const Relative& edit)
{
    const QPointer<Row> alive(this);
    bool isDone = false;
    Q_EMIT EditorActs::instance()->relativeEdit(m_editor, index, edit, &isDone);
    if (!alive || !m_editor)
        return;
    EditorValue value = readValue(m_editor);
    if (!isDone && index < value.numbers.size())
    {
        const double number = edit.of(value.numbers[index]);
        constexpr std::numeric_limits<int> range;
        value.numbers[index] =
            isInteger(m_editor) ? qBound(double(range.min()), std::round(number), double(range.max())) : number;
        if (std::isfinite(number))
            change(value);
        if (!alive || !m_editor)
            return;
        if (QLineEdit* edited = m_fields[index].edit)
            edited->setText(storedText(index));
    }
    mark(index);
}

// The text to pass to the editor for a typed text; null if that is not a value.
QString Row::textToCommit(int index, const QString& text) const
{
    QString given = text.isNull() ? QString(QLatin1String("")) : text;
    if (!isNumber())
        return given;
    const bool integer = isInteger(m_editor);
    if (integer && m_switches.evaluates)
    {
        // Before numbers, as a name may look like one.
        const QStringList names = m_editor->property("enums").toStringList();
        const int exact = names.indexOf(given.trimmed());
        for (int i = 0; i < names.size(); ++i)
            if (i == exact || (exact < 0 && names[i].compare(given.trimmed(), Qt::CaseInsensitive) == 0))
                return QString::number(i);
    }
    const Reading reading = readByEditor(m_editor, given);
    bool isPlain = false;
    static_cast<void>(given.toDouble(&isPlain));
    if (reading.isValue || (!reading.isKnown && isPlain))
        return given;
    const std::optional<double> result =
        m_switches.evaluates ? evaluate(withoutUnits(index, given)) : std::optional<double>();
    if (!result)
        return reading.isKnown ? QString() : given;
    constexpr std::numeric_limits<int> range;
    const double number = integer ? qBound(double(range.min()), std::round(*result), double(range.max())) : *result;
    const QString ready = integer ? QString::number(int(number)) : exactText(number, false);
    return !reading.isKnown || readByEditor(m_editor, ready).isValue ? ready : QString();
}

// Removes a sign such as % or ° that a derived editor writes, and the units shown after the field.
QString Row::withoutUnits(int index, const QString& text) const
{
    static const QRegularExpression number(QStringLiteral(R"(^[-+]?[\d.]+(e[-+]?\d+)?)"));
    const QString shown = storedText(index).trimmed();
    const QRegularExpressionMatch match = number.match(shown);
    QStringList units;
    for (const QString& unit : {shown.mid(match.hasMatch() ? int(match.capturedEnd()) : int(shown.size())).trimmed(),
                                m_editor->property("units").toString().trimmed()})
        if (!unit.isEmpty())
            units << QRegularExpression::escape(unit);
    if (units.isEmpty())
        return text;
    const QRegularExpression behindNumber(
        QStringLiteral(R"((?<=[\d.)])\s*(?:%1)(?![\w(]))").arg(units.join(QLatin1Char('|'))));
    return QString(text).replace(behindNumber, QStringLiteral(" "));
}

QString Row::storedText(int index) const
{
    return textsOfValue(m_editor).value(index);
}

// Whether the committed text is now the value. Texts of whole numbers have only one form.
bool Row::isStored(int index, const QString& text) const
{
    const EditorValue value = readValue(m_editor);
    const Reading reading = readByEditor(m_editor, text);
    if (value.numbers.isEmpty() || !reading.isKnown)
        return true;
    if (isInteger(m_editor))
        return text == storedText(index);
    const double stored = value.numbers.value(index);
    return value.numbers.size() == 3 ? float(stored) == float(reading.number) : stored == reading.number;
}

double Row::stepsOf(const QKeyEvent* event) const
{
    if (!m_switches.stepsWithArrows || (event->key() != Qt::Key_Up && event->key() != Qt::Key_Down) || !isNumber())
        return 0.0;
    const double sign = event->key() == Qt::Key_Up ? 1.0 : -1.0;
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (modifiers == Qt::ShiftModifier)
        return sign * 10.0;
    if (modifiers == Qt::ControlModifier)
        return sign * 0.1;
    return modifiers == Qt::NoModifier ? sign : 0.0;
}

void Row::step(int index, double count)
{
    const QPointer<Row> alive(this);
    if (isTouched(m_fields[index]))
        finish(index, true);
    if (!alive || !m_editor)
        return;
    if (m_fields[index].edit->property("mixed").toBool())
    {
        stepEach(index, count);
        return;
    }
    EditorValue value = readValue(m_editor);
    if (index >= value.numbers.size())
        return;
    // The last digits are dropped, so that ten steps of 0.1 make 1; a vector has floats.
    const double number = stepped(value.numbers[index], count);
    value.numbers[index] = QString::number(number, 'g', value.numbers.size() == 3 ? 7 : 15).toDouble();
    if (std::isfinite(number))
        change(value);
}

// Steps each of several values behind a blank field.
void Row::stepEach(int index, double count)
{
    const double minimum = m_editor->property("minimum").toDouble();
    const bool isFactor =
        m_editor->property("powerOfTwo").toBool() ||
        (m_editor->property("logarithmic").toBool() && minimum > 0.0 && !(m_editor->property("step").toDouble() > 0.0));
    constexpr double base = 1024.0; // a power of two that can be stepped in both directions
    const Relative edit{isFactor ? '*' : '+', isFactor ? stepped(base, count) / base : stepped(0.0, count)};
    bool isDone = false;
    if (std::isfinite(edit.operand))
        Q_EMIT EditorActs::instance()->relativeEdit(m_editor, index, edit, &isDone);
}

double Row::stepped(double number, double count) const
{
    const double step = m_editor->property("step").toDouble();
    if (isInteger(m_editor))
    {
        if (m_editor->property("powerOfTwo").toBool())
        {
            const double exponent = std::round(std::log2(std::max(1.0, number)));
            const double doublings = std::copysign(std::max(1.0, std::abs(count)), count);
            return std::ldexp(1.0, int(qBound(0.0, exponent + doublings, 30.0)));
        }
        const double distance = std::max(1.0, std::round(std::abs(count) * (step > 0.0 ? step : 1.0)));
        constexpr std::numeric_limits<int> range;
        return qBound(double(range.min()), number + std::copysign(distance, count), double(range.max()));
    }
    if (step > 0.0)
        return number + count * step;
    const double minimum = m_editor->property("minimum").toDouble();
    const double maximum = m_editor->property("maximum").toDouble();
    if (!(minimum < maximum) || !std::isfinite(maximum - minimum))
        return number + count * (isColour(m_editor) ? 0.01 : 0.1);
    if (m_editor->property("logarithmic").toBool() && minimum > 0.0)
        return number * std::pow(maximum / minimum, count / 100.0);
    return number + count * (maximum - minimum) / 100.0;
}

// Writes the exact number, which a text would round, and emits valueChanged() once.
void Row::change(const EditorValue& value)
{
    const EditorValue before = readValue(m_editor);
    writeValue(m_editor, value);
    if (readValue(m_editor) != before)
        QMetaObject::invokeMethod(m_editor, "valueChanged");
}

void Row::copy() const
{
    if (!m_editor)
        return;
    const EditorValue value = readValue(m_editor);
    QString text = value.text;
    auto* data = new QMimeData;
    if (value.numbers.size() == 1)
    {
        // All digits, unless the editor shows the value in other units.
        text = exactText(value.numbers[0], false);
        if (isInteger(m_editor) || readByEditor(m_editor, text).number != value.numbers[0])
            text = storedText(0);
    }
    else if (!value.numbers.isEmpty())
    {
        QStringList components;
        for (const double number : value.numbers)
            components << exactText(number, value.numbers.size() == 3);
        text = components.join(QLatin1Char(' '));
        data->setData(exactFormat(), text.toLatin1());
        const bool alphaIsHidden = m_fields.size() > 3 && m_fields[3].edit && m_fields[3].edit->isHidden();
        const auto isShade = [](double number) { return number >= 0.0 && number <= 1.0; };
        if (isColour(m_editor) && std::all_of(value.numbers.cbegin(), value.numbers.cend(), isShade) &&
            (value.numbers.value(3, 1.0) == 1.0 || alphaIsHidden))
            text = QColor::fromRgbF(value.numbers[0], value.numbers[1], value.numbers[2]).name();
    }
    data->setText(text);
    QApplication::clipboard()->setMimeData(data);
}

QString Row::pastedText()
{
    const QMimeData* data = QApplication::clipboard()->mimeData();
    if (!data)
        return {};
    return data->hasFormat(exactFormat()) ? QString::fromLatin1(data->data(exactFormat())) : data->text();
}

// The value with the components in the text; unknown if the editor or the text has none.
EditorValue Row::withComponents(const QString& text) const
{
    EditorValue value = readValue(m_editor);
    const QVector<double> components = componentsOf(text, isColour(m_editor));
    value.isKnown = value.numbers.size() >= 3 && !components.isEmpty();
    for (int i = 0; value.isKnown && i < components.size() && i < value.numbers.size(); ++i)
        value.numbers[i] = components[i];
    return value;
}

// Sets all as one change. Returns false if the text has no components.
bool Row::setComponents(const QString& text)
{
    const EditorValue value = withComponents(text);
    if (value.isKnown)
        change(value);
    return value.isKnown;
}

void Row::paste()
{
    if (!m_editor)
        return;
    const QString text = pastedText();
    if (!setComponents(text) && readValue(m_editor).numbers.size() <= 1)
        commit(0, isNumber() ? text.trimmed() : text);
}

void Row::showMenu(const QPoint& position)
{
    const EditorValue value = readValue(m_editor);
    const QString text = pastedText();
    const bool fits = value.numbers.size() > 1 ? withComponents(text).isKnown
                                               : !text.isEmpty() && !textToCommit(0, text.trimmed()).isNull();
    const QLineEdit* first = m_fields.first().edit;
    auto* menu = new QMenu(m_editor);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* copyAction = menu->addAction(EditorInput::tr("Copy"), this, [this] { copy(); });
    copyAction->setEnabled(value.isKnown);
    QAction* pasteAction = menu->addAction(EditorInput::tr("Paste"), this, [this] { paste(); });
    pasteAction->setEnabled(value.isKnown && fits && first && !first->isReadOnly());
    QAction* resetAction = menu->addAction(EditorInput::tr("Reset"));
    resetAction->setEnabled(m_reset && m_reset->isEnabled());
    if (m_reset)
        connect(resetAction, &QAction::triggered, m_reset, &QPushButton::click);
    menu->popup(position);
}
} // namespace

struct EditorInput::Private
{
    explicit Private(QWidget* root) : tree(EditorTree::of(root)) {}

    void follow(QWidget* widget, EditorInput* input)
    {
        if (isEditor(widget) && rows.find(widget) == rows.end())
            rows.emplace(widget, new Row(widget, switches, input));
    }
    void leave(QWidget* widget)
    {
        const auto row = rows.find(widget);
        if (row == rows.end())
            return;
        row->second->letGo();
        row->second->deleteLater();
        rows.erase(row);
    }
    void markFields() const
    {
        for (const auto& entry : rows)
            entry.second->markFields();
    }

    Switches switches;
    const std::shared_ptr<EditorTree> tree;
    std::unordered_map<QWidget*, Row*> rows; // children of the EditorInput
};

EditorInput::EditorInput(QWidget* root, QObject* parent) : QObject(parent), d(new Private(root))
{
    connect(d->tree.get(), &EditorTree::entered, this, [this](QWidget* widget) { d->follow(widget, this); });
    connect(d->tree.get(), &EditorTree::left, this, [this](QWidget* widget) { d->leave(widget); });
    connect(root, &QObject::destroyed, this, [this, root] { d->leave(root); });
    d->follow(root, this);
    const QVector<QWidget*> widgets = d->tree->widgets();
    for (QWidget* widget : widgets)
        d->follow(widget, this);
}

EditorInput::~EditorInput()
{
    for (const auto& entry : d->rows)
        delete entry.second;
}

bool EditorInput::keepsUntouched() const
{
    return d->switches.keepsUntouched;
}

void EditorInput::setKeepsUntouched(bool keeps)
{
    d->switches.keepsUntouched = keeps;
}

bool EditorInput::restoresOnEscape() const
{
    return d->switches.restoresOnEscape;
}

void EditorInput::setRestoresOnEscape(bool restores)
{
    d->switches.restoresOnEscape = restores;
}

bool EditorInput::holdsReturn() const
{
    return d->switches.holdsReturn;
}

void EditorInput::setHoldsReturn(bool holds)
{
    d->switches.holdsReturn = holds;
}

bool EditorInput::scrollsWithWheel() const
{
    return d->switches.scrollsWithWheel;
}

void EditorInput::setScrollsWithWheel(bool scrolls)
{
    d->switches.scrollsWithWheel = scrolls;
}

bool EditorInput::typesPoint() const
{
    return d->switches.typesPoint;
}

void EditorInput::setTypesPoint(bool types)
{
    d->switches.typesPoint = types;
}

bool EditorInput::stepsWithArrows() const
{
    return d->switches.stepsWithArrows;
}

void EditorInput::setStepsWithArrows(bool steps)
{
    d->switches.stepsWithArrows = steps;
}

bool EditorInput::checksText() const
{
    return d->switches.checksText;
}

void EditorInput::setChecksText(bool checks)
{
    d->switches.checksText = checks;
    d->markFields();
}

bool EditorInput::evaluates() const
{
    return d->switches.evaluates;
}

void EditorInput::setEvaluates(bool evaluates)
{
    d->switches.evaluates = evaluates;
    d->markFields();
}

bool EditorInput::copiesWhole() const
{
    return d->switches.copiesWhole;
}

void EditorInput::setCopiesWhole(bool copies)
{
    d->switches.copiesWhole = copies;
    d->markFields();
}

bool EditorInput::tabsToReset() const
{
    return d->switches.tabsToReset;
}

void EditorInput::setTabsToReset(bool tabs)
{
    d->switches.tabsToReset = tabs;
    for (const auto& entry : d->rows)
        entry.second->setTabsToReset(tabs);
}
} // namespace orvek::host
