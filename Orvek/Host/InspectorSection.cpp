#include <Orvek/Host/InspectorSection.h>

#include <Orvek/Host/InspectorRow.h>
#include <Orvek/Host/ObjectType.h>

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QVBoxLayout>

#include <utility>

namespace orvek::host
{
namespace
{
constexpr int margin = 2;

bool hasTitle(const ObjectType& type, const QString& text)
{
    for (const Property& property : type.properties())
        if (property.displayTitle().contains(text, Qt::CaseInsensitive) ||
            (property.elementType && hasTitle(*property.elementType, text)))
            return true;
    return false;
}
} // namespace

InspectorSection::InspectorSection(const Maker& maker, const QString& title, QString path, QVector<Entry> entries)
    : m_maker(maker), m_section(new QAccordion), m_path(std::move(path)), m_entries(std::move(entries))
{
    m_section->setTitle(title);
    m_section->setObjectName(title);
    m_contents = new QWidget(m_section);
    auto* rows = new QVBoxLayout(m_contents);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(margin);
    m_section->setOpen(maker.opensSections);
    auto* box = m_section->findChild<QCheckBox*>(QStringLiteral("accordionCheckBox"), Qt::FindDirectChildrenOnly);
    m_opened = QObject::connect(box, &QCheckBox::toggled, m_section.data(),
                                [this](bool open)
                                {
                                    if (!open)
                                        return;
                                    fill();
                                    refreshRows();
                                });
}

// The host may be in a slot of one of the editors.
InspectorSection::~InspectorSection()
{
    if (!m_section)
        return;
    for (const Entry& entry : m_entries)
        if (entry.hostRow && entry.hostRow->parentWidget() == m_contents)
            entry.hostRow->setParent(nullptr);
    QObject::disconnect(m_opened);
    m_lists.clear();
    m_section->hide();
    m_section->setParent(nullptr);
    m_section->deleteLater();
}

void InspectorSection::bind(std::shared_ptr<Selection> selection)
{
    m_selection = std::move(selection);
    std::size_t next = 0;
    for (const Entry& entry : m_entries)
    {
        const bool isList =
            !entry.property.isEmpty() && m_selection->description(entry.property).kind == PropertyKind::List;
        if (m_isFilled && !entry.property.isEmpty() && !isList)
            m_rows[next++]->bind(m_selection, entry.property);
    }
    for (List& list : m_lists)
        for (std::size_t i = 0; i < list.elements.size(); ++i)
            list.elements[i]->bind(std::make_shared<Selection>(m_selection, list.property, int(i)));
    if (m_section->isOpen())
    {
        fill();
        refreshRows();
    }
}

bool InspectorSection::refresh()
{
    return !m_section || !m_section->isOpen() || refreshRows();
}

bool InspectorSection::refreshRows()
{
    bool all = true;
    for (const auto& row : m_rows)
        all = row->refresh() && all;
    for (List& list : m_lists)
    {
        follow(list);
        for (const auto& element : list.elements)
            all = element->refresh() && all;
    }
    return all;
}

int InspectorSection::search(const QString& text)
{
    if (!m_section || (!m_isFilled && !isMatch(text)))
        return 0;
    int built = 0;
    if (!m_isFilled)
    {
        fill();
        refreshRows();
        built = int(m_rows.size());
    }
    for (const List& list : m_lists)
        for (const auto& element : list.elements)
            built += element->search(text);
    return built;
}

bool InspectorSection::isMatch(const QString& text) const
{
    if (m_section->title().contains(text, Qt::CaseInsensitive))
        return true;
    for (const Entry& entry : m_entries)
    {
        if (entry.hostRow && entry.hostRow->windowTitle().contains(text, Qt::CaseInsensitive))
            return true;
        if (entry.property.isEmpty())
            continue;
        const Property& property = m_selection->description(entry.property);
        if (property.displayTitle().contains(text, Qt::CaseInsensitive) ||
            (property.elementType && hasTitle(*property.elementType, text)))
            return true;
    }
    return false;
}

InspectorRow* InspectorSection::row(const QString& path)
{
    for (const Entry& entry : m_entries)
    {
        if (entry.property.isEmpty())
            continue;
        const QString name = m_path + m_selection->description(entry.property).name;
        if (path != name && !path.startsWith(name + QLatin1Char('[')))
            continue;
        fill();
        refreshRows();
        for (const auto& row : m_rows)
            if (row->path() == path)
                return row.get();
        for (const List& list : m_lists)
            for (const auto& element : list.elements)
                if (InspectorRow* found = element->row(path))
                    return found;
    }
    return nullptr;
}

void InspectorSection::forEachRow(const std::function<void(const InspectorRow&)>& visit) const
{
    for (const auto& row : m_rows)
        visit(*row);
    for (const List& list : m_lists)
        for (const auto& element : list.elements)
            element->forEachRow(visit);
}

void InspectorSection::fill()
{
    if (std::exchange(m_isFilled, true) || !m_selection)
        return;
    auto* rows = static_cast<QVBoxLayout*>(m_contents->layout());
    for (const Entry& entry : m_entries)
    {
        if (entry.hostRow)
            rows->addWidget(entry.hostRow);
        if (entry.property.isEmpty())
            continue;
        const Property& property = m_selection->description(entry.property);
        if (property.kind == PropertyKind::List)
        {
            auto* elements = new QVBoxLayout;
            elements->setSpacing(margin);
            rows->addLayout(elements);
            m_lists.push_back({entry.property, elements, {}});
            continue;
        }
        const std::shared_ptr<InspectorRow> row = m_maker.makeRow(property, m_path + property.name);
        rows->addWidget(row->widget());
        row->bind(m_selection, entry.property);
        m_rows.push_back(row);
    }
    m_maker.rowsBuilt();
}

// Keeps one section for each element.
void InspectorSection::follow(List& list)
{
    const std::size_t count = std::size_t(m_selection->count(list.property));
    if (list.elements.size() > count)
        list.elements.resize(count);
    const Property& property = m_selection->description(list.property);
    while (list.elements.size() < count)
    {
        const int index = int(list.elements.size());
        const auto selection = std::make_shared<Selection>(m_selection, list.property, index);
        QVector<Entry> entries;
        const QVector<SharedProperty> properties = selection->shared();
        for (const SharedProperty& shared : properties)
            entries << Entry{shared, nullptr};
        const QString path = QStringLiteral("%1%2[%3]").arg(m_path, property.name).arg(index);
        list.elements.push_back(std::make_unique<InspectorSection>(
            m_maker, QStringLiteral("%1 %2").arg(property.displayTitle()).arg(index + 1), path + QLatin1Char('.'),
            entries));
        list.layout->addWidget(list.elements.back()->widget());
        list.elements.back()->bind(selection);
    }
}
} // namespace orvek::host
