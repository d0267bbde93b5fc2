#include <Orvek/Host/ChoiceButton.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorActs.h>
#include <Orvek/Host/LoopWatch.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSlider>

#include <utility>

namespace orvek::host
{
struct ChoiceButton::Private
{
    // What the entries depend on.
    struct Offer
    {
        QStringList names;
        int minimum = 0;
        int maximum = 0;
        bool powerOfTwo = false;
        bool operator==(const Offer& other) const
        {
            return names == other.names && minimum == other.minimum && maximum == other.maximum &&
                   powerOfTwo == other.powerOfTwo;
        }
    };

    Offer offerOf() const;
    void nameIt(ChoiceButton* button) const;
    void refresh(ChoiceButton* button);
    void fill(ChoiceButton* button, int value);
    void choose(ChoiceButton* button, int value);

    QPointer<QIntSliderEdit> editor;
    Offer offer;
    int shown = 0;          // the value of the current entry
    bool hasExtra = false;  // the last entry is a value without a name
    QPointer<QWidget> list; // of the popup, created when it is first opened
    QMetaObject::Connection watch;
    QVector<QPointer<QWidget>> replaced; // hidden in favour of the list
};

ChoiceButton::ChoiceButton(QIntSliderEdit* editor, QWidget* parent) : QComboBox(parent), d(new Private)
{
    setObjectName(QStringLiteral("choiceButton"));
    setFocusPolicy(Qt::StrongFocus); // not focused by the wheel
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // A longer name must not move the row.
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(4);
    if (!editor)
    {
        setEnabled(false);
        return;
    }
    d->editor = editor;
    d->nameIt(this);
    d->offer = d->offerOf();
    d->fill(this, editor->value().toInt());
    connect(editor, &QWidget::windowTitleChanged, this, [this] { d->nameIt(this); });
    connect(editor, &QObject::destroyed, this,
            [this]
            {
                clear();
                setEnabled(false);
            });
    connect(this, QOverload<int>::of(&QComboBox::activated), this,
            [this](int index) { d->choose(this, itemData(index).toInt()); });
}

ChoiceButton::~ChoiceButton()
{
    // An editor that is being destroyed is no longer a QIntSliderEdit.
    if (!qobject_cast<QIntSliderEdit*>(parentWidget()))
        return;
    for (const QPointer<QWidget>& part : std::as_const(d->replaced))
        if (part)
            part->show();
}

ChoiceButton* ChoiceButton::addTo(QIntSliderEdit* editor)
{
    if (!editor)
        return nullptr;
    auto* button = new ChoiceButton(editor, editor);
    const EditorParts parts = partsOf(editor);
    QLineEdit* field = parts.fields.value(0);
    for (QWidget* part : {static_cast<QWidget*>(parts.slider), static_cast<QWidget*>(field)})
        if (part && !part->isHidden())
        {
            part->hide();
            button->d->replaced << part;
        }
    auto* row = qobject_cast<QBoxLayout*>(editor->layout());
    if (row && parts.slider)
        row->insertWidget(row->indexOf(parts.slider), button, 1);
    if (field)
        setTabOrder(field, button);
    return button;
}

QIntSliderEdit* ChoiceButton::editor() const
{
    return d->editor;
}

void ChoiceButton::showPopup()
{
    d->refresh(this);
    d->list = view();
    QComboBox::showPopup();
}

void ChoiceButton::showEvent(QShowEvent* event)
{
    QComboBox::showEvent(event);
    d->refresh(this);
    disconnect(d->watch);
    if (d->editor)
        d->watch = connect(LoopWatch::instance(), &LoopWatch::cameRound, this, [this] { d->refresh(this); });
}

void ChoiceButton::hideEvent(QHideEvent* event)
{
    QComboBox::hideEvent(event);
    disconnect(d->watch);
}

// Starts from the editor's current value.
void ChoiceButton::keyPressEvent(QKeyEvent* event)
{
    d->refresh(this);
    QComboBox::keyPressEvent(event);
}

void ChoiceButton::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

ChoiceButton::Private::Offer ChoiceButton::Private::offerOf() const
{
    return {editor->enums(), editor->minimum(), editor->maximum(), editor->powerOfTwo()};
}

void ChoiceButton::Private::nameIt(ChoiceButton* button) const
{
    button->setAccessibleName(ChoiceButton::tr("%1, choice").arg(titleOf(editor)));
}

// Leaves an open list as the user sees it.
void ChoiceButton::Private::refresh(ChoiceButton* button)
{
    if (!editor || (list && list->isVisible()))
        return;
    // Called on each turn of the event loop. The list of names is shared, so comparing it is as fast as comparing
    // numbers.
    const int value = editor->value().toInt();
    const Offer wanted = offerOf();
    if (wanted == offer && value == shown)
        return;
    const QSignalBlocker blocker(button);
    const int known = button->findData(value);
    if (!(wanted == offer) || known < 0 || hasExtra)
    {
        offer = wanted;
        fill(button, value);
        return;
    }
    shown = value;
    button->setCurrentIndex(known);
}

void ChoiceButton::Private::fill(ChoiceButton* button, int value)
{
    button->clear();
    const int last = qMin(offer.maximum, offer.names.size() - 1);
    for (int named = qMax(offer.minimum, 0); named <= last; ++named)
        if (!offer.powerOfTwo || (named > 0 && (named & (named - 1)) == 0))
            button->addItem(editor->valueToText(named), named);
    hasExtra = button->findData(value) < 0;
    if (hasExtra)
        button->addItem(editor->valueToText(value), value);
    shown = value;
    button->setCurrentIndex(button->findData(value));
}

void ChoiceButton::Private::choose(ChoiceButton* button, int value)
{
    shown = value;
    if (!editor || editor->value().toInt() == value)
        return;
    const QPointer<ChoiceButton> alive(button);
    Q_EMIT EditorActs::instance()->aboutToChange(editor);
    editor->setValue(value);
    Q_EMIT editor->valueChanged();
    // The host may have set another value.
    if (alive)
        refresh(button);
}
} // namespace orvek::host
