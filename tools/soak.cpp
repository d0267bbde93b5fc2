// Random use: user events, property writes and host actions on trees of all the widgets, with checks after each step.
// Each world has a number, which determines all of its steps; a step does the same whichever others are left out. So
// when a world, in a process of its own, breaks, the steps that do not matter can be found and removed.
//
//     soak [--seed WORLD] [--seconds LIMIT] [--worlds COUNT] [--steps IN_EACH_WORLD]
//                                                              random use; shrinks what breaks
//     soak --world WORLD [--steps COUNT] [--only 3,17,40]              shows the steps of one world

#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/EditorInput.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/PanelSearch.h>
#include <Orvek/Host/SectionStates.h>
#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QMetaMethod>
#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtGui/QWindow>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyleFactory>
#include <QUndoStack>

#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <set>
#include <vector>

using orvek::base::BaseMouseHandler;
using orvek::crossplatform::DisplaySurfaceManagerInterface;
using orvek::crossplatform::PlatformRendererInterface;

namespace
{
constexpr int LargestSide = 1500; // of visible widgets; larger backing stores would take all of the memory
const char Worn[] = "soak_worn";  // on editors whose children were changed from outside

class Random
{
public:
    explicit Random(quint64 seed) : m_state(seed) {}
    quint64 next()
    {
        m_state += 0x9e3779b97f4a7c15ULL;
        quint64 z = m_state;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    int below(int count) { return static_cast<int>(next() % static_cast<quint64>(qMax(count, 1))); }
    bool once(int in) { return below(in) == 0; }
    template <typename List>
    auto pick(const List& list)
    {
        return *(std::begin(list) + below(static_cast<int>(std::end(list) - std::begin(list))));
    }

private:
    quint64 m_state;
};

double anyDouble(Random& random)
{
    using Limits = std::numeric_limits<double>;
    static const double extremes[] = {0.0,
                                      -0.0,
                                      1.0,
                                      -1.0,
                                      0.5,
                                      100.0,
                                      Limits::quiet_NaN(),
                                      Limits::infinity(),
                                      -Limits::infinity(),
                                      Limits::max(),
                                      Limits::lowest(),
                                      Limits::min(),
                                      Limits::denorm_min(),
                                      1e308,
                                      1e-300,
                                      1e39,
                                      3e9,
                                      -3e9,
                                      1e-5};
    return random.once(3) ? random.below(2000) / 100.0 - 5.0 : random.pick(extremes);
}

int anyInt(Random& random)
{
    using Limits = std::numeric_limits<int>;
    static const int extremes[] = {0,
                                   1,
                                   -1,
                                   2,
                                   80,
                                   Limits::min(),
                                   Limits::min() + 1,
                                   Limits::max(),
                                   Limits::max() - 1,
                                   QWIDGETSIZE_MAX,
                                   QWIDGETSIZE_MAX + 1,
                                   -100,
                                   1 << 30,
                                   65536};
    return random.once(2) ? random.below(300) - 50 : random.pick(extremes);
}

QString anyString(Random& random)
{
    static const QString texts[] = {QString(),
                                    QStringLiteral("a"),
                                    QStringLiteral("Gr\u00f6\u00dfe"),
                                    QStringLiteral("%1 %2 %n %"),
                                    QString(5000, QLatin1Char('W')),
                                    QStringLiteral("<b>bold</b>&amp;"),
                                    QStringLiteral("&File && Edit &"),
                                    QString(QChar(0xd800)),
                                    QString(QChar(0)) + QLatin1Char('x'),
                                    QStringLiteral("\u202e\u05d0\u05d1 1"),
                                    QStringLiteral("e\u0301\u0301\u0301\u0301"),
                                    QStringLiteral("two\nlines\ttab"),
                                    QStringLiteral("1e400"),
                                    QStringLiteral("nan"),
                                    QStringLiteral("-inf"),
                                    QStringLiteral("0x10"),
                                    QStringLiteral("1,5"),
                                    QStringLiteral("99999999999999999999"),
                                    QStringLiteral("-2147483648"),
                                    QStringLiteral(" 0.25 "),
                                    QStringLiteral("1e-320"),
                                    QStringLiteral("QAccordion {"),
                                    QStringLiteral("label"),
                                    QStringLiteral("title")};
    return random.once(4) ? QString::number(random.below(3000) / 100.0 - 10.0) : random.pick(texts);
}

QVector3D anyVector(Random& random)
{
    const auto component = [&random]
    {
        return random.pick(
            std::initializer_list<float>{0.F, 1.F, -1.F, 1e-45F, 3.4e38F, std::numeric_limits<float>::infinity(),
                                         std::numeric_limits<float>::quiet_NaN(), float(random.below(100))});
    };
    const float x = component();
    const float y = component();
    return {x, y, component()};
}

QVariant anyVariant(Random& random)
{
    switch (random.below(7))
    {
    case 0:
        return QVariant();
    case 1:
        return anyString(random);
    case 2:
        return anyInt(random);
    case 3:
        return QStringList(anyString(random));
    case 4:
        return QVariant::fromValue(anyVector(random));
    default:
        return anyDouble(random);
    }
}

QFont anyFont(Random& random)
{
    QFont font(random.pick(std::initializer_list<const char*>{"DejaVu Sans", "no such family", ""}));
    font.setPixelSize(1 + random.below(random.once(5) ? 200 : 30));
    font.setBold(random.once(3));
    return font;
}

QPalette anyPalette(Random& random)
{
    return {QColor::fromRgba(static_cast<QRgb>(random.next())), QColor::fromRgba(static_cast<QRgb>(random.next()))};
}

// Now and then a value without a name, within the bits that C++ guarantees for the type: code generated by moc accepts
// no more.
int anyOf(const QMetaEnum& type, Random& random)
{
    int bits = 0;
    for (int i = 0; i < type.keyCount(); ++i)
        bits |= qMax(type.value(i), 0);
    for (int shift = 1; shift < 32; shift *= 2)
        bits |= bits >> shift;
    return random.once(6) ? static_cast<int>(random.next()) & bits : type.value(random.below(type.keyCount()));
}

// A value of the property's type; invalid for a type that is not changed.
QVariant anyOf(const QMetaProperty& property, Random& random)
{
    if (property.isEnumType())
        return anyOf(property.enumerator(), random);
    switch (static_cast<int>(property.userType()))
    {
    case QMetaType::Bool:
        return random.once(2);
    case QMetaType::Int:
        return anyInt(random);
    case QMetaType::Double:
        return anyDouble(random);
    case QMetaType::QString:
        return anyString(random);
    case QMetaType::QVariant:
        return anyVariant(random);
    case QMetaType::QVector3D:
        return QVariant::fromValue(anyVector(random));
    case QMetaType::QStringList:
    {
        QStringList list;
        for (int i = random.below(5); i > 0; --i)
            list << anyString(random);
        return list;
    }
    case QMetaType::QFont:
        return anyFont(random);
    case QMetaType::QPalette:
        return anyPalette(random);
    case QMetaType::QLocale:
        return QLocale(random.once(2) ? QLocale::German : QLocale::Arabic);
    case QMetaType::QCursor:
        return QCursor(random.once(2) ? Qt::WaitCursor : Qt::BlankCursor);
    default:
        return {};
    }
}

class Renderer final : public PlatformRendererInterface
{
};

// Keeps account of the windows given to it.
class Manager final : public DisplaySurfaceManagerInterface
{
public:
    void RemoveWindow(HWND window) override { windows.erase(window); }
    void Render(HWND) override { ++frames; }
    void AddWindow(HWND window, PlatformRendererInterface*, int) override { windows.insert(window); }
    void ResizeSurface(HWND) override {}
    int GetWindowViewId(HWND window) override { return windows.count(window) != 0 ? 7 : -1; }
    std::set<HWND> windows;
    int frames = 0;
};

class Handler final : public BaseMouseHandler
{
public:
    void MouseDown(int, int, int) override {}
    void MouseUp(int, int, int) override {}
    void MouseDoubleClick(int, int, int) override {}
    void MouseMove(int, int) override {}
    void MouseWheel(int, int) override {}
    void KeyboardInput(unsigned int, bool, int) override {}
};

// Replaces every text by another of the same length.
class Translator final : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* text, const char*, int) const override
    {
        return QString::fromUtf8(text).toUpper();
    }
};

// Gives access to destroy(), which is protected.
class NativeWindow : public QWidget
{
public:
    // From the inside out: Qt does not look beneath a child without a window of its own. The windows there would be
    // destroyed with the outer one, without their widgets' knowledge.
    static void destroyOf(QWidget* widget)
    {
        const QWidgetList inside = widget->findChildren<QWidget*>();
        for (auto child = inside.rbegin(); child != inside.rend(); ++child)
            if ((*child)->windowHandle() && !(*child)->isWindow())
                ((*child)->*(&NativeWindow::destroy))(true, true);
        (widget->*(&NativeWindow::destroy))(true, true);
    }
};

bool isOfLibrary(const QWidget* widget)
{
    return qobject_cast<const QPropertyEditWidget*>(widget) || qobject_cast<const QIntSliderEdit*>(widget) ||
           qobject_cast<const QLabelEdit*>(widget) || qobject_cast<const QFileEdit*>(widget) ||
           qobject_cast<const QPropertyPanel*>(widget) || qobject_cast<const QAccordion*>(widget) ||
           qobject_cast<const QRenderWidget*>(widget);
}

bool isPanel(const QWidget* widget)
{
    return qobject_cast<const QPropertyPanel*>(widget) != nullptr;
}

bool isEditor(const QWidget* widget)
{
    return isOfLibrary(widget) && !qobject_cast<const QPropertyPanel*>(widget) &&
           !qobject_cast<const QAccordion*>(widget) && !qobject_cast<const QRenderWidget*>(widget);
}

QWidget* editorAround(QWidget* widget)
{
    while (widget && !isEditor(widget))
        widget = widget->parentWidget();
    return widget;
}

QString nameOf(const QObject* object)
{
    if (!object)
        return QStringLiteral("nothing");
    return QStringLiteral("%1 %2").arg(QLatin1String(object->metaObject()->className()), object->objectName());
}

// Actions so far.
struct Counts
{
    qint64 user = 0;
    qint64 writes = 0;
    qint64 host = 0;
} counts;

QString complaint;          // of the first check that failed; empty if none
bool hostIsAtFault = false; // while Qt may warn, as a host writes nonsense into Qt's own objects

void check(bool holds, const QString& what)
{
    if (!holds && complaint.isEmpty())
        complaint = what;
}

void hearWarning(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    // Warnings from neither the library nor Qt's widgets: from the platform, about style sheets, paths and filters
    // garbled by the host, and from Qt 6's QTest about clicks beyond a window's edge and keys that nobody accepts.
    static const char* const others[] = {"This plugin does not",
                                         "occurs outside target window",
                                         "Keyboard event not accepted",
                                         "Could not parse",
                                         "QXcb",
                                         "qt.qpa",
                                         "libpng",
                                         "propagateSizeHints",
                                         "Cannot destroy paint device",
                                         "Broken filename",
                                         "called on an invalid QRegularExpression"};
    for (const char* other : others)
        if (message.contains(QLatin1String(other)))
            return;
    if (type >= QtWarningMsg && type != QtInfoMsg && !hostIsAtFault)
        check(false, QStringLiteral("Qt warns: ") + message);
    if (type == QtFatalMsg)
    {
        std::fprintf(stderr, "%s\n", qPrintable(message));
        std::abort();
    }
}

class World
{
public:
    World(quint64 number, bool shown) : m_number(number), m_shown(shown)
    {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        m_closer.setInterval(0);
        QObject::connect(&m_closer, &QTimer::timeout, &m_closer, [this] { closeDialogs(); });
        m_closer.start();
        addRoot();
    }
    ~World()
    {
        m_closer.stop();
        if (m_number % 4 == 1) // in the other worlds the widgets are deleted first
        {
            m_hosts.clear();
            m_views.clear();
        }
        QCoreApplication::removeTranslator(&m_translator);
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setPalette(QPalette());
        QApplication::setFont(QFont());
        const std::set<HWND> left = lastWindows(all());
        qDeleteAll(live());
        settle();
        checkLeft(left);
    }
    void step(int index)
    {
        Random random(m_number * 1000003 + static_cast<quint64>(index));
        random.next();
        m_index = index;
        act(random);
        settle();
        inspect();
    }

private:
    void note(qint64& count, const QString& what) const
    {
        ++count;
        if (m_shown)
            std::fprintf(stderr, "%4d  %s\n", m_index, qPrintable(what));
    }

    // Also performs deletions by deleteLater(), as the event loop does.
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QWidgetList live() const
    {
        QWidgetList found;
        for (const QPointer<QWidget>& root : m_roots)
            if (root)
                found << root;
        return found;
    }
    // All widgets, parents before children, in the order of creation, so the same in every run.
    QWidgetList all() const
    {
        QWidgetList found;
        for (QWidget* root : live())
            found << root << root->findChildren<QWidget*>();
        return found;
    }
    template <typename Filter>
    QWidget* find(Random& random, Filter filter) const
    {
        QWidgetList found;
        for (QWidget* widget : all())
            if (filter(widget))
                found << widget;
        return found.isEmpty() ? nullptr : random.pick(found);
    }
    QWidget* anyWidget(Random& random) const
    {
        return find(random, [](QWidget*) { return true; });
    }
    QWidget* anyOurs(Random& random) const { return find(random, isOfLibrary); }

    // What views would remove from their manager if they were deleted now: only their current window. If Qt has
    // replaced it, the manager learns the new one from calls to Render(), and keeps the old one.
    static std::set<HWND> lastWindows(const QWidgetList& widgets)
    {
        std::set<HWND> windows;
        for (QWidget* widget : widgets)
            if (auto* view = qobject_cast<QRenderWidget*>(widget))
                windows.insert(view->internalWinId() ? reinterpret_cast<HWND>(view->internalWinId()) : view->GetHWND());
        return windows;
    }
    void checkLeft(const std::set<HWND>& windows) const
    {
        for (const Manager& manager : m_managers)
            for (HWND window : windows)
                check(manager.windows.count(window) == 0,
                      QStringLiteral("a manager keeps the window of a view that is gone"));
    }

    // Nothing inside Qt's own widgets may be deleted or moved away.
    static bool isQts(const QWidget* widget)
    {
        return widget->objectName().startsWith(QLatin1String("qt_")) || qobject_cast<const QScrollBar*>(widget) ||
               qobject_cast<const QLineEdit*>(widget->parentWidget()) ||
               (widget->isWindow() && widget->parentWidget()) ||
               (widget->parentWidget() && widget->window() != widget && qobject_cast<QDialog*>(widget->window()));
    }
    // The children of an editor's form live as long as the editor; all others are the host's.
    static bool isFormChild(QWidget* widget) { return !isOfLibrary(widget) && editorAround(widget); }
    bool isDeletable(QWidget* widget) const
    {
        return !live().contains(widget) && !isQts(widget) && !isFormChild(widget);
    }

    void addRoot()
    {
        auto* root = new QWidget;
        root->setObjectName(QStringLiteral("root%1").arg(m_roots.size()));
        root->resize(500, 600);
        m_roots << root;
        fill(root);
        root->show();
        root->activateWindow();
    }
    void fill(QWidget* root)
    {
        auto* panel = prepare(new QPropertyPanel(root));
        panel->resize(root->size());
        auto* area = new QScrollArea(panel);
        area->setWidgetResizable(true);
        auto* column = new QWidget;
        auto* rows = new QVBoxLayout(column);
        QWidget* inside = column;
        for (int i = 0; i < 3; ++i)
        {
            auto* section = new QAccordion;
            section->setTitle(QStringLiteral("Section %1").arg(i));
            inside->layout()->addWidget(section);
            inside = new QWidget(section);
            auto* contents = new QVBoxLayout(inside);
            contents->addWidget(prepare(new QSliderEdit));
            contents->addWidget(prepare(new QIntSliderEdit));
            contents->addWidget(prepare(new QVectorEdit));
            contents->addWidget(prepare(new QColourEdit));
            contents->addWidget(prepare(new QLabelEdit));
            contents->addWidget(prepare(new QFileEdit));
        }
        rows->addWidget(prepare(new QRenderWidget));
        area->setWidget(column);
    }
    QWidget* create(Random& random, QWidget* parent)
    {
        switch (random.below(10))
        {
        case 0:
            return prepare(new QSliderEdit(parent));
        case 1:
            return prepare(new QIntSliderEdit(parent));
        case 2:
            return prepare(new QVectorEdit(parent));
        case 3:
            return prepare(new QColourEdit(parent));
        case 4:
            return prepare(new QLabelEdit(parent));
        case 5:
            return prepare(new QFileEdit(parent));
        case 6:
            return prepare(new QRenderWidget(parent));
        case 7:
            return prepare(new QPropertyPanel(parent));
        case 8:
            return new QScrollArea(parent);
        default:
            return new QAccordion(parent);
        }
    }
    // Sometimes the host's slots do what was ordered for the next signal.
    template <typename Widget>
    Widget* prepare(Widget* widget)
    {
        const auto heard = [this, widget] { answer(widget); };
        if constexpr (std::is_same_v<Widget, QRenderWidget>)
        {
            widget->setMinimumHeight(40);
            QObject::connect(widget, &QRenderWidget::viewUpdated, &m_closer, heard);
            QObject::connect(widget, &QRenderWidget::keyReleased, &m_closer, heard);
            QObject::connect(widget, &QRenderWidget::deferredUpdate, &m_closer, heard);
        }
        else if constexpr (std::is_same_v<Widget, QPropertyPanel>)
        {
            QObject::connect(widget, qOverload<const QString&>(&QPropertyPanel::setSearchText), &m_closer, heard);
        }
        else
        {
            QObject::connect(widget, &Widget::valueChanged, &m_closer, heard);
        }
        if constexpr (std::is_same_v<Widget, QSliderEdit> || std::is_same_v<Widget, QIntSliderEdit> ||
                      std::is_same_v<Widget, QFileEdit>)
            QObject::connect(widget, &Widget::startedEdit, &m_closer, heard);
        return widget;
    }
    void answer(QWidget* sender)
    {
        if (!m_onSignal)
            return;
        const std::function<void(QWidget*)> ordered = std::move(m_onSignal);
        m_onSignal = nullptr;
        ordered(sender);
    }

    // A caller that opens a dialog waits for its end; meanwhile a host may delete its editor.
    void closeDialogs()
    {
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        if (QWidget* dialog = QApplication::activeModalWidget())
        {
            if (m_deleteBehindDialog)
                delete dialog->parentWidget();
            m_deleteBehindDialog = false;
            if ((dialog = QApplication::activeModalWidget()))
                dialog->close();
        }
    }

    void wear(QWidget* widget) const
    {
        if (QWidget* editor = editorAround(widget))
            if (editor != widget)
                editor->setProperty(Worn, true);
    }

    void act(Random& random)
    {
        switch (random.below(28))
        {
        case 0:
        case 1:
        case 2:
            return pressKey(random);
        case 3:
        case 4:
        case 5:
            return useMouse(random);
        case 6:
            return turnWheel(random);
        case 7:
            return typeText(random);
        case 8:
            return resize(random);
        case 9:
            return changeShown(random);
        case 10:
        case 11:
        case 12:
        case 13:
        case 14:
            return writeProperty(random, anyOurs(random));
        case 15:
            return writeProperty(random, anyWidget(random));
        case 16:
            return callSlot(random);
        case 17:
            return callOperation(random);
        case 18:
            return move(random);
        case 19:
            return remove(random);
        case 20:
            return add(random);
        case 21:
            return order(random);
        case 22:
            return exchangeEngine(random);
        case 23:
            return changeSurroundings(random);
        case 24:
            return search(random);
        case 25:
        case 26:
            return useHostLibrary(random);
        default:
            return shakeWindow(random);
        }
    }

    void pressKey(Random& random)
    {
        static const Qt::Key keys[] = {
            Qt::Key_Tab,   Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Enter,     Qt::Key_Escape,   Qt::Key_Left,
            Qt::Key_Right, Qt::Key_Up,      Qt::Key_Down,   Qt::Key_PageUp,    Qt::Key_PageDown, Qt::Key_Home,
            Qt::Key_End,   Qt::Key_Space,   Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_A,        Qt::Key_V,
            Qt::Key_X,     Qt::Key_Z,       Qt::Key_5,      Qt::Key_Minus,     Qt::Key_Period,   Qt::Key_E,
            Qt::Key_F10,   Qt::Key_Menu};
        static const Qt::KeyboardModifiers modifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                                          Qt::ControlModifier, Qt::AltModifier};
        const Qt::Key key = random.pick(keys);
        const Qt::KeyboardModifiers with = random.pick(modifiers);
        QWidget* target = random.once(3) ? anyWidget(random) : QApplication::focusWidget();
        if (!target)
            target = anyWidget(random);
        if (!target)
            return;
        note(counts.user, QStringLiteral("key %1 with %2 on %3").arg(key, 0, 16).arg(int(with)).arg(nameOf(target)));
        const QPointer<QWidget> alive(target);
        const QString text = key < 0x80 && with == Qt::NoModifier ? QString(QChar(key)) : QString();
        QKeyEvent press(QEvent::KeyPress, key, with, text);
        QCoreApplication::sendEvent(target, &press);
        if (!alive || random.once(10))
            return;
        QKeyEvent release(QEvent::KeyRelease, key, with, text);
        QCoreApplication::sendEvent(target, &release);
    }
    void typeText(Random& random)
    {
        QPointer<QWidget> field = find(random, [](QWidget* widget) { return qobject_cast<QLineEdit*>(widget); });
        if (!field)
            return;
        const QString text = anyString(random).left(40);
        note(counts.user,
             QStringLiteral("type %1 into %2 of %3").arg(text, nameOf(field), nameOf(field->parentWidget())));
        field->setFocus();
        qobject_cast<QLineEdit*>(field)->selectAll();
        for (const QChar character : text)
            if (field)
            {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(character));
                QCoreApplication::sendEvent(field, &press);
            }
        if (field && random.once(2))
            QTest::keyClick(field.data(), Qt::Key_Return);
        else if (field)
            field->clearFocus();
    }
    void useMouse(Random& random)
    {
        const QPointer<QWidget> target = find(random, [](QWidget* widget) { return widget->isVisible(); });
        if (!target)
            return;
        static const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                                  Qt::MiddleButton};
        const Qt::MouseButton button = random.pick(buttons);
        const auto place = [&] {
            return QPoint(random.below(qMin(target->width(), LargestSide)),
                          random.below(qMin(target->height(), LargestSide)));
        };
        const auto send = [&](QEvent::Type type, const QPoint& at, Qt::MouseButton which, Qt::MouseButtons held)
        {
            if (!target)
                return;
            QMouseEvent event(type, at, target->mapToGlobal(at), which, held, Qt::NoModifier);
            QCoreApplication::sendEvent(target, &event);
        };
        const bool through = random.once(2) && target->window()->windowHandle();
        const QPoint start = place();
        note(counts.user, QStringLiteral("mouse button %1 on %2 of %3 at %4,%5%6")
                              .arg(button)
                              .arg(nameOf(target), nameOf(target->parentWidget()))
                              .arg(start.x())
                              .arg(start.y())
                              .arg(through ? QStringLiteral(" through the window") : QString()));
        m_deleteBehindDialog = random.once(4);
        if (through)
        {
            const QPointer<QWindow> window(target->window()->windowHandle());
            const QPoint at = target->mapTo(target->window(), start);
            QTest::mousePress(window, button, Qt::NoModifier, at);
            if (window)
                QTest::mouseMove(window, at + QPoint(random.below(60) - 30, random.below(60) - 30));
            if (window)
                QTest::mouseRelease(window, button, Qt::NoModifier, at);
            m_deleteBehindDialog = false;
            return;
        }
        target->setFocus(Qt::MouseFocusReason);
        send(QEvent::MouseButtonPress, start, button, button);
        QPoint at = start;
        for (int moves = random.below(4); moves > 0 && target; --moves)
        {
            at = place();
            send(QEvent::MouseMove, at, Qt::NoButton, button);
        }
        if (!random.once(12))
            send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
        if (random.once(6))
            send(QEvent::MouseButtonDblClick, at, button, button);
        m_deleteBehindDialog = false;
    }
    void turnWheel(Random& random)
    {
        QWidget* target = find(random, [](QWidget* widget) { return widget->isVisible(); });
        if (!target)
            return;
        const QPoint delta(random.once(4) ? anyInt(random) % 100000 : 0,
                           random.once(2) ? 120 : anyInt(random) % 100000);
        note(counts.user, QStringLiteral("wheel %1,%2 on %3").arg(delta.x()).arg(delta.y()).arg(nameOf(target)));
        QWheelEvent event(QPointF(2, 2), target->mapToGlobal(QPoint(2, 2)), QPoint(), delta, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(target, &event);
    }
    void resize(Random& random)
    {
        QWidget* target = anyWidget(random);
        if (!target)
            return;
        const QSize size(random.below(LargestSide), random.below(LargestSide));
        note(counts.host,
             QStringLiteral("resize %1 to %2x%3").arg(nameOf(target)).arg(size.width()).arg(size.height()));
        target->resize(size);
    }
    void changeShown(Random& random)
    {
        QWidget* target = anyWidget(random);
        if (!target)
            return;
        const int what = random.below(6);
        note(counts.host,
             QStringLiteral("change %1 whether %2 is shown or has the focus").arg(what).arg(nameOf(target)));
        wear(target);
        if (what == 0)
            target->close();
        else if (what == 1)
            target->setFocus();
        else if (what == 2)
            target->window()->activateWindow();
        else if (what == 3)
            target->setEnabled(random.once(2));
        else if (isBounded(target))
            target->setVisible(random.once(2));
    }
    // A widget that makes room for everything the host wrote must not be a window.
    bool isBounded(const QWidget* widget) const
    {
        return !widget->isWindow() || live().contains(const_cast<QWidget*>(widget));
    }

    void writeProperty(Random& random, QWidget* target)
    {
        if (!target)
            return;
        const bool ours = isOfLibrary(target);
        const QMetaObject* meta = target->metaObject();
        const int own = ours && !random.once(4) ? QWidget::staticMetaObject.propertyCount() : 1;
        if (own >= meta->propertyCount())
            return;
        const QMetaProperty property = meta->property(own + random.below(meta->propertyCount() - own));
        const QByteArray name = property.name();
        // These block the input, take the memory, or paint a mark for each of two thousand million positions.
        static const QList<QByteArray> left = {"windowModality", "windowModified", "tickPosition", "visible",
                                               "fullScreen",     "windowOpacity",  "pos"};
        const QVariant value = anyOf(property, random);
        if (!property.isWritable() || left.contains(name) || value.userType() == QMetaType::UnknownType ||
            (target->isWindow() && name.contains("imum")) || (name == "styleSheet" && !random.once(5)))
            return;
        note(counts.writes,
             QStringLiteral("write %1 of %2 of %3 = %4")
                 .arg(QLatin1String(name), nameOf(target), nameOf(target->parentWidget()), value.toString().left(60)));
        const bool isQts = property.enclosingMetaObject() == &QWidget::staticMetaObject || !ours;
        wear(target);
        if (isQts)
            target->setProperty(Worn, true);
        hostIsAtFault = isQts;
        std::unique_ptr<QSignalSpy> spy;
        if (ours && meta->indexOfSignal("valueChanged()") >= 0)
            spy = std::make_unique<QSignalSpy>(target, SIGNAL(valueChanged()));
        // A field that is hidden loses the focus and then commits its text.
        const bool leaves = name == "showAlpha" && target->isAncestorOf(QApplication::focusWidget());
        const bool isAwaited = bool(m_onSignal);
        property.write(target, value);
        // A slot of the host may have written something else meanwhile.
        const bool hostActed = isAwaited && !m_onSignal;
        if (spy && !hostActed && !target->property(Worn).toBool())
        {
            static const QList<QByteArray> loud = {"liveUpdate", "logarithmic", "step",
                                                   "minimum",    "maximum",     "powerOfTwo"};
            check(spy->isEmpty() || leaves || loud.contains(name),
                  QStringLiteral("%1 announced").arg(QLatin1String(name)));
            checkWritten(target, property, value);
        }
    }
    static void checkWritten(QWidget* target, const QMetaProperty& property, const QVariant& value)
    {
        const QByteArray name = property.name();
        static const QList<QByteArray> kept = {"labelWidth",  "textWidth",       "unitsWidth",
                                               "units",       "title",           "label",
                                               "liveUpdate",  "showButtons",     "showDefaultButton",
                                               "readOnly",    "mustExist",       "filename",
                                               "defaultPath", "defaultFilename", "filter",
                                               "colourEdit",  "readOnlyText",    "enums",
                                               "powerOfTwo",  "logarithmic"};
        if (kept.contains(name))
            check(property.read(target) == value, QStringLiteral("%1 does not read back").arg(QLatin1String(name)));
        if (name == "title" && qobject_cast<QSliderEdit*>(target))
            check(target->windowTitle() == value.toString(), QStringLiteral("the window title is not the title"));
        const auto* reset = target->findChild<QPushButton*>(QStringLiteral("reset"));
        if (auto* edit = qobject_cast<QSliderEdit*>(target))
        {
            if (name == "value")
            {
                bool ok = false;
                const double number = value.toDouble(&ok);
                const double now = edit->value().toDouble();
                check(!ok || !edit->signalsBlocked(), QStringLiteral("setValue() left the signals blocked"));
                if (ok && !std::isnan(number) && edit->minimum() <= edit->maximum())
                {
                    check(now >= edit->minimum() && now <= edit->maximum(), QStringLiteral("value out of its range"));
                    check(edit->findChild<QLineEdit*>(QStringLiteral("lineEdit"))->text() == edit->valueToText(now),
                          QStringLiteral("the text is not the value"));
                }
            }
            if (name == "value" || name == "defaultValue" || name == "showDefaultButton")
                if (name != "value" || value.canConvert<double>())
                    check(reset->isEnabledTo(edit) ==
                                  (edit->showDefaultButton() && edit->value().toDouble() != edit->defaultValue()) ||
                              (name == "value" && !isNumber(value)),
                          QStringLiteral("reset button against its rule"));
            const auto* slider = edit->findChild<QSlider*>(QStringLiteral("slider"));
            check(slider->minimum() == 0 && slider->maximum() >= 0 && slider->maximum() <= 10000,
                  QStringLiteral("positions of the slider"));
        }
        if (auto* edit = qobject_cast<QIntSliderEdit*>(target))
        {
            if (name == "value" && isInteger(value) && edit->minimum() <= edit->maximum())
            {
                const int now = edit->value().toInt();
                check(now >= edit->minimum() && now <= edit->maximum(), QStringLiteral("integer out of its range"));
                check(edit->findChild<QLineEdit*>(QStringLiteral("lineEdit"))->text() == edit->valueToText(now),
                      QStringLiteral("the text is not the integer"));
            }
        }
    }
    static bool isNumber(const QVariant& value)
    {
        bool ok = false;
        value.toDouble(&ok);
        return ok;
    }
    static bool isInteger(const QVariant& value)
    {
        bool ok = false;
        value.toInt(&ok);
        return ok;
    }

    // Calls the slots and signals of a library class through the meta-object, as a script does.
    void callSlot(Random& random)
    {
        QWidget* target = anyOurs(random);
        if (!target)
            return;
        const QMetaObject* meta = target->metaObject();
        const int own = QWidget::staticMetaObject.methodCount();
        if (meta->methodCount() <= own)
            return;
        const QMetaMethod method = meta->method(own + random.below(meta->methodCount() - own));
        note(counts.host, QStringLiteral("call %1 of %2").arg(QLatin1String(method.methodSignature()), nameOf(target)));
        m_deleteBehindDialog = random.once(4);
        const int number = anyInt(random);
        const QString text = anyString(random);
        if (method.parameterCount() == 0)
            method.invoke(target, Qt::DirectConnection);
        else if (method.parameterType(0) == QMetaType::Int)
            method.invoke(target, Qt::DirectConnection, Q_ARG(int, number));
        else if (method.parameterType(0) == QMetaType::QString)
            method.invoke(target, Qt::DirectConnection, Q_ARG(QString, text));
        m_deleteBehindDialog = false;
    }
    // Calls operations that are not properties.
    void callOperation(Random& random)
    {
        QWidget* target = anyOurs(random);
        if (!target)
            return;
        const int what = random.below(4);
        note(counts.host, QStringLiteral("call operation %1 of %2").arg(what).arg(nameOf(target)));
        if (auto* edit = qobject_cast<QSliderEdit*>(target))
        {
            if (what == 0)
                edit->setValue(anyVariant(random), false);
            else if (what == 1)
                edit->incrementDecrement(anyInt(random));
            else
                edit->blockSignals(random.once(2));
        }
        else if (auto* integer = qobject_cast<QIntSliderEdit*>(target))
        {
            integer->setValue(anyVariant(random), false);
            if (what == 0)
                integer->valueToText(anyInt(random));
        }
        else if (auto* vector = qobject_cast<QVectorEdit*>(target))
        {
            vector->setDefaultValue(anyVector(random));
            if (what == 0)
                vector->setValue(anyVector(random), false);
        }
        else if (auto* colour = qobject_cast<QColourEdit*>(target))
        {
            const double r = anyDouble(random);
            colour->setColour(r, anyDouble(random), 0.5, 1.0);
            if (what == 0)
                colour->setColour(nullptr);
            check(colour->colour()[0] == r || std::isnan(r), QStringLiteral("colour does not read back"));
        }
        else if (auto* section = qobject_cast<QAccordion*>(target))
        {
            const bool open = section->isOpen();
            section->writeSettings(m_settings);
            if (what == 0)
                section->setOpen(!open);
            section->readSettings(m_settings);
            check(section->isOpen() == open || section->objectName().isEmpty(),
                  QStringLiteral("open state does not read back"));
        }
        else if (auto* panel = qobject_cast<QPropertyPanel*>(target))
            panel->setSearchText();
        else if (auto* view = qobject_cast<QRenderWidget*>(target))
        {
            if (what == 0)
                view->shutdown();
            else if (what == 1)
                view->setContinuousUpdate(random.once(2));
            else
                view->GetViewId();
        }
        if (auto* base = qobject_cast<QPropertyEditWidget*>(target))
            base->applyParentTooltip();
    }

    // Uses the host library, in every other world; it must tolerate whatever happens to the widgets it follows.
    void useHostLibrary(Random& random)
    {
        if (m_number % 2 == 0)
            return;
        const int what = random.below(10);
        QWidget* target = anyOurs(random);
        note(counts.host, QStringLiteral("host library %1 for %2").arg(what).arg(nameOf(target)));
        auto* view = qobject_cast<QRenderWidget*>(target);
        if (view && m_views.size() < 3)
            m_views.push_back(std::make_unique<orvek::host::ViewInput>(view, &m_handler));
        else if (what == 0 && !m_views.empty())
            m_views.pop_back();
        if (m_hosts.empty() || (what == 1 && m_hosts.size() < 3))
        {
            if (QWidget* panel = qobject_cast<QPropertyPanel*>(target) ? target : find(random, isPanel))
                m_hosts.push_back(std::make_unique<orvek::host::PanelHost>(panel, random.once(4) ? nullptr : &m_stack));
            return;
        }
        orvek::host::PanelHost& host = *m_hosts.at(std::size_t(random.below(int(m_hosts.size()))));
        if (what == 2)
            m_hosts.erase(m_hosts.begin());
        else if (what == 3)
            m_stack.undo();
        else if (what == 4)
            m_stack.redo();
        else if (what == 5)
            host.search()->find();
        else if (what == 6)
            random.once(2) ? host.search()->findNext() : host.search()->findFirst();
        else if (what == 7)
            random.once(2) ? host.states()->save(m_settings) : host.states()->restore(m_settings);
        else if (what == 8)
            random.once(2) ? host.setColourButtons(random.once(2)) : host.setChoiceButtons(random.once(2));
        else
        {
            QObject* const parts[] = {host.input(), host.columns(), host.undo()};
            QObject* part = random.pick(parts);
            const QMetaObject* meta = part ? part->metaObject() : nullptr;
            for (int i = meta ? meta->propertyOffset() : 0; meta && i < meta->propertyCount(); ++i)
                if (meta->property(i).userType() == QMetaType::Bool && random.once(2))
                    meta->property(i).write(part, random.once(2));
        }
    }

    QWidget* anyParent(Random& random, QWidget* child) const
    {
        return find(random,
                    [child](QWidget* widget)
                    {
                        return widget != child && !child->isAncestorOf(widget) && !isFormChild(widget) &&
                               !qobject_cast<QScrollBar*>(widget) &&
                               (!isQts(widget) || qobject_cast<QScrollArea*>(widget->parentWidget()));
                    });
    }
    void move(Random& random)
    {
        const bool any = random.once(4);
        QWidget* child = find(random,
                              [any](QWidget* widget)
                              {
                                  return isOfLibrary(widget) || qobject_cast<QScrollArea*>(widget) ||
                                         (any && !widget->isWindow() && !isQts(widget) && !isFormChild(widget));
                              });
        if (!child || live().contains(child))
            return;
        QWidget* parent = anyParent(random, child);
        if (!parent)
            return;
        const bool byLayout = random.once(2) && parent->layout();
        note(counts.host, QStringLiteral("move %1 of %2 into %3%4")
                              .arg(nameOf(child), nameOf(child->parentWidget()), nameOf(parent),
                                   byLayout ? QStringLiteral(" by its layout") : QString()));
        wear(child);
        wear(parent);
        if (byLayout)
            parent->layout()->addWidget(child);
        else if (random.once(8))
        {
            child->setParent(nullptr);
            child->setParent(parent);
        }
        else
            child->setParent(parent);
        if (random.once(2))
            child->show();
    }
    void remove(Random& random)
    {
        QWidget* target = find(random, [this](QWidget* widget) { return isDeletable(widget); });
        if (!target)
            return;
        const bool later = random.once(2);
        note(counts.host,
             QStringLiteral("delete %1 of %2%3")
                 .arg(nameOf(target), nameOf(target->parentWidget()), later ? QStringLiteral(" later") : QString()));
        wear(target);
        if (later)
        {
            target->deleteLater();
            return;
        }
        const std::set<HWND> left = lastWindows(target->findChildren<QWidget*>() << target);
        delete target;
        checkLeft(left);
    }
    void add(Random& random)
    {
        if (all().size() > 1200)
            return;
        if (random.once(8) || live().isEmpty())
        {
            note(counts.host, QStringLiteral("add a window"));
            return addRoot();
        }
        QWidget* parent = find(random, [](QWidget* widget) { return !isFormChild(widget) && !isQts(widget); });
        QWidget* child = create(random, random.once(2) ? parent : nullptr);
        note(counts.host, QStringLiteral("add %1 to %2").arg(nameOf(child), nameOf(parent)));
        wear(parent);
        if (!child->parentWidget() && parent->layout())
            parent->layout()->addWidget(child);
        else if (!child->parentWidget())
            child->setParent(parent);
        child->show();
    }
    // To be done on the next signal.
    void order(Random& random)
    {
        const QPointer<QWidget> target = find(random, [this](QWidget* widget) { return isDeletable(widget); });
        const int what = random.below(5);
        note(counts.host, QStringLiteral("order %1 about %2 at the next signal").arg(what).arg(nameOf(target)));
        const quint64 seed = random.next();
        m_onSignal = [this, target, what, seed](QWidget* sender)
        {
            Random later(seed);
            QWidget* doomed = what == 0 ? target.data() : what == 4 ? sender : nullptr;
            if (doomed && !live().contains(doomed))
            {
                wear(doomed);
                doomed->deleteLater();
            }
            if (!target)
                return;
            if (what == 1)
                writeProperty(later, target);
            else if (what == 2)
                target->hide();
            else if (what == 3)
                search(later);
        };
    }
    void exchangeEngine(Random& random)
    {
        auto* view = qobject_cast<QRenderWidget*>(
            find(random, [](QWidget* widget) { return qobject_cast<QRenderWidget*>(widget); }));
        if (!view)
            return;
        Manager* manager = random.once(4) ? nullptr : &m_managers[random.below(3)];
        note(counts.host, QStringLiteral("another engine for %1").arg(nameOf(view)));
        const HWND window = view->GetHWND();
        if (random.once(2))
            view->SetPlatformRendererInterface(random.once(3) ? nullptr : &m_renderers[random.below(2)]);
        if (random.once(2))
            view->SetHandleMouseInterface(random.once(3) ? nullptr : &m_handler);
        view->SetDisplaySurfaceManagerInterface(manager);
        for (const Manager& other : m_managers)
            check(&other == manager || other.windows.count(window) == 0, QStringLiteral("window left with a manager"));
        check(manager || view->GetViewId() == -1, QStringLiteral("a number without a manager"));
    }
    void changeSurroundings(Random& random)
    {
        const int what = random.below(8);
        QWidget* target = anyWidget(random);
        note(counts.host, QStringLiteral("surroundings %1 for %2").arg(what).arg(nameOf(target)));
        if (what == 0)
            QApplication::setStyle(
                QStyleFactory::create(random.once(2) ? QStringLiteral("Fusion") : QStringLiteral("Windows")));
        else if (what == 1)
            QApplication::setPalette(anyPalette(random));
        else if (what == 2)
            QApplication::setFont(anyFont(random));
        else if (what == 3)
            QApplication::setLayoutDirection(random.once(2) ? Qt::RightToLeft : Qt::LeftToRight);
        else if (what == 4)
            random.once(2) ? QCoreApplication::installTranslator(&m_translator)
                           : QCoreApplication::removeTranslator(&m_translator);
        else if (what == 5)
            qApp->setStyleSheet(random.once(2) ? QString()
                                               : QStringLiteral("*[highlighted=\"true\"] { border: 2px solid red; }"));
        else if (target && what == 6)
            target->setLayoutDirection(random.once(2) ? Qt::RightToLeft : Qt::LeftToRight);
        else if (target)
            target->setStyleSheet(random.once(2) ? QString() : QStringLiteral("* { padding: 9px; color: red }"));
    }
    void search(Random& random)
    {
        auto* panel = qobject_cast<QPropertyPanel*>(
            find(random, [](QWidget* widget) { return qobject_cast<QPropertyPanel*>(widget); }));
        auto* field =
            panel ? panel->findChild<QLineEdit*>(QStringLiteral("search"), Qt::FindDirectChildrenOnly) : nullptr;
        if (!field)
            return;
        const QString text = random.once(3)   ? QString()
                             : random.once(2) ? QStringLiteral("Section 1")
                                              : anyString(random).left(20);
        note(counts.user, QStringLiteral("search %1").arg(text));
        field->setText(text);
    }
    void shakeWindow(Random& random)
    {
        const int what = random.below(5);
        QWidget* target = find(random, [](QWidget* widget) { return widget->testAttribute(Qt::WA_WState_Created); });
        if (!target)
            return;
        note(counts.host, QStringLiteral("window act %1 on %2").arg(what).arg(nameOf(target)));
        if (what == 0)
        {
            // Qt expects the window to be hidden then, and without the focus.
            target->hide();
            NativeWindow::destroyOf(target);
            target->show();
        }
        else if (what == 1 && target->windowHandle() && live().contains(target))
        {
            target->hide();
            target->windowHandle()->destroy();
            target->show();
        }
        else if (what == 2)
            target->winId();
        else if (what == 3 && isBounded(target))
            target->grab(QRect(0, 0, 300, 300));
        else
            target->update();
    }

    // Checks what must hold for every widget, whatever has happened to it.
    void inspect()
    {
        hostIsAtFault = false;
        const QWidgetList widgets = all();
        std::set<const QWidget*> known(widgets.begin(), widgets.end());
        for (QWidget* widget : widgets)
        {
            if (!isOfLibrary(widget))
                continue;
            inspectLayout(widget, known);
            if (auto* edit = qobject_cast<QSliderEdit*>(widget))
            {
                check(!std::isinf(edit->value().toDouble()), nameOf(edit) + QStringLiteral(" holds an infinity"));
                edit->minimumSizeHint();
                edit->title();
            }
            else if (auto* section = qobject_cast<QAccordion*>(widget))
            {
                section->title();
                section->isOpen();
            }
            else if (auto* view = qobject_cast<QRenderWidget*>(widget))
                check(!view->paintEngine(), QStringLiteral("a paint engine"));
        }
    }
    static void inspectLayout(const QWidget* widget, const std::set<const QWidget*>& known)
    {
        const QLayout* layout = widget->layout();
        std::set<const QWidget*> seen;
        for (int i = 0; layout && i < layout->count(); ++i)
        {
            const QWidget* item = layout->itemAt(i)->widget();
            if (!item)
                continue;
            check(known.count(item) == 1, nameOf(widget) + QStringLiteral(" lays out a widget that is gone"));
            check(known.count(item) == 0 || item->parentWidget() == widget,
                  nameOf(widget) + QStringLiteral(" lays out another's child"));
            check(seen.insert(item).second, nameOf(widget) + QStringLiteral(" lays out a child twice"));
        }
    }

    const quint64 m_number;
    const bool m_shown;
    int m_index = 0;
    bool m_deleteBehindDialog = false;
    std::function<void(QWidget*)> m_onSignal;
    QVector<QPointer<QWidget>> m_roots;
    Manager m_managers[3];
    Renderer m_renderers[2];
    Handler m_handler;
    Translator m_translator;
    QTemporaryDir m_directory;
    QUndoStack m_stack;
    std::vector<std::unique_ptr<orvek::host::PanelHost>> m_hosts;
    std::vector<std::unique_ptr<orvek::host::ViewInput>> m_views;
    QSettings m_settings{m_directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat};
    QTimer m_closer;
};

struct Options
{
    quint64 seed = 1;
    int seconds = 20;
    int worlds = 0; // unlimited
    int steps = 300;
};

// The position of a worker; outlives its crash.
class Progress
{
public:
    explicit Progress(const QString& path) : m_file(path)
    {
        if (!path.isEmpty() && !m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
            qFatal("cannot write %s", qPrintable(path));
    }
    void write(quint64 world, int step)
    {
        if (!m_file.isOpen())
            return;
        m_file.seek(0);
        m_file.write(QByteArray::number(world).rightJustified(20) + QByteArray::number(step).rightJustified(12));
    }
    static QPair<quint64, int> read(const QString& path)
    {
        QFile file(path);
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return {text.left(20).trimmed().toULongLong(), text.mid(20).trimmed().toInt()};
    }

private:
    QFile m_file;
};

// Returns whether the world survived.
bool live(quint64 number, const QVector<int>& steps, bool shown, Progress& progress)
{
    {
        World world(number, shown);
        for (const int step : steps)
        {
            progress.write(number, step);
            world.step(step);
            if (!complaint.isEmpty())
                break;
        }
    }
    const QWidgetList left = QApplication::allWidgets();
    for (const QWidget* widget : left)
        check(!isOfLibrary(widget), nameOf(widget) + QStringLiteral(" is left over"));
    if (!complaint.isEmpty())
        std::fprintf(stderr, "world %llu: %s\n", number, qPrintable(complaint));
    return complaint.isEmpty();
}

QVector<int> firstSteps(int count)
{
    QVector<int> steps(count);
    for (int i = 0; i < count; ++i)
        steps[i] = i;
    return steps;
}

QString joined(const QVector<int>& steps)
{
    QStringList texts;
    for (const int step : steps)
        texts << QString::number(step);
    return texts.join(QLatin1Char(','));
}

// Collects the worker's output; returns 0 only if its world survived.
int run(const QStringList& arguments, int seconds, QByteArray* words)
{
    QProcess worker;
    // Leaks at exit belong to no step.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (arguments.contains(QStringLiteral("--only")))
        environment.insert(QStringLiteral("ASAN_OPTIONS"),
                           environment.value(QStringLiteral("ASAN_OPTIONS")) + QStringLiteral(":detect_leaks=0"));
    worker.setProcessEnvironment(environment);
    worker.setProcessChannelMode(QProcess::MergedChannels);
    worker.start(QCoreApplication::applicationFilePath(), arguments);
    if (!worker.waitForFinished(seconds * 1000))
    {
        worker.kill();
        worker.waitForFinished();
        *words = worker.readAll() + "did not come to an end\n";
        return 1;
    }
    *words = worker.readAll();
    return worker.exitStatus() == QProcess::NormalExit ? worker.exitCode() : 1;
}

// Removes ever smaller runs of steps as long as the world breaks without them.
QVector<int> shrunk(quint64 world, QVector<int> steps, int secondsForOne)
{
    QElapsedTimer time;
    time.start();
    QByteArray words;
    const auto breaks = [&](const QVector<int>& some)
    {
        return run({QStringLiteral("--world"), QString::number(world), QStringLiteral("--only"), joined(some)},
                   secondsForOne, &words) != 0;
    };
    for (int size = qMax(1, steps.size() / 2);; size = qMax(1, size / 2))
    {
        bool fewer = false;
        // From the end, as the last step is the one that breaks.
        for (int end = steps.size() - 1; end > 0 && time.elapsed() < 180000; end -= size)
        {
            QVector<int> rest = steps;
            const int begin = qMax(0, end - size);
            rest.remove(begin, end - begin);
            if (breaks(rest))
            {
                steps = rest;
                fewer = true;
            }
        }
        if ((size == 1 && !fewer) || time.elapsed() >= 180000)
            return steps;
    }
}

int supervise(const Options& options)
{
    const QTemporaryDir directory;
    const QString progress = directory.filePath(QStringLiteral("progress"));
    QByteArray words;
    const int code = run({QStringLiteral("--worker"), QStringLiteral("--seed"), QString::number(options.seed),
                          QStringLiteral("--seconds"), QString::number(options.seconds), QStringLiteral("--worlds"),
                          QString::number(options.worlds), QStringLiteral("--steps"), QString::number(options.steps),
                          QStringLiteral("--progress"), progress},
                         options.seconds + 120, &words);
    std::fprintf(stderr, "%s", words.constData());
    if (code == 0 || words.contains("LeakSanitizer"))
        return code;
    const auto [world, step] = Progress::read(progress);
    std::fprintf(stderr, "world %llu broke at step %d; looking for the steps that matter\n", world, step);
    const QVector<int> steps = shrunk(world, firstSteps(step + 1), 60);
    const bool again = run({QStringLiteral("--world"), QString::number(world), QStringLiteral("--only"), joined(steps)},
                           60, &words) != 0;
    std::fprintf(stderr, "%s%s\n--world %llu --only %s\n", words.constData(),
                 again ? "" : "Alone the world stays whole; it needs those before it.", world,
                 qPrintable(joined(steps)));
    return 1;
}

int work(const Options& options, Progress& progress)
{
    QElapsedTimer time;
    time.start();
    quint64 worlds = 0;
    while (time.elapsed() < options.seconds * 1000LL &&
           (options.worlds <= 0 || worlds < static_cast<quint64>(options.worlds)))
        if (!live(options.seed + worlds++, firstSteps(options.steps), false, progress))
            return 1;
    std::fprintf(stderr, "worlds %llu to %llu of %d steps each stayed whole, in %lld s\n", options.seed,
                 options.seed + worlds - 1, options.steps, time.elapsed() / 1000);
    std::fprintf(stderr, "%lld user acts, %lld property writes, %lld host acts\n", counts.user, counts.writes,
                 counts.host);
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("seed"), QStringLiteral("Number of the first world."), QStringLiteral("world"),
          QStringLiteral("1")},
         {QStringLiteral("seconds"), QStringLiteral("No world is begun later."), QStringLiteral("limit"),
          QStringLiteral("20")},
         {QStringLiteral("worlds"), QStringLiteral("Runs no more worlds than these."), QStringLiteral("count"),
          QStringLiteral("0")},
         {QStringLiteral("steps"), QStringLiteral("Steps in each world."), QStringLiteral("count"),
          QStringLiteral("300")},
         {QStringLiteral("world"), QStringLiteral("Runs one world and shows its steps."), QStringLiteral("number")},
         {QStringLiteral("only"), QStringLiteral("Leaves out all other steps."), QStringLiteral("numbers")},
         {QStringLiteral("worker"), QStringLiteral("Used by the program itself.")},
         {QStringLiteral("progress"), QStringLiteral("Used by the program itself."), QStringLiteral("file")}});
    parser.addHelpOption();
    parser.process(application);
    Options options;
    options.seed = parser.value(QStringLiteral("seed")).toULongLong();
    options.seconds = parser.value(QStringLiteral("seconds")).toInt();
    options.worlds = parser.value(QStringLiteral("worlds")).toInt();
    options.steps = parser.value(QStringLiteral("steps")).toInt();
    const bool single = parser.isSet(QStringLiteral("world"));
    if (!single && !parser.isSet(QStringLiteral("worker")))
        return supervise(options);

    // The property panel writes the names of its children there.
    if (!std::freopen("/dev/null", "w", stdout))
        return 2;
    qInstallMessageHandler(hearWarning);
    Progress progress(parser.value(QStringLiteral("progress")));
    if (!single)
        return work(options, progress);
    QVector<int> steps = firstSteps(options.steps);
    if (parser.isSet(QStringLiteral("only")))
    {
        steps.clear();
        const QStringList numbers = parser.value(QStringLiteral("only")).split(QLatin1Char(','));
        for (const QString& number : numbers)
            steps << number.toInt();
    }
    return live(parser.value(QStringLiteral("world")).toULongLong(), steps, true, progress) ? 0 : 1;
}
