#include <Orvek/Host/Inspector.h>

#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorActs.h>
#include <Orvek/Host/EditorTree.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/InspectorRow.h>
#include <Orvek/Host/InspectorSection.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/PropertyEditors.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>
#include <QUndoStack>

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvek::host
{
namespace
{
constexpr int retryInterval = 100; // milliseconds, while an editor is in use
constexpr int rowsAtOnce = 300;    // the most that a search builds before its results are painted

// The layout for the sections.
QBoxLayout* sectionsOf(QWidget* panel)
{
    QWidget* holder = panel;
    if (qobject_cast<QPropertyPanel*>(panel))
    {
        auto* area = panel->findChild<QScrollArea*>();
        if (!area)
        {
            area = new QScrollArea(panel);
            area->setWidgetResizable(true);
            area->setFrameShape(QFrame::NoFrame);
        }
        if (!area->widget())
            area->setWidget(new QWidget);
        holder = area->widget();
    }
    if (!holder->layout())
    {
        auto* column = new QVBoxLayout(holder);
        column->addStretch();
    }
    return qobject_cast<QBoxLayout*>(holder->layout());
}

QString formName(QString property)
{
    return property.replace(QLatin1Char('.'), QLatin1Char('_'));
}

bool isInEditor(const QWidget* widget, const QWidget* form)
{
    for (const QWidget* above = widget->parentWidget(); above && above != form; above = above->parentWidget())
        if (isEditor(above))
            return true;
    return widget->objectName() == QLatin1String("accordionCheckBox");
}

QStringList errorsOf(const ObjectType& type, QSet<const ObjectType*>& asked)
{
    QStringList errors;
    if (asked.contains(&type))
        return errors;
    asked.insert(&type);
    errors = type.errors();
    for (const Property& property : type.properties())
        if (property.elementType)
            errors << errorsOf(*property.elementType, asked);
    return errors;
}
} // namespace

// Receives the objects' signals. Its connections end with it.
class InspectorListener final : public QObject
{
    Q_OBJECT
public:
    explicit InspectorListener(std::function<void()> act) : m_act(std::move(act)) {}

public Q_SLOTS:
    void notice() { m_act(); }

private:
    const std::function<void()> m_act;
};

struct Inspector::Private
{
    Private(Inspector* inspector, QWidget* root, QUndoStack* undoStack);

    // Objects shown together: shared properties, mixed values, one undo step.
    struct Group
    {
        QVector<Objects> objects;
        std::shared_ptr<Selection> selection;
        QVector<SharedProperty> shared;
        std::vector<std::unique_ptr<InspectorSection>> sections;
    };

    bool setGroups(const QVector<QVector<Objects>>& given);
    bool setObjects(std::size_t index, const QVector<Objects>& given);
    void build(std::size_t index);
    std::vector<std::unique_ptr<InspectorSection>> makeSections(const Group& group, bool isLast) const;
    void listen();
    template <typename Visit>
    void forEachSection(Visit visit) const
    {
        for (const Group& group : groups)
            for (const auto& section : group.sections)
                visit(*section);
    }
    // The groups' shared properties by a name made from theirs; the first one if names are equal.
    QHash<QString, std::pair<std::shared_ptr<Selection>, SharedProperty>>
        namedProperties(QString (*nameOf)(QString)) const;
    void search();
    std::shared_ptr<InspectorRow> makeRow(const Property& property, const QString& path);
    std::shared_ptr<InspectorRow> makeRow(const Property& property, const QString& path, QWidget* editor, QWidget* row,
                                          PanelHost* server);
    void alignFlags();
    void refreshSoon(int interval);
    void refresh();
    void bindForms();

    struct HostRow
    {
        QPointer<QWidget> row;
        QString section;
        QString property;
    };
    struct Form
    {
        std::shared_ptr<PanelHost> host;
        std::vector<std::pair<QString, std::shared_ptr<InspectorRow>>> rows; // with the names of their properties
    };

    Inspector* const q;
    const QPointer<QWidget> panel;
    const QPointer<QUndoStack> stack;
    QPointer<QBoxLayout> column;
    std::shared_ptr<PanelHost> host; // of the panel
    std::shared_ptr<EditorTree> tree;
    EditorUndo unrecorded{nullptr}; // takes the user's edits if there is no stack
    Selection::Keys keys;
    InspectorSection::Maker maker;
    QHash<QString, EditorFactory> factories;
    QHash<int, EditorFactory> kindFactories;
    std::vector<HostRow> hostRows;
    bool isStale = false; // rows must be rebuilt although the types are the same
    QTimer timer;
    QTimer searchTimer; // continues building for the last search text
    int frameInterval = 16;

    std::vector<Group> groups;
    QHash<QWidget*, std::weak_ptr<InspectorRow>> rows; // by their editors
    std::vector<Form> forms;
    std::unique_ptr<InspectorListener> listener;
};

Inspector::Private::Private(Inspector* inspector, QWidget* root, QUndoStack* undoStack)
    : q(inspector), panel(root), stack(undoStack)
{
    maker.makeRow = [this](const Property& property, const QString& path) { return makeRow(property, path); };
    maker.rowsBuilt = [this]
    {
        if (tree)
            tree->takeIn();
    };
    timer.setSingleShot(true);
    searchTimer.setSingleShot(true);
    QObject::connect(&searchTimer, &QTimer::timeout, q, [this] { search(); });
    QObject::connect(&timer, &QTimer::timeout, q, [this] { refresh(); });
    const auto withRow = [this](void (InspectorRow::*act)())
    {
        return [this, act](QWidget* editor)
        {
            if (const auto row = rows.value(editor).lock())
                (row.get()->*act)();
        };
    };
    QObject::connect(EditorActs::instance(), &EditorActs::begun, q, withRow(&InspectorRow::beginAct));
    QObject::connect(EditorActs::instance(), &EditorActs::ended, q, withRow(&InspectorRow::endAct));
    QObject::connect(EditorActs::instance(), &EditorActs::relativeEdit, q,
                     [this](QWidget* editor, int component, const Relative& edit, bool* isDone)
                     {
                         const auto row = rows.value(editor).lock();
                         if (!row || *isDone)
                             return;
                         *isDone = true;
                         row->change(component, edit);
                     });
    if (!panel)
        return;
    column = sectionsOf(panel);
    // Connected before the PanelHost's search, which then finds the rows built here.
    if (auto* propertyPanel = qobject_cast<QPropertyPanel*>(root))
        QObject::connect(propertyPanel, QOverload<const QString&>::of(&QPropertyPanel::setSearchText), q,
                         [this] { search(); });
    host = std::make_shared<PanelHost>(panel, undoStack);
    tree = EditorTree::of(panel);
    QObject::connect(host->columns(), &ColumnAligner::aligned, q, [this] { alignFlags(); });
}

Inspector::Inspector(QWidget* panel, QUndoStack* undoStack, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(this, panel, undoStack))
{
}

Inspector::~Inspector()
{
    if (d->host)
        d->host->columns()->disconnect(this);
    // While everything still exists, so that an open dialog can restore what it found.
    d->forms.clear();
    d->host.reset();
    EditorActs::instance()->disconnect(this);
    d->groups.clear();
    for (const Private::HostRow& row : d->hostRows)
        if (row.row && !row.row->parentWidget())
            delete row.row;
}

bool Inspector::setObjects(const QVector<Objects>& objects)
{
    return d->setGroups({objects});
}

bool Inspector::setObjects(std::shared_ptr<const ObjectType> type, const QVector<void*>& objects)
{
    return d->setGroups({{{std::move(type), objects}}});
}

bool Inspector::setGroups(const QVector<QVector<Objects>>& groups)
{
    return d->setGroups(groups);
}

QVector<void*> Inspector::objects() const
{
    QVector<void*> objects;
    for (const Private::Group& group : d->groups)
        objects << group.selection->roots();
    return objects;
}

void Inspector::setKeys(KeyOf keyOf, ObjectOf objectOf)
{
    d->keys = {std::move(keyOf), std::move(objectOf)};
}

QStringList Inspector::bind(QWidget* form)
{
    QStringList missing;
    if (!form)
        return missing;
    const auto properties = d->namedProperties(formName);
    const bool isInPanel = d->panel && (d->panel == form || d->panel->isAncestorOf(form));
    Private::Form bound{isInPanel ? d->host : std::make_shared<PanelHost>(form, d->stack), {}};
    QSet<QString> found;
    const auto widgets = form->findChildren<QWidget*>();
    for (QWidget* widget : widgets)
    {
        const bool isBox = qobject_cast<QCheckBox*>(widget);
        if (!(isBox || isEditor(widget)) || isInEditor(widget, form))
            continue;
        const auto property = properties.constFind(widget->objectName());
        if (property == properties.cend())
        {
            missing << QStringLiteral("Form %1: there is no property for the editor %2")
                           .arg(form->objectName(), widget->objectName());
            continue;
        }
        const Property& described = property->first->description(property->second);
        if (!fits(widget, described.kind))
        {
            missing << QStringLiteral("Form %1: the editor %2 cannot show a property of this kind")
                           .arg(form->objectName(), widget->objectName());
            continue;
        }
        found << widget->objectName();
        describe(widget, described, false);
        bound.rows.emplace_back(described.name,
                                d->makeRow(described, described.name, widget, widget, bound.host.get()));
    }
    for (const Private::Group& group : d->groups)
        for (const SharedProperty& property : group.shared)
        {
            const Property& described = group.selection->description(property);
            if (described.kind != PropertyKind::List && !found.contains(formName(described.name)))
                missing << QStringLiteral("Form %1: there is no editor for the property %2")
                               .arg(form->objectName(), described.name);
        }
    for (const QString& message : std::as_const(missing))
        qWarning("%s", qPrintable(message));
    d->forms.push_back(std::move(bound));
    d->bindForms();
    return missing;
}

void Inspector::setEditorFactory(const QString& property, const EditorFactory& factory)
{
    d->factories.insert(property, factory);
    d->isStale = true;
}

void Inspector::setEditorFactory(PropertyKind kind, const EditorFactory& factory)
{
    d->kindFactories.insert(int(kind), factory);
    d->isStale = true;
}

void Inspector::addRow(QWidget* row, const QString& section, const QString& property)
{
    if (!row)
        return;
    row->setParent(nullptr);
    d->hostRows.push_back({row, section, property});
    d->isStale = true;
}

QWidget* Inspector::editor(const QString& property)
{
    for (const Private::Group& group : d->groups)
        for (const auto& section : group.sections)
            if (const InspectorRow* row = section->row(property))
                return row->editor();
    return nullptr;
}

PanelHost* Inspector::host() const
{
    return d->host.get();
}

bool Inspector::opensSections() const
{
    return d->maker.opensSections;
}

void Inspector::setOpensSections(bool open)
{
    d->maker.opensSections = open;
}

int Inspector::frameInterval() const
{
    return d->frameInterval;
}

void Inspector::setFrameInterval(int milliseconds)
{
    d->frameInterval = milliseconds;
}

void Inspector::refresh()
{
    d->refresh();
}

bool Inspector::Private::setGroups(const QVector<QVector<Objects>>& given)
{
    groups.resize(std::size_t(given.size()));
    bool areValid = true;
    for (int i = 0; i < given.size(); ++i)
        areValid = setObjects(std::size_t(i), given[i]) && areValid;
    isStale = false;
    bindForms();
    listen();
    return areValid;
}

bool Inspector::Private::setObjects(std::size_t index, const QVector<Objects>& given)
{
    Group& group = groups[index];
    const auto next = std::make_shared<Selection>(given, keys);
    const bool isSame = !isStale && group.selection && next->types() == group.selection->types();
    bool isValid = std::all_of(given.cbegin(), given.cend(), [](const Objects& some) { return some.type; });
    if (!isSame)
    {
        QSet<const ObjectType*> asked;
        const QVector<const ObjectType*> types = next->types();
        for (const ObjectType* type : types)
        {
            const QStringList errors = errorsOf(*type, asked);
            for (const QString& error : errors)
                qWarning("Inspector: %s", qPrintable(error));
            isValid = isValid && errors.isEmpty();
        }
    }
    group.objects = isValid ? given : QVector<Objects>();
    group.selection = isValid ? next : std::make_shared<Selection>(group.objects, keys);
    if (isSame)
        for (const auto& section : group.sections)
            section->bind(group.selection);
    else
        build(index);
    return isValid;
}

void Inspector::Private::build(std::size_t index)
{
    Group& group = groups[index];
    group.shared = group.selection->shared();
    group.sections.clear();
    for (auto row = rows.begin(); row != rows.end();)
        row = row->expired() ? rows.erase(row) : std::next(row);
    if (!column)
        return;
    group.sections = makeSections(group, index + 1 == groups.size());
    std::size_t position = 0;
    for (std::size_t before = 0; before < index; ++before)
        position += groups[before].sections.size();
    for (const auto& section : group.sections)
    {
        column->insertWidget(int(position++), section->widget());
        section->bind(group.selection);
    }
    search();
}

// In the order in which the properties first name them. The host's rows for other sections follow the last group.
std::vector<std::unique_ptr<InspectorSection>> Inspector::Private::makeSections(const Group& group, bool isLast) const
{
    QStringList titles;
    QHash<QString, QVector<InspectorSection::Entry>> entries;
    const auto addTo = [&](const QString& title, const InspectorSection::Entry& entry)
    {
        if (!entries.contains(title))
            titles << title;
        entries[title] << entry;
    };
    QSet<const QWidget*> placed;
    for (const SharedProperty& property : group.shared)
    {
        const QString title = group.selection->sectionTitle(property);
        addTo(title, {property, nullptr});
        for (const HostRow& row : hostRows)
            if (row.row && row.section == title && row.property == group.selection->description(property).name)
            {
                addTo(title, {{}, row.row});
                placed.insert(row.row);
            }
    }
    for (const HostRow& row : hostRows)
        if (row.row && !placed.contains(row.row) && !group.shared.isEmpty() &&
            (entries.contains(row.section) || (isLast && !row.row->parentWidget())))
            addTo(row.section, {{}, row.row});
    std::vector<std::unique_ptr<InspectorSection>> made;
    for (const QString& title : std::as_const(titles))
        made.push_back(std::make_unique<InspectorSection>(maker, title, QString(), entries.value(title)));
    return made;
}

void Inspector::Private::listen()
{
    listener = std::make_unique<InspectorListener>([this] { refreshSoon(frameInterval); });
    const QMetaMethod slot = listener->metaObject()->method(listener->metaObject()->indexOfSlot("notice()"));
    for (const Group& group : groups)
        for (const Objects& some : group.objects)
        {
            QVector<QMetaMethod> signalsOfType;
            for (int i = 0; some.type && i < some.type->properties().size(); ++i)
            {
                const QMetaMethod signal = some.type->notifySignal(i);
                if (signal.isValid() && !signalsOfType.contains(signal))
                    signalsOfType << signal;
            }
            for (void* object : some.objects)
                for (const QMetaMethod& signal : std::as_const(signalsOfType))
                    if (QObject* notifier = object ? some.type->notifier(object, 0) : nullptr)
                        QObject::connect(notifier, signal, listener.get(), slot);
        }
    for (const Group& group : groups)
    {
        const QVector<QObject*> notifiers = group.selection->notifiers();
        for (QObject* object : notifiers)
            QObject::connect(object, &QObject::destroyed, listener.get(), &InspectorListener::notice);
    }
}

void Inspector::Private::search()
{
    const auto* field =
        panel ? panel->findChild<QLineEdit*>(QStringLiteral("search"), Qt::FindDirectChildrenOnly) : nullptr;
    if (!field || field->text().isEmpty())
        return;
    int built = 0;
    forEachSection(
        [&built, field](InspectorSection& section)
        {
            if (built < rowsAtOnce)
                built += section.search(field->text());
        });
    if (built >= rowsAtOnce)
        searchTimer.start(0);
}

std::shared_ptr<InspectorRow> Inspector::Private::makeRow(const Property& property, const QString& path)
{
    QWidget* editor = nullptr;
    QWidget* row = nullptr;
    EditorFactory factory = factories.value(path);
    if (!factory)
        factory = kindFactories.value(int(property.kind));
    if (factory)
        editor = factory(property);
    if (editor && !fits(editor, property.kind))
    {
        qWarning("Inspector: the editor for %s cannot show a property of this kind", qPrintable(path));
        delete editor;
        editor = nullptr;
    }
    if (!editor && property.kind == PropertyKind::Flag)
    {
        const FlagRow made = createFlagRow(property);
        editor = made.box;
        row = made.row;
        row->setToolTip(property.toolTip);
        row->setEnabled(!property.readOnly);
    }
    else
    {
        if (!editor)
            editor = createEditor(property);
        row = editor;
        describe(editor, property, true);
    }
    editor->setObjectName(path);
    return makeRow(property, path, editor, row, host.get());
}

std::shared_ptr<InspectorRow> Inspector::Private::makeRow(const Property& property, const QString& path,
                                                          QWidget* editor, QWidget* row, PanelHost* server)
{
    const QPointer<Inspector> alive(q);
    auto made = std::make_shared<InspectorRow>(property, path, editor, row,
                                               [this, alive](const QVector<void*>& roots, const QString& name)
                                               {
                                                   if (!alive)
                                                       return;
                                                   refreshSoon(frameInterval);
                                                   Q_EMIT alive->edited(roots, name);
                                               });
    EditorUndo* undo = server && server->undo() ? server->undo() : &unrecorded;
    undo->add(editor, made);
    rows.insert(editor, made);
    return made;
}

// Lines the check boxes up with the fields of the first visible editor.
void Inspector::Private::alignFlags()
{
    int position = -1;
    QVector<const QWidget*> flags;
    const auto look = [&](const InspectorRow& row)
    {
        if (!row.widget() || !row.widget()->isVisible())
            return;
        if (row.widget() != row.editor())
            flags << row.widget();
        else if (const QLabel* label = position < 0 ? partsOf(row.editor()).label : nullptr)
            position = label->mapTo(panel, QPoint(label->width(), 0)).x();
    };
    forEachSection([&look](const InspectorSection& section) { section.forEachRow(look); });
    if (position < 0)
        return;
    for (const QWidget* flag : std::as_const(flags))
        alignFlagRow(flag, panel, position);
}

void Inspector::Private::refreshSoon(int interval)
{
    if (!timer.isActive())
        timer.start(std::max(0, interval));
}

void Inspector::Private::refresh()
{
    bool hasGaps = false;
    QVector<QVector<Objects>> remaining;
    for (const Group& group : groups)
    {
        group.selection->resolve();
        hasGaps = hasGaps || group.selection->hasGaps();
        remaining << group.selection->remaining();
    }
    // Continues without the destroyed ones.
    if (hasGaps)
    {
        setGroups(remaining);
        return;
    }
    bool all = true;
    forEachSection([&all](InspectorSection& section) { all = section.refresh() && all; });
    for (const Form& form : forms)
        for (const auto& row : form.rows)
            all = row.second->refresh() && all;
    if (!all)
        refreshSoon(retryInterval);
}

QHash<QString, std::pair<std::shared_ptr<Selection>, SharedProperty>>
Inspector::Private::namedProperties(QString (*nameOf)(QString)) const
{
    QHash<QString, std::pair<std::shared_ptr<Selection>, SharedProperty>> named;
    for (const Group& group : groups)
        for (const SharedProperty& property : group.shared)
        {
            const QString name = nameOf(group.selection->description(property).name);
            if (!named.contains(name))
                named.insert(name, {group.selection, property});
        }
    return named;
}

void Inspector::Private::bindForms()
{
    if (forms.empty())
        return;
    const auto properties = namedProperties([](QString name) { return name; });
    for (const Form& form : forms)
        for (const auto& row : form.rows)
        {
            const auto property = properties.value(row.first);
            row.second->bind(property.first, property.second);
            row.second->refresh();
        }
}
} // namespace orvek::host

#include "Inspector.moc"
