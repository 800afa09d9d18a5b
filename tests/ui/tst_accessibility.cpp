// What a screen reader finds: every control on every screen and sheet has a name to read.
#include "UiHarness.h"

#include <QAccessible>
#include <QQuickItem>

namespace {

bool isInteractive(const QQuickItem *item)
{
    // A picker's own label field takes no typing; the picker is read instead.
    const bool typing = item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit");
    if (typing && item->parentItem() && item->parentItem()->inherits("QQuickComboBox"))
        return false;
    for (const char *type : {"QQuickAbstractButton", "QQuickTextInput", "QQuickTextEdit", "QQuickSlider",
                             "QQuickComboBox", "QQuickMouseArea", "QQuickProgressBar"}) {
        if (item->inherits(type))
            return true;
    }
    return item->activeFocusOnTab();
}

QString nameOf(QQuickItem *item)
{
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
    const QString name = face ? face->text(QAccessible::Name).trimmed() : QString();
    // A bare mouse area is read through the picture or control it lies on.
    if (name.isEmpty() && item->inherits("QQuickMouseArea")) {
        QQuickItem *under = item->parentItem();
        for (int level = 0; under && level < 2; ++level, under = under->parentItem()) {
            QAccessibleInterface *beneath = QAccessible::queryAccessibleInterface(under);
            if (beneath && !beneath->text(QAccessible::Name).trimmed().isEmpty())
                return beneath->text(QAccessible::Name).trimmed();
        }
    }
    return name;
}

QString describe(const QQuickItem *item)
{
    QStringList path;
    for (const QQuickItem *at = item; at && path.size() < 4; at = at->parentItem())
        path.prepend(at->objectName().isEmpty() ? QString::fromLatin1(at->metaObject()->className())
                                                : at->objectName());
    return path.join(QLatin1Char('/'));
}

// The visible interactive items under `root` that a screen reader could not name.
QStringList nameless(QQuickItem *root)
{
    QStringList found;
    if (!root->isVisible())
        return found;
    if (isInteractive(root) && nameOf(root).isEmpty())
        found << describe(root);
    for (QQuickItem *child : root->childItems())
        found << nameless(child);
    return found;
}

} // namespace

class AccessibilityTest : public UiTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QAccessible::setActive(true); }

    void everyControlHasAName_data()
    {
        QTest::addColumn<QString>("sheet");
        QTest::addColumn<int>("page");
        QTest::newRow("studio") << QString() << 0;
        for (int page = 0; page < 4; ++page)
            QTest::addRow("welcome page %d", page) << "welcomeSheet" << page;
        for (const char *sheet : {"playerSettingsSheet", "companionSettingsSheet", "collectionSheet",
                                  "celebrationSheet", "gallerySheet", "savingSheet", "guideSheet", "mapSheet"})
            QTest::newRow(sheet) << sheet << 0;
    }

    void everyControlHasAName()
    {
        QFETCH(QString, sheet);
        QFETCH(int, page);
        const bool welcome = sheet == u"welcomeSheet";
        if (welcome)
            UI(ui->start());
        else
            UI(startReturning({0, 1, 2}));
        Studio &studio = ui->studio();
        QQuickItem *root = ui->window()->contentItem();
        if (!sheet.isEmpty()) {
            if (welcome) {
                ui->find(QStringLiteral("welcomeView"))->setProperty("page", page);
            } else {
                const QString flag = sheet.chopped(5);
                if (flag == u"gallery") {
                    studio.setCode(QStringLiteral("fd 40"));
                    UI(runToEnd());
                    studio.setSaving(true);
                    studio.setCreationTitle(QStringLiteral("Line"));
                    studio.saveCreation();
                    studio.finishSaving();
                }
                QVERIFY(studio.setProperty(flag.toLatin1(), true));
            }
            UI(ui->waitForSheet(sheet, true));
            root = ui->find(sheet)->property("contentItem").value<QQuickItem *>();
        }
        QVERIFY(root);
        const QStringList missing = nameless(root);
        QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("no accessible name: ") + missing.join(QStringLiteral(", "))));
    }
};

QTEST_MAIN(AccessibilityTest)
#include "tst_accessibility.moc"
