#pragma once

#include "app/Studio.h"
#include "profile/SqlitePreferencesStore.h"

#include <QList>
#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>

// The real studio window over a real Studio on a temporary store, driven the way a child
// drives it: mouse clicks at a control's centre and key presses into whatever has focus.
//
// Helpers that can fail return false and leave the reason in failure(), so a test reads
//   QVERIFY2(ui.click("runButton"), ui.failure());
class UiHarness
{
public:
    UiHarness();
    ~UiHarness();

    UiHarness(const UiHarness &) = delete;
    UiHarness &operator=(const UiHarness &) = delete;

    // The store exists before the studio, so a test can arrange saved state first.
    PreferencesStore &store() { return m_store; }
    // A child who has already met the studio: the welcome flow stays closed.
    void seedReturningPlayer(const QString &name = QStringLiteral("Ada"));
    void seedCompleted(const QList<qint64> &missions);

    // Creates the Studio, loads the window and waits until it is on screen.
    [[nodiscard]] bool start();
    // Destroys the window and the engine, so warnings raised while tearing down are caught too.
    void shutDown();

    Studio &studio() { return *m_studio; }
    QQuickWindow *window() const { return m_window; }

    // The object with this objectName, searched through the whole window including popups.
    // Prefers one that is on screen when several carry the name (a sheet's old content may
    // still be waiting for deletion). Null when there is none.
    QObject *find(const QString &name) const;
    QQuickItem *item(const QString &name) const;
    QVariant property(const QString &name, const char *property) const;
    // The text of a Text or of the first Text inside the named item.
    QString text(const QString &name) const;
    // The texts of every visible Text inside the named item, in tree order (symbols included).
    QStringList texts(const QString &name) const;
    // Whether the named item is actually shown: visible itself and through all its parents.
    bool isShown(const QString &name) const;
    bool isEnabled(const QString &name) const;
    // Whether a sheet (a Popup) is open on screen.
    bool isSheetOpen(const QString &name) const;

    enum class Require { Enabled, Anything };
    // A left click at the item's centre, scrolled into view first. With Require::Enabled
    // (the default) a disabled item is a failure; Require::Anything clicks it regardless, to
    // show that such a click does nothing.
    [[nodiscard]] bool click(const QString &name, Require require = Require::Enabled);
    [[nodiscard]] bool clickAt(QQuickItem *item, QPointF local, const QString &what, Require require);

    // Clicks the speed slider at its fast (right) or slow (left) end, as a child drags it there.
    [[nodiscard]] bool chooseSpeed(bool fastest);

    // Types into the focused item; a line feed is the Return key.
    [[nodiscard]] bool type(const QString &text);
    // Clicks into the named field, selects everything in it and types the replacement.
    [[nodiscard]] bool replaceText(const QString &name, const QString &text);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // Whether keyboard focus is on the named item or inside it.
    bool hasFocus(const QString &name) const;

    [[nodiscard]] bool waitFor(const std::function<bool()> &condition, const QString &what, int timeoutMs = 5000);
    [[nodiscard]] bool waitForSheet(const QString &name, bool open, int timeoutMs = 5000);

    QString failure() const { return m_failure; }
    const char *why() const;

    // Ends a test: closes the window, destroys the harness and gives the QML warnings it saw.
    static QStringList finish(std::unique_ptr<UiHarness> &harness);

    // QML warnings seen since the harness was made (or since takeWarnings()).
    static QStringList warnings();
    static QStringList takeWarnings();

private:
    bool fail(const QString &reason);
    bool scrollIntoView(QQuickItem *item);

    QTemporaryDir m_folder;
    SqlitePreferencesStore m_store;
    std::unique_ptr<Studio> m_studio;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QPointer<QQuickWindow> m_window;
    QString m_failure;
    mutable QByteArray m_failureBytes;
};
