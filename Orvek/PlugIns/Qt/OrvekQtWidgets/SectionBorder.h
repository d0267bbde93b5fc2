#pragma once

#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

#include <vector>

// The mark of a section: its property "highlighted" and the style sheet with the yellow border. Qt hands the first
// sheet of a widget, and the removal of the last one, on to all descendants and styles each of them again, some 160 in
// a section. The border's rule reaches none of them unless there are sections inside, so the contents are kept out of
// it, and only those descendants are styled again that a rule of the host ties to a mark.
class SectionBorder final : public QObject
{
public:
    explicit SectionBorder(QWidget* section);

    //! Sets mark and border. The set has the children of the contents whose own mark has just changed.
    void setMark(bool mark, QWidget* contents, const QSet<const QObject*>& changed);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Whom a rule addresses whose selector asks for marks.
    struct Target
    {
        QByteArray className; // empty for any
        QString objectName;   // empty for any
        int marks = 0;        // least number of widgets, itself and those around it, that have to be marked
    };

    bool setSheet(const QString& sheet, QWidget* contents);
    void followSheets();
    void handOn();
    void readRules(const QWidget* contents);
    void restyle(QWidget* root, int marks) const;

    QWidget* const m_section;  // owns this
    QPointer<QWidget> m_aside; // the contents, while they have not received the border's sheet
    bool m_holdsBack = false;  // StyleChange, until the contents are back
    QStringList m_sheets;      // what m_targets was read from
    std::vector<Target> m_targets;
};
