#pragma once

#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

#include <vector>

// The mark of a section: its property "highlighted" and the style sheet with the yellow border. When a widget gets its
// first sheet or loses its last one, Qt styles all descendants again, some 160 in a section. The border's rule applies
// to none of them unless there are sections inside, so the contents are kept out of this, and only those descendants
// are styled again for which a rule of the host depends on a mark.
class SectionBorder final : public QObject
{
public:
    explicit SectionBorder(QWidget* section);

    //! Sets mark and border. The set contains the children of the contents whose own mark has just changed.
    void setMark(bool mark, QWidget* contents, const QSet<const QObject*>& changed);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The widgets that a rule applies to, if its selector asks for marks.
    struct Target
    {
        QByteArray className; // empty for any
        QString objectName;   // empty for any
        int marks = 0;        // how many widgets, itself and its ancestors, must at least be marked
    };

    bool setSheet(const QString& sheet, QWidget* contents);
    void followSheets();
    void handOn();
    void readRules(const QWidget* contents);
    void restyle(QWidget* root, int marks) const;

    QWidget* const m_section;  // owns this
    QPointer<QWidget> m_aside; // the contents, while they have not received the border's sheet
    bool m_holdsBack = false;  // StyleChange is held back until the contents have returned
    QStringList m_sheets;      // what m_targets was read from
    std::vector<Target> m_targets;
};
