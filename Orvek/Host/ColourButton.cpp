#include <Orvek/Host/ColourButton.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorActs.h>
#include <Orvek/Host/LoopWatch.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace orvek::host
{
namespace
{
constexpr int checkSize = 4;       // of the checked pattern behind a colour with alpha, pixels
constexpr int narrowestPlace = 16; // of a units label that has room for the button, pixels

bool hasColour(const QWidget* editor)
{
    const EditorValue value = readValue(editor);
    return value.isKnown && (value.numbers.size() == 3 || value.numbers.size() == 4);
}

double shown(double component)
{
    return component > 0.0 ? qMin(component, 1.0) : 0.0; // NaN becomes 0
}

QColor colourOf(const EditorValue& value, bool alpha)
{
    const QVector<double>& numbers = value.numbers;
    return QColor::fromRgbF(shown(numbers.value(0)), shown(numbers.value(1)), shown(numbers.value(2)),
                            alpha ? shown(numbers.value(3)) : 1.0);
}

QVector<int> components(const QColor& colour)
{
    return {colour.red(), colour.green(), colour.blue(), colour.alpha()};
}

QStringList textsOf(const QVector<QLineEdit*>& fields)
{
    QStringList texts;
    for (const QLineEdit* field : fields)
        texts << field->text();
    return texts;
}

// By name, as the editors have no base class with this signal.
void announce(QWidget* editor)
{
    QMetaObject::invokeMethod(editor, "valueChanged", Qt::DirectConnection);
}
} // namespace

struct ColourButton::Private
{
    bool hasAlpha() const;
    bool isNew();
    void nameIt(ColourButton* button) const;
    void choose(const QColor& colour);
    void putBack();
    void dropDialog(ColourButton* button);

    QPointer<QWidget> editor;
    const QVectorEdit* vector = nullptr; // the editor, if it is one; see isNew()
    const QColourEdit* rgba = nullptr;
    QPointer<QLineEdit> alphaField;
    QPointer<QLayout> ownLayout;     // made for the button in a units label
    std::array<double, 5> seen = {}; // the components, and whether alpha is shown
    QMetaObject::Connection watch;

    // While the dialog is open: how it began.
    QPointer<QColorDialog> dialog;
    EditorValue start;
    QStringList startTexts;
    QColor startColour;
    bool isChanged = false; // a colour has been chosen
};

ColourButton::ColourButton(QWidget* editor, QWidget* parent) : QToolButton(parent), d(new Private)
{
    setObjectName(QStringLiteral("colourButton"));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setToolTip(tr("Choose a colour"));
    setAttribute(Qt::WA_Hover);
    if (!editor || !hasColour(editor))
    {
        setEnabled(false);
        return;
    }
    d->editor = editor;
    d->vector = qobject_cast<const QVectorEdit*>(editor);
    d->rgba = qobject_cast<const QColourEdit*>(editor);
    const QVector<QLineEdit*> fields = partsOf(editor).fields;
    if (fields.size() == 4)
        d->alphaField = fields.last();
    d->nameIt(this);
    connect(editor, &QWidget::windowTitleChanged, this, [this] { d->nameIt(this); });
    connect(editor, &QObject::destroyed, this,
            [this]
            {
                d->dropDialog(this);
                setEnabled(false);
            });
    connect(this, &QAbstractButton::clicked, this, &ColourButton::openDialog);
}

ColourButton::~ColourButton()
{
    if (d->dialog)
    {
        d->dropDialog(this);
        const QPointer<QWidget> editor = d->editor;
        // An editor that is being destroyed no longer has a colour.
        if (editor && hasColour(editor))
        {
            d->putBack();
            if (editor)
                Q_EMIT EditorActs::instance()->ended(editor);
        }
    }
    delete d->ownLayout;
}

ColourButton* ColourButton::addTo(QWidget* editor)
{
    if (!editor || !hasColour(editor))
        return nullptr;
    QWidget* last = editor;
    for (QWidget* next = editor->nextInFocusChain(); next != editor; next = next->nextInFocusChain())
        if (editor->isAncestorOf(next) && next->focusPolicy() & Qt::TabFocus)
            last = next;
    auto* button = new ColourButton(editor, editor);
    QLabel* units = partsOf(editor).units;
    if (units && units->text().isEmpty() && !units->layout() && units->maximumWidth() >= narrowestPlace)
    {
        // Inside the label, so the columns of the panel stay as they are.
        auto* inside = new QHBoxLayout(units);
        inside->setContentsMargins(2, 0, 2, 0);
        inside->addWidget(button);
        button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        button->d->ownLayout = inside;
    }
    else if (auto* row = qobject_cast<QBoxLayout*>(editor->layout()))
    {
        row->addWidget(button);
    }
    else if (auto* grid = qobject_cast<QGridLayout*>(editor->layout()))
    {
        grid->addWidget(button, 0, grid->columnCount());
    }
    setTabOrder(last, button);
    return button;
}

QWidget* ColourButton::editor() const
{
    return d->editor;
}

QColor ColourButton::colour() const
{
    return d->editor ? colourOf(readValue(d->editor), d->hasAlpha()) : QColor();
}

QColorDialog* ColourButton::dialog() const
{
    return d->dialog;
}

QSize ColourButton::sizeHint() const
{
    const int height = fontMetrics().height() + 2;
    return {2 * height, height};
}

QSize ColourButton::minimumSizeHint() const
{
    return {narrowestPlace, narrowestPlace};
}

void ColourButton::openDialog()
{
    if (!d->editor)
        return;
    if (d->dialog)
    {
        d->dialog->raise();
        d->dialog->activateWindow();
        return;
    }
    d->start = readValue(d->editor);
    d->startTexts = textsOf(partsOf(d->editor).fields);
    d->isChanged = false;
    auto* dialog = new QColorDialog(window());
    d->dialog = dialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(titleOf(d->editor));
    // A platform's own dialog may report its choice only at the end.
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    dialog->setOption(QColorDialog::ShowAlphaChannel, d->hasAlpha());
    dialog->setCurrentColor(colour());
    // As the dialog stores it, possibly rounded.
    d->startColour = dialog->currentColor();
    connect(dialog, &QColorDialog::currentColorChanged, this, [this](const QColor& colour) { d->choose(colour); });
    connect(dialog, &QDialog::finished, this,
            [this](int result)
            {
                d->dialog = nullptr; // hidden until deleted
                const QPointer<QWidget> editor = d->editor;
                if (!editor)
                    return;
                if (result != QDialog::Accepted)
                    d->putBack();
                if (editor)
                    Q_EMIT EditorActs::instance()->ended(editor);
            });
    Q_EMIT EditorActs::instance()->begun(d->editor);
    dialog->open();
}

void ColourButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(0.4);
    const QRectF frame = QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0);
    const QVector<double> numbers = d->editor ? readValue(d->editor).numbers : QVector<double>();
    if (std::any_of(numbers.cbegin(), numbers.cend(), [](double number) { return std::isnan(number); }))
    {
        painter.setPen(QPen(palette().color(QPalette::WindowText), 1.0));
        const QPointF half(frame.width() / 5.0, 0.0);
        painter.drawLine(frame.center() - half, frame.center() + half);
    }
    else if (d->editor)
    {
        const QColor chosen = colour();
        painter.setPen(Qt::NoPen);
        QPainterPath inside;
        inside.addRoundedRect(frame, 3.0, 3.0);
        if (chosen.alpha() < 255)
        {
            painter.save();
            painter.setClipPath(inside);
            painter.fillRect(rect(), Qt::white);
            for (int y = 0; y < height(); y += checkSize)
                for (int x = y / checkSize % 2 * checkSize; x < width(); x += 2 * checkSize)
                    painter.fillRect(x, y, checkSize, checkSize, QColor(0xaa, 0xaa, 0xaa));
            painter.restore();
        }
        painter.fillPath(inside, chosen);
    }
    const bool isMarked = hasFocus() || underMouse();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(isMarked ? QPalette::Highlight : QPalette::Mid), hasFocus() ? 2.0 : 1.0));
    painter.drawRoundedRect(hasFocus() ? frame : frame.adjusted(-0.5, -0.5, 0.5, 0.5), 3.0, 3.0);
}

void ColourButton::showEvent(QShowEvent* event)
{
    QToolButton::showEvent(event);
    disconnect(d->watch);
    if (d->editor)
        d->watch = connect(LoopWatch::instance(), &LoopWatch::cameRound, this,
                           [this]
                           {
                               if (d->editor && d->isNew())
                                   update();
                           });
}

void ColourButton::hideEvent(QHideEvent* event)
{
    QToolButton::hideEvent(event);
    disconnect(d->watch);
}

// Not isVisible(), which is also false in a closed section.
bool ColourButton::Private::hasAlpha() const
{
    return alphaField && !alphaField->isHidden();
}

// Whether the colour has changed since the last call. Called on each turn of the event loop, so it avoids looking up a
// property by name.
bool ColourButton::Private::isNew()
{
    std::array<double, 5> now = {};
    if (rgba)
    {
        std::copy_n(rgba->colour(), 4, now.begin());
    }
    else if (vector)
    {
        for (int i = 0; i < 3; ++i)
            now[std::size_t(i)] = double(vector->value()[i]);
    }
    else
    {
        const QVector<double> numbers = readValue(editor).numbers;
        std::copy_n(numbers.cbegin(), qMin(numbers.size(), 4), now.begin());
    }
    now[4] = hasAlpha() ? 1.0 : 0.0;
    const bool isSame = std::equal(now.cbegin(), now.cend(), seen.cbegin(),
                                   [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); });
    seen = now;
    return !isSame;
}

void ColourButton::Private::nameIt(ColourButton* button) const
{
    button->setAccessibleName(ColourButton::tr("%1, colour").arg(titleOf(editor)));
}

void ColourButton::Private::choose(const QColor& colour)
{
    if (!editor)
        return;
    EditorValue value = start;
    const QVector<int> chosen = components(colour);
    const QVector<int> before = components(startColour);
    const qreal exact[] = {colour.redF(), colour.greenF(), colour.blueF(), colour.alphaF()};
    // A red, green or blue that is not a number has nothing to keep.
    for (int i = 0; i < value.numbers.size(); ++i)
        if (chosen[i] != before[i] || (i < 3 && std::isnan(value.numbers[i])))
            value.numbers[i] = double(exact[i]);
    isChanged = true;
    writeValue(editor, value);
    announce(editor);
}

void ColourButton::Private::putBack()
{
    if (!std::exchange(isChanged, false))
        return;
    writeValue(editor, start);
    // Also restores texts that were typed but not committed, and the empty fields of a new QColourEdit.
    const QVector<QLineEdit*> fields = partsOf(editor).fields;
    for (int i = 0; i < fields.size() && i < startTexts.size(); ++i)
        if (fields[i]->text() != startTexts[i])
            fields[i]->setText(startTexts[i]);
    announce(editor);
}

// The dialog is deleted later, as this may be called from one of its signals.
void ColourButton::Private::dropDialog(ColourButton* button)
{
    QColorDialog* dropped = dialog;
    if (!dropped)
        return;
    dialog = nullptr;
    dropped->disconnect(button);
    dropped->hide();
    dropped->deleteLater();
}
} // namespace orvek::host
