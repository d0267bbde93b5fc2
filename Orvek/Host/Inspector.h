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
    //! Not owned. Null pointers are left out.
    QVector<void*> objects;
};

//! Fills a panel with editors for the properties of objects, and keeps both equal.
//!
//! It shows one object or many, also of several types: then the properties that all of them have, by name and kind.
//! What is equal is shown. What differs is blank, each component for itself: the field and the editor have the dynamic
//! property "mixed", true, and a check box shows its third state. An edit sets all objects in one step of the undo
//! stack, and undoing gives each its own value back. "+=2" and the like in the field of a number changes each by
//! itself.
//!
//! Each property has a row in the section that its description names, with the editor of its kind; the editor's object
//! name is the name of the property, the check box's too. Rows are built when their section is first open, or when a
//! search finds one of them, so a large panel costs what is seen of it. Elements of a list are sections of their own,
//! which follow its length.
class ORVEKQTHOST_EXPORT Inspector : public QObject
{
    Q_OBJECT
    //! Whether new sections are open. Default true. Sections that were folded before keep their state when they come
    //! again.
    Q_PROPERTY(bool opensSections READ opensSections WRITE setOpensSections)
    //! The least time between two updates that signals of objects cause, in milliseconds. Default 16; 0 or less: as
    //! soon as the event loop comes round.
    Q_PROPERTY(int frameInterval READ frameInterval WRITE setFrameInterval)

public:
    //! Objects of one type.
    using Objects = InspectedObjects;
    //! Makes an editor for the property; the row it gets into owns it. Null leaves the property to the library.
    using EditorFactory = std::function<QWidget*(const Property& property)>;
    //! What identifies an object for good, and the object that has this key now; null if there is none.
    using KeyOf = std::function<QVariant(void* object)>;
    using ObjectOf = std::function<void*(const QVariant& key)>;

    //! Fills the panel: a QPropertyPanel, in whose scroll area the sections come before what the host has put there, or
    //! any other widget. It makes a PanelHost for it. Neither the panel nor undoStack is owned, and either may be
    //! destroyed first. Without a panel only forms are served, without a stack nothing is recorded for undo.
    explicit Inspector(QWidget* panel, QUndoStack* undoStack = nullptr, QObject* parent = nullptr);
    //! The rows are gone, and forms are left alone.
    ~Inspector() override;

    //! Shows these objects from now on; none clears the panel. Rows are kept where the types are the same as before.
    //! Objects that are QObjects may be destroyed at any time; all others must live until the next call, and longer if
    //! steps on the undo stack changed them, unless they are known by keys. Types with errors() are refused with a
    //! warning for each: the panel is empty then, and the result false.
    bool setObjects(const QVector<Objects>& objects);
    bool setObjects(std::shared_ptr<const ObjectType> type, const QVector<void*>& objects);
    //! Several groups in one panel, the objects that are selected and the scene that they are in for example, each as
    //! setObjects() shows one: nothing is shared between them. The sections of the first group come first. Those of a
    //! group whose types are the same as before stay as they are; an empty group has none. setObjects() shows one
    //! group. Returns false if one of them is refused.
    bool setGroups(const QVector<QVector<Objects>>& groups);
    //! All objects that are shown.
    QVector<void*> objects() const;
    //! For objects that move in memory, or are removed and come back as others: steps find them by their keys. The
    //! function keyOf names an object when it is given to setObjects(), objectOf returns the one with that key, or
    //! null. Takes effect with the next setObjects().
    void setKeys(KeyOf keyOf, ObjectOf objectOf);

    //! Binds the editors in the form that are named like properties of the objects that are shown, with "_" for each
    //! ".", and follows setObjects() from now on. Editors get range, step, choices, default and tool tip from the
    //! description, and all of a PanelHost, which the form must not have yet; titles and units stay as they are.
    //! Returns a message, which is a warning as well, for each editor and check box without a property and for each
    //! property without an editor. The form is not owned and may be destroyed first.
    QStringList bind(QWidget* form);

    //! Editors of the host's own for one property or for all of a kind; the first goes before the second. Such an
    //! editor has a signal valueChanged() and a property "value", "filename" or, for flags, is a check box; values are
    //! those of the library's editor for the kind, for a choice the index of the entry. Takes effect with the next
    //! rows.
    void setEditorFactory(const QString& property, const EditorFactory& factory);
    void setEditorFactory(PropertyKind kind, const EditorFactory& factory);
    //! Puts a row of the host's into the section of that title, behind the row of the property or, if there is none,
    //! at the end; a search finds it by its window title. Takes ownership. Shown whenever the section is; takes effect
    //! with the next setObjects().
    void addRow(QWidget* row, const QString& section, const QString& property = QString());

    //! The editor or check box of a property, of the first group that has it, also "lights[0].power" of an element;
    //! builds its section first if need be. Null if it is not shown.
    QWidget* editor(const QString& property);
    //! What serves the panel; null without one.
    PanelHost* host() const;

    bool opensSections() const;
    void setOpensSections(bool open);
    int frameInterval() const;
    void setFrameInterval(int milliseconds);

public Q_SLOTS:
    //! Reads all values again and shows those that have changed: call it once a frame if values change without a
    //! signal. An editor that is being used, with typed text, a held slider or an open dialog, follows as soon as that
    //! ends. Emits nothing.
    void refresh();

Q_SIGNALS:
    //! The objects, none of them an element of a list, have a new value of that property, by the user or by undoing and
    //! redoing.
    void edited(const QVector<void*>& objects, const QString& property);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
