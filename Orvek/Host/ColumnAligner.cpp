#include <Orvek/Host/ColumnAligner.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorTree.h>

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QVariant>
#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtGui/QTextDocument>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>
#include <QtWidgets/QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvek::host
{
namespace
{
constexpr int narrowest = 270;      // every editor's minimum width
constexpr double unitsShare = 0.15; // of a row's width, at most
constexpr int leastField = 16;      // room for one digit
constexpr int gap = 6;              // after titles and units
constexpr int rowMargin = 2;        // that of the editors' forms; the colour editor has the style's
constexpr int rowSpacing = 1;
constexpr QChar ellipsis(0x2026);

int advance(const QWidget* widget, const QString& text)
{
    return widget->fontMetrics().horizontalAdvance(text);
}

// -- Texts that are too long for their widget ------------------------------------------------------------------------

bool isPlain(const QLabel* label)
{
    const bool rich = label->textFormat() == Qt::RichText ||
                      (label->textFormat() != Qt::PlainText && Qt::mightBeRichText(label->text()));
    return !rich && !label->wordWrap() && !label->text().isEmpty();
}

int indentOf(const QLabel* label)
{
    // QLabel's default for labels with a frame, which a style sheet can add.
    const bool hasDefault = label->indent() < 0 && label->frameWidth() > 0;
    return qMax(0, hasDefault ? advance(label, QStringLiteral("x")) / 2 - label->margin() : label->indent());
}

// The width of a label apart from its text.
int aroundText(const QLabel* label)
{
    label->ensurePolished();
    return label->width() - label->contentsRect().width() + 2 * label->margin() + indentOf(label);
}

bool isCut(const QLabel* label)
{
    return isPlain(label) && advance(label, label->text()) + aroundText(label) > label->width();
}

// Paints like QLabel and QFrame except for the text, so styles and style sheets apply.
void paintElided(QLabel* label)
{
    QStyleOptionFrame option;
    option.initFrom(label);
    option.rect = label->frameRect();
    option.frameShape = label->frameShape();
    option.lineWidth = label->lineWidth();
    option.midLineWidth = label->midLineWidth();
    if (label->frameShadow() != QFrame::Plain)
        option.state |= label->frameShadow() == QFrame::Sunken ? QStyle::State_Sunken : QStyle::State_Raised;
    QPainter painter(label);
    label->style()->drawControl(QStyle::CE_ShapedFrame, &option, &painter, label);
    const int margin = label->margin();
    QRect area = label->contentsRect().adjusted(margin, margin, -margin, -margin);
    const Qt::Alignment alignment = QStyle::visualAlignment(label->layoutDirection(), label->alignment());
    const int indent = indentOf(label);
    if (alignment & Qt::AlignLeft)
        area.adjust(indent, 0, 0, 0);
    else if (alignment & Qt::AlignRight)
        area.adjust(0, 0, -indent, 0);
    const QString text = label->fontMetrics().elidedText(label->text(), Qt::ElideRight, area.width());
    const bool centred = alignment & Qt::AlignHCenter;
    // If there is only room for the dots, their beginning is painted.
    label->style()->drawItemText(&painter, area, int(centred ? Qt::AlignLeft | Qt::AlignVCenter : alignment),
                                 label->palette(), label->isEnabled(), text, label->foregroundRole());
}

QStyleOptionFrame panelOf(const QLineEdit* field)
{
    QStyleOptionFrame option;
    option.initFrom(field);
    option.rect = field->contentsRect();
    option.lineWidth =
        field->hasFrame() ? field->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, field) : 0;
    option.state |= QStyle::State_Sunken;
    if (field->isReadOnly())
        option.state |= QStyle::State_ReadOnly;
    return option;
}

// Where QLineEdit shows its text.
QRect textArea(const QLineEdit* field)
{
    constexpr int margin = 2; // fixed in QLineEdit
    const QStyleOptionFrame option = panelOf(field);
    return field->style()
        ->subElementRect(QStyle::SE_LineEditContents, &option, field)
        .marginsRemoved(field->textMargins())
        .adjusted(margin, 0, -margin, 0);
}

// The width that QLineEdit needs to show the text without scrolling: one pixel more, for the cursor.
int widthOf(const QLineEdit* field, const QString& text)
{
    return advance(field, text) + 1;
}

bool isCut(const QLineEdit* field)
{
    const QString text = field->text();
    return !text.isEmpty() && field->echoMode() == QLineEdit::Normal && widthOf(field, text) > textArea(field).width();
}

bool showsEnd(const QWidget* editor)
{
    return editor->metaObject()->indexOfProperty("filename") >= 0;
}

// The text with fewer and fewer digits in its number until it fits; then only dots, as a part of a number would be
// another number.
QString shortened(const QLineEdit* field, bool isNumber, int width)
{
    const QString text = field->text();
    if (!isNumber)
        return field->fontMetrics().elidedText(text, Qt::ElideRight, width);
    static const QRegularExpression number(QStringLiteral("[-+]?[0-9]*\\.?[0-9]+([eE][-+]?[0-9]+)?"));
    const QRegularExpressionMatch match = number.match(text);
    if (!match.hasMatch())
        return field->fontMetrics().elidedText(text, Qt::ElideRight, width);
    for (int digits = 5; digits > 0; --digits)
    {
        QString candidate = text;
        candidate.replace(match.capturedStart(), match.capturedLength(),
                          QString::number(match.captured().toDouble(), 'g', digits));
        if (widthOf(field, candidate) <= width)
            return candidate;
    }
    return ellipsis;
}

void paintShortened(QLineEdit* field, bool isNumber)
{
    const QStyleOptionFrame option = panelOf(field);
    const QRect area = textArea(field);
    const int height = field->fontMetrics().height();
    const QRect line(area.x(), area.y() + (area.height() - height + 1) / 2, area.width(), height);
    QPainter painter(field);
    field->style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, field);
    const Qt::Alignment horizontal =
        QStyle::visualAlignment(field->layoutDirection(), field->alignment()) & Qt::AlignHorizontal_Mask;
    field->style()->drawItemText(&painter, line, int(horizontal | Qt::AlignTop), field->palette(), field->isEnabled(),
                                 shortened(field, isNumber, area.width()), QPalette::Text);
}

// Shows the whole text above the widget's own tool tip.
void showWhole(const QWidget* widget, const QHelpEvent* event, const QString& text)
{
    const QString tip = widget->toolTip();
    QString whole = text.toHtmlEscaped();
    if (!tip.isEmpty() && tip != text)
        whole += QStringLiteral("<br>") + (Qt::mightBeRichText(tip) ? tip : tip.toHtmlEscaped());
    QToolTip::showText(event->globalPos(), QStringLiteral("<span>%1</span>").arg(whole), const_cast<QWidget*>(widget));
}

// -- The parts of an editor's row -------------------------------------------------------------------------------------

// The items of a row from its beginning to its end; the colour editor creates its own in another order.
QVector<QLayoutItem*> itemsOf(const QLayout* layout)
{
    QVector<QLayoutItem*> items;
    const auto* grid = qobject_cast<const QGridLayout*>(layout);
    if (grid)
    {
        if (grid->rowCount() == 1)
            for (int column = 0; column < grid->columnCount(); ++column)
                if (QLayoutItem* item = grid->itemAtPosition(0, column))
                    items << item;
        return items;
    }
    const auto* box = qobject_cast<const QBoxLayout*>(layout);
    if (box && box->direction() == QBoxLayout::LeftToRight)
        for (int i = 0; i < box->count(); ++i)
            items << box->itemAt(i);
    return items;
}

int spacingOf(const QLayout* layout)
{
    const auto* grid = qobject_cast<const QGridLayout*>(layout);
    return qMax(0, grid ? grid->horizontalSpacing() : layout->spacing());
}

struct Limits
{
    QPointer<QWidget> child;
    QPair<int, int> before; // smallest and largest width
    QPair<int, int> set;
};

struct TextWidth
{
    QString text;
    QFont font;
    int width = 0;
};

struct AlignedRow
{
    QPointer<QWidget> editor;
    EditorParts parts;
    QVector<QLineEdit*> fields;    // visible ones of fixed width
    QVector<QLineEdit*> stretched; // several that divide the free space among themselves
    QStringList names;             // shown in a field instead of numbers
    TextWidth title;
    TextWidth units;
    QVector<Limits> limits;
    QMargins marginsBefore;
    int spacingBefore = -1;    // negative: the margins have not been changed
    bool hasOtherParts = true; // children were added or removed
    bool isDirty = true;
    bool awaitsLayout = false; // requested by this object
    bool isRow = false;        // false for vertical editors and anything else
    bool hasUnits = false;
    // All in pixels.
    int head = 0;      // before the title
    int titleNeed = 0; // for its text
    int middle = 0;    // between title and last field, without the fields of fixed width
    int fieldNeed = 0; // of each field, for a number
    int nameNeed = 0;  // for the longest name
    int unitsNeed = 0;
    int tail = 0;          // after the last field, without the units
    int lead = 0;          // from the section's beginning to the row's, when last visible
    int trail = 0;         // from the row's end to the section's
    int width = 0;         // of the section, or of the row outside one; 0 until first visible
    int expectedWidth = 0; // used until then
};

bool isOther(const TextWidth& known, const QLabel* label)
{
    return label->text() != known.text || label->font() != known.font;
}

// The width that the label's text needs, with a gap after it. Not the label's size hint, which is never below its fixed
// width.
int needOf(TextWidth& known, const QLabel* label)
{
    if (isOther(known, label))
        known = {label->text(), label->font(), advance(label, label->text())};
    return known.text.isEmpty() ? 0 : known.width + aroundText(label) + gap;
}

void refreshParts(AlignedRow& row)
{
    if (std::exchange(row.hasOtherParts, false))
        row.parts = partsOf(row.editor);
}

QString widestNumber()
{
    return QStringLiteral("-8.88888e-88");
}

void measureFields(AlignedRow& row, TextWidth& number)
{
    row.fieldNeed = 0;
    row.nameNeed = 0;
    row.names = row.editor->property("enums").toStringList();
    const QVector<QLineEdit*> fields = row.fields + row.stretched;
    for (const QLineEdit* field : fields)
    {
        const int frame = field->width() - textArea(field).width() + 1;
        // A derived editor may add text to the number: everything else in the field now is taken as that.
        QString added = field->text();
        bool isNumber = false;
        static_cast<void>(added.toDouble(&isNumber));
        if (isNumber || row.names.contains(added))
            added.clear();
        static const QRegularExpression ofNumbers(QStringLiteral("[-+.0-9]"));
        if (!added.isEmpty())
            added.remove(ofNumbers);
        if (number.width == 0 || field->font() != number.font)
            number = {widestNumber(), field->font(), advance(field, widestNumber())};
        const int addition = added.isEmpty() ? 0 : advance(field, added);
        row.fieldNeed = qMax(row.fieldNeed, number.width + addition + frame);
        for (const QString& name : std::as_const(row.names))
            row.nameNeed = qMax(row.nameNeed, advance(field, name) + frame);
    }
}

// Measures what does not depend on the row's width.
void measure(AlignedRow& row, TextWidth& number)
{
    row.isDirty = false;
    row.isRow = false;
    row.fields.clear();
    row.stretched.clear();
    refreshParts(row);
    row.hasUnits = row.parts.units && !row.parts.units->isHidden();
    row.titleNeed = row.parts.label ? needOf(row.title, row.parts.label) : 0;
    row.unitsNeed = row.hasUnits ? needOf(row.units, row.parts.units) : 0;
    const QLayout* layout = row.editor->layout();
    const QVector<QLayoutItem*> items = layout ? itemsOf(layout) : QVector<QLayoutItem*>();
    int title = -1;
    int last = -1;
    int other = -1; // for example a list of names instead of slider and field
    bool hasReset = false;
    for (int i = 0; i < items.size(); ++i)
    {
        QWidget* widget = items[i]->widget();
        if (!widget || widget->isHidden())
            continue;
        hasReset = hasReset || widget == row.parts.reset;
        if (widget == row.parts.label)
            title = i;
        else if (row.parts.fields.contains(qobject_cast<QLineEdit*>(widget)))
            last = i;
        else if (widget != row.parts.units && widget != row.parts.reset)
            other = i;
    }
    if (last < 0)
        last = other;
    if (title < 0 || last < title)
        return;
    row.isRow = true;
    const int spacing = row.hasUnits ? spacingOf(layout) : rowSpacing;
    const QMargins margins = row.hasUnits ? layout->contentsMargins() : QMargins(rowMargin, 0, rowMargin, 0);
    const bool rightToLeft = row.editor->isRightToLeft();
    row.head = rightToLeft ? margins.right() : margins.left();
    row.tail = rightToLeft ? margins.left() : margins.right();
    row.middle = 0;
    for (int i = 0; i < items.size(); ++i)
    {
        QWidget* widget = items[i]->widget();
        if (items[i]->isEmpty() || i == title)
            continue;
        auto* field = i <= last ? qobject_cast<QLineEdit*>(widget) : nullptr;
        const bool isField = field && row.parts.fields.contains(field);
        const bool isFixed = isField && field->sizePolicy().horizontalPolicy() == QSizePolicy::Fixed;
        const bool isStretched = isField && !isFixed && row.parts.fields.size() > 1;
        if (isFixed)
            row.fields << field;
        else if (isStretched)
            row.stretched << field;
        const bool isElsewhere = isFixed || isStretched || widget == row.parts.units;
        const int width = isElsewhere ? 0 : items[i]->minimumSize().width();
        int& part = i < title ? row.head : i <= last ? row.middle : row.tail;
        part += spacing + width;
    }
    // After setOrientation() an editor has them in one item with its field.
    if (row.parts.reset && !hasReset && !row.parts.reset->isHidden())
        row.tail += (row.hasUnits ? 2 : 1) * rowSpacing + row.parts.reset->minimumWidth();
    measureFields(row, number);
}

bool hasOtherTexts(const AlignedRow& row)
{
    return (row.parts.label && isOther(row.title, row.parts.label)) ||
           (row.hasUnits && isOther(row.units, row.parts.units));
}

// Columns run through the outermost section: the distances of a widget's edges from that section's.
struct Frame
{
    const QWidget* section = nullptr; // null outside all sections
    int left = 0;
    int right = 0;
    int width = 0; // of the section, or of a row outside one, as far as known before the layout
};

Frame frameOf(const QWidget* contents, const QWidget* root)
{
    Frame frame;
    Frame margins;
    for (const QWidget* ancestor = contents; ancestor; ancestor = ancestor->parentWidget())
    {
        if (const QLayout* layout = ancestor->layout())
        {
            margins.left += layout->contentsMargins().left();
            margins.right += layout->contentsMargins().right();
        }
        else if (const auto* area = qobject_cast<const QScrollArea*>(ancestor))
        {
            margins.left += area->frameWidth();
            margins.right += area->frameWidth() + area->verticalScrollBar()->sizeHint().width();
        }
        if (isSection(ancestor))
            frame = {ancestor, margins.left, margins.right, 0};
        if (ancestor == root)
            break;
    }
    // Before the first layout, the position is estimated from the margins. Any error is corrected once it is known.
    if (!contents->isVisible())
    {
        frame.width = root->width() - margins.left - margins.right + frame.left + frame.right;
    }
    else if (frame.section)
    {
        frame.left = contents->mapTo(const_cast<QWidget*>(frame.section), QPoint(0, 0)).x();
        frame.right = frame.section->width() - frame.left - contents->width();
    }
    return frame;
}
} // namespace

struct ColumnAligner::Private
{
    ColumnAligner* q = nullptr;
    std::shared_ptr<EditorTree> tree;
    QHash<QObject*, AlignedRow> rows; // by editor
    bool alignsColumns = true;
    bool elidesTitles = true;
    bool fitsTexts = true;
    double titleShare = 0.35;
    bool isPending = false;
    // Maxima over all rows.
    int titleNeed = 0;
    int unitsNeed = 0;
    int tail = 0;
    int fieldNeed = 0;
    int nameNeed = 0;
    int sliderMiddle = 0;
    int contentNeed = 0;

    void enter(QWidget* widget);
    void leave(QWidget* widget);
    void watch(AlignedRow& row, bool isWatched);
    void watchAll();
    void request();
    void alignNow();
    void alignAtOnce();
    void updateNeeds();
    void place();
    bool apply(AlignedRow& row);
    bool setLimits(AlignedRow& row, QWidget* child, int minimum, int maximum);
    bool setMargins(AlignedRow& row, int end);
    void restore(AlignedRow& row);
    void watchTitles(const AlignedRow& row);
    bool filterField(QLineEdit* field, QEvent* event);
    bool filterTitle(QLabel* label, QEvent* event);
};

void ColumnAligner::Private::enter(QWidget* widget)
{
    if (!isEditor(widget) || rows.contains(widget))
        return;
    AlignedRow& row = rows[widget];
    row.editor = widget;
    watch(row, true);
    request();
}

void ColumnAligner::Private::leave(QWidget* widget)
{
    const auto found = rows.find(widget);
    if (found == rows.end())
        return;
    // An editor that is being destroyed has lost its guard, and its children are gone, too.
    if (found->editor)
    {
        watch(*found, false);
        restore(*found);
    }
    rows.erase(found);
    request();
}

void ColumnAligner::Private::watch(AlignedRow& row, bool isWatched)
{
    if (isWatched)
        row.editor->installEventFilter(q);
    else
        row.editor->removeEventFilter(q);
    refreshParts(row);
    for (QLineEdit* field : std::as_const(row.parts.fields))
    {
        field->removeEventFilter(q);
        if (isWatched && fitsTexts)
            field->installEventFilter(q);
        field->update();
    }
    for (QLabel* label : {row.parts.label, row.parts.units})
    {
        if (!label)
            continue;
        label->removeEventFilter(q); // watchTitles() adds it again to those that are cut
        label->update();
    }
}

// The pass that follows watches the cut titles again.
void ColumnAligner::Private::watchAll()
{
    for (AlignedRow& row : rows)
        if (row.editor)
            watch(row, true);
    request();
}

// Runs before anything is painted, as repaints have a lower priority. Invisible rows wait until they are shown.
void ColumnAligner::Private::request()
{
    const QWidget* root = tree->root();
    if (isPending || !root || !root->isVisible())
        return;
    isPending = true;
    QMetaObject::invokeMethod(
        q,
        [this]
        {
            if (isPending)
                alignNow();
        },
        Qt::QueuedConnection);
}

void ColumnAligner::Private::alignNow()
{
    isPending = false;
    if (!tree->root())
        return;
    place();
    updateNeeds();
    bool changed = false;
    for (AlignedRow& row : rows)
    {
        if (!row.editor || (row.width > 0 && !row.editor->isVisible()))
            continue;
        if (alignsColumns && row.isRow)
        {
            row.awaitsLayout = apply(row);
            changed = changed || row.awaitsLayout;
        }
        else if (alignsColumns)
            restore(row);
        watchTitles(row);
    }
    if (changed)
        Q_EMIT q->aligned();
}

// When the root appears, everything below it has its place. The platform may request the first frame before any posted
// event is delivered, layout requests included.
void ColumnAligner::Private::alignAtOnce()
{
    alignNow();
    for (const AlignedRow& row : std::as_const(rows))
        if (row.awaitsLayout && row.editor && row.editor->layout())
            row.editor->layout()->activate();
}

void ColumnAligner::Private::updateNeeds()
{
    titleNeed = unitsNeed = tail = fieldNeed = nameNeed = sliderMiddle = contentNeed = 0;
    TextWidth number; // almost all fields have the same font
    for (AlignedRow& row : rows)
    {
        if (row.isDirty && row.editor)
            measure(row, number);
        if (!row.isRow)
            continue;
        titleNeed = qMax(titleNeed, row.lead + row.head + row.titleNeed);
        unitsNeed = qMax(unitsNeed, row.trail + row.tail + row.unitsNeed);
        tail = qMax(tail, row.trail + row.tail);
        contentNeed = qMax(contentNeed, row.middle + int(row.fields.size() + row.stretched.size()) * row.fieldNeed);
        if (row.fields.size() != 1)
            continue;
        fieldNeed = qMax(fieldNeed, row.fieldNeed);
        nameNeed = qMax(nameNeed, row.nameNeed);
        sliderMiddle = qMax(sliderMiddle, row.middle);
    }
}

// Determines the position of each widget that holds rows once. Hidden rows keep their last position.
void ColumnAligner::Private::place()
{
    QHash<const QWidget*, Frame> frames;
    for (AlignedRow& row : rows)
    {
        if (!row.editor || (row.width > 0 && !row.editor->isVisible()))
            continue;
        const QWidget* contents = row.editor->parentWidget();
        auto found = frames.find(contents);
        if (found == frames.end())
            found = frames.insert(contents, frameOf(contents, tree->root()));
        const Frame& frame = *found;
        const bool inSection = frame.section != nullptr;
        row.lead = inSection ? frame.left : 0;
        row.trail = inSection ? frame.right : 0;
        row.expectedWidth = frame.width;
        if (row.editor->isVisible())
        {
            row.width = inSection ? frame.section->width() : row.editor->width();
            row.lead += inSection ? row.editor->x() : 0;
            row.trail += inSection ? contents->width() - row.editor->x() - row.editor->width() : 0;
        }
        if (row.editor->isRightToLeft())
            std::swap(row.lead, row.trail);
    }
}

bool ColumnAligner::Private::apply(AlignedRow& row)
{
    const bool isPlaced = row.width > 0;
    const int width = isPlaced ? row.width : row.expectedWidth;
    const int titleEnd = qMin(titleNeed, int(titleShare * width));
    const int fieldsEnd = qMin(unitsNeed, tail + int(unitsShare * width));
    const int title = qMax(0, titleEnd - row.lead - row.head);
    const int units = qMax(0, fieldsEnd - row.trail - row.tail);
    const int room = width - titleEnd - fieldsEnd;
    bool changed = setLimits(row, row.parts.label, title, title);
    if (row.hasUnits)
        changed = setLimits(row, row.parts.units, units, units) || changed;
    else
        changed = setMargins(row, units + rowMargin) || changed;
    // Slider fields have the same width in all rows; several fields divide the free space.
    int field = 0;
    if (row.fields.size() == 1)
        field = qMin(qMax(fieldNeed, qMin(nameNeed, room / 2)), room - sliderMiddle);
    else if (!isPlaced)
        return changed;
    else if (!row.fields.isEmpty())
        field = (room - row.middle) / int(row.fields.size());
    field = qMax(leastField, field);
    for (QLineEdit* child : std::as_const(row.fields))
        changed = setLimits(row, child, field, field) || changed;
    for (QLineEdit* child : std::as_const(row.stretched))
        changed = setLimits(row, child, leastField, QWIDGETSIZE_MAX) || changed;
    return changed;
}

// Records the widths it finds, even if a host has changed them in the meantime.
bool ColumnAligner::Private::setLimits(AlignedRow& row, QWidget* child, int minimum, int maximum)
{
    auto limits = std::find_if(row.limits.begin(), row.limits.end(),
                               [child](const Limits& known) { return known.child == child; });
    const QPair<int, int> now(child->minimumWidth(), child->maximumWidth());
    const QPair<int, int> wanted(minimum, maximum);
    if (limits == row.limits.end())
        limits = row.limits.insert(row.limits.end(), {child, now, now});
    else if (now != limits->set)
        limits->before = now;
    limits->set = wanted;
    if (now == wanted)
        return false;
    child->setMinimumWidth(minimum);
    child->setMaximumWidth(maximum);
    return true;
}

// Reserves the space for units in an editor without them.
bool ColumnAligner::Private::setMargins(AlignedRow& row, int end)
{
    QLayout* layout = row.editor->layout();
    const QMargins now = layout->contentsMargins();
    QMargins wanted(rowMargin, now.top(), end, now.bottom());
    if (row.editor->isRightToLeft())
        wanted = QMargins(end, now.top(), rowMargin, now.bottom());
    if (row.spacingBefore < 0)
    {
        row.marginsBefore = now;
        row.spacingBefore = spacingOf(layout);
        layout->setSpacing(rowSpacing);
    }
    if (now == wanted)
        return false;
    layout->setContentsMargins(wanted);
    return true;
}

void ColumnAligner::Private::restore(AlignedRow& row)
{
    for (const Limits& limits : std::as_const(row.limits))
    {
        QWidget* child = limits.child;
        if (!child || limits.set != qMakePair(child->minimumWidth(), child->maximumWidth()))
            continue;
        child->setMinimumWidth(limits.before.first);
        child->setMaximumWidth(limits.before.second);
    }
    row.limits.clear();
    if (row.spacingBefore >= 0 && row.editor->layout())
    {
        row.editor->layout()->setContentsMargins(row.marginsBefore);
        row.editor->layout()->setSpacing(row.spacingBefore);
    }
    row.spacingBefore = -1;
}

// Most titles fit and need no event filter.
void ColumnAligner::Private::watchTitles(const AlignedRow& row)
{
    const auto watchIfCut = [this](QLabel* label, int need)
    {
        label->removeEventFilter(q);
        const int width = qMin(label->maximumWidth(), qMax(label->minimumWidth(), label->width()));
        if (!elidesTitles || need - gap <= width || !isPlain(label))
            return;
        label->installEventFilter(q);
        label->update();
    };
    if (row.parts.label)
        watchIfCut(row.parts.label, row.titleNeed);
    if (row.hasUnits)
        watchIfCut(row.parts.units, row.unitsNeed);
}

bool ColumnAligner::Private::filterField(QLineEdit* field, QEvent* event)
{
    if (!isCut(field))
        return false;
    if (event->type() == QEvent::ToolTip)
    {
        showWhole(field, static_cast<QHelpEvent*>(event), field->text());
        return true;
    }
    // Also in an inactive window, where the field will show its cursor and selection again later.
    if (field->window()->focusWidget() == field)
        return false;
    const auto row = rows.find(field->parentWidget());
    if (row == rows.end())
        return false;
    if (!row->names.isEmpty() && row->names != row->editor->property("enums").toStringList())
    {
        row->isDirty = true;
        request();
    }
    // QLineEdit scrolls to its cursor when it paints, so a click hits the place that the user sees.
    const bool end = showsEnd(row->editor);
    const int cursor = end ? field->text().size() : 0;
    if (field->cursorPosition() != cursor)
    {
        field->setCursorPosition(cursor);
        return false;
    }
    if (end)
        return false;
    const EditorValue value = readValue(row->editor);
    const bool isText = value.isKnown && value.numbers.isEmpty();
    paintShortened(field, !isText && !row->names.contains(field->text()));
    return true;
}

bool ColumnAligner::Private::filterTitle(QLabel* label, QEvent* event)
{
    if (!isCut(label))
        return false;
    if (event->type() == QEvent::ToolTip)
        showWhole(label, static_cast<QHelpEvent*>(event), label->text());
    else
        paintElided(label);
    return true;
}

ColumnAligner::ColumnAligner(QWidget* root, QObject* parent) : QObject(parent), d(std::make_unique<Private>())
{
    d->q = this;
    d->tree = EditorTree::of(root);
    connect(d->tree.get(), &EditorTree::entered, this, [this](QWidget* widget) { d->enter(widget); });
    connect(d->tree.get(), &EditorTree::left, this, [this](QWidget* widget) { d->leave(widget); });
    const QVector<QWidget*> widgets = d->tree->widgets();
    for (QWidget* widget : widgets)
        d->enter(widget);
    root->installEventFilter(this);
    // Before the first layout, so that rows are not laid out twice: now, or when the root is polished.
    if (root->testAttribute(Qt::WA_WState_Polished) && !root->isVisible())
        d->alignNow();
}

ColumnAligner::~ColumnAligner()
{
    disconnect(d->tree.get(), nullptr, this, nullptr);
    for (AlignedRow& row : d->rows)
    {
        if (!row.editor)
            continue;
        d->watch(row, false);
        d->restore(row);
    }
}

bool ColumnAligner::alignsColumns() const
{
    return d->alignsColumns;
}

void ColumnAligner::setAlignsColumns(bool align)
{
    d->alignsColumns = align;
    if (!align)
        for (AlignedRow& row : d->rows)
            if (row.editor)
                d->restore(row);
    d->request();
}

bool ColumnAligner::elidesTitles() const
{
    return d->elidesTitles;
}

void ColumnAligner::setElidesTitles(bool elide)
{
    d->elidesTitles = elide;
    d->watchAll();
}

bool ColumnAligner::fitsTexts() const
{
    return d->fitsTexts;
}

void ColumnAligner::setFitsTexts(bool fit)
{
    d->fitsTexts = fit;
    d->watchAll();
}

double ColumnAligner::titleShare() const
{
    return d->titleShare;
}

void ColumnAligner::setTitleShare(double share)
{
    if (std::isnan(share))
        return;
    d->titleShare = qBound(0.1, share, 0.9);
    d->request();
}

int ColumnAligner::uncutWidth()
{
    const QWidget* root = d->tree->root();
    if (!root)
        return narrowest;
    d->tree->widgets();
    d->place();
    d->updateNeeds();
    int aroundRows = 0;
    for (const AlignedRow& row : std::as_const(d->rows))
        if (row.editor && row.editor->isVisible())
            aroundRows = qMax(aroundRows, root->width() - row.width);
    const double byTitles = std::ceil((d->titleNeed + 1) / d->titleShare);
    const double byUnits = std::ceil((d->unitsNeed - d->tail + 1) / unitsShare);
    const int byContents = d->titleNeed + d->unitsNeed + qMax(d->contentNeed, d->sliderMiddle + d->fieldNeed);
    const int row = qMax(narrowest, qMax(byContents, int(qMax(byTitles, byUnits))));
    return aroundRows + row;
}

void ColumnAligner::align()
{
    d->tree->widgets(); // adds what has arrived since the last event
    d->alignNow();
}

bool ColumnAligner::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type())
    {
    case QEvent::Paint:
    case QEvent::ToolTip:
        if (auto* field = qobject_cast<QLineEdit*>(watched))
            return d->filterField(field, event);
        if (auto* label = qobject_cast<QLabel*>(watched))
            return d->filterTitle(label, event);
        break;
    // A changed text, font, style, language or direction of a part makes the editor lay out its row again.
    case QEvent::LayoutRequest:
    {
        const auto row = d->rows.find(watched);
        const bool isOwn = row != d->rows.end() && std::exchange(row->awaitsLayout, false);
        if (row == d->rows.end() || (isOwn && !row->isDirty && !hasOtherTexts(*row)))
            break;
        row->isDirty = true;
        d->request();
        break;
    }
    case QEvent::ChildAdded:
    case QEvent::ChildRemoved:
    {
        const auto row = d->rows.find(watched);
        if (row != d->rows.end())
            row->isDirty = row->hasOtherParts = true;
        d->request();
        break;
    }
    case QEvent::Show:
        if (watched == d->tree->root())
            d->alignAtOnce();
        else
            d->request();
        break;
    case QEvent::Resize:
        if (static_cast<QResizeEvent*>(event)->oldSize().width() != static_cast<QResizeEvent*>(event)->size().width())
            d->request();
        break;
    case QEvent::Move:
        if (static_cast<QMoveEvent*>(event)->oldPos().x() != static_cast<QMoveEvent*>(event)->pos().x())
            d->request();
        break;
    case QEvent::Polish:
        if (watched == d->tree->root())
            align();
        break;
    default:
        break;
    }
    return false;
}
} // namespace orvek::host
