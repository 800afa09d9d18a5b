#pragma once

#include <QMetaType>
#include <QString>

// One world of the map. World w holds missions 6w to 6w + 5.
struct World
{
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString description MEMBER description)

public:
    QString title;
    // A system symbol name, drawn next to the title.
    QString symbol;
    QString description;
};

Q_DECLARE_METATYPE(World)
