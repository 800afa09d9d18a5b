#pragma once

#include "app/Studio.h"
#include "profile/SqlitePreferencesStore.h"

#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

// A harness step that must succeed; its reason is printed when it does not.
#define UI(step) QVERIFY2((step), ui->why())

// The real studio window over a real Studio on a temporary store, driven the way a child
// drives it: mouse clicks at a control's centre and key presses into whatever has focus.
// Steps that can fail return false and leave the reason in why().
class UiHarness
{
public:
    UiHarness();
    ~UiHarness();
    UiHarness(const UiHarness &) = delete;
    UiHarness &operator=(const UiHarness &) = delete;

    // The store exists before the studio, so a test can arrange saved state first.
    PreferencesStore &store() { return m_store; }

    // Creates the Studio, loads the window and waits until it is on screen and active.
    [[nodiscard]] bool start();
    // Destroys the window and the engine, so warnings raised while tearing down are caught too.
    void shutDown();

    Studio &studio() { return *m_studio; }
    QQuickWindow *window() const { return m_window; }

    // The object with this objectName anywhere in the window, popups included; one on screen
    // wins over one a closed sheet still holds. Null when there is none.
    QObject *find(const QString &name) const;
    QQuickItem *item(const QString &name) const { return qobject_cast<QQuickItem *>(find(name)); }
    QVariant property(const QString &name, const char *property) const;
    // The text of the item, or of the first Text inside it.
    QString text(const QString &name) const;
    // The texts of every visible Text inside the named item, in tree order.
    QStringList texts(const QString &name) const;
    bool isShown(const QString &name) const;
    bool isEnabled(const QString &name) const { return property(name, "enabled").toBool(); }
    bool isSheetOpen(const QString &name) const;
    bool hasFocus(const QString &name) const;

    // Require::Anything clicks a disabled item too, to show that the click does nothing.
    enum class Require { Enabled, Anything };
    // A left click at the item's centre, scrolled into view first.
    [[nodiscard]] bool click(const QString &name, Require require = Require::Enabled);
    // Clicks the button, then waits for the sheet to open (or, with open false, to close).
    [[nodiscard]] bool clickForSheet(const QString &button, const QString &sheet, bool open = true);
    // Clicks the speed slider at its fast (right) or slow (left) end.
    [[nodiscard]] bool chooseSpeed(bool fastest);
    // Types into the focused item; a line feed is the Return key.
    [[nodiscard]] bool type(const QString &text);
    // Clicks into the named field, selects everything in it and types the replacement.
    [[nodiscard]] bool replaceText(const QString &name, const QString &text);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    [[nodiscard]] bool waitFor(const std::function<bool()> &condition, const QString &what, int timeoutMs = 5000);
    [[nodiscard]] bool waitForSheet(const QString &name, bool open);

    const char *why() const { return m_failure.constData(); }

    // The QML warnings seen since the last call.
    static QStringList takeWarnings();

private:
    bool fail(const QString &reason);
    bool clickAt(QQuickItem *item, QPointF local, const QString &what, Require require);
    bool scrollIntoView(QQuickItem *item);

    QTemporaryDir m_folder;
    SqlitePreferencesStore m_store;
    std::unique_ptr<Studio> m_studio;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QPointer<QQuickWindow> m_window;
    QByteArray m_failure;
};

// Every UI test: a fresh harness per test function, and any QML warning fails the function.
class UiTest : public QObject
{
    Q_OBJECT

protected:
    std::unique_ptr<UiHarness> ui;

    // A child who has already met the studio (the welcome stays closed), with these badges and gallery.
    bool startReturning(const QList<qint64> &completed = {}, const QByteArray &creations = {});
    // Presses Run code and waits until the drawing has been carried out and judged.
    bool runToEnd(int timeoutMs = 5000);
    static QList<qint64> range(int from, int to);

private slots:
    void init();
    void cleanup();
};
