#include "UiHarness.h"

#include "ui/StudioSingleton.h"
#include "ui/StudioWindow.h"

#include <QtQuickTest/quicktest.h>

#include <QGuiApplication>
#include <QMutex>
#include <QMutexLocker>
#include <QQmlProperty>
#include <QSet>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

namespace {

QMutex warningsLock;
QStringList seenWarnings;
QtMessageHandler previousHandler = nullptr;

// What the QML engine and the Quick controls say when a screen is broken: every engine
// warning names the .qml file it comes from; the rest are recognised by their wording.
bool isQmlWarning(const QMessageLogContext &context, const QString &message)
{
    const QLatin1StringView category(context.category ? context.category : "");
    if (category == QLatin1StringView("qml") || category == QLatin1StringView("js")
        || category.startsWith(QLatin1StringView("qt.qml")))
        return true;
    static const QStringList marks{
        QStringLiteral(".qml:"),         QStringLiteral("qrc:/"),          QStringLiteral("Binding loop"),
        QStringLiteral("TypeError"),     QStringLiteral("ReferenceError"), QStringLiteral("Unable to assign"),
        QStringLiteral("is not defined"), QStringLiteral("QML "),          QStringLiteral("Cannot read property"),
    };
    return std::any_of(marks.cbegin(), marks.cend(), [&](const QString &mark) { return message.contains(mark); });
}

void recordingHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && isQmlWarning(context, message)) {
        QMutexLocker locker(&warningsLock);
        seenWarnings.append(message);
    }
    if (previousHandler)
        previousHandler(type, context, message);
}

// The item that a Flickable (a ScrollView's or a list's) scrolls, if `item` lies inside one.
QQuickItem *enclosingFlickable(QQuickItem *item)
{
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->inherits("QQuickFlickable"))
            return parent;
    }
    return nullptr;
}

} // namespace

UiHarness::UiHarness()
    : m_store(m_folder.filePath(QStringLiteral("preferences.sqlite")))
{
    {
        QMutexLocker locker(&warningsLock);
        seenWarnings.clear();
    }
    previousHandler = qInstallMessageHandler(recordingHandler);
}

UiHarness::~UiHarness()
{
    shutDown();
    qInstallMessageHandler(previousHandler);
    previousHandler = nullptr;
}

void UiHarness::seedReturningPlayer(const QString &name)
{
    m_store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
    m_store.setString(QStringLiteral("playerName"), name);
}

void UiHarness::seedCompleted(const QList<qint64> &missions)
{
    m_store.setIntegerArray(QStringLiteral("completed"), missions);
}

bool UiHarness::start()
{
    if (!m_folder.isValid())
        return fail(QStringLiteral("no temporary folder for the store"));
    m_studio = std::make_unique<Studio>(m_store, true);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_window = loadStudioWindow(*m_engine, *m_studio);
    if (!m_window)
        return fail(QStringLiteral("the studio window did not load"));
    m_window->requestActivate();
    if (!QTest::qWaitForWindowExposed(m_window))
        return fail(QStringLiteral("the window never appeared"));
    if (!QTest::qWaitForWindowActive(m_window))
        return fail(QStringLiteral("the window never became active, so keys would go nowhere"));
    return true;
}

QStringList UiHarness::finish(std::unique_ptr<UiHarness> &harness)
{
    if (harness)
        harness->shutDown();
    harness.reset();
    return takeWarnings();
}

void UiHarness::shutDown()
{
    if (!m_engine)
        return;
    m_engine.reset();
    // Items released by the engine go with deferred deletes; let them run while Studio lives.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    StudioSingleton::setInstance(nullptr);
    m_studio.reset();
}

QObject *UiHarness::find(const QString &name) const
{
    if (!m_window)
        return nullptr;
    QList<QObject *> matches;
    QSet<QObject *> seen;
    std::function<void(QObject *)> visit = [&](QObject *object) {
        if (!object || seen.contains(object))
            return;
        seen.insert(object);
        if (object->objectName() == name)
            matches.append(object);
        for (QObject *child : object->children())
            visit(child);
        if (auto *item = qobject_cast<QQuickItem *>(object)) {
            for (QQuickItem *child : item->childItems())
                visit(child);
        }
    };
    visit(m_window);
    // The root item also holds the overlay, where open popups put their content.
    if (QQuickItem *root = m_window->contentItem())
        visit(root->parentItem() ? root->parentItem() : root);

    for (QObject *match : matches) {
        auto *item = qobject_cast<QQuickItem *>(match);
        if (item && item->isVisible())
            return match;
        if (!item && match->property("visible").toBool())
            return match;
    }
    return matches.isEmpty() ? nullptr : matches.constFirst();
}

QQuickItem *UiHarness::item(const QString &name) const
{
    return qobject_cast<QQuickItem *>(find(name));
}

QVariant UiHarness::property(const QString &name, const char *property) const
{
    QObject *object = find(name);
    return object ? object->property(property) : QVariant();
}

QString UiHarness::text(const QString &name) const
{
    QObject *object = find(name);
    if (!object)
        return QStringLiteral("<no object named %1>").arg(name);
    if (object->metaObject()->indexOfProperty("text") >= 0)
        return object->property("text").toString();
    std::function<QObject *(QObject *)> firstText = [&](QObject *parent) -> QObject * {
        const auto *item = qobject_cast<QQuickItem *>(parent);
        if (!item)
            return nullptr;
        for (QQuickItem *child : item->childItems()) {
            if (child->inherits("QQuickText"))
                return child;
            if (QObject *found = firstText(child))
                return found;
        }
        return nullptr;
    };
    QObject *label = firstText(object);
    return label ? label->property("text").toString() : QStringLiteral("<no text inside %1>").arg(name);
}

QStringList UiHarness::texts(const QString &name) const
{
    QStringList found;
    std::function<void(QQuickItem *)> collect = [&](QQuickItem *parent) {
        for (QQuickItem *child : parent->childItems()) {
            if (!child->isVisible())
                continue;
            if (child->inherits("QQuickText"))
                found.append(child->property("text").toString());
            collect(child);
        }
    };
    if (QQuickItem *root = item(name))
        collect(root);
    return found;
}

bool UiHarness::isShown(const QString &name) const
{
    QObject *object = find(name);
    if (auto *item = qobject_cast<QQuickItem *>(object))
        return item->isVisible() && item->window() == m_window;
    return object && object->property("visible").toBool();
}

bool UiHarness::isEnabled(const QString &name) const
{
    QObject *object = find(name);
    return object && object->property("enabled").toBool();
}

bool UiHarness::isSheetOpen(const QString &name) const
{
    QObject *sheet = find(name);
    return sheet && sheet->property("opened").toBool() && sheet->property("visible").toBool();
}

bool UiHarness::scrollIntoView(QQuickItem *item)
{
    for (QQuickItem *flickable = enclosingFlickable(item); flickable; flickable = enclosingFlickable(flickable)) {
        auto *content = flickable->property("contentItem").value<QQuickItem *>();
        if (!content)
            return fail(QStringLiteral("a scroll area without content"));
        const QRectF rect = item->mapRectToItem(content, QRectF(0, 0, item->width(), item->height()));
        const qreal top = flickable->property("contentY").toReal();
        const qreal height = flickable->height();
        const qreal contentHeight = flickable->property("contentHeight").toReal();
        if (rect.top() >= top && rect.bottom() <= top + height)
            continue;
        const qreal wanted = std::clamp(rect.center().y() - height / 2, 0.0, std::max(0.0, contentHeight - height));
        flickable->setProperty("contentY", wanted);
    }
    QCoreApplication::processEvents();
    return true;
}

bool UiHarness::click(const QString &name, Require require)
{
    QObject *object = find(name);
    if (!object)
        return fail(QStringLiteral("click: nothing is named %1").arg(name));
    auto *target = qobject_cast<QQuickItem *>(object);
    if (!target)
        return fail(QStringLiteral("click: %1 is not an item on screen").arg(name));
    return clickAt(target, QPointF(target->width() / 2, target->height() / 2), name, require);
}

bool UiHarness::chooseSpeed(bool fastest)
{
    QQuickItem *slider = item(QStringLiteral("speedSlider"));
    if (!slider)
        return fail(QStringLiteral("chooseSpeed: there is no speed slider"));
    const QPointF end(fastest ? slider->width() - 1 : 1, slider->height() / 2);
    if (!clickAt(slider, end, QStringLiteral("speedSlider"), Require::Enabled))
        return false;
    const double wanted = fastest ? Studio::fastestSpeed : Studio::slowestSpeed;
    if (qAbs(m_studio->speed() - wanted) > 1e-9)
        return fail(QStringLiteral("chooseSpeed: the slider set %1, not %2").arg(m_studio->speed()).arg(wanted));
    return true;
}

bool UiHarness::clickAt(QQuickItem *target, QPointF local, const QString &what, Require require)
{
    if (!m_window || target->window() != m_window)
        return fail(QStringLiteral("click: %1 is not in the window").arg(what));
    // A sheet that has just opened may not have placed its children yet.
    if (!QQuickTest::qWaitForPolish(m_window))
        return fail(QStringLiteral("click: the window never finished laying out before %1").arg(what));
    if (!target->isVisible())
        return fail(QStringLiteral("click: %1 is not visible").arg(what));
    if (require == Require::Enabled && !target->isEnabled())
        return fail(QStringLiteral("click: %1 is disabled").arg(what));
    if (target->width() <= 0 || target->height() <= 0)
        return fail(QStringLiteral("click: %1 has no size").arg(what));
    if (!scrollIntoView(target))
        return false;
    const QPointF scenePoint = target->mapToScene(local);
    const QPoint point = scenePoint.toPoint();
    if (!QRect(QPoint(0, 0), m_window->size()).contains(point))
        return fail(QStringLiteral("click: %1 lies outside the window at %2,%3")
                        .arg(what)
                        .arg(point.x())
                        .arg(point.y()));
    // Hidden behind the edge of a scroll area that clips it?
    for (QQuickItem *flickable = enclosingFlickable(target); flickable; flickable = enclosingFlickable(flickable)) {
        const QRectF visible = flickable->mapRectToScene(QRectF(0, 0, flickable->width(), flickable->height()));
        if (!visible.contains(scenePoint))
            return fail(QStringLiteral("click: %1 is scrolled out of sight").arg(what));
    }
    QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, point);
    QCoreApplication::processEvents();
    return true;
}

bool UiHarness::type(const QString &text)
{
    if (!m_window || !m_window->activeFocusItem())
        return fail(QStringLiteral("type: nothing has keyboard focus"));
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            QTest::keyClick(m_window, Qt::Key_Return);
        for (const QChar c : lines.at(i)) {
            if (c.unicode() < 0x80)
                QTest::keyClick(m_window, char(c.unicode()));
            else
                QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, QString(c), Qt::NoModifier);
        }
    }
    QCoreApplication::processEvents();
    return true;
}

bool UiHarness::replaceText(const QString &name, const QString &text)
{
    if (!click(name))
        return false;
    if (!hasFocus(name))
        return fail(QStringLiteral("replaceText: clicking %1 did not give it keyboard focus").arg(name));
    QTest::keyClick(m_window, Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty()) {
        QTest::keyClick(m_window, Qt::Key_Backspace);
        return true;
    }
    return type(text);
}

void UiHarness::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window, key, modifiers);
    QCoreApplication::processEvents();
}

bool UiHarness::hasFocus(const QString &name) const
{
    auto *target = item(name);
    if (!target || !m_window)
        return false;
    for (QQuickItem *focused = m_window->activeFocusItem(); focused; focused = focused->parentItem()) {
        if (focused == target)
            return true;
    }
    return false;
}

bool UiHarness::waitFor(const std::function<bool()> &condition, const QString &what, int timeoutMs)
{
    if (QTest::qWaitFor(condition, timeoutMs))
        return true;
    return fail(QStringLiteral("timed out after %1 ms waiting for %2").arg(timeoutMs).arg(what));
}

bool UiHarness::waitForSheet(const QString &name, bool open, int timeoutMs)
{
    return waitFor([&] { return isSheetOpen(name) == open; },
                   QStringLiteral("%1 to %2").arg(name, open ? QStringLiteral("open") : QStringLiteral("close")),
                   timeoutMs);
}

const char *UiHarness::why() const
{
    m_failureBytes = m_failure.toLocal8Bit();
    return m_failureBytes.constData();
}

QStringList UiHarness::warnings()
{
    QMutexLocker locker(&warningsLock);
    return seenWarnings;
}

QStringList UiHarness::takeWarnings()
{
    QMutexLocker locker(&warningsLock);
    return std::exchange(seenWarnings, {});
}

bool UiHarness::fail(const QString &reason)
{
    m_failure = reason;
    return false;
}
