#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QListWidget>

namespace sceneeditor
{
class Document;

//! The objects of a document: selecting, renaming, showing, hiding and dragging them into another order. An empty list
//! says what to do.
class ObjectList final : public QListWidget
{
    Q_OBJECT
public:
    explicit ObjectList(QWidget* parent = nullptr);

    //! Not owned; must outlive the list. Call it once.
    void setDocument(Document* document);

protected:
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showObjects();
    void showSelection();
    void onItemChanged(const QListWidgetItem* item);

    Document* m_document = nullptr;
};
} // namespace sceneeditor
