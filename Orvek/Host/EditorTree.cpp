#include <Orvek/Host/EditorTree.h>

#include <Orvek/Host/Editor.h>

#include <QtCore/QChildEvent>

#include <utility>

namespace orvek::host
{
namespace
{
QHash<QWidget*, std::weak_ptr<EditorTree>>& registry()
{
    static QHash<QWidget*, std::weak_ptr<EditorTree>> trees;
    return trees;
}
} // namespace

std::shared_ptr<EditorTree> EditorTree::of(QWidget* root)
{
    std::weak_ptr<EditorTree>& known = registry()[root];
    std::shared_ptr<EditorTree> tree = known.lock();
    if (!tree || !tree->root())
    {
        tree.reset(new EditorTree(root));
        known = tree;
    }
    return tree;
}

EditorTree::EditorTree(QWidget* root) : m_key(root), m_root(root)
{
    root->installEventFilter(this);
    const auto children = root->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* child : children)
        follow(child);
}

EditorTree::~EditorTree()
{
    // Another root may have been created at the same address since.
    const auto known = registry().find(m_key);
    if (known != registry().end() && known->expired())
        registry().erase(known);
}

QWidget* EditorTree::root() const
{
    return m_root;
}

QVector<QWidget*> EditorTree::widgets()
{
    takeIn();
    QVector<QWidget*> found;
    if (!m_root)
        return found;
    const auto all = m_root->findChildren<QWidget*>();
    for (QWidget* widget : all)
        if (m_followed.contains(widget))
            found << widget;
    return found;
}

bool EditorTree::eventFilter(QObject*, QEvent* event)
{
    if (event->type() != QEvent::ChildAdded && event->type() != QEvent::ChildRemoved)
        return false;
    QObject* child = static_cast<QChildEvent*>(event)->child();
    if (!child->isWidgetType())
        return false;
    // Only a key until it is known to be alive: a child that leaves may be no more than a QObject.
    auto* widget = reinterpret_cast<QWidget*>(child);
    if (event->type() == QEvent::ChildAdded)
    {
        if (m_arrivals.isEmpty())
            QMetaObject::invokeMethod(this, &EditorTree::takeIn, Qt::QueuedConnection);
        m_arrivals << widget;
    }
    else if (m_followed.contains(widget))
    {
        // A widget that is being destroyed no longer has children.
        const auto inside = child->findChildren<QWidget*>();
        for (QWidget* descendant : inside)
            forget(descendant);
        forget(widget);
    }
    return false;
}

void EditorTree::follow(QWidget* widget)
{
    if (m_followed.contains(widget))
        return;
    m_followed.insert(widget, connect(widget, &QObject::destroyed, this, [this, widget] { forget(widget); }));
    const bool editor = isEditor(widget);
    if (!editor)
        widget->installEventFilter(this);
    const QPointer<QWidget> alive(widget);
    Q_EMIT entered(widget);
    if (editor || !alive)
        return;
    const auto children = widget->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* child : children)
        follow(child);
}

void EditorTree::forget(QWidget* widget)
{
    const auto known = m_followed.find(widget);
    if (known == m_followed.end())
        return;
    disconnect(*known);
    m_followed.erase(known);
    // Harmless while it is being destroyed: the list of filters belongs to its QObject.
    widget->removeEventFilter(this);
    Q_EMIT left(widget);
}

void EditorTree::takeIn()
{
    const auto arrivals = std::exchange(m_arrivals, {});
    for (const QPointer<QWidget>& arrival : arrivals)
        if (arrival && m_root && (arrival->parentWidget() == m_root || m_followed.contains(arrival->parentWidget())))
            follow(arrival);
}
} // namespace orvek::host
