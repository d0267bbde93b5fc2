#include "World.h"

#include "Random.h"

#include <Orvek/Host/ColumnAligner.h>
#include <Orvek/Host/EditorInput.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/PanelSearch.h>
#include <Orvek/Host/SectionStates.h>
#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/EditorList.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QMetaMethod>
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
#include <memory>
#include <set>
#include <vector>

using orvek::base::BaseMouseHandler;
using orvek::crossplatform::DisplaySurfaceManagerInterface;
using orvek::crossplatform::PlatformRendererInterface;

Counts counts;

namespace
{
constexpr int LargestSide = 1500; // of visible widgets; larger backing stores would take all of the memory
const char Worn[] = "soak_worn";  // on editors whose children were changed from outside

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

bool isEditor(const QWidget* widget)
{
#define ORVEK_IS_EDITOR(Editor) || qobject_cast<const Editor*>(widget)
    return false ORVEK_EDITORS(ORVEK_IS_EDITOR);
#undef ORVEK_IS_EDITOR
}

bool isOfLibrary(const QWidget* widget)
{
    return isEditor(widget) || qobject_cast<const QPropertyPanel*>(widget) || qobject_cast<const QAccordion*>(widget) ||
           qobject_cast<const QRenderWidget*>(widget);
}

bool isPanel(const QWidget* widget)
{
    return qobject_cast<const QPropertyPanel*>(widget) != nullptr;
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

QString complaint;          // of the first check that failed; empty if none
bool hostIsAtFault = false; // while Qt may warn, as a host writes nonsense into Qt's own objects

void check(bool holds, const QString& what)
{
    if (!holds && complaint.isEmpty())
        complaint = what;
}

void receiveWarning(QtMsgType type, const QMessageLogContext&, const QString& message)
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
            for (const Create editor : editors)
                contents->addWidget((this->*editor)(nullptr));
        }
        rows->addWidget(prepare(new QRenderWidget));
        area->setWidget(column);
    }
    using Create = QWidget* (World::*)(QWidget* parent);
    template <typename Widget>
    QWidget* make(QWidget* parent)
    {
        return prepare(new Widget(parent));
    }
    QWidget* create(Random& random, QWidget* parent)
    {
        const int kinds = int(std::size(editors));
        const int kind = random.below(kinds + 4);
        if (kind < kinds)
            return (this->*editors[kind])(parent);
        if (kind == kinds)
            return prepare(new QRenderWidget(parent));
        if (kind == kinds + 1)
            return prepare(new QPropertyPanel(parent));
        if (kind == kinds + 2)
            return new QScrollArea(parent);
        return new QAccordion(parent);
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
            connectStart(widget, heard, 0);
        }
        return widget;
    }
    // Not every editor has this signal.
    template <typename Widget, typename Slot>
    auto connectStart(Widget* widget, const Slot& slot, int) -> decltype(void(&Widget::startedEdit))
    {
        QObject::connect(widget, &Widget::startedEdit, &m_closer, slot);
    }
    template <typename Widget, typename Slot>
    void connectStart(Widget*, const Slot&, long)
    {
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

#define ORVEK_MAKE(Editor) &World::make<Editor>,
    static constexpr Create editors[] = {ORVEK_EDITORS(ORVEK_MAKE)};
#undef ORVEK_MAKE

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
} // namespace

void watchWarnings()
{
    qInstallMessageHandler(receiveWarning);
}

bool live(quint64 number, const QVector<int>& steps, bool shown, const std::function<void(int)>& beforeStep)
{
    {
        World world(number, shown);
        for (const int step : steps)
        {
            beforeStep(step);
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
