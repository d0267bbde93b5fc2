#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

#include <memory>

namespace orvek::host
{
// Follows the widgets below a root: those that exist, and those added or removed later. The inside of editors is left
// out. All that follow the same root share one tree, so each widget has only one event filter. Private.
class EditorTree final : public QObject
{
    Q_OBJECT
public:
    //! The tree of this root, created if there is none. It lives as long as someone keeps it, even longer than the
    //! root.
    static std::shared_ptr<EditorTree> of(QWidget* root);
    ~EditorTree() override;

    //! Null once it has been destroyed.
    QWidget* root() const;
    //! All followed widgets, parents before children, without the root. First adds what has arrived since the last
    //! event, so a row built a moment ago is included.
    QVector<QWidget*> widgets();
    //! Adds what has arrived since the last event, so that entered() is emitted now. Costs nothing if nothing has
    //! arrived.
    void takeIn();

Q_SIGNALS:
    //! The widget has arrived, and its constructor has finished. Parents are reported before their children.
    void entered(QWidget* widget);
    //! The widget has been destroyed or has moved out of the root. Only good as a key: it may be half destroyed.
    void left(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit EditorTree(QWidget* root);
    void follow(QWidget* widget);
    void forget(QWidget* widget);

    QWidget* const m_key; // in the registry; the root may be gone
    const QPointer<QWidget> m_root;
    QHash<QWidget*, QMetaObject::Connection> m_followed; // with the connection to their destroyed()
    QVector<QPointer<QWidget>> m_arrivals;               // may still be under construction
};
} // namespace orvek::host
