#include <examples/SceneEditor/ObjectList.h>

#include <examples/SceneEditor/document/Document.h>

#include <QtGui/QDropEvent>
#include <QtGui/QPainter>

namespace sceneeditor
{
namespace
{
constexpr int EmptyMargin = 12;          // around the text of an empty list, pixels
constexpr int OldRow = Qt::UserRole + 1; // the row that an item had in the scene
} // namespace

ObjectList::ObjectList(QWidget* parent) : QListWidget(parent)
{
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragDropMode(QAbstractItemView::InternalMove);
}

void ObjectList::setDocument(Document* document)
{
    m_document = document;
    connect(document, &Document::objectsChanged, this, &ObjectList::showObjects);
    connect(document, &Document::selectionChanged, this, &ObjectList::showSelection);
    connect(this, &QListWidget::itemChanged, this, &ObjectList::onItemChanged);
    connect(this, &QListWidget::itemSelectionChanged, this,
            [this]
            {
                QVector<int> selection;
                const QList<QListWidgetItem*> items = selectedItems();
                for (const QListWidgetItem* item : items)
                    selection << row(item);
                m_document->setSelection(selection);
            });
    showObjects();
}

void ObjectList::dropEvent(QDropEvent* event)
{
    {
        const QSignalBlocker blocker(this);
        QListWidget::dropEvent(event);
    }
    QVector<int> order;
    bool isOther = false;
    for (int i = 0; i < count(); ++i)
    {
        order << item(i)->data(OldRow).toInt();
        isOther = isOther || order.last() != i;
    }
    if (isOther && order.size() == int(m_document->scene().objects.size()))
        m_document->reorder(order);
    else
        showObjects();
}

void ObjectList::paintEvent(QPaintEvent* event)
{
    QListWidget::paintEvent(event);
    if (count() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QRect area = viewport()->rect().adjusted(EmptyMargin, EmptyMargin, -EmptyMargin, -EmptyMargin);
    painter.drawText(area, Qt::AlignCenter | Qt::TextWordWrap,
                     tr("No objects yet. Drop a mesh on the window, or choose “Add mesh…”."));
}

void ObjectList::showObjects()
{
    const QSignalBlocker blocker(this);
    const std::vector<Object>& objects = m_document->scene().objects;
    // Items are reused, so that the list does not scroll and a field that is renaming one stays open.
    while (count() > int(objects.size()))
        delete takeItem(count() - 1);
    for (int i = 0; i < int(objects.size()); ++i)
    {
        const Object& object = objects[size_t(i)];
        if (i == count())
            addItem(QString());
        QListWidgetItem* item = this->item(i);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsUserCheckable |
                       Qt::ItemIsDragEnabled);
        item->setText(object.name);
        item->setCheckState(object.visible ? Qt::Checked : Qt::Unchecked);
        item->setData(OldRow, i);
        // A row without text would look like no row at all.
        const bool isNameless = object.name.trimmed().isEmpty();
        item->setData(Qt::DecorationRole, QVariant());
        if (isNameless)
            item->setText(tr("(no name)"));
        QFont font = this->font();
        font.setItalic(isNameless);
        item->setFont(font);
    }
    showSelection();
    viewport()->update();
}

void ObjectList::showSelection()
{
    const QSignalBlocker blocker(this);
    const QVector<int>& selection = m_document->selection();
    for (int i = 0; i < count(); ++i)
        item(i)->setSelected(selection.contains(i));
    if (!selection.isEmpty() && !selection.contains(currentRow()))
        setCurrentRow(selection.last(), QItemSelectionModel::NoUpdate);
}

void ObjectList::onItemChanged(const QListWidgetItem* changed)
{
    const int row = this->row(changed);
    const Object& object = m_document->scene().objects[size_t(row)];
    const bool isVisible = changed->checkState() == Qt::Checked;
    if (object.visible != isVisible)
    {
        const bool isSelected = m_document->selection().contains(row);
        m_document->setVisible(isSelected ? m_document->selection() : QVector<int>{row}, isVisible);
        return;
    }
    if (changed->text() != (object.name.trimmed().isEmpty() ? tr("(no name)") : object.name))
        m_document->rename(row, changed->text());
}
} // namespace sceneeditor
