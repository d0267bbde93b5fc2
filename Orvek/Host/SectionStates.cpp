#include <Orvek/Host/SectionStates.h>

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorTree.h>

#include <QtCore/QScopedValueRollback>
#include <QtCore/QSettings>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionButton>

#include <utility>

namespace orvek::host
{
namespace
{
struct State
{
    QPointer<QWidget> section;
    QPointer<QCheckBox> box;
    QPointer<QLineEdit> search; // of the panel around it; may be null
    QString key;                // empty until first needed
    bool isOpen = true;         // as set by the user or the host
    bool isOpened = false;      // since then, by the host or by clearing a search
    bool isDue = false;         // restored during a search
};

bool isSearched(const State& state)
{
    return (state.search && !state.search->text().isEmpty()) ||
           (state.section && state.section->property("highlighted").toBool());
}

bool stateOf(const State& state)
{
    return state.isOpen || (state.isOpened && !isSearched(state));
}

QLineEdit* searchAround(const QWidget* section)
{
    for (const QWidget* above = section->parentWidget(); above; above = above->parentWidget())
    {
        if (above->metaObject()->indexOfSignal("setSearchText(QString)") < 0)
            continue;
        if (auto* field = above->findChild<QLineEdit*>(QStringLiteral("search"), Qt::FindDirectChildrenOnly))
            return field;
    }
    return nullptr;
}

QString escaped(QString name)
{
    name.replace(QLatin1Char('%'), QLatin1String("%25"));
    name.replace(QLatin1Char('/'), QLatin1String("%2F"));
    name.replace(QLatin1Char('\\'), QLatin1String("%5C"));
    name.replace(QLatin1Char('#'), QLatin1String("%23"));
    return name;
}

// The form sets this name if the section has none.
QString sectionName(const QWidget* section)
{
    const QString name = section->objectName();
    return name.isEmpty() || name == QLatin1String("Accordion") ? section->windowTitle() : name;
}

bool isInPath(const QWidget* widget)
{
    const QString name = widget->objectName();
    return !name.isEmpty() && !name.startsWith(QLatin1String("qt_")) && !isSection(widget->parentWidget());
}

QPoint middleOfIndicator(const QCheckBox* box)
{
    QStyleOptionButton option;
    option.initFrom(box);
    option.text = box->text();
    option.icon = box->icon();
    option.iconSize = box->iconSize();
    return box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box).center();
}
} // namespace

struct SectionStates::Private
{
    SectionStates* q = nullptr;
    std::shared_ptr<EditorTree> tree;
    QHash<QWidget*, State> states;
    QVector<QPointer<QLineEdit>> searches;
    QHash<QString, bool> read; // by restore()
    QHash<QString, bool> gone; // of removed sections
    bool isRestored = false;
    bool isQueued = false;
    bool isForwarding = false;
    bool wholeTitleFolds = true;
    bool ctrlFoldsAll = true;

    void enter(QWidget* widget);
    void leave(QWidget* widget);
    void updateKeys();
    void takeInArrivals();
    void apply(QWidget* section);
    void setOpen(QWidget* section, bool open);
    void onToggled(QWidget* section, bool open);
    void onClicked(QWidget* section, bool open);
    void onSearchText(const QLineEdit* field, const QString& text);
};

SectionStates::SectionStates(QWidget* root, QObject* parent) : QObject(parent), d(new Private)
{
    d->q = this;
    if (!root)
        return;
    d->tree = EditorTree::of(root);
    connect(d->tree.get(), &EditorTree::entered, this, [this](QWidget* widget) { d->enter(widget); });
    connect(d->tree.get(), &EditorTree::left, this, [this](QWidget* widget) { d->leave(widget); });
    const auto widgets = d->tree->widgets();
    for (QWidget* widget : widgets)
        d->enter(widget);
}

SectionStates::~SectionStates() = default;

void SectionStates::save(QSettings& settings) const
{
    d->takeInArrivals();
    for (auto state = d->gone.cbegin(); state != d->gone.cend(); ++state)
        settings.setValue(state.key(), state.value());
    for (const State& state : std::as_const(d->states))
        settings.setValue(state.key, stateOf(state));
}

void SectionStates::restore(const QSettings& settings)
{
    d->takeInArrivals();
    d->isRestored = true;
    d->gone.clear();
    d->read.clear();
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys)
        d->read.insert(key, settings.value(key).toBool());
    const auto sections = d->states.keys();
    for (QWidget* section : sections)
        d->apply(section);
}

bool SectionStates::wholeTitleFolds() const
{
    return d->wholeTitleFolds;
}

void SectionStates::setWholeTitleFolds(bool on)
{
    d->wholeTitleFolds = on;
    for (const State& state : std::as_const(d->states))
    {
        if (!state.box)
            continue;
        if (on)
            state.box->installEventFilter(this);
        else
            state.box->removeEventFilter(this);
    }
}

bool SectionStates::ctrlFoldsAll() const
{
    return d->ctrlFoldsAll;
}

void SectionStates::setCtrlFoldsAll(bool on)
{
    d->ctrlFoldsAll = on;
}

// For the check box, everything that the left button does in the title line happens on its indicator.
bool SectionStates::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    const bool isButton =
        type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease || type == QEvent::MouseButtonDblClick;
    if (d->isForwarding || !(isButton || type == QEvent::MouseMove))
        return false;
    auto* box = qobject_cast<QCheckBox*>(watched);
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const bool isLeft = isButton ? mouse->button() == Qt::LeftButton : mouse->buttons() == Qt::LeftButton;
    if (!box || !box->isEnabled() || !isLeft || !box->rect().contains(mouse->pos()))
        return false;
    const QPoint middle = middleOfIndicator(box);
    QMouseEvent onIndicator(type, middle, box->mapTo(box->window(), middle), box->mapToGlobal(middle), mouse->button(),
                            mouse->buttons(), mouse->modifiers());
    event->accept();
    const QScopedValueRollback<bool> guard(d->isForwarding, true);
    QCoreApplication::sendEvent(box, &onIndicator);
    return true;
}

void SectionStates::Private::enter(QWidget* widget)
{
    if (!isSection(widget) || states.contains(widget))
        return;
    State state;
    state.section = widget;
    state.box = widget->findChild<QCheckBox*>(QStringLiteral("accordionCheckBox"), Qt::FindDirectChildrenOnly);
    state.search = searchAround(widget);
    state.isOpen = state.box->isChecked();
    connect(state.box, &QCheckBox::toggled, q, [this, widget](bool open) { onToggled(widget, open); });
    connect(state.box, &QCheckBox::clicked, q, [this, widget](bool open) { onClicked(widget, open); });
    if (wholeTitleFolds)
        state.box->installEventFilter(q);
    if (state.search && !searches.contains(state.search))
    {
        searches << state.search;
        connect(state.search, &QLineEdit::textChanged, q,
                [this, field = state.search.data()](const QString& text) { onSearchText(field, text); });
    }
    states.insert(widget, state);
    // Queued, as the section will have its name and title by then.
    if (!isQueued)
        QMetaObject::invokeMethod(
            q, [this] { takeInArrivals(); }, Qt::QueuedConnection);
    isQueued = true;
}

void SectionStates::Private::leave(QWidget* widget)
{
    const auto known = states.find(widget);
    if (known == states.end())
        return;
    if (known->box)
    {
        known->box->removeEventFilter(q);
        QObject::disconnect(known->box, nullptr, q, nullptr);
    }
    if (!known->key.isEmpty())
        gone.insert(known->key, stateOf(*known));
    states.erase(known);
}

void SectionStates::Private::updateKeys()
{
    QHash<QString, int> counts;
    const auto widgets = tree->widgets();
    for (QWidget* widget : widgets)
    {
        const auto state = states.find(widget);
        if (state == states.end())
            continue;
        QString path = escaped(sectionName(widget));
        for (QWidget* above = widget->parentWidget(); above && above != tree->root(); above = above->parentWidget())
        {
            // Outer sections come first, so this one has its key.
            const auto outer = states.constFind(above);
            if (outer != states.cend())
            {
                path.prepend(outer->key + QLatin1Char('/'));
                break;
            }
            if (isInPath(above))
                path.prepend(escaped(above->objectName()) + QLatin1Char('/'));
        }
        const int count = ++counts[path];
        const bool isNameless = path.isEmpty() || path.endsWith(QLatin1Char('/'));
        state->key = count > 1 || isNameless ? path + QLatin1Char('#') + QString::number(count) : path;
    }
}

void SectionStates::Private::takeInArrivals()
{
    if (!tree || !tree->root())
        return;
    isQueued = false;
    QVector<QWidget*> arrivals;
    tree->takeIn();
    for (auto state = states.cbegin(); state != states.cend(); ++state)
        if (state->key.isEmpty())
            arrivals << state.key();
    updateKeys();
    for (QWidget* arrival : std::as_const(arrivals))
        if (isRestored)
            apply(arrival);
}

void SectionStates::Private::apply(QWidget* section)
{
    const auto state = states.find(section);
    if (state == states.end())
        return;
    const auto left = gone.constFind(state->key);
    const auto stored = read.constFind(state->key);
    if (left == gone.cend() && stored == read.cend())
        return;
    const bool open = left != gone.cend() ? *left : *stored;
    if (!isSearched(*state))
    {
        setOpen(section, open);
        return;
    }
    state->isOpen = open;
    state->isDue = true;
}

void SectionStates::Private::setOpen(QWidget* section, bool open)
{
    const auto state = states.find(section);
    if (state == states.end())
        return;
    state->isOpen = open;
    state->isOpened = state->isDue = false;
    // Last, as a slot of the host may change the states.
    if (const QPointer<QCheckBox> box = state->box)
        box->setChecked(open);
}

void SectionStates::Private::onToggled(QWidget* section, bool open)
{
    const auto state = states.find(section);
    if (state == states.end() || state->isDue)
        return;
    // A search only opens sections. onSearchText() finds out whether this was the host or the clearing of a search.
    if (!open)
        state->isOpen = state->isOpened = false;
    else if (!isSearched(*state))
        state->isOpened = true;
}

void SectionStates::Private::onClicked(QWidget* section, bool open)
{
    const auto clicked = states.find(section);
    if (clicked == states.end())
        return;
    clicked->isOpen = open;
    clicked->isOpened = clicked->isDue = false;
    if (!ctrlFoldsAll || !(QGuiApplication::keyboardModifiers() & Qt::ControlModifier))
        return;
    QVector<QWidget*> beside;
    for (auto state = states.cbegin(); state != states.cend(); ++state)
        if (state->section && state->section->parentWidget() == section->parentWidget() && !state->section->isHidden())
            beside << state.key();
    for (QWidget* sibling : std::as_const(beside))
        setOpen(sibling, open);
}

// Called after the sections have followed the text, as the panel's own connection is older.
void SectionStates::Private::onSearchText(const QLineEdit* field, const QString& text)
{
    QVector<QWidget*> due;
    for (auto state = states.begin(); state != states.end(); ++state)
    {
        if (state->search != field)
            continue;
        // Opened while the field was empty: by the host before this search, or by clearing the field just now.
        if (state->isOpened && !text.isEmpty())
            state->isOpen = true;
        state->isOpened = false;
        if (state->isDue && text.isEmpty())
            due << state.key();
    }
    for (QWidget* section : std::as_const(due))
        setOpen(section, states.value(section).isOpen);
}
} // namespace orvek::host
