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
#include <QtWidgets/QUndoStack>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvek::host
{
namespace
{
constexpr int retryInterval = 100; // milliseconds, while an editor is being used

// The layout that the sections go into.
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

// What the objects' signals reach. Its connections end with it.
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

    bool setObjects(const QVector<Objects>& objects);
    void build();
    std::vector<std::unique_ptr<InspectorSection>> makeSections();
    void listen();
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
        std::vector<std::pair<QString, std::shared_ptr<InspectorRow>>> rows; // with the names of the properties
    };

    Inspector* const q;
    const QPointer<QWidget> panel;
    const QPointer<QUndoStack> stack;
    QPointer<QBoxLayout> column;
    std::shared_ptr<PanelHost> host; // of the panel
    std::shared_ptr<EditorTree> tree;
    EditorUndo unrecorded{nullptr};  // takes what the user does if there is no stack
    Selection::Keys keys;
    InspectorSection::Maker maker;
    QHash<QString, EditorFactory> factories;
    QHash<int, EditorFactory> kindFactories;
    std::vector<HostRow> hostRows;
    bool isStale = false; // other rows have to be built although the types are the same
    QTimer timer;
    int frameInterval = 16;

    QVector<Objects> objects;
    std::shared_ptr<Selection> selection;
    QVector<SharedProperty> shared;
    std::vector<std::unique_ptr<InspectorSection>> sections;
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
    QObject::connect(&timer, &QTimer::timeout, q, [this] { refresh(); });
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
    // Before the search of the PanelHost, which then finds the rows of what it will show.
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
    d->sections.clear();
    for (const Private::HostRow& row : d->hostRows)
        if (row.row && !row.row->parentWidget())
            delete row.row;
}

bool Inspector::setObjects(const QVector<Objects>& objects)
{
    return d->setObjects(objects);
}

bool Inspector::setObjects(std::shared_ptr<const ObjectType> type, const QVector<void*>& objects)
{
    return d->setObjects({{std::move(type), objects}});
}

QVector<void*> Inspector::objects() const
{
    return d->selection ? d->selection->roots() : QVector<void*>();
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
    QHash<QString, SharedProperty> properties;
    for (const SharedProperty& property : std::as_const(d->shared))
        properties.insert(formName(d->selection->description(property).name), property);
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
            missing
                << tr("Form %1: there is no property for the editor %2").arg(form->objectName(), widget->objectName());
            continue;
        }
        const Property& described = d->selection->description(*property);
        if (!fits(widget, described.kind))
        {
            missing << tr("Form %1: the editor %2 cannot show a property of this kind")
                           .arg(form->objectName(), widget->objectName());
            continue;
        }
        found << widget->objectName();
        describe(widget, described, false);
        bound.rows.emplace_back(described.name,
                                d->makeRow(described, described.name, widget, widget, bound.host.get()));
    }
    for (const SharedProperty& property : std::as_const(d->shared))
    {
        const Property& described = d->selection->description(property);
        if (described.kind != PropertyKind::List && !found.contains(formName(described.name)))
            missing << tr("Form %1: there is no editor for the property %2").arg(form->objectName(), described.name);
    }
    for (const QString& message : std::as_const(missing))
        qWarning("%s", qPrintable(message));
    d->forms.push_back(std::move(bound));
    d->bindForms();
    return missing;
}

void Inspector::setEditorFactory(const QString& property, EditorFactory factory)
{
    d->factories.insert(property, std::move(factory));
    d->isStale = true;
}

void Inspector::setEditorFactory(PropertyKind kind, EditorFactory factory)
{
    d->kindFactories.insert(int(kind), std::move(factory));
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
    for (const auto& section : d->sections)
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

bool Inspector::Private::setObjects(const QVector<Objects>& given)
{
    const auto next = std::make_shared<Selection>(given, keys);
    const bool isSame = !isStale && selection && next->types() == selection->types();
    bool isValid = std::all_of(given.cbegin(), given.cend(), [](const Objects& group) { return group.type; });
    if (!isSame)
    {
        QSet<const ObjectType*> asked;
        for (const ObjectType* type : next->types())
        {
            const QStringList errors = errorsOf(*type, asked);
            for (const QString& error : errors)
                qWarning("Inspector: %s", qPrintable(error));
            isValid = isValid && errors.isEmpty();
        }
    }
    objects = isValid ? given : QVector<Objects>();
    selection = isValid ? next : std::make_shared<Selection>(objects, keys);
    if (isSame)
        for (const auto& section : sections)
            section->bind(selection);
    else
        build();
    bindForms();
    listen();
    return isValid;
}

void Inspector::Private::build()
{
    isStale = false;
    shared = selection->shared();
    sections.clear();
    for (auto row = rows.begin(); row != rows.end();)
        row = row->expired() ? rows.erase(row) : std::next(row);
    if (!column)
        return;
    sections = makeSections();
    int position = 0;
    for (const auto& section : sections)
    {
        column->insertWidget(position++, section->widget());
        section->bind(selection);
    }
    search();
}

// In the order in which the properties first name them.
std::vector<std::unique_ptr<InspectorSection>> Inspector::Private::makeSections()
{
    QStringList titles;
    QHash<QString, QVector<InspectorSection::Entry>> entries;
    const auto entriesOf = [&](const QString& title) -> QVector<InspectorSection::Entry>&
    {
        if (!entries.contains(title))
            titles << title;
        return entries[title];
    };
    for (const SharedProperty& property : std::as_const(shared))
    {
        const QString title = selection->sectionTitle(property);
        entriesOf(title) << InspectorSection::Entry{property, nullptr};
        for (const HostRow& row : hostRows)
            if (row.row && row.section == title && row.property == selection->description(property).name)
                entriesOf(title) << InspectorSection::Entry{{}, row.row};
    }
    if (!shared.isEmpty())
        for (const HostRow& row : hostRows)
        {
            const auto& known = entriesOf(row.section);
            const bool isPlaced = std::any_of(known.cbegin(), known.cend(),
                                              [&row](const auto& entry) { return entry.hostRow == row.row; });
            if (row.row && !isPlaced)
                entriesOf(row.section) << InspectorSection::Entry{{}, row.row};
        }
    std::vector<std::unique_ptr<InspectorSection>> made;
    for (const QString& title : std::as_const(titles))
        made.push_back(std::make_unique<InspectorSection>(maker, title, QString(), entries.value(title)));
    return made;
}

void Inspector::Private::listen()
{
    listener = std::make_unique<InspectorListener>([this] { refreshSoon(frameInterval); });
    const QMetaMethod slot = listener->metaObject()->method(listener->metaObject()->indexOfSlot("notice()"));
    QSet<QObject*> known;
    for (const Objects& group : std::as_const(objects))
    {
        if (!group.type)
            continue;
        QVector<QMetaMethod> signalsOfType;
        for (int i = 0; i < group.type->properties().size(); ++i)
        {
            const QMetaMethod signal = group.type->notifySignal(i);
            if (signal.isValid() && !signalsOfType.contains(signal))
                signalsOfType << signal;
        }
        if (signalsOfType.isEmpty())
            continue;
        for (void* object : group.objects)
        {
            QObject* notifier = object ? group.type->notifier(object, 0) : nullptr;
            for (const QMetaMethod& signal : std::as_const(signalsOfType))
                if (notifier)
                    QObject::connect(notifier, signal, listener.get(), slot);
        }
    }
    for (QObject* object : selection->notifiers())
        QObject::connect(object, &QObject::destroyed, listener.get(), &InspectorListener::notice);
}

void Inspector::Private::search()
{
    const auto* field =
        panel ? panel->findChild<QLineEdit*>(QStringLiteral("search"), Qt::FindDirectChildrenOnly) : nullptr;
    if (!field || field->text().isEmpty())
        return;
    for (const auto& section : sections)
        section->search(field->text());
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
    const auto made = std::make_shared<InspectorRow>(property, path, editor, row,
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

// Lines check boxes up with the fields of the first editor that is seen.
void Inspector::Private::alignFlags()
{
    int position = -1;
    QVector<const QWidget*> flags;
    for (const auto& section : sections)
        section->forEachRow(
            [&](const InspectorRow& row)
            {
                if (!row.widget() || !row.widget()->isVisible())
                    return;
                if (row.widget() != row.editor())
                    flags << row.widget();
                else if (const QLabel* label = position < 0 ? partsOf(row.editor()).label : nullptr)
                    position = label->mapTo(panel, QPoint(label->width(), 0)).x();
            });
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
    if (!selection)
        return;
    selection->resolve();
    if (selection->hasGaps())
    {
        setObjects(selection->remaining());
        return;
    }
    bool all = true;
    for (const auto& section : sections)
        all = section->refresh() && all;
    for (const Form& form : forms)
        for (const auto& row : form.rows)
            all = row.second->refresh() && all;
    if (!all)
        refreshSoon(retryInterval);
}

void Inspector::Private::bindForms()
{
    QHash<QString, SharedProperty> properties;
    if (!forms.empty())
        for (const SharedProperty& property : std::as_const(shared))
            properties.insert(selection->description(property).name, property);
    for (const Form& form : forms)
        for (const auto& row : form.rows)
        {
            const bool isShared = properties.contains(row.first);
            row.second->bind(isShared ? selection : nullptr, properties.value(row.first));
            row.second->refresh();
        }
}
} // namespace orvek::host

#include "Inspector.moc"
