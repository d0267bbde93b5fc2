#pragma once

#include <QtTest/QtTest> // and with it all of QtCore
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QWidget>

#include <optional>
#include <tuple>

// The child of an editor's or container's form by its fixed name; fails hard when there is none.
template <typename T>
T* child(const QObject& parent, const char* name)
{
    T* found = parent.findChild<T*>(QLatin1String(name));
    if (!found)
        qFatal("%s has no child %s", parent.metaObject()->className(), name);
    return found;
}

inline void typeText(QLineEdit* field, const QString& text)
{
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

inline void commitText(QLineEdit* field, const QString& text)
{
    typeText(field, text);
    QTest::keyClick(field, Qt::Key_Return);
}

// A test's table of data: addColumns() in its data function, row() in the test itself.
template <typename... Types>
struct Table
{
    static void addColumns()
    {
        auto next = [column = 0]() mutable { return Names[column++]; };
        (QTest::addColumn<Types>(next()), ...);
    }
    static std::tuple<Types...> row()
    {
        auto next = [column = 0]() mutable { return Names[column++]; };
        return std::tuple<Types...>{*static_cast<Types*>(QTest::qData(next(), qMetaTypeId<Types>()))...};
    }
    static constexpr const char* Names[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};
};

// connectSlotsByName and Qt's widgets say in warnings what is wrong with them. Fails the program at the end of its test
// functions if there was one that no QTest::ignoreMessage expected. What a platform says of itself does not count: of
// the gaps of the offscreen one, or of a window that an X server without a window manager took the focus from too
// early.
class WarningWatch
{
public:
    WarningWatch()
    {
        count() = 0;
        previous() = qInstallMessageHandler(&WarningWatch::handle);
    }
    ~WarningWatch() { qInstallMessageHandler(previous()); }
    static int& count()
    {
        static int value = 0;
        return value;
    }

private:
    Q_DISABLE_COPY(WarningWatch)
    static QtMessageHandler& previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        const bool aboutPlatform = message.startsWith(QLatin1String("This plugin does not support ")) ||
                                   QLatin1String(context.category).startsWith(QLatin1String("qt.qpa."));
        count() += (type == QtWarningMsg || type == QtCriticalMsg) && !aboutPlatform ? 1 : 0;
        if (previous())
            previous()(type, context, message);
    }
};

// A test whose functions fail where Qt warned during one.
class WatchedTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m_warnings.emplace(); }
    void cleanup()
    {
        m_warnings.reset();
        QCOMPARE(WarningWatch::count(), 0);
    }

private:
    std::optional<WarningWatch> m_warnings;
};
