#include "UiHarness.h"

#include "ui/StudioSingleton.h"
#include "ui/StudioWindow.h"

#include <QtQuickTest/quicktest.h>

#include <QMutex>
#include <QSet>
#include <QSignalSpy>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>

Q_IMPORT_QML_PLUGIN(MarbleCovePlugin)

namespace {

QMutex warningsLock;
QStringList seenWarnings;
QtMessageHandler previousHandler = nullptr;

// What the QML engine and the Quick controls say when a screen is broken: engine warnings come
// under the qml and js categories or name a .qml file; the rest are recognised by their wording.
bool isQmlWarning(const QMessageLogContext &context, const QString &message)
{
    const QString category = QString::fromLatin1(context.category ? context.category : "");
    if (category == u"qml" || category == u"js" || category.startsWith(u"qt.qml"))
        return true;
    static const QStringList marks{".qml:",           "qrc:/", "Binding loop",        "TypeError",
                                   "ReferenceError",  "QML ",  "Unable to assign",    "is not defined",
                                   "Cannot read property"};
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

// The Flickable (a ScrollView's or a list's) that `item` lies in, if any.
QQuickItem *enclosingFlickable(QQuickItem *item)
{
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->inherits("QQuickFlickable"))
            return parent;
    }
    return nullptr;
}

// Every item below `root` in tree order, the hidden ones only when `hidden`.
void visitItems(QQuickItem *root, bool hidden, const std::function<void(QQuickItem *)> &visit)
{
    for (QQuickItem *child : root->childItems()) {
        if (hidden || child->isVisible()) {
            visit(child);
            visitItems(child, hidden, visit);
        }
    }
}

} // namespace

UiHarness::UiHarness()
    : m_store(m_folder.filePath(QStringLiteral("preferences.sqlite")))
{
    takeWarnings();
    previousHandler = qInstallMessageHandler(recordingHandler);
    // A home of the test's own: the picture export makes its pictures folder there.
    qputenv("HOME", m_folder.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", m_folder.filePath(QStringLiteral("config")).toLocal8Bit());
}

UiHarness::~UiHarness()
{
    shutDown();
    qInstallMessageHandler(previousHandler);
    previousHandler = nullptr;
}

bool UiHarness::start()
{
    m_studio = std::make_unique<Studio>(m_store, true);
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_window = loadStudioWindow(*m_engine, *m_studio);
    if (!m_window)
        return fail(QStringLiteral("the studio window did not load"));
    m_window->requestActivate();
    if (!QTest::qWaitForWindowExposed(m_window) || !QTest::qWaitForWindowActive(m_window))
        return fail(QStringLiteral("the window never became active, so keys would go nowhere"));
    return true;
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
    // The root item above the content also holds the overlay, where open popups put their content.
    QQuickItem *root = m_window->contentItem();
    visit(root->parentItem() ? root->parentItem() : root);
    for (QObject *match : matches) {
        if (match->property("visible").toBool())
            return match;
    }
    return matches.isEmpty() ? nullptr : matches.constFirst();
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
    QString found = QStringLiteral("<no text inside %1>").arg(name);
    bool seen = false;
    if (auto *item = qobject_cast<QQuickItem *>(object)) {
        visitItems(item, true, [&](QQuickItem *child) {
            if (!seen && child->inherits("QQuickText")) {
                found = child->property("text").toString();
                seen = true;
            }
        });
    }
    return found;
}

QStringList UiHarness::texts(const QString &name) const
{
    QStringList found;
    if (QQuickItem *root = item(name)) {
        visitItems(root, false, [&](QQuickItem *child) {
            if (child->inherits("QQuickText"))
                found.append(child->property("text").toString());
        });
    }
    return found;
}

bool UiHarness::isShown(const QString &name) const
{
    QObject *object = find(name);
    if (auto *item = qobject_cast<QQuickItem *>(object))
        return item->isVisible() && item->window() == m_window;
    return object && object->property("visible").toBool();
}

bool UiHarness::isSheetOpen(const QString &name) const
{
    return property(name, "opened").toBool() && property(name, "visible").toBool();
}

bool UiHarness::hasFocus(const QString &name) const
{
    QQuickItem *target = item(name);
    for (QQuickItem *focused = m_window ? m_window->activeFocusItem() : nullptr; target && focused;
         focused = focused->parentItem()) {
        if (focused == target)
            return true;
    }
    return false;
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
        if (rect.top() >= top && rect.bottom() <= top + height)
            continue;
        const qreal bottom = std::max(0.0, flickable->property("contentHeight").toReal() - height);
        flickable->setProperty("contentY", std::clamp(rect.center().y() - height / 2, 0.0, bottom));
    }
    QCoreApplication::processEvents();
    return true;
}

bool UiHarness::click(const QString &name, Require require)
{
    QQuickItem *target = item(name);
    if (!target)
        return fail(QStringLiteral("click: no item on screen is named %1").arg(name));
    return clickAt(target, QPointF(target->width() / 2, target->height() / 2), name, require);
}

bool UiHarness::clickForSheet(const QString &button, const QString &sheet, bool open)
{
    return click(button) && waitForSheet(sheet, open);
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
    if (!target->isVisible() || target->width() <= 0 || target->height() <= 0)
        return fail(QStringLiteral("click: %1 is not visible").arg(what));
    if (require == Require::Enabled && !target->isEnabled())
        return fail(QStringLiteral("click: %1 is disabled").arg(what));
    if (!scrollIntoView(target))
        return false;
    const QPointF scenePoint = target->mapToScene(local);
    const QPoint point = scenePoint.toPoint();
    if (!QRect(QPoint(0, 0), m_window->size()).contains(point))
        return fail(QStringLiteral("click: %1 lies outside the window at %2,%3").arg(what).arg(point.x()).arg(point.y()));
    // Hidden behind the edge of a scroll area that clips it?
    for (QQuickItem *flickable = enclosingFlickable(target); flickable; flickable = enclosingFlickable(flickable)) {
        if (!flickable->mapRectToScene(QRectF(0, 0, flickable->width(), flickable->height())).contains(scenePoint))
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
    for (const QChar c : text) {
        if (c == u'\n')
            QTest::keyClick(m_window, Qt::Key_Return);
        else if (c.unicode() < 0x80)
            QTest::keyClick(m_window, char(c.unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, QString(c), Qt::NoModifier);
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
    key(Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty()) {
        key(Qt::Key_Backspace);
        return true;
    }
    return type(text);
}

void UiHarness::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window, key, modifiers);
    QCoreApplication::processEvents();
}

bool UiHarness::waitFor(const std::function<bool()> &condition, const QString &what, int timeoutMs)
{
    return QTest::qWaitFor(condition, timeoutMs)
        || fail(QStringLiteral("timed out after %1 ms waiting for %2").arg(timeoutMs).arg(what));
}

bool UiHarness::waitForSheet(const QString &name, bool open)
{
    return waitFor([&] { return isSheetOpen(name) == open; },
                   name + (open ? QStringLiteral(" to open") : QStringLiteral(" to close")));
}

QStringList UiHarness::takeWarnings()
{
    QMutexLocker locker(&warningsLock);
    return std::exchange(seenWarnings, {});
}

bool UiHarness::fail(const QString &reason)
{
    m_failure = reason.toLocal8Bit();
    return false;
}

bool UiTest::startReturning(const QList<qint64> &completed, const QByteArray &creations)
{
    PreferencesStore &store = ui->store();
    store.setBoolean(QStringLiteral("hasCompletedWelcome"), true);
    store.setString(QStringLiteral("playerName"), QStringLiteral("Ada"));
    if (!completed.isEmpty())
        store.setIntegerArray(QStringLiteral("completed"), completed);
    if (!creations.isEmpty())
        store.setData(QStringLiteral("creations"), creations);
    return ui->start();
}

bool UiTest::runToEnd(int timeoutMs)
{
    QSignalSpy finished(&ui->studio(), &Studio::drawingFinished);
    return ui->click(QStringLiteral("runButton"))
        && ui->waitFor([&] { return finished.count() == 1 && !ui->studio().running(); },
                       QStringLiteral("the run to finish"), timeoutMs);
}

QList<qint64> UiTest::range(int from, int to)
{
    QList<qint64> missions;
    for (int i = from; i < to; ++i)
        missions.append(i);
    return missions;
}

void UiTest::init()
{
    ui = std::make_unique<UiHarness>();
}

void UiTest::cleanup()
{
    if (ui)
        ui->shutDown();
    ui.reset();
    const QStringList warnings = UiHarness::takeWarnings();
    QVERIFY2(warnings.isEmpty(), qPrintable(QStringLiteral("QML warnings:\n") + warnings.join(u'\n')));
}
