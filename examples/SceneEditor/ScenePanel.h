#pragma once

#include <examples/SceneEditor/ui_ScenePanel.h>

#include <QtWidgets/QWidget>

class QFileEdit;

namespace orvek::host
{
class Inspector;
class PanelHost;
} // namespace orvek::host

namespace sceneeditor
{
class Document;

//! The list of objects, and below it the properties of the selected ones and of the scene.
class ScenePanel final : public QWidget
{
    Q_OBJECT
public:
    explicit ScenePanel(QWidget* parent = nullptr);
    ~ScenePanel() override;

    //! Not owned; must outlive the panel. Call it once.
    void setDocument(Document* document);
    //! The host of the panel with the properties. Null before setDocument().
    orvek::host::PanelHost* host() const;
    QListWidget* objectList() const { return m_ui.objectList; }
    QSplitter* splitter() const { return m_ui.sideSplitter; }
    //! Filters the properties as if the text had been typed into the search field.
    void setSearchText(const QString& text);
    //! Opens or closes all sections.
    void setSectionsOpen(bool open);
    //! Wide enough for all titles, pixels.
    int uncutWidth() const;

Q_SIGNALS:
    void addRequested();
    //! The user chose another mesh for the selected objects; an empty name removes it.
    void meshRequested(const QString& fileName);

private:
    void addMesh();
    void showGroups();
    void showMesh();
    void onEdited(const QVector<void*>& objects, const QString& property);

    Ui::ScenePanel m_ui;
    Document* m_document = nullptr;
    orvek::host::Inspector* m_inspector = nullptr; // a child
    QFileEdit* m_mesh = nullptr;                   // owned by the inspector; null if no object is selected
};
} // namespace sceneeditor
