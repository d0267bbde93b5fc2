#include "hostlayouts.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>

#include <tests/literalsearch.h>

#include <QtWidgets/QProxyStyle>

namespace
{
const QString Border = QStringLiteral("QAccordion {border: 1px solid yellow;}");

template <typename T>
T* addRow(QWidget* contents, const QString& windowTitle)
{
    auto* row = new T(contents);
    row->setWindowTitle(windowTitle);
    contents->layout()->addWidget(row);
    return row;
}

QWidget* addContents(QAccordion& section)
{
    auto* contents = new QWidget(&section);
    new QVBoxLayout(contents);
    return contents;
}

// A section with two rows in a window, and another one beside it.
struct Rows
{
    explicit Rows(bool shown = true)
    {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(&section);
        column->addWidget(&otherSection);
        column->addWidget(beside = new QLabel("beside"));
        contents = addContents(section);
        fog = addRow<QLabel>(contents, "Fog");
        fog->setObjectName("fog");
        sun = addRow<QLabel>(contents, "Sun");
        other = addRow<QLabel>(addContents(otherSection), "Other");
        if (shown)
            window.show();
    }
    QWidget elsewhere;
    QWidget window;
    QAccordion section{&window};
    QAccordion otherSection{&window};
    QWidget* contents;
    QPointer<QLabel> fog, sun, other, beside;
};

class EventWatch : public QObject
{
public:
    EventWatch(QObject* watched, QEvent::Type type, std::function<void()> act) : m_type(type), m_act(std::move(act))
    {
        watched->installEventFilter(this);
    }
    bool wasSeen = false;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == m_type && !std::exchange(wasSeen, true))
            m_act();
        return false;
    }

private:
    const QEvent::Type m_type;
    const std::function<void()> m_act;
};

// Notes what happens to widgets with a title, in order.
class RecordingStyle : public QProxyStyle
{
public:
    RecordingStyle() : QProxyStyle("fusion") { qApp->installEventFilter(this); }
    void polish(QWidget* widget) override { note(widget, "polish"); }
    void unpolish(QWidget* widget) override { note(widget, "unpolish"); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const QHash<int, const char*> words{
            {QEvent::DynamicPropertyChange, "marked"}, {QEvent::Show, "shown"}, {QEvent::Hide, "hidden"}};
        if (words.contains(event->type()) && watched->isWidgetType())
            note(static_cast<QWidget*>(watched), words[event->type()]);
        return false;
    }
    QStringList lines;

private:
    void note(const QWidget* widget, const char* what)
    {
        if (!widget->windowTitle().isEmpty())
            lines << widget->windowTitle() + ' ' + what;
    }
};
} // namespace

using Act = std::function<void(Rows&)>;
using Acts = Table<Act>;

class DerivedButton : public QPushButton
{
    Q_OBJECT
public:
    using QPushButton::QPushButton;
};

class tst_Accordion : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // Titles, and the texts of plain buttons without one.
    void searchComparesLabels()
    {
        QAccordion section;
        QWidget* contents = addContents(section);
        QWidgetList matching;
        const auto add = [&](QWidget* row, const char* windowTitle, const char* text, bool matches)
        {
            row->setWindowTitle(windowTitle);
            row->setProperty("text", text);
            row->setObjectName("fög");
            row->setToolTip("fög");
            (new QWidget(row))->setWindowTitle("fög"); // deeper ones do not count
            contents->layout()->addWidget(row);
            if (matches)
                matching << row;
        };
        add(new QLabel, "Thick Fög", "", true);
        add(new QPushButton, "", "Fögs", true);
        add(new QCheckBox, "", "Fögs", true);
        add(new QLabel, "Thick Fo", "", false);
        add(new QLabel, "", "Fög", false);
        add(new QPushButton, "Sun", "Fög", false);
        add(new DerivedButton, "", "Fög", false);
        add(new QToolButton, "", "Fög", false);
        for (const QString text : {"FÖG", "zzz"})
        {
            const bool found = text != "zzz";
            section.setOpen(false);
            section.setSearchText(text);
            for (QWidget* row : contents->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            {
                QCOMPARE(!row->isHidden(), found && matching.contains(row));
                QCOMPARE(row->property("highlighted"), QVariant(!row->isHidden()));
                QVERIFY(!child<QWidget>(*row, "")->property("highlighted").isValid());
            }
            QVERIFY(section.isOpen() == found && section.property("highlighted") == found);
            QCOMPARE(section.styleSheet(), found ? Border : QString());
        }
    }

    // What the host does while rows are shown and hidden, a "loading" label for example.
    void hostMayActWhileRowsComeAndGo_data()
    {
        const Acts row;
        row("deletes a sibling", [](Rows& rows) { delete rows.sun; });
        row("deletes a label beside the contents", [](Rows& rows) { delete rows.beside; });
        row("moves itself away", [](Rows& rows) { rows.fog->setParent(&rows.elsewhere); });
        row("moves a row of another section here", [](Rows& rows) { rows.contents->layout()->addWidget(rows.other); });
        row("deletes a row of another section", [](Rows& rows) { delete rows.other; });
        row("deletes the contents", [](Rows& rows) { rows.contents->deleteLater(); });
        row("throws everything out of the layout",
            [](Rows& rows)
            {
                while (QLayoutItem* item = rows.contents->layout()->takeAt(0))
                    delete item;
            });
    }

    void hostMayActWhileRowsComeAndGo()
    {
        const auto& act = std::get<0>(Acts::current());
        Rows rows;
        rows.section.setSearchText("nothing");
        EventWatch watch(rows.fog, QEvent::Show, [&] { act(rows); });
        rows.section.setSearchText(QString());
        QVERIFY(watch.wasSeen);
        for (const char* text : {"o", "sun", ""})
        {
            rows.section.setSearchText(text);
            rows.window.layout()->activate();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
            rows.window.grab();
        }
        QVERIFY(!rows.window.findChildren<QLabel*>().isEmpty());
    }

    void frozenLayoutsStayFrozen()
    {
        Rows rows;
        rows.window.layout()->setEnabled(false);
        rows.section.setSearchText("nothing");
        rows.section.setSearchText(QString());
        QVERIFY(!rows.window.layout()->isEnabled());
    }

    // A style of the host sees each child shown, marked and polished before the next one; and nothing when the same
    // text comes again.
    void eachChildIsFinishedBeforeTheNext()
    {
        Rows rows;
        RecordingStyle style;
        rows.section.setStyle(&style);
        for (const char* expected :
             {"Fog marked,Fog unpolish,Fog polish,Sun hidden,Sun marked,Sun unpolish,Sun polish", ""})
        {
            style.lines.clear();
            rows.section.setSearchText("fog");
            QCOMPARE(style.lines.mid(0, 7).join(','), QString(expected));
        }
        rows.section.setStyle(nullptr);
    }

    // The border's sheet does not reach the contents, but those that come later do.
    void sheetsThatArriveLaterTakeEffect()
    {
        const QString sheet = "QLabel {padding: 20px;}";
        for (const int way : {0, 1, 2, 3})
        {
            Rows rows;
            const int before = rows.fog->sizeHint().height();
            rows.section.setSearchText("fog");
            rows.elsewhere.setStyleSheet(sheet);
            if (way == 0)
                rows.section.setParent(&rows.elsewhere);
            else if (way == 3)
                qApp->setStyleSheet(sheet);
            else
                (way == 1 ? &rows.window : &rows.section)->setStyleSheet(sheet);
            QVERIFY(rows.fog->sizeHint().height() >= before + 38);
            rows.section.setParent(nullptr);
            qApp->setStyleSheet(QString());
            rows.section.setStyleSheet(QString());
            rows.section.setSearchText("fog");
            rows.section.setSearchText(QString());
            QCOMPARE(rows.fog->sizeHint().height(), before);
        }
    }

    // Host code that runs when the style changes finds the section whole, and may take it apart.
    void styleChangesFindTheSectionWhole()
    {
        for (const bool takesAway : {false, true})
        {
            auto rows = std::make_unique<Rows>();
            EventWatch watch(&rows->section, QEvent::StyleChange,
                             [&]
                             {
                                 QVERIFY(rows->section.findChild<QLabel*>("fog") || takesAway);
                                 if (takesAway)
                                     rows->contents->setParent(&rows->elsewhere);
                             });
            rows->section.setSearchText("fog");
            QVERIFY(watch.wasSeen);
            QCOMPARE(rows->section.children().count(rows->contents), takesAway ? 0 : 1);
            QCOMPARE(rows->elsewhere.children().count(rows->contents), takesAway ? 1 : 0);
            QCOMPARE(rows->section.layout()->count(), takesAway ? 1 : 2);
            delete rows->contents;
            QCOMPARE(rows->section.layout()->count(), 1);
        }
    }

    void sectionsThatComeLaterObeyTheBorder()
    {
        Rows rows;
        rows.section.setSearchText("o");
        auto* between = new QWidget;
        auto* inner = new QAccordion;
        (new QVBoxLayout(between))->addWidget(inner);
        rows.contents->layout()->addWidget(between);
        between->show();
        QCoreApplication::processEvents();
        const auto edge = [inner] { return inner->grab().toImage().pixelColor(0, inner->height() / 2); };
        QCOMPARE(edge(), QColor(Qt::yellow));
        rows.section.setSearchText(QString());
        QVERIFY(edge() != QColor(Qt::yellow));
    }

    void checkBoxShowsAndHidesContents()
    {
        QAccordion section;
        QWidget* contents = addContents(section);
        auto* checkBox = child<QCheckBox>(section, "accordionCheckBox");
        section.show();
        QVERIFY(contents->isVisible());

        QTest::keyClick(checkBox, Qt::Key_Space);
        QVERIFY(!section.isOpen() && contents->isHidden() && contents->testAttribute(Qt::WA_DontShowOnScreen));
        QVERIFY(checkBox->isVisible());
        QTest::keyClick(checkBox, Qt::Key_Space);
        QVERIFY(section.isOpen() && contents->isVisible() && !contents->testAttribute(Qt::WA_DontShowOnScreen));
        QVERIFY(!section.signalsBlocked());

        contents->hide();
        section.setOpen(true); // no change, so nothing is shown
        QVERIFY(contents->isHidden());

        section.setTitle("Fog");
        QCOMPARE(checkBox->text(), QStringLiteral("Fog"));
        QCOMPARE(section.windowTitle(), QStringLiteral("Fog"));
    }

    void contentsAreAdoptedOnce()
    {
        QAccordion section;
        section.setOpen(false);
        const QObject noWidget(&section);
        auto* first = new QWidget(&section);
        auto* second = new QWidget(&section);
        QCOMPARE(section.layout()->indexOf(first), 1);
        QCOMPARE(section.layout()->indexOf(second), -1);
        QVERIFY(!first->isHidden()); // the state is applied at its next change only
        section.setOpen(true);
        section.setOpen(false);
        QVERIFY(first->isHidden() && !second->isHidden());

        // Once the contents are gone, the last widget that the host laid out follows.
        QWidget third(&section);
        section.layout()->addWidget(second);
        section.layout()->addWidget(&third);
        delete first;
        section.setOpen(true);
        section.setOpen(false);
        QVERIFY(third.isHidden() && !second->isHidden());

        QAccordion bare;
        delete bare.layout();
        QWidget contents(&bare);
        bare.setOpen(false);
        QVERIFY(contents.isHidden());
    }

    void partsMayBeDestroyed()
    {
        QAccordion section;
        section.setSearchText("accordion"); // without contents it does nothing
        QVERIFY(section.styleSheet().isEmpty() && !section.property("highlighted").isValid());
        section.setTitle("Weather");
        delete addContents(section);
        section.setOpen(false);
        section.setSearchText("weather");
        QVERIFY(!section.isOpen());

        QWidget* next = addContents(section);
        const QWidget* fog = addRow<QWidget>(next, "Fog");
        QCOMPARE(section.layout()->indexOf(next), 1);
        delete child<QCheckBox>(section, "accordionCheckBox");
        QCOMPARE(section.title(), QStringLiteral("Weather"));
        section.setTitle("Other");
        QCOMPARE(section.windowTitle(), QStringLiteral("Weather"));
        section.setOpen(true);
        QVERIFY(!section.isOpen());
        section.setSearchText("rain");
        QVERIFY(fog->isHidden());
        section.on_accordionCheckBox_toggled();
        QVERIFY(next->isHidden());
    }

    void contentsStayWhereTheHostLaidThem_data() { addHostLayouts(); }
    void contentsStayWhereTheHostLaidThem()
    {
        // The child event of a finished widget comes while the host's call is under way.
        QAccordion section;
        checkHostLayout(section, new QWidget);
        QAccordion other;
        checkHostLayout(other, new QWidget(&other));
    }

    void settingsRoundTrip()
    {
        QTemporaryDir directory;
        QSettings settings(directory.filePath("sections.ini"), QSettings::IniFormat);
        QAccordion section;
        section.setObjectName("fogSection");
        settings.beginGroup("view");
        for (const bool open : {true, false})
        {
            section.setOpen(open);
            section.writeSettings(settings);
            section.setOpen(!open);
            section.readSettings(settings);
            QCOMPARE(section.isOpen(), open);
        }
        settings.endGroup();
        QCOMPARE(settings.allKeys(), QStringList("view/fogSection"));
        section.setOpen(true);
        section.readSettings(settings);
        QVERIFY(!section.isOpen()); // no entry outside the group
    }
};

QTEST_MAIN(tst_Accordion)
#include "tst_accordion.moc"
