#include <Orvek/Host/PanelSearch.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorTree.h>

#include <QShortcut>
#include <QtCore/QScopedValueRollback>
#include <QtCore/QSignalBlocker>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>

#include <algorithm>
#include <utility>
#include <vector>

namespace orvek::host
{
namespace
{
// A section, or any other widget with a slot for search texts.
struct Receiver
{
    QPointer<QWidget> widget;
    QPointer<QCheckBox> box; // null if it is not a section
    Receiver* outer = nullptr;
    QWidget* row = nullptr;    // the child of the outer section's contents that is or contains it
    bool wasConnected = false; // by the panel
    // During a search:
    bool isKnown = false; // wasOpen is from before the search
    bool isNew = false;   // it, or a row of it, was added since the last text
    bool wasOpen = true;
    bool matches = false;
    bool found = false;      // it matches, or a section inside it does
    bool wasFound = false;   // before the last text or arrival
    bool foundInner = false; // a section inside it matches
    bool wanted = false;     // it is inside a section whose own title matches
};

// A row or section during a search.
struct Item
{
    QPointer<QWidget> widget;
    bool wasHidden; // by the host
    bool isHidden;  // after the last text; any difference is the host's doing
};

bool hasTextSignal(const QWidget* panel)
{
    return panel->metaObject()->indexOfSignal("setSearchText(QString)") >= 0;
}

// False for a widget that merely waits for its parent or layout to show it.
bool isHiddenOnPurpose(const QWidget* widget)
{
    return widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
}

QWidget* contentsOf(const Receiver& section)
{
    const QLayout* layout = section.box ? section.widget->layout() : nullptr;
    for (int i = 0; layout && i < layout->count(); ++i)
    {
        QWidget* widget = layout->itemAt(i)->widget();
        if (widget && widget != section.box)
            return widget;
    }
    return nullptr;
}

bool titleContains(const QWidget* section, const QString& text)
{
    return section->windowTitle().contains(text, Qt::CaseInsensitive);
}

// Sections mark themselves with "highlighted"; one without contents never does. A host's widget without that property
// counts as a match, as it may contain one.
bool isMatch(const Receiver& receiver, const QString& text)
{
    const QVariant mark = receiver.widget->property("highlighted");
    if (mark.isValid())
        return mark.toBool();
    return !receiver.box || contentsOf(receiver) || titleContains(receiver.widget, text);
}

void send(QWidget* receiver, const QString& text)
{
    QMetaObject::invokeMethod(receiver, "setSearchText", Qt::DirectConnection, Q_ARG(QString, text));
}

// A slot of the host may delete one in the meantime.
void showAll(const QVector<QPointer<QWidget>>& widgets)
{
    for (const QPointer<QWidget>& widget : widgets)
        if (widget)
            widget->show();
}

bool takesFocus(const QWidget* widget, const QWidget* panel)
{
    return (widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && widget->isVisibleTo(panel);
}

// An editor's first field, as the user wants to type; otherwise the first child in tab order.
QWidget* focusTargetIn(QWidget* match, const QWidget* panel)
{
    if (isEditor(match))
    {
        const QVector<QLineEdit*> fields = partsOf(match).fields;
        for (QLineEdit* field : fields)
            if (takesFocus(field, panel))
                return field;
    }
    if (takesFocus(match, panel))
        return match;
    const auto inside = match->findChildren<QWidget*>();
    const auto found = std::find_if(inside.cbegin(), inside.cend(),
                                    [panel](const QWidget* child) { return takesFocus(child, panel); });
    return found == inside.cend() ? nullptr : *found;
}

void scrollTo(QWidget* widget)
{
    for (QWidget* above = widget ? widget->parentWidget() : nullptr; above; above = above->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(above))
            area->ensureWidgetVisible(widget);
}

QString shortcutName()
{
    return QStringLiteral("orvekPanelSearchFind");
}
} // namespace

struct PanelSearch::Private
{
    PanelSearch* q = nullptr;
    QPointer<QWidget> panel;
    QPointer<QLineEdit> field;
    QPointer<QLabel> message;
    QPointer<QShortcut> findKey;
    QPointer<QShortcut> nextKey;
    QPointer<QShortcut> previousKey;
    std::shared_ptr<EditorTree> tree;
    QHash<const QMetaObject*, bool> receiverClasses;
    std::vector<std::unique_ptr<Receiver>> receivers; // outer ones before those inside them
    QHash<QWidget*, Receiver*> byWidget;
    QHash<QWidget*, Item> items; // empty without a search
    struct Departure
    {
        QPointer<QWidget> widget;
        bool isReceiver;
        bool wasOpen;
    };
    QVector<Departure> departures;
    QPointer<QWidget> focusBefore; // before the search field got it
    QPointer<QWidget> current;     // the match visited last
    QString text;
    bool hasSeenText = false;
    bool isActing = false; // folding is not the user's doing now
    bool isQueued = false;
    bool restores = true;
    bool showsNested = true;
    bool hidesUnmatched = true;
    bool tellsNothingFound = true;
    bool hasShortcut = true;
    bool hasFieldKeys = true;

    bool isSearching() const { return panel && !text.isEmpty(); }
    void enter(QWidget* widget);
    void leave(QWidget* widget);
    void queueCatchUp();
    void catchUp();
    void letGo();
    void takeOver(Receiver& receiver);
    Receiver* find(QWidget* widget) const { return byWidget.value(widget); }
    QVector<QPointer<QWidget>> receiverWidgets() const;

    void receive(const QString& newText);
    void remember(Receiver& receiver);
    void noticeHostsChanges();
    void filter();
    void filterAgain();
    void restore();
    void endSearch(QWidget* section, bool wasOpen);
    void arrange(bool isNewText);
    bool wasHidden(QWidget* widget) const;
    bool isHiddenByHost(const Receiver& receiver) const;
    void markFound();
    void showFound(bool isNewText);
    void showMessage(bool nothingFound);
    void updateKeys();

    QVector<QWidget*> matches() const;
    void goOn(int step);
    void goTo(QWidget* match);
    void onFindKey(bool ambiguous);
    bool onFieldKey(QKeyEvent* event);
    bool onEscape();
};

PanelSearch::PanelSearch(QWidget* panel, QObject* parent) : QObject(parent), d(new Private)
{
    d->q = this;
    if (!panel || !hasTextSignal(panel))
        return;
    d->panel = panel;
    d->field = panel->findChild<QLineEdit*>(QStringLiteral("search"), Qt::FindDirectChildrenOnly);
    d->tree = EditorTree::of(panel);
    connect(d->tree.get(), &EditorTree::entered, this, [this](QWidget* widget) { d->enter(widget); });
    connect(d->tree.get(), &EditorTree::left, this, [this](QWidget* widget) { d->leave(widget); });
    if (d->field)
    {
        d->text = d->field->text();
        d->field->installEventFilter(this);
        connect(qApp, &QApplication::focusChanged, this,
                [this, searchField = static_cast<const QWidget*>(d->field)](QWidget* old, const QWidget* now)
                {
                    if (old && now == searchField && old->window() == now->window())
                        d->focusBefore = old;
                });
        // Children of the field, as the panel prints each new child of its own.
        const auto addKey = [this](QKeySequence::StandardKey key)
        { return new QShortcut(QKeySequence(key), d->field.data()); };
        d->findKey = addKey(QKeySequence::Find);
        d->findKey->setObjectName(shortcutName());
        connect(d->findKey, &QShortcut::activated, this, [this] { d->onFindKey(false); });
        connect(d->findKey, &QShortcut::activatedAmbiguously, this, [this] { d->onFindKey(true); });
        d->nextKey = addKey(QKeySequence::FindNext);
        d->previousKey = addKey(QKeySequence::FindPrevious);
        connect(d->nextKey, &QShortcut::activated, this, &PanelSearch::findNext);
        connect(d->previousKey, &QShortcut::activated, this, &PanelSearch::findPrevious);
    }
    const auto widgets = d->tree->widgets();
    for (QWidget* widget : widgets)
        d->enter(widget);
    d->updateKeys();
    connect(panel, SIGNAL(setSearchText(QString)), this, SLOT(onSearchText(QString)));
    if (!d->isSearching())
        return;
    // Anything hidden now counts as hidden by the search, except the outermost sections, which a search never hides.
    for (const auto& receiver : d->receivers)
        d->remember(*receiver);
    for (Item& item : d->items)
    {
        const Receiver* receiver = d->find(item.widget);
        item.wasHidden = item.wasHidden && receiver && !receiver->outer;
    }
    d->filter();
}

PanelSearch::~PanelSearch()
{
    for (const QPointer<QShortcut>& key : {d->findKey, d->nextKey, d->previousKey})
        delete key.data();
    delete d->message.data();
    // A panel that is being destroyed has lost its signal.
    if (!d->panel || !hasTextSignal(d->panel))
        return;
    for (const auto& receiver : d->receivers)
        if (receiver->widget && (receiver->wasConnected || d->hasSeenText))
            connect(d->panel, SIGNAL(setSearchText(QString)), receiver->widget, SLOT(setSearchText(QString)));
    if (d->isSearching())
        for (const auto& receiver : d->receivers)
            if (receiver->widget && !receiver->outer && !d->wasHidden(receiver->widget))
                receiver->widget->show();
}

bool PanelSearch::restores() const
{
    return d->restores;
}

void PanelSearch::setRestores(bool on)
{
    d->restores = on;
}

bool PanelSearch::showsNested() const
{
    return d->showsNested;
}

void PanelSearch::setShowsNested(bool on)
{
    d->showsNested = on;
    d->filterAgain();
}

bool PanelSearch::hidesUnmatched() const
{
    return d->hidesUnmatched;
}

void PanelSearch::setHidesUnmatched(bool on)
{
    d->hidesUnmatched = on;
    d->filterAgain();
}

bool PanelSearch::tellsNothingFound() const
{
    return d->tellsNothingFound;
}

void PanelSearch::setTellsNothingFound(bool on)
{
    d->tellsNothingFound = on;
    d->filterAgain();
}

bool PanelSearch::hasShortcut() const
{
    return d->hasShortcut;
}

void PanelSearch::setShortcut(bool on)
{
    d->hasShortcut = on;
    d->updateKeys();
}

bool PanelSearch::hasFieldKeys() const
{
    return d->hasFieldKeys;
}

void PanelSearch::setFieldKeys(bool on)
{
    d->hasFieldKeys = on;
}

void PanelSearch::find()
{
    if (!d->field)
        return;
    d->field->setFocus(Qt::ShortcutFocusReason);
    d->field->selectAll();
}

void PanelSearch::findFirst()
{
    const QVector<QWidget*> matches = d->matches();
    if (!matches.isEmpty())
        d->goTo(matches.first());
}

void PanelSearch::findNext()
{
    d->goOn(1);
}

void PanelSearch::findPrevious()
{
    d->goOn(-1);
}

bool PanelSearch::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    return isKey && watched == d->field && d->hasFieldKeys && d->onFieldKey(static_cast<QKeyEvent*>(event));
}

void PanelSearch::onSearchText(const QString& text)
{
    d->receive(text);
}

void PanelSearch::Private::enter(QWidget* widget)
{
    const QMetaObject* metaObject = widget->metaObject();
    auto known = receiverClasses.find(metaObject);
    if (known == receiverClasses.end())
        known = receiverClasses.insert(metaObject, metaObject->indexOfSlot("setSearchText(QString)") >= 0);
    if (*known && !find(widget))
    {
        auto receiver = std::make_unique<Receiver>();
        receiver->widget = widget;
        if (isSection(widget))
            receiver->box =
                widget->findChild<QCheckBox*>(QStringLiteral("accordionCheckBox"), Qt::FindDirectChildrenOnly);
        for (QWidget* level = widget; level && level != panel && !receiver->outer;)
        {
            QWidget* above = level->parentWidget();
            receiver->outer = find(above);
            if (!receiver->outer)
                receiver->row = level;
            level = above;
        }
        if (receiver->box)
            connect(receiver->box, &QCheckBox::toggled, q,
                    [this, widget](bool open)
                    {
                        Receiver* section = find(widget);
                        if (section && !isActing)
                            section->wasOpen = open;
                    });
        takeOver(*receiver);
        byWidget.insert(widget, receiver.get());
        receivers.push_back(std::move(receiver));
    }
    if (!isSearching())
        return;
    // The section itself, its contents, or a row; a section is also a row of the one around it.
    QWidget* parent = widget->parentWidget();
    for (QWidget* level : {widget, parent, parent ? parent->parentWidget() : nullptr})
    {
        if (Receiver* receiver = find(level))
        {
            receiver->isNew = true;
            queueCatchUp();
        }
    }
}

void PanelSearch::Private::leave(QWidget* widget)
{
    // The guarded pointers are null if the widget is being destroyed; otherwise it is moving elsewhere.
    const auto item = items.find(widget);
    if (item != items.end())
    {
        // Its new parent will show it, unless the host had hidden it.
        if (item->widget && !item->wasHidden && item->widget->isHidden())
        {
            item->widget->setAttribute(Qt::WA_WState_ExplicitShowHide, false);
            departures << Departure{item->widget, false, true};
            queueCatchUp();
        }
        items.erase(item);
    }
    Receiver* receiver = byWidget.take(widget);
    if (!receiver)
        return;
    if (receiver->widget && receiver->box)
        QObject::disconnect(receiver->box, nullptr, q, nullptr);
    if (receiver->widget && isSearching())
    {
        departures << Departure{receiver->widget, true, receiver->wasOpen};
        queueCatchUp();
    }
    receivers.erase(std::find_if(receivers.begin(), receivers.end(),
                                 [receiver](const auto& known) { return known.get() == receiver; }));
}

void PanelSearch::Private::queueCatchUp()
{
    if (isQueued)
        return;
    isQueued = true;
    QMetaObject::invokeMethod(
        q,
        [this]
        {
            isQueued = false;
            letGo();
            if (isSearching())
                catchUp();
        },
        Qt::QueuedConnection);
}

// Ends the search for what has moved out of the panel; what has moved within it is reset to its state before the
// search.
void PanelSearch::Private::letGo()
{
    const auto left = std::exchange(departures, {});
    for (const Departure& departure : left)
    {
        QWidget* widget = departure.widget;
        if (!widget)
            continue;
        if (Receiver* back = departure.isReceiver ? find(widget) : nullptr)
        {
            back->isKnown = true;
            back->wasOpen = departure.wasOpen;
        }
        else if (departure.isReceiver)
        {
            QVector<QPointer<QWidget>> hidden;
            const auto rows = widget->findChildren<QWidget*>();
            std::copy_if(rows.cbegin(), rows.cend(), std::back_inserter(hidden), isHiddenOnPurpose);
            endSearch(widget, departure.wasOpen);
            for (const QPointer<QWidget>& row : std::as_const(hidden))
                if (row && restores)
                    row->hide();
        }
        else if (widget->parentWidget() && widget->isHidden() && !isHiddenOnPurpose(widget))
        {
            widget->show();
        }
    }
}

// Filters what was added since the last text.
void PanelSearch::Private::catchUp()
{
    const QScopedValueRollback<bool> guard(isActing, true);
    const auto widgets = receiverWidgets();
    noticeHostsChanges();
    bool any = false;
    for (const QPointer<QWidget>& widget : widgets)
    {
        Receiver* receiver = find(widget);
        if (!receiver || !receiver->isNew)
            continue;
        any = true;
        remember(*receiver);
        const bool staysClosed = receiver->found && receiver->box && !receiver->box->isChecked();
        send(widget, text);
        receiver = find(widget);
        if (receiver && receiver->box && staysClosed)
            receiver->box->setChecked(false);
    }
    if (any)
        arrange(false);
}

// From now on this object sends the texts. Removes all of the panel's connections if there are several.
void PanelSearch::Private::takeOver(Receiver& receiver)
{
    if (QObject::disconnect(panel, SIGNAL(setSearchText(QString)), receiver.widget, SLOT(setSearchText(QString))))
        receiver.wasConnected = true;
}

QVector<QPointer<QWidget>> PanelSearch::Private::receiverWidgets() const
{
    QVector<QPointer<QWidget>> widgets;
    widgets.reserve(int(receivers.size()));
    for (const auto& receiver : receivers)
        widgets << receiver->widget;
    return widgets;
}

void PanelSearch::Private::receive(const QString& newText)
{
    tree->takeIn();
    letGo();
    // On its first text the panel connected its sections just before this. Disconnected during the emission, they no
    // longer receive it from the panel.
    if (!hasSeenText)
        for (const auto& receiver : receivers)
            takeOver(*receiver);
    hasSeenText = true;

    const bool wasSearching = isSearching();
    text = newText;
    current = nullptr;
    for (const auto& receiver : receivers)
        if (!wasSearching || receiver->isNew)
            remember(*receiver);
    if (wasSearching)
        noticeHostsChanges();
    // A row with the focus may be hidden and shown again in the process.
    const QPointer<QWidget> focus = QApplication::focusWidget();
    if (isSearching())
        filter();
    else
        restore();
    if (focus && focus != QApplication::focusWidget() && panel && panel->isAncestorOf(focus) && focus->isVisible())
        focus->setFocus(Qt::OtherFocusReason);
    updateKeys();
}

void PanelSearch::Private::remember(Receiver& receiver)
{
    if (!receiver.widget)
        return;
    const auto add = [this](QWidget* widget)
    {
        if (!items.contains(widget))
            items.insert(widget, {widget, isHiddenOnPurpose(widget), isHiddenOnPurpose(widget)});
    };
    receiver.isNew = false;
    if (!receiver.isKnown)
    {
        receiver.isKnown = true;
        receiver.found = false;
        receiver.wasOpen = receiver.box && receiver.box->isChecked();
    }
    add(receiver.widget);
    const QWidget* contents = contentsOf(receiver);
    if (!contents)
        return;
    for (QObject* child : contents->children())
        if (child->isWidgetType())
            add(static_cast<QWidget*>(child));
}

void PanelSearch::Private::noticeHostsChanges()
{
    for (Item& item : items)
        if (item.widget && isHiddenOnPurpose(item.widget) != item.isHidden)
            item.wasHidden = !item.isHidden;
}

void PanelSearch::Private::filter()
{
    const QScopedValueRollback<bool> guard(isActing, true);
    const QString sent = text;
    const auto widgets = receiverWidgets();
    for (const QPointer<QWidget>& widget : widgets)
    {
        if (widget)
            send(widget, sent);
        if (text != sent) // changed by a host
            return;
    }
    arrange(true);
}

void PanelSearch::Private::filterAgain()
{
    if (isSearching())
        receive(QString(text));
}

void PanelSearch::Private::restore()
{
    const QScopedValueRollback<bool> guard(isActing, true);
    const auto widgets = receiverWidgets();
    for (const QPointer<QWidget>& widget : widgets)
    {
        if (const Receiver* receiver = find(widget))
            endSearch(widget, receiver->wasOpen);
        if (isSearching())
            return;
    }
    for (const auto& receiver : receivers)
        receiver->isKnown = receiver->isNew = false;
    const auto ended = std::exchange(items, {});
    QVector<QPointer<QWidget>> shown;
    for (const Item& item : ended)
    {
        if (!item.widget)
            continue;
        if (item.wasHidden && restores)
            item.widget->hide();
        else if (isHiddenOnPurpose(item.widget) && !item.wasHidden)
            shown << item.widget;
    }
    showAll(shown);
    showMessage(false);
}

// An empty text opens the section and shows all rows. A section to be closed is prevented from opening in between.
void PanelSearch::Private::endSearch(QWidget* section, bool wasOpen)
{
    const QPointer<QCheckBox> box =
        section->findChild<QCheckBox*>(QStringLiteral("accordionCheckBox"), Qt::FindDirectChildrenOnly);
    if (!restores || wasOpen || !box)
    {
        send(section, QString());
        return;
    }
    box->setChecked(false);
    const QSignalBlocker silence(box.data());
    send(section, QString());
    box->setChecked(false);
}

void PanelSearch::Private::arrange(bool isNewText)
{
    markFound();
    showFound(isNewText);
    for (Item& item : items)
        item.isHidden = item.widget && isHiddenOnPurpose(item.widget);
    showMessage(std::none_of(receivers.cbegin(), receivers.cend(),
                             [this](const auto& receiver)
                             { return !receiver->outer && receiver->found && !isHiddenByHost(*receiver); }));
}

bool PanelSearch::Private::wasHidden(QWidget* widget) const
{
    const auto item = items.find(widget);
    return item != items.end() && item->wasHidden;
}

bool PanelSearch::Private::isHiddenByHost(const Receiver& receiver) const
{
    return wasHidden(receiver.widget) || (receiver.outer && wasHidden(receiver.row));
}

void PanelSearch::Private::markFound()
{
    for (const auto& receiver : receivers)
    {
        receiver->wasFound = receiver->found;
        receiver->matches = receiver->widget && isMatch(*receiver, text);
        receiver->found = receiver->matches;
        receiver->foundInner = false;
        const Receiver* outer = receiver->outer;
        receiver->wanted = showsNested && outer && outer->widget &&
                           (outer->wanted || (outer->matches && titleContains(outer->widget, text)));
    }
    if (!showsNested)
        return;
    for (auto receiver = receivers.crbegin(); receiver != receivers.crend(); ++receiver)
        if (Receiver* outer = (*receiver)->outer; outer && (*receiver)->found && !isHiddenByHost(**receiver))
            outer->found = outer->foundInner = true;
}

// Changes only what differs, as every change lays out the panel again.
void PanelSearch::Private::showFound(bool isNewText)
{
    QVector<QPointer<QWidget>> shown;
    const auto show = [&shown](QWidget* widget)
    {
        if (isHiddenOnPurpose(widget))
            shown << widget;
    };
    for (const auto& receiver : receivers)
    {
        QWidget* widget = receiver->widget;
        if (!widget || isHiddenByHost(*receiver))
            continue;
        const bool isSeen = receiver->found || receiver->wanted;
        if (receiver->outer ? isSeen && showsNested : isSeen || !hidesUnmatched)
        {
            show(widget);
            if (receiver->row) // null for a section beside the outer one's contents
                show(receiver->row);
        }
        else if (hidesUnmatched && receiver->box && !isSeen && !isHiddenOnPurpose(widget))
        {
            widget->hide();
        }
        // What the user has closed since the last text stays closed.
        if (receiver->foundInner && receiver->box && (isNewText || !receiver->wasFound))
            receiver->box->setChecked(true);
        const QWidget* contents = receiver->wanted ? contentsOf(*receiver) : nullptr;
        if (!contents)
            continue;
        for (QObject* row : contents->children())
            if (row->isWidgetType() && !wasHidden(static_cast<QWidget*>(row)) && !find(static_cast<QWidget*>(row)))
                show(static_cast<QWidget*>(row));
    }
    showAll(shown);
}

void PanelSearch::Private::showMessage(bool nothingFound)
{
    if (!nothingFound || !tellsNothingFound)
    {
        if (message)
            message->hide();
        return;
    }
    if (!message)
    {
        message = new QLabel(panel);
        message->setObjectName(QStringLiteral("nothingFound"));
        message->setTextFormat(Qt::PlainText);
        message->setAlignment(Qt::AlignCenter);
        message->setMargin(6);
        // The panel can be as narrow as before, however long the text is.
        message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        auto* rows = qobject_cast<QBoxLayout*>(panel->layout());
        const int fieldAt = rows && field ? rows->indexOf(field) : -1;
        if (fieldAt >= 0)
            rows->insertWidget(fieldAt + 1, message);
        else if (field)
            message->setGeometry(field->geometry().translated(0, field->height()));
    }
    const int width = (field ? field->width() : panel->width()) * 2 / 3;
    message->setText(
        PanelSearch::tr("Nothing matches \"%1\"").arg(message->fontMetrics().elidedText(text, Qt::ElideRight, width)));
    message->show();
    message->raise();
}

void PanelSearch::Private::updateKeys()
{
    if (findKey)
        findKey->setEnabled(hasShortcut);
    for (const QPointer<QShortcut>& key : {nextKey, previousKey})
        if (key)
            key->setEnabled(hasShortcut && isSearching());
}

// The matching rows, and the check boxes of sections with a matching title, in visual order.
QVector<QWidget*> PanelSearch::Private::matches() const
{
    QVector<QWidget*> found;
    if (!panel || !isSearching())
        return found;
    // Positions are only known once the layouts have followed the last text.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const auto add = [this, &found](QWidget* widget)
    {
        if (widget->isVisibleTo(panel))
            found << widget;
    };
    for (const auto& receiver : receivers)
    {
        if (!receiver->widget || !receiver->matches)
            continue;
        if (titleContains(receiver->widget, text))
        {
            add(receiver->box ? receiver->box.data() : receiver->widget.data());
            continue;
        }
        const QWidget* contents = contentsOf(*receiver);
        if (!contents)
            continue;
        const auto rows = contents->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        for (QWidget* row : rows)
            if (!find(row) && row->property("highlighted").toBool())
                add(row);
    }
    const bool fromRight = panel->isRightToLeft();
    const auto place = [this, fromRight](const QWidget* widget)
    {
        const QPoint corner = widget->mapTo(panel.data(), fromRight ? widget->rect().topRight() : QPoint());
        return std::make_pair(corner.y(), fromRight ? -corner.x() : corner.x());
    };
    std::stable_sort(found.begin(), found.end(),
                     [&place](const QWidget* a, const QWidget* b) { return place(a) < place(b); });
    return found;
}

void PanelSearch::Private::goOn(int step)
{
    const QVector<QWidget*> all = matches();
    if (all.isEmpty())
        return;
    const QWidget* focus = QApplication::focusWidget();
    const auto here =
        std::find_if(all.cbegin(), all.cend(),
                     [focus](const QWidget* match) { return focus && (match == focus || match->isAncestorOf(focus)); });
    int at = here == all.cend() ? all.indexOf(current) : int(here - all.cbegin());
    if (at < 0 && step < 0)
        at = 0; // before the first comes the last
    goTo(all[(at + step + all.size()) % all.size()]);
}

void PanelSearch::Private::goTo(QWidget* match)
{
    current = match;
    if (QWidget* target = focusTargetIn(match, panel))
        target->setFocus(Qt::TabFocusReason);
    if (current)
        scrollTo(current);
}

void PanelSearch::Private::onFindKey(bool ambiguous)
{
    // If a window has several panels, the key belongs to the one with the focus; otherwise they take turns.
    const QWidget* above = ambiguous ? QApplication::focusWidget() : nullptr;
    for (; above && above != panel; above = above->parentWidget())
    {
        const auto* search = above->findChild<QLineEdit*>(QStringLiteral("search"), Qt::FindDirectChildrenOnly);
        auto* key = search ? search->findChild<QShortcut*>(shortcutName(), Qt::FindDirectChildrenOnly) : nullptr;
        if (!key)
            continue;
        Q_EMIT key->activated();
        return;
    }
    q->find();
}

bool PanelSearch::Private::onFieldKey(QKeyEvent* event)
{
    const bool isEscape = event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier;
    if (event->type() == QEvent::ShortcutOverride)
    {
        if (!isEscape || (field->text().isEmpty() && !focusBefore))
            return false;
        event->accept();
        return true;
    }
    if (isEscape)
        return onEscape();
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || !isSearching())
        return false;
    // The field emits its signals, but no button of a dialog is pressed.
    field->event(event);
    event->accept();
    q->findFirst();
    return true;
}

bool PanelSearch::Private::onEscape()
{
    const bool hadText = !field->text().isEmpty();
    if (hadText)
        field->clear();
    const bool canReturn = focusBefore && focusBefore->isVisible() && focusBefore->isEnabled();
    if (canReturn)
    {
        focusBefore->setFocus(Qt::OtherFocusReason);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        scrollTo(focusBefore);
    }
    focusBefore = nullptr;
    return hadText || canReturn;
}
} // namespace orvek::host
