#pragma once

#include <Orvek/Host/ObjectType.h>
#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <functional>
#include <memory>

class QUndoStack;
class QWidget;

namespace orvek::host
{
class PanelHost;

//! Objects of one type, for an Inspector.
struct InspectedObjects
{
    //! Must not be null.
    std::shared_ptr<const ObjectType> type;
    //! Not owned. Null pointers are skipped.
    QVector<void*> objects;
};

//! Fills a panel with editors for the properties of objects, and keeps the two in step.
//!
//! It shows one object or many, even of several types; then only the properties that all of them have, by name and
//! kind. Equal values are shown. Different ones are blank, each component by itself: the field and the editor have the
//! dynamic property "mixed", true, and a check box shows its third state. An edit sets all objects in one step of the
//! undo stack, and undoing restores each one's own value. "+=2" and the like in a number's field changes each object by
//! itself.
//!
//! Each property has a row with the editor of its kind, in the section that its description names. The object name of
//! the editor or check box is the property's name. Rows are built when their section is first open, or when a search
//! matches one of them, so a large panel costs only what is seen of it. Elements of a list have sections of their own,
//! which follow the list's length.
class ORVEKQTHOST_EXPORT Inspector : public QObject
{
    Q_OBJECT
    //! Whether new sections are open. Default true. Sections that were folded before keep their state when they return.
    Q_PROPERTY(bool opensSections READ opensSections WRITE setOpensSections)
    //! The least time in milliseconds between two updates caused by signals of objects. Default 16; 0 or less means as
    //! soon as the event loop runs.
    Q_PROPERTY(int frameInterval READ frameInterval WRITE setFrameInterval)

public:
    //! Objects of one type.
    using Objects = InspectedObjects;
    //! Creates an editor for the property; its row takes ownership. Null leaves the property to the library.
    using EditorFactory = std::function<QWidget*(const Property& property)>;
    //! A permanent key for an object, and the object that has this key now, or null.
    using KeyOf = std::function<QVariant(void* object)>;
    using ObjectOf = std::function<void*(const QVariant& key)>;

    //! Fills the panel: a QPropertyPanel, whose scroll area shows the sections before the host's own content, or any
    //! other widget. Creates a PanelHost for it. Neither the panel nor undoStack is owned, and either may be destroyed
    //! first. Without a panel only forms are served; without a stack nothing is recorded for undo.
    explicit Inspector(QWidget* panel, QUndoStack* undoStack = nullptr, QObject* parent = nullptr);
    //! Removes the rows and releases the forms.
    ~Inspector() override;

    //! Shows these objects from now on; an empty list clears the panel. Rows are kept if the types are the same as
    //! before. QObjects may be destroyed at any time. All other objects must live until the next call, and longer if
    //! steps on the undo stack changed them, unless they are found by keys. If any type has errors(), each is printed
    //! as a warning, the panel is left empty and the result is false.
    bool setObjects(const QVector<Objects>& objects);
    bool setObjects(std::shared_ptr<const ObjectType> type, const QVector<void*>& objects);
    //! Shows several groups in one panel, for example the selected objects and their scene, each as setObjects() shows
    //! one; nothing is shared between them. The sections of the first group come first. Sections of a group with the
    //! same types as before stay as they are; an empty group has none. setObjects() shows one group. Returns false if
    //! any group is refused.
    bool setGroups(const QVector<QVector<Objects>>& groups);
    //! All objects shown.
    QVector<void*> objects() const;
    //! For objects that move in memory, or are removed and recreated: undo steps find them by their keys. keyOf names
    //! an object when it is passed to setObjects(), objectOf returns the object with that key, or null. Takes effect
    //! with the next setObjects().
    void setKeys(KeyOf keyOf, ObjectOf objectOf);

    //! Binds the editors in the form to the shown objects' properties of the same names, with "_" for each ".", and
    //! follows setObjects() from now on. Editors get range, step, choices, default and tool tip from the description,
    //! and everything in a PanelHost, which the form must not have yet; titles and units stay as they are. Returns a
    //! message, also printed as a warning, for each editor and check box without a property and for each property
    //! without an editor. The form is not owned and may be destroyed first.
    QStringList bind(QWidget* form);

    //! Sets the host's own editors for one property or for all of a kind; the former takes precedence. Such an editor
    //! has a signal valueChanged() and a property "value" or "filename", or is a check box for flags. Its values are
    //! those of the library's editor for the kind; for a choice, the index of the entry. Takes effect with the next
    //! rows.
    void setEditorFactory(const QString& property, const EditorFactory& factory);
    void setEditorFactory(PropertyKind kind, const EditorFactory& factory);
    //! Adds a row of the host's to the section with that title, after the row of the property or, without one, at the
    //! end; a search finds it by its window title. Takes ownership. Shown whenever the section is; takes effect with
    //! the next setObjects().
    void addRow(QWidget* row, const QString& section, const QString& property = QString());

    //! The editor or check box of a property, in the first group that has it; "lights[0].power" for a list's element.
    //! Builds its section if needed. Null if it is not shown.
    QWidget* editor(const QString& property);
    //! Serves the panel; null without one.
    PanelHost* host() const;

    bool opensSections() const;
    void setOpensSections(bool open);
    int frameInterval() const;
    void setFrameInterval(int milliseconds);

public Q_SLOTS:
    //! Reads all values again and shows those that have changed: call it once per frame if values change without a
    //! signal. An editor in use, with typed text, a held slider or an open dialog, is updated as soon as that ends.
    //! Emits nothing.
    void refresh();

Q_SIGNALS:
    //! The objects, none of them an element of a list, have a new value of that property, from the user or from undo
    //! and redo.
    void edited(const QVector<void*>& objects, const QString& property);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
