#pragma once

#include <Orvek/Host/Selection.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>

#include <QtCore/QPointer>

#include <functional>
#include <memory>
#include <vector>

class QVBoxLayout;

namespace orvek::host
{
class InspectorRow;

// A section of an inspector and what it shows. Its rows are built when they are first seen. Private.
class InspectorSection final
{
public:
    struct Entry
    {
        SharedProperty property;
        QPointer<QWidget> hostRow; // instead of a property; owned by the inspector
    };
    //! What the inspector does for its sections.
    struct Maker
    {
        std::function<std::shared_ptr<InspectorRow>(const Property& property, const QString& path)> makeRow;
        std::function<void()> rowsBuilt; // now the classes that follow the panel's editors can find them
        bool opensSections = true;
    };

    //! The title is also the object name. The path is a prefix of the names of its properties, for example
    //! "lights[0].".
    InspectorSection(const Maker& maker, const QString& title, QString path, QVector<Entry> entries);
    ~InspectorSection();
    Q_DISABLE_COPY(InspectorSection)

    QAccordion* widget() const { return m_section.data(); }
    //! The objects must have the same properties each time.
    void bind(std::shared_ptr<Selection> selection);
    //! Shows what has changed; does nothing while closed. False if an editor is in use and has to be updated later.
    bool refresh();
    //! Builds the rows if a row's title or the section's own contains the text. Returns how many were built.
    int search(const QString& text);
    //! The row of this property, built if needed; null if it is not in this section.
    InspectorRow* row(const QString& path);
    //! Calls visit with each row built so far.
    void forEachRow(const std::function<void(const InspectorRow&)>& visit) const;

private:
    struct List
    {
        SharedProperty property;
        QVBoxLayout* layout; // of the section
        std::vector<std::unique_ptr<InspectorSection>> elements;
    };

    bool isMatch(const QString& text) const;
    void fill();
    void follow(List& list);
    bool refreshRows();

    const Maker& m_maker;
    const QPointer<QAccordion> m_section;
    const QString m_path;
    const QVector<Entry> m_entries;
    QPointer<QWidget> m_contents;
    QMetaObject::Connection m_opened;
    std::shared_ptr<Selection> m_selection;
    bool m_isFilled = false;
    std::vector<std::shared_ptr<InspectorRow>> m_rows;
    std::vector<List> m_lists;
};
} // namespace orvek::host
