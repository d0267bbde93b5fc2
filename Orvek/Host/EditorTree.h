#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

#include <memory>

namespace orvek::host
{
// Follows the widgets below a root: those that are there, and those that come and leave later. What lies inside an
// editor is left out. All that follow the same root share one tree, so that each widget has one event filter and not
// one for each of them. Private.
class EditorTree final : public QObject
{
    Q_OBJECT
public:
    //! The tree of this root; made if nobody has one. It lives as long as anyone keeps it, also longer than the root.
    static std::shared_ptr<EditorTree> of(QWidget* root);
    ~EditorTree() override;

    //! Null once it has been destroyed.
    QWidget* root() const;
    //! Everything that is followed, parents before children, without the root. Takes in first what has come since the
    //! last event; so call it where a row built a moment ago must not be missed.
    QVector<QWidget*> widgets();
    //! Takes in what has come since the last event, so that entered() is emitted now. Costs nothing if there is none.
    void takeIn();

Q_SIGNALS:
    //! The widget has come, and its constructor has ended. Parents come before their children.
    void entered(QWidget* widget);
    //! The widget has been destroyed or has moved out of the root. Only good as a key: it may be half destroyed.
    void left(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit EditorTree(QWidget* root);
    void follow(QWidget* widget);
    void forget(QWidget* widget);

    QWidget* const m_key; // of the registry; the root may be gone
    const QPointer<QWidget> m_root;
    QHash<QWidget*, QMetaObject::Connection> m_followed; // with the connection that tells of their destruction
    QVector<QPointer<QWidget>> m_arrivals;               // may still be under construction
};
} // namespace orvek::host
