#pragma once

#include <QColor>
#include <QMetaType>
#include <QString>

// A canvas background the child may choose once enough badges are earned.
struct CanvasTheme
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(int unlock MEMBER unlock)
    Q_PROPERTY(QColor color MEMBER color)

public:
    QString name;
    // The badge count from which it may be chosen.
    int unlock = 0;
    QColor color;
};

Q_DECLARE_METATYPE(CanvasTheme)
